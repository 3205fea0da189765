#pragma once

#include <string>

#include "logging/csv_converter.h"

namespace kavorix {

// Converts the log at `log_path` into the file plan.CsvPath, made anew. The file is deleted again
// when the log is corrupt and when reading or writing fails, which is thrown as std::system_error.
CsvResult write_csv_file(Files& files, const std::string& log_path, const CsvPlan& plan,
                         CsvWatcher& watcher);

// The path of a log with its last three characters replaced by "CSV".
std::string csv_path_of(const std::string& log_path);

// Threads that it pays to let a conversion have on this machine beside its own.
int usual_csv_helpers();

}  // namespace kavorix
