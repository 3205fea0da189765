#pragma once

#include <string>

#include "logging/csv_converter.h"

namespace kavorix {

// Converts the log at `log_path` into the file plan.CsvPath. The text is written beside it and
// takes its place at the end, so that a text that was there stays until then; where plan.CsvPath is
// no regular file, such as a device, it is written there at once. No new text is left when the log
// is corrupt and when reading or writing fails, which is thrown as std::system_error. The log is
// never written over, whatever it is called. Check sums beside the log are compared.
CsvResult write_csv_file(Files& files, const std::string& log_path, const CsvPlan& plan,
                         CsvWatcher& watcher);

// The path of a log with its last three characters replaced by "CSV".
std::string csv_path_of(const std::string& log_path);

// Threads that it pays to let a conversion have on this machine beside its own.
int usual_csv_helpers();

}  // namespace kavorix
