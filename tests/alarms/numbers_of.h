#pragma once

// Whole numbers as options of a test program: "--steps 1000 --seed 3".

#include <charconv>
#include <map>
#include <string_view>

namespace kavorix::test {

// False when an argument is none of these, or no number.
inline bool numbers_of(int argc, char** argv, const std::map<std::string_view, int*>& options) {
    for (int i = 1; i < argc; i += 2) {
        const auto found = options.find(argv[i]);
        if (found == options.end() || i + 1 == argc) return false;
        const std::string_view text = argv[i + 1];
        const auto result = std::from_chars(text.data(), text.data() + text.size(), *found->second);
        if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
    }
    return true;
}

}  // namespace kavorix::test
