# The built-in demonstration network is scenarios/demo.toml itself, compiled in.
set(demo_scenario ${CMAKE_SOURCE_DIR}/scenarios/demo.toml)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${demo_scenario})
file(READ ${demo_scenario} DEMO_SCENARIO_TEXT)
configure_file(${CMAKE_SOURCE_DIR}/src/sim/demo_text.cpp.in ${CMAKE_BINARY_DIR}/sim/demo_text.cpp @ONLY)
target_sources(kavorix_sim PRIVATE ${CMAKE_BINARY_DIR}/sim/demo_text.cpp)
target_link_libraries(kavorix_sim PRIVATE tomlplusplus::tomlplusplus)
