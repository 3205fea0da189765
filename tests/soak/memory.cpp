// Allocation functions that count what is live.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "soak/run.h"

namespace {

std::atomic<long long> live_blocks{0};
std::atomic<long long> live_bytes{0};

// The size stands in front of the block.
constexpr std::size_t Head = alignof(std::max_align_t);

void* take(std::size_t size) {
    void* memory = std::malloc(size + Head);
    if (!memory) throw std::bad_alloc();
    *static_cast<std::size_t*>(memory) = size;
    ++live_blocks;
    live_bytes += static_cast<long long>(size);
    return static_cast<char*>(memory) + Head;
}

void give_back(void* block) {
    if (!block) return;
    char* memory = static_cast<char*>(block) - Head;
    --live_blocks;
    live_bytes -= static_cast<long long>(*reinterpret_cast<std::size_t*>(memory));
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
// Sanitizers bring these of their own, which would not go together with what gives the memory back.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return take(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
    return operator new(size, nothrow);
}
void operator delete(void* block) noexcept {
    give_back(block);
}
void operator delete[](void* block) noexcept {
    give_back(block);
}
void operator delete(void* block, std::size_t) noexcept {
    give_back(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    give_back(block);
}

namespace kavorix::soak {

Memory memory_now() {
    return {live_blocks, live_bytes};
}

}  // namespace kavorix::soak
