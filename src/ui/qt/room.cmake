set_target_properties(kavorix_ui_qt PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
target_link_libraries(kavorix_ui_qt PUBLIC Qt6::Widgets Qt6::PrintSupport Qt6::Svg QCustomPlotQt6::QCustomPlotQt6)
