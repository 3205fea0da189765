target_link_libraries(test_ui_qt PRIVATE Qt6::Test)
