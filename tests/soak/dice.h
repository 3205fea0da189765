#pragma once

// Chance from a seed, the same with every library and compiler.

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>

namespace kavorix::soak {

class Dice {
  public:
    explicit Dice(std::uint32_t seed) : random_(seed) {}

    std::uint32_t bits() { return static_cast<std::uint32_t>(random_()); }
    // 0..limit-1; 0 for a limit of 1 or less.
    int below(int limit) {
        return limit > 1 ? static_cast<int>(bits() % static_cast<std::uint32_t>(limit)) : 0;
    }
    // From `low` to `high`, both included.
    int number(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }

    template <class Entries>
    const auto& pick(const Entries& entries) {
        return entries[static_cast<std::size_t>(below(static_cast<int>(std::size(entries))))];
    }

  private:
    std::mt19937 random_;
};

}  // namespace kavorix::soak
