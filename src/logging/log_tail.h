#pragma once

// The end of a log, where the next run is to begin.

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/files.h"

namespace kavorix {

// Why no run can be added to a file: it is no log, or damaged in a way that no interrupted run
// leaves behind, so that nobody would find the new run there.
class LogRefused : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Where a new run is appended to `file`, which is read as a whole. What a run that was killed, or a
// loss of power, left unfinished at the end is put in order first, so that everything before stays
// readable as it was: a header without its end is cut off, a block is filled up to its whole size,
// a record that was not finished is blanked, one that only waited for the disk is marked as
// finished. Complete records are never touched. `path` is for messages. Throws LogRefused, having
// changed nothing, and std::system_error.
std::uint64_t repair_log_end(File& file, const std::string& path);

// Throws what starting a log in the file `path` would fail with: besides LogRefused, FileInUse, and
// std::system_error where it cannot be read or written or its folder is missing. Changes nothing.
void check_log_start(Files& files, const std::string& path);

// The same as a sentence for the operator; nothing when the log can start.
std::optional<std::string> log_obstacle(Files& files, const std::string& path);

}  // namespace kavorix
