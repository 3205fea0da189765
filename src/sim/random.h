#pragma once

// Random numbers that depend on nothing but their arguments: the same seed, source and step give
// the same number on every machine, in whatever order they are asked for.

#include <cstdint>

namespace kavorix::sim {

// A source of random numbers: every channel, fault and pod has its own, so that none of them is
// disturbed by what the others draw.
class RandomSource {
  public:
    explicit RandomSource(std::uint64_t seed) : key_(mix(seed + 0x9E3779B97F4A7C15u)) {}

    // An independent source under this one.
    RandomSource child(std::uint64_t number) const { return RandomSource(key_ ^ mix(number + 1)); }

    std::uint64_t bits(std::int64_t step) const {
        return mix(key_ + 0x9E3779B97F4A7C15u * static_cast<std::uint64_t>(step));
    }

    // Evenly spread over 0 <= x < 1.
    double unit(std::int64_t step) const {
        return static_cast<double>(bits(step) >> 11u) * 0x1.0p-53;
    }

    // Over -1 < x < 1, thinning out towards the ends; standard deviation 1/3.
    double bell(std::int64_t step) const {
        return (unit(3 * step) + unit(3 * step + 1) + unit(3 * step + 2)) * (2.0 / 3.0) - 1.0;
    }

  private:
    static constexpr std::uint64_t mix(std::uint64_t x) {
        x = (x ^ (x >> 30u)) * 0xBF58476D1CE4E5B9u;
        x = (x ^ (x >> 27u)) * 0x94D049BB133111EBu;
        return x ^ (x >> 31u);
    }

    std::uint64_t key_;
};

}  // namespace kavorix::sim
