# The application without a screen is the one of the windows' own tests.
target_sources(test_app_window PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/ui/qt/main.cpp)
target_link_libraries(test_app_window PRIVATE Qt6::Test)
