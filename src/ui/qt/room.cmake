# The generators run again when a file is added, not only when one they know of changes.
file(GLOB_RECURSE generator_inputs CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/ui/qt/*.cpp
     ${CMAKE_SOURCE_DIR}/src/ui/qt/*.h ${CMAKE_SOURCE_DIR}/src/ui/qt/*.ui)
set_target_properties(kavorix_ui_qt PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON AUTOGEN_ORIGIN_DEPENDS OFF
                      AUTOGEN_TARGET_DEPENDS "${generator_inputs}")
file(GLOB form_folders LIST_DIRECTORIES true CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/ui/qt/*)
list(FILTER form_folders EXCLUDE REGEX "\\.cmake$")
set_target_properties(kavorix_ui_qt PROPERTIES AUTOUIC_SEARCH_PATHS "${form_folders}")
target_sources(kavorix_ui_qt PRIVATE ${CMAKE_SOURCE_DIR}/src/ui/qt/kit/icons.qrc)
target_link_libraries(kavorix_ui_qt PUBLIC Qt6::Widgets Qt6::PrintSupport Qt6::Svg QCustomPlotQt6::QCustomPlotQt6)
if(KAVORIX_SANITIZE)
    # Reading the toolkit's headers is most of the time that these files take. The other builds do without, so that every
    # file goes on including what it uses.
    target_precompile_headers(kavorix_ui_qt PRIVATE <QtWidgets> <qcustomplot.h>)
endif()
