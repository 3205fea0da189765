#pragma once

// Counts what the program takes of memory. Defines the global operators: for one source file of a
// program.

#include <algorithm>
#include <cstdlib>
#include <new>

namespace kavorix::test {

inline std::size_t allocations = 0;

inline void* counted(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(std::max<std::size_t>(size, 1))) return memory;
    throw std::bad_alloc();
}

}  // namespace kavorix::test

void* operator new(std::size_t size) {
    return kavorix::test::counted(size);
}
void* operator new[](std::size_t size) {
    return kavorix::test::counted(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++kavorix::test::allocations;
    return std::malloc(std::max<std::size_t>(size, 1));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
