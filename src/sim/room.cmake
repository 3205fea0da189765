# The built-in demonstration network is scenarios/demo.toml itself, compiled in.
set(demo_scenario ${CMAKE_SOURCE_DIR}/scenarios/demo.toml)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${demo_scenario})
file(READ ${demo_scenario} DEMO_SCENARIO_TEXT)
configure_file(${CMAKE_SOURCE_DIR}/src/sim/demo_text.cpp.in ${CMAKE_BINARY_DIR}/sim/demo_text.cpp @ONLY)
target_sources(kavorix_sim PRIVATE ${CMAKE_BINARY_DIR}/sim/demo_text.cpp)

# The simulated network as a driver library: libzavdrvr-sim.so. It shows nothing but the functions of its headers.
add_library(zavdrvr-sim SHARED ${CMAKE_SOURCE_DIR}/src/sim/library/zavdrvr_sim.cpp)
target_link_libraries(zavdrvr-sim PRIVATE kavorix_sim)
target_link_options(zavdrvr-sim PRIVATE -Wl,--exclude-libs,ALL)
set_target_properties(zavdrvr-sim PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
                      NO_SONAME ON # it is loaded by its path, never linked
                      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})

# The example of a driver library.
add_library(example-driver MODULE ${CMAKE_SOURCE_DIR}/examples/example_driver.c)
target_include_directories(example-driver PRIVATE ${CMAKE_SOURCE_DIR}/src/platform)
set_target_properties(example-driver PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
