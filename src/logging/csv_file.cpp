#include "logging/csv_file.h"

#include <algorithm>
#include <system_error>
#include <thread>

namespace kavorix {

namespace {

std::unique_ptr<File> sums_of(Files& files, const std::string& log_path) {
    const std::string path = sums_path_of(log_path);
    return files.exists(path) ? files.open(path, OpenMode::Read) : nullptr;
}

}  // namespace

CsvResult write_csv_file(Files& files, const std::string& log_path, const CsvPlan& plan,
                         CsvWatcher& watcher) {
    if (files.same_file(log_path, plan.CsvPath))
        throw std::system_error(std::make_error_code(std::errc::file_exists),
                                "The text would overwrite the log \"" + log_path + "\"");
    const auto log = files.open(log_path, OpenMode::Read);
    const auto sums = sums_of(files, log_path);
    const auto convert_into = [&](File& csv) {
        const auto write = [&](std::string_view text) { csv.write(text); };
        return CsvConverter(*log, write, plan, watcher, sums.get()).convert();
    };
    if (files.kind(plan.CsvPath) == FileKind::Special) {
        const auto csv = files.open(plan.CsvPath, OpenMode::Create);
        const CsvResult result = convert_into(*csv);
        csv->close();
        return result;
    }
    Replacement csv(files, plan.CsvPath);
    const CsvResult result = convert_into(csv.file());
    if (result.End != CsvEnd::Corrupt) csv.commit();
    return result;
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
