# Its own program: it replaces the allocation functions.
add_executable(failing_memory ${CMAKE_CURRENT_SOURCE_DIR}/exhaustion/memory/failing_memory.cpp)
target_link_libraries(failing_memory PRIVATE kavorix_config kavorix_test_support)
add_test(NAME failing_memory COMMAND failing_memory)
