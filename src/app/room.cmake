add_executable(kavorix ${CMAKE_SOURCE_DIR}/src/app/main.cpp)
target_link_libraries(kavorix PRIVATE kavorix_app CLI11::CLI11)
