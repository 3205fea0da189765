#pragma once

// What a log file holds, run by run.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/dates.h"
#include "logging/dat_reader.h"

namespace kavorix {

// A pause between two records of a scan log that is longer than twice the usual one.
struct LogGap {
    WallTime From;
    WallTime To;
    bool operator==(const LogGap&) const = default;
};

struct RunInfo {
    RunHeader Header;
    std::uint64_t Position = 0;  // of its first byte
    std::uint64_t Records = 0;
    std::uint64_t Events = 0;           // of an event log
    std::optional<WallTime> First;      // times of the first and the last record; none where the
    std::optional<WallTime> Last;       // header's date is no day
    std::int64_t UsualInterval_ms = 0;  // of a scan log; 0 with less than two records
    std::vector<LogGap> Gaps;           // the first ones
    std::uint64_t GapCount = 0;         // all of them
};

struct LogInfo {
    std::vector<RunInfo> Runs;
    std::uint64_t Size = 0;  // bytes
    DatItem End = DatItem::End;
    std::uint64_t EndPosition = 0;  // of the record that is cut short or damaged
    bool Unfinished = false;  // a run was ended in the middle of a record, which does not count

    bool damaged() const { return End != DatItem::End; }
};

// Reads the whole log.
LogInfo read_log_info(File& file);

// The same as lines of text, each ended by a line feed.
std::string log_info_text(const LogInfo& info);

}  // namespace kavorix
