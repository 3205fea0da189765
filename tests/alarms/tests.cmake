target_include_directories(test_alarms PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
