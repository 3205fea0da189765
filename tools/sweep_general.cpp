// Compares the fast general format with the plain one: over all 2^32 bit patterns of a single, or
// over a random sample.
//
//     sweep_general [--sample COUNT [--seed SEED]]
//
// Prints every difference up to a limit and the number of patterns compared. Exit code 0 when all
// are equal, 1 when not, 2 for wrong arguments.

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "base/numbers.h"

namespace {

using kavorix::GeneralBufferSize;

class Sweep {
  public:
    void compare(std::uint32_t bits) {
        const auto value = std::bit_cast<float>(bits);
        std::array<char, GeneralBufferSize> fast{};
        std::array<char, GeneralBufferSize> plain{};
        const std::string_view fast_text(fast.data(), kavorix::write_general(value, fast.data()));
        const std::string_view plain_text(plain.data(),
                                          kavorix::write_general_plain(value, plain.data()));
        if (fast_text != plain_text) report(bits, fast_text, plain_text);
    }

    std::uint64_t differences() const { return differences_; }

  private:
    void report(std::uint32_t bits, std::string_view fast, std::string_view plain) {
        constexpr std::uint64_t Shown = 100;
        const std::lock_guard lock(printing_);
        if (++differences_ > Shown) return;
        std::printf("%08X: %.*s instead of %.*s\n", static_cast<unsigned>(bits),
                    static_cast<int>(fast.size()), fast.data(), static_cast<int>(plain.size()),
                    plain.data());
    }

    std::mutex printing_;
    std::atomic<std::uint64_t> differences_{0};
};

// All patterns, in slices that the threads take in turn.
void sweep_all(Sweep& sweep) {
    constexpr std::uint32_t Slices = 1u << 12;
    constexpr std::uint32_t SliceSize = 1u << 20;
    std::atomic<std::uint32_t> next{0};
    const auto work = [&] {
        for (std::uint32_t slice = next++; slice < Slices; slice = next++)
            for (std::uint32_t i = 0; i < SliceSize; ++i) sweep.compare(slice * SliceSize + i);
    };
    std::vector<std::thread> threads(std::max(1u, std::thread::hardware_concurrency()));
    for (auto& thread : threads) thread = std::thread(work);
    for (auto& thread : threads) thread.join();
}

void sweep_sample(Sweep& sweep, std::uint64_t count, std::uint64_t seed) {
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    for (std::uint64_t i = 0; i < count; ++i) sweep.compare(static_cast<std::uint32_t>(random()));
}

std::optional<std::uint64_t> number(std::string_view text) {
    std::uint64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

int main(int argc, char** argv) {
    std::optional<std::uint64_t> sample;
    std::uint64_t seed = 1;
    for (int i = 1; i < argc; i += 2) {
        const std::string_view option = argv[i];
        const auto value = i + 1 < argc ? number(argv[i + 1]) : std::nullopt;
        if (value && option == "--sample") {
            sample = value;
        } else if (value && option == "--seed") {
            seed = *value;
        } else {
            std::fputs("usage: sweep_general [--sample COUNT [--seed SEED]]\n", stderr);
            return 2;
        }
    }
    Sweep sweep;
    if (sample) {
        sweep_sample(sweep, *sample, seed);
    } else {
        sweep_all(sweep);
    }
    std::printf("%llu patterns compared, %llu differences\n",
                static_cast<unsigned long long>(sample.value_or(1ULL << 32)),
                static_cast<unsigned long long>(sweep.differences()));
    return sweep.differences() == 0 ? 0 : 1;
}
