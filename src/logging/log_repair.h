#pragma once

// Mends a damaged log.

#include <cstdint>
#include <string>

#include "platform/files.h"

namespace kavorix {

struct LogRepair {
    bool Needed = false;     // else the log is as it was
    std::string Copy;        // of the log as it was; its check sums stand beside it
    std::uint64_t Runs = 0;  // in the mended log
    std::uint64_t Records = 0;
    std::uint64_t DamagedParts = 0;  // passed over, with so many bytes
    std::uint64_t Skipped = 0;
    std::uint64_t Differing = 0;  // records kept that differ from their check sums, and go on to
};

// Copies the log at `path` to the first free name of PATH.damaged, PATH.damaged2, ..., then puts in
// its place what can be read of it: each run with the records that make sense, blocks that are not
// damaged byte for byte as they were. The log is never without content, whatever happens meanwhile.
// Throws LogRefused for a file without any run and std::system_error; FileInUse while somebody logs
// into it.
LogRepair repair_log(Files& files, const std::string& path);

}  // namespace kavorix
