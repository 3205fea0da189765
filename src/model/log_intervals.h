#pragma once

// The intervals that scans can be logged at, beside "at every poll".

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace kavorix {

struct LogInterval {
    std::int32_t interval_ms;
    std::string_view text;
};

inline constexpr std::array<LogInterval, 11> LogIntervals = {{
    {1000, "1 sec"},
    {2000, "2 sec"},
    {5000, "5 sec"},
    {10000, "10 sec"},
    {15000, "15 sec"},
    {30000, "30 sec"},
    {60000, "1 min"},
    {300000, "5 min"},
    {900000, "15 min"},
    {1800000, "30 min"},
    {3600000, "1 hr"},
}};

constexpr bool is_log_interval(std::int32_t interval_ms) {
    return std::any_of(LogIntervals.begin(), LogIntervals.end(), [&](const LogInterval& interval) {
        return interval.interval_ms == interval_ms;
    });
}

}  // namespace kavorix
