#pragma once

// What an engineer asks of an alarm system, computed from the journal alone. Counted are alarms
// that called for the operator: those that became unacknowledged, not what went on beneath a shelf.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "alarms/alarm_record.h"

namespace kavorix {

struct AlarmFlood {
    std::int64_t begin_utc_ms = 0;  // the first of more than 10 alarms within 10 minutes
    std::int64_t end_utc_ms = 0;    // fewer than 5 came in the 10 minutes before
    std::size_t count = 0;
    std::size_t peak = 0;  // most within 10 minutes
};

struct AlarmMeasures {
    struct Frequent {
        std::string id;
        std::string label;
        std::size_t count = 0;
    };
    struct Standing {
        std::string id;
        std::int64_t since_utc_ms = 0;
        std::int64_t until_utc_ms = 0;  // the end of the span when it still stands
    };

    std::int64_t from_utc_ms = 0;
    std::int64_t to_utc_ms = 0;
    std::size_t annunciated = 0;
    std::array<std::size_t, HighestSeverity + 1> by_severity{};
    std::size_t most_in_an_hour = 0;  // in any, not by the clock
    std::size_t most_in_10_min = 0;
    double hours_above_30 = 0;    // share of the hours of the span, counted from its begin
    double periods_above_10 = 0;  // share of its 10-minute periods, likewise
    std::vector<AlarmFlood> floods;
    double time_in_flood = 0;             // share of the span
    std::vector<Frequent> most_frequent;  // ten at most
    std::vector<Frequent> chattering;  // came and went 3 times within a minute; how often that was
    std::vector<Standing> stale;       // active for more than 24 hours

    double hours() const { return static_cast<double>(to_utc_ms - from_utc_ms) / 3600000.0; }
    double per_hour() const { return per(1.0); }
    double per_10_min() const { return per(1.0 / 6); }
    double per_day() const { return per(24.0); }

  private:
    double per(double span_h) const {
        return hours() > 0 ? static_cast<double>(annunciated) / hours() * span_h : 0;
    }
};

// Of the entries from one moment up to before another; without them from the first entry, and to
// the last.
AlarmMeasures measure_alarms(std::span<const AlarmRecord> records,
                             std::optional<std::int64_t> from_utc_ms = {},
                             std::optional<std::int64_t> to_utc_ms = {});

}  // namespace kavorix
