# Driver libraries that the loader meets.
foreach(driver incomplete_driver careless_driver)
    add_library(${driver} MODULE ${CMAKE_CURRENT_SOURCE_DIR}/platform/${driver}.c)
    target_include_directories(${driver} PRIVATE ${CMAKE_SOURCE_DIR}/src)
    set_target_properties(${driver} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    add_dependencies(test_platform ${driver})
endforeach()
add_dependencies(test_platform example-driver)
