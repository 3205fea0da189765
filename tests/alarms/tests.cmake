# The walk against a model and the kill test: by hand with larger counts, for example
# build/release/alarm_walk --steps 1000000 and build/release/alarm_kill --kills 1000
foreach(name walk kill)
    add_executable(alarm_${name} ${CMAKE_CURRENT_SOURCE_DIR}/alarms/${name}/alarm_${name}.cpp)
    target_link_libraries(alarm_${name} PRIVATE kavorix_alarms kavorix_test_support)
endforeach()
add_test(NAME alarm_walk COMMAND alarm_walk --steps 20000 --seed 1)
add_test(NAME alarm_kill COMMAND alarm_kill --kills 60 --seed 1)
