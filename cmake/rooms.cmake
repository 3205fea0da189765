# kavorix_room(FOLDER [ROOM...]): the static library of src/FOLDER and the rooms that it builds on. Its sources are
# src/FOLDER/*.cpp and those of the folders in it, but for qt, a room of its own, and library, one
# of its own; a folder without
# sources yet is an interface library.
function(kavorix_room folder)
    string(REPLACE "/" "_" name "${folder}")
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp
         ${CMAKE_SOURCE_DIR}/src/${folder}/*.c ${CMAKE_SOURCE_DIR}/src/${folder}/*/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/(main\\.cpp$|${folder}/(qt|library)/)")
    if(sources)
        add_library(kavorix_${name} STATIC ${sources})
        set(scope PUBLIC)
    else()
        add_library(kavorix_${name} INTERFACE)
        set(scope INTERFACE)
    endif()
    target_include_directories(kavorix_${name} ${scope} ${CMAKE_SOURCE_DIR}/src)
    foreach(room ${ARGN})
        string(REPLACE "/" "_" room "${room}")
        target_link_libraries(kavorix_${name} ${scope} kavorix_${room})
    endforeach()
    if(EXISTS ${CMAKE_SOURCE_DIR}/src/${folder}/room.cmake)
        include(${CMAKE_SOURCE_DIR}/src/${folder}/room.cmake)
    endif()
endfunction()
