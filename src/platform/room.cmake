target_link_libraries(kavorix_platform PUBLIC Threads::Threads)
