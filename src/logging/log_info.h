#pragma once

// What a log file holds, run by run.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/dates.h"
#include "logging/dat_reader.h"
#include "logging/log_check.h"

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

// What was found where a record should be, and how much was passed over behind it.
struct LogDamage {
    DatItem Item = DatItem::Damaged;  // CutShort, Damaged or Corrupt
    std::uint64_t Position = 0;
    std::uint64_t Skipped = 0;  // bytes
    bool operator==(const LogDamage&) const = default;
};

struct LogInfo {
    std::vector<RunInfo> Runs;  // the first MostRuns
    std::uint64_t RunCount = 0;
    std::uint64_t Size = 0;          // bytes
    std::vector<LogDamage> Damages;  // the first MostDamages
    std::uint64_t DamageCount = 0;
    std::uint64_t Skipped = 0;  // bytes in all of them
    bool Unfinished = false;    // a run was ended in the middle of a record, which does not count
    LogCheck Check;             // against the sums beside the log

    static constexpr std::size_t MostRuns = 1000;
    static constexpr std::size_t MostDamages = 20;

    bool damaged() const { return DamageCount > 0 || !Check.good(); }
};

// Reads the whole log, behind damage too, and compares it with its check sums if there are any. The
// memory that it takes is bounded whatever the file holds.
LogInfo read_log_info(File& file, File* sums = nullptr);

// The same as lines of text, each ended by a line feed.
std::string log_info_text(const LogInfo& info);

}  // namespace kavorix
