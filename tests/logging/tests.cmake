# The kill test: by hand with a larger count, for example build/release/log_kill --kills 100000
add_executable(log_kill ${CMAKE_CURRENT_SOURCE_DIR}/logging/kill/log_kill.cpp)
target_link_libraries(log_kill PRIVATE kavorix_logging kavorix_test_support)
add_test(NAME log_kill COMMAND log_kill --kills 300 --seed 1)
