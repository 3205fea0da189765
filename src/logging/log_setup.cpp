#include "logging/log_setup.h"

#include <string_view>

#include "base/program_name.h"
#include "base/text.h"
#include "logging/log_tail.h"
#include "platform/files.h"

namespace kavorix {

namespace {

constexpr std::string_view Extension = ".DAT";

struct Interval {
    std::string_view text;
    int ms;
};
constexpr Interval Intervals[] = {
    {"1 sec", 1000},    {"2 sec", 2000},     {"5 sec", 5000},   {"10 sec", 10000},
    {"15 sec", 15000},  {"30 sec", 30000},   {"1 min", 60000},  {"5 min", 300000},
    {"15 min", 900000}, {"30 min", 1800000}, {"1 hr", 3600000},
};

bool is_log_name(std::string_view path) {
    return path.size() >= Extension.size() &&
           upper(path.substr(path.size() - Extension.size())) == Extension;
}

}  // namespace

std::vector<ListEntry> log_intervals(std::int16_t poll_rate_ms) {
    std::vector<ListEntry> entries = {{"Poll Rate", 0}};
    for (const Interval& interval : Intervals)
        if (poll_rate_ms > 0 && interval.ms >= poll_rate_ms && interval.ms % poll_rate_ms == 0)
            entries.push_back({std::string(interval.text), interval.ms});
    return entries;
}

void LogSetup::Form_Load() {
    trapped(with_.failures, "frmLogFile/Form_Load", [&] {
        const LogState& log = with_.log;
        screen.caption = scans_ ? "Scan Log File" : "Event Log File";
        file_name_ = scans_ ? log.ScanFileName : log.EventFileName;
        screen.txtFileComment.text = scans_ ? log.ScanComment : log.EventComment;
        screen.lblInterval.visible = scans_;
        screen.cboInterval.visible = scans_;
        screen.cboInterval.entries = log_intervals(with_.interface.PollRate);
        if (!screen.cboInterval.select_code(log.ScanIntervalChoice)) screen.cboInterval.index = 0;
        show_file();
    });
}

void LogSetup::show_file() {
    screen.lblFileName.caption = "Data File : " + from_utf8_lossy(file_name_);
}

void LogSetup::cmdFile_Click() {
    trapped(with_.failures, "frmLogFile/cmdFile_Click", [&] { choose_file(); });
}

void LogSetup::choose_file() {
    FileRequest request;
    request.title = "Log File";
    request.filter = "Log files(*.DAT)|*.DAT";
    request.default_extension = "DAT";
    request.directory = directory_of(file_name_);
    request.name = name_of(file_name_);
    request.existing_welcome = true;
    const auto path = with_.dialogs.choose_file_to_save(request);
    if (!path || !usable(*path)) return;
    file_name_ = *path;
    show_file();
}

// The operator is told what is wrong with a file that is not.
bool LogSetup::usable(const std::string& path) {
    const auto same_as = [&](const std::string& other) {
        return !other.empty() && with_.files.same_file(path, other);
    };
    std::string objection;
    if (!is_log_name(path)) {
        objection =
            "Selected file is not a Log file. Please select a file with an extension of .DAT";
    } else if (scans_ && same_as(with_.log.EventFileName)) {
        objection =
            "Selected file has also been specified for the Events file. Please select a different "
            "file.";
    } else if (!scans_ && same_as(with_.log.ScanFileName)) {
        objection =
            "Selected file has also been specified for the Scans file. Please select a different "
            "file.";
    } else {
        objection = log_obstacle(with_.files, path).value_or("");
    }
    if (!objection.empty())
        with_.dialogs.message_box(objection, box::Ok | box::Exclamation, ProgramName);
    return objection.empty();
}

void LogSetup::cmdClear_Click() {
    trapped(with_.failures, "frmLogFile/cmdClear_Click", [&] {
        file_name_.clear();
        show_file();
    });
}

void LogSetup::cmdOK_Click() {
    trapped(with_.failures, "frmLogFile/cmdOK_Click", [&] {
        store();
        closed_ = true;
    });
}

void LogSetup::store() {
    LogState& log = with_.log;
    (scans_ ? log.ScanFileName : log.EventFileName) = file_name_;
    (scans_ ? log.ScanComment : log.EventComment) = screen.txtFileComment.text;
    if (scans_) log.ScanIntervalChoice = screen.cboInterval.code();
    for (const Pod pod : all_pods()) {
        PodStatus& status = with_.status[pod];
        (scans_ ? status.LogScan : status.LogEvents) = with_.link.ZavSelected.has(pod);
    }
}

}  // namespace kavorix
