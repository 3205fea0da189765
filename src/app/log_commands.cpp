// The commands that work on log files: convert and info.

#include <unistd.h>

#include <memory>
#include <ostream>
#include <system_error>

#include "app/command_line.h"
#include "app/network.h"
#include "base/text.h"
#include "logging/channel_list.h"
#include "logging/csv_file.h"
#include "logging/log_info.h"
#include "platform/event_loop.h"

namespace kavorix {

namespace {

struct ConvertOptions {
    std::string log;
    std::string csv;
    std::string channels;
    bool force = false;
};

LogContents contents_of(Files& files, const std::string& path) {
    try {
        const auto file = files.open(path, OpenMode::Read);
        LogContents contents = read_log_contents(*file);
        if (contents.Runs == 0) throw UnusableInput{path + " is no log file: it has no header"};
        return contents;
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
}

CsvSelection selection_of(const ConvertOptions& options, const LogContents& contents) {
    if (options.channels.empty()) return select_all(contents.Pods);
    ChannelList list = parse_channel_list(options.channels, contents.Pods);
    if (!list.Complaint.empty()) throw UnusableInput{list.Complaint};
    return list.Selection;
}

// Percentages where somebody looks at them; the two signals end the conversion between records.
class TerminalWatcher : public CsvWatcher {
  public:
    TerminalWatcher(std::ostream& messages, EventLoop& loop, const bool& interrupted)
        : messages_(messages),
          loop_(loop),
          interrupted_(interrupted),
          shown_(::isatty(STDERR_FILENO) != 0) {}

    void progress(int percent) override {
        if (shown_) messages_ << "\r" << percent << "%" << std::flush;
        if (shown_ && percent == 100) messages_ << "\n";
    }
    bool go_on() override {
        loop_.process_events(0);
        return !interrupted_;
    }
    bool go_on_with_wrong_dates() override {
        messages_ << "A run of the log goes past midnight on a day that is none: its dates stay as "
                     "they are."
                  << std::endl;
        return true;
    }

  private:
    std::ostream& messages_;
    EventLoop& loop_;
    const bool& interrupted_;
    bool shown_;
};

int tell_end(const CsvResult& result, const std::string& log, std::ostream& messages) {
    const std::string at_byte = " at byte " + std::to_string(result.Position);
    switch (result.End) {
        case CsvEnd::Done:
            return ExitDone;
        case CsvEnd::Stopped:
            messages << "Stopped; the rows so far are written." << std::endl;
            break;
        case CsvEnd::Corrupt:
            messages << "The log file " << log << " is corrupt. Conversion has stopped. The record"
                     << at_byte << " does not add up." << std::endl;
            break;
        case CsvEnd::CutShort:
            messages << "The log file " << log << " ends inside the record" << at_byte
                     << "; the rows before it are written." << std::endl;
            break;
        case CsvEnd::Damaged:
            messages << "The log file " << log << " is damaged in the record" << at_byte
                     << "; the rows before it are written." << std::endl;
            break;
    }
    return ExitFailed;
}

int convert(const CommandLine& line, const ConvertOptions& options) {
    const auto files = make_host_files();
    const LogContents contents = contents_of(*files, options.log);
    CsvPlan plan;
    plan.CsvPath = options.csv.empty() ? csv_path_of(options.log) : options.csv;
    plan.Pods = contents.Pods;
    plan.Selection = selection_of(options, contents);
    plan.Helpers = usual_csv_helpers();
    if (plan.CsvPath == options.log)
        throw UnusableInput{"The text file would overwrite the log " + options.log};
    if (csv_columns(plan.Pods, plan.Selection).size() >= ColumnLimit)
        throw UnusableInput{
            "Maximum of 253 channels exceeded for .CSV file. Choose fewer with --channels."};
    if (files->exists(plan.CsvPath) && !options.force)
        throw UnusableInput{"The file " + plan.CsvPath + " exists. --force overwrites it."};

    bool interrupted = false;
    const auto loop = line.with.make_loop([&] { interrupted = true; });
    TerminalWatcher watcher(line.with.messages, *loop, interrupted);
    return tell_end(write_csv_file(*files, options.log, plan, watcher), options.log,
                    line.with.messages);
}

int info(const CommandLine& line, const std::string& path) {
    const auto files = make_host_files();
    contents_of(*files, path);
    const auto file = files->open(path, OpenMode::Read);
    const LogInfo log = read_log_info(*file);
    line.with.out << to_utf8(log_info_text(log));
    return log.damaged() ? ExitFailed : ExitDone;
}

}  // namespace

void add_convert(const CommandLine& line) {
    CLI::App* command =
        line.app.add_subcommand("convert", "Make a comma-separated text of a log file");
    const auto options = std::make_shared<ConvertOptions>();
    command->add_option("log", options->log, "Log file")->type_name("LOG.DAT")->required();
    command->add_option("-o", options->csv, "Text file (default: the log's name with CSV)")
        ->type_name("OUT.CSV");
    command
        ->add_option(
            "--channels", options->channels,
            "Pods and channels that become columns, for example 3/1-5,3/7,4/* (default: all)")
        ->type_name("LIST");
    command->add_flag("--force", options->force, "Overwrite the text file");
    command->callback([=] { line.action = [=] { return convert(line, *options); }; });
}

void add_info(const CommandLine& line) {
    CLI::App* command =
        line.app.add_subcommand("info", "Tell what a log file holds, and where it is damaged");
    const auto path = std::make_shared<std::string>();
    command->add_option("log", *path, "Log file")->type_name("LOG.DAT")->required();
    command->callback([=] { line.action = [=] { return info(line, *path); }; });
}

}  // namespace kavorix
