#include "logging/csv_file.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

namespace kavorix {

namespace {

// Deletes what was written, unless it went into something that was there and is no file of bytes,
// such as a device.
void remove_text(Files& files, const std::string& path, std::unique_ptr<File> file, bool existed) {
    const bool deletable = !existed || file->size() > 0;
    file.reset();
    if (deletable) files.remove(path);
}

}  // namespace

CsvResult write_csv_file(Files& files, const std::string& log_path, const CsvPlan& plan,
                         CsvWatcher& watcher) {
    const auto log = files.open(log_path, OpenMode::Read);
    const bool existed = files.exists(plan.CsvPath);
    auto csv = files.open(plan.CsvPath, OpenMode::Create);
    try {
        const auto write = [&](std::string_view text) { csv->write(text); };
        const CsvResult result = CsvConverter(*log, write, plan, watcher).convert();
        if (result.End == CsvEnd::Corrupt) {
            remove_text(files, plan.CsvPath, std::move(csv), existed);
        } else {
            csv->close();
        }
        return result;
    } catch (...) {
        try {
            if (csv) remove_text(files, plan.CsvPath, std::move(csv), existed);
        } catch (const std::exception&) {
            // The first failure is the one to tell of.
        }
        throw;
    }
}

std::string csv_path_of(const std::string& log_path) {
    constexpr std::size_t Replaced = 3;
    return log_path.substr(0, log_path.size() - std::min(log_path.size(), Replaced)) + "CSV";
}

int usual_csv_helpers() {
    constexpr int Most = 3;  // one thread reads and writes no faster than that
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()) - 1, 0, Most);
}

}  // namespace kavorix
