target_link_libraries(test_ui_qt PRIVATE Qt6::Test)
# The forms as the toolkit's generator makes them.
target_include_directories(test_ui_qt PRIVATE ${CMAKE_BINARY_DIR}/kavorix_ui_qt_autogen/include)
if(KAVORIX_SANITIZE)
    target_precompile_headers(test_ui_qt PRIVATE <QtTest> <QtWidgets> <gtest/gtest.h>)
endif()
