target_compile_definitions(kavorix_app PUBLIC KAVORIX_VERSION="${PROJECT_VERSION}")
target_link_libraries(kavorix_app PUBLIC CLI11::CLI11)
add_executable(kavorix ${CMAKE_SOURCE_DIR}/src/app/main.cpp)
target_link_libraries(kavorix PRIVATE kavorix_app)
