target_link_libraries(kavorix_platform PUBLIC Threads::Threads)
target_link_libraries(kavorix_platform PUBLIC ${CMAKE_DL_LIBS})
