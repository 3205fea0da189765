#pragma once

// One entry of the alarm journal, and the line that it is on the file. docs/alarm-journal.md has
// the format.

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "alarms/alarm_rules.h"

namespace kavorix {

// When something happens, as whoever tells it has it from its clocks.
struct AlarmMoment {
    std::uint32_t tick_ms = 0;    // of a count that never goes back but wraps; all intervals
    std::int64_t utc_ms = 0;      // since 1970-01-01T00:00Z; may jump
    std::int16_t offset_min = 0;  // local time is UTC and this
};

enum class RecordEvent : std::uint8_t {
    Start,  // of the program; all that is in a state follows as "carried"
    Stop,
    Comes,
    Goes,
    Acknowledged,
    Reset,
    ReAlarmed,
    Shelved,  // again: with another end
    Unshelved,
    ShelfEnded,  // by itself
    Suppressed,
    Unsuppressed,
    TakenOut,
    PutBack,
    RuleChanged,
    RuleRemoved,
    Carried,  // a state as it was: at the head of a file, after a start or after a gap
    Silenced,
    Gap,  // entries before could not be written; the comment says how many
};

std::string_view event_name(RecordEvent event);

inline constexpr std::int64_t NotShelved = 0;
inline constexpr std::int64_t OneShotShelf = -1;  // until its condition goes the next time

struct AlarmRecord {
    std::uint64_t number = 0;  // rises by one from entry to entry, for good
    std::int64_t utc_ms = 0;
    std::int16_t offset_min = 0;
    RecordEvent event = RecordEvent::Start;
    AlarmRule rule;  // as it was then, without text, guidance and line
    bool of_alarm =
        false;  // false: start, stop, silenced and gap, which have no rule and no states
    AlarmState before;
    AlarmState after;
    float value = std::numeric_limits<float>::quiet_NaN();  // see ConditionChange
    std::uint64_t occurrence = 0;   // number of the entry with which the condition came; 0: none
    std::int64_t since_utc_ms = 0;  // when that was
    std::int64_t shelf_utc_ms = NotShelved;  // end of the shelf
    std::string who;
    std::string comment;
};

// The order of alarm lists, as something to compare: unseen ones first, then the highest severity,
// then the newest.
std::tuple<bool, int, std::int64_t, std::uint64_t> list_place(AlarmState state, int severity,
                                                              std::int64_t since_utc_ms,
                                                              std::uint64_t occurrence);

// The state became one that calls for the operator.
bool annunciates(const AlarmRecord& record);

// "2026-11-23T09:48:26.123Z", and local time with its offset: "2026-11-23T10:48:26.123+01:00".
std::string utc_text(std::int64_t utc_ms);
std::string local_text(std::int64_t utc_ms, int offset_min);

// The moment of a date and time: "2026-11-23", "2026-11-23 10:48", with seconds and milliseconds
// or without, "T" for the blank, behind it nothing (local, `offset_min`), "Z" or an offset.
std::optional<std::int64_t> parse_time(std::string_view text, int offset_min);

// The line without its line feed.
std::string journal_line(const AlarmRecord& record);

// The entry of a line; nothing when it is none or its check sum is wrong.
std::optional<AlarmRecord> parse_journal_line(std::string_view line);

// The names of a line's fields, as the first line of a file has them.
std::string_view journal_heading();

}  // namespace kavorix
