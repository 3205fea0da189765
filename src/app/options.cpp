#include "app/options.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <set>

#include "base/numbers.h"
#include "base/text.h"
#include "platform/driver.h"
#include "platform/files.h"

namespace kavorix {

std::string default_directory() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data && *data) return join_path(data, "kavorix");
    const char* home = std::getenv("HOME");
    return join_path(home ? home : ".", ".local/share/kavorix");
}

namespace {

std::optional<int> pod_number(std::string_view text) {
    int number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    if (number < 1 || number > MaxZavs) return std::nullopt;
    return number;
}

}  // namespace

std::optional<std::vector<int>> parse_pod_list(std::string_view text) {
    std::set<int> numbers;
    while (true) {
        const auto comma = text.find(',');
        const std::string_view item = trim(text.substr(0, comma));
        const auto dash = item.find('-');
        const auto first = pod_number(item.substr(0, dash));
        const auto last =
            dash == std::string_view::npos ? first : pod_number(item.substr(dash + 1));
        if (!first || !last || *first > *last) return std::nullopt;
        for (int number = *first; number <= *last; ++number) numbers.insert(number);
        if (comma == std::string_view::npos) break;
        text.remove_prefix(comma + 1);
    }
    return std::vector<int>(numbers.begin(), numbers.end());
}

std::optional<std::chrono::milliseconds> parse_duration(std::string_view text) {
    struct Unit {
        std::string_view name;
        double milliseconds;
    };
    constexpr std::array Units = {Unit{"ms", 1},    Unit{"s", 1e3},    Unit{"m", 60e3},
                                  Unit{"h", 3.6e6}, Unit{"d", 86.4e6}, Unit{"", 1e3}};
    constexpr double Longest = 100 * 365 * 86.4e6;
    for (const Unit& unit : Units) {
        if (!text.ends_with(unit.name)) continue;
        const std::string_view number = text.substr(0, text.size() - unit.name.size());
        const double value = is_numeric(number) ? numeric_value(number) * unit.milliseconds : 0.0;
        if (value < 1 || value > Longest) return std::nullopt;
        return std::chrono::milliseconds(static_cast<long long>(value));
    }
    return std::nullopt;
}

}  // namespace kavorix
