#pragma once

// Which pods a log file holds.

#include <cstdint>
#include <string>
#include <vector>

#include "logging/dat_reader.h"

namespace kavorix {

struct PodOnFile {
    std::int16_t Number = 0;  // 1..50
    std::string TypeCode;
    std::int16_t Channels = 0;        // most of all runs
    std::vector<std::string> Labels;  // trimmed, by channel; of the first run that has one
    bool operator==(const PodOnFile&) const = default;
};

struct LogContents {
    std::int16_t Kind = ScanLog;  // of the first run
    std::string Comment;          // of the first run
    std::int32_t Date = 0;        // of the first run, yyyymmdd
    int Runs = 0;
    std::vector<PodOnFile> Pods;  // of all runs, in order of first appearance
};

// Looks through the headers of all runs without reading the records between them, so that it takes
// no longer for a long file. Without a readable header, Runs is 0. A damaged header ends it: the
// runs before count.
LogContents read_log_contents(File& file);

// The same, behind damage too: reads the whole log.
LogContents salvage_log_contents(File& file);

}  // namespace kavorix
