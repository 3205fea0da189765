// The commands that work on log files: convert, info and repair.

#include <unistd.h>

#include <memory>
#include <ostream>
#include <system_error>

#include "app/command_line.h"
#include "app/network.h"
#include "app/output.h"
#include "base/text.h"
#include "logging/channel_list.h"
#include "logging/csv_file.h"
#include "logging/log_info.h"
#include "logging/log_repair.h"
#include "platform/event_loop.h"

namespace kavorix {

namespace {

struct ConvertOptions {
    std::string log;
    std::string csv;
    std::string channels;
    bool force = false;
    bool salvage = false;
};

LogContents contents_of(Files& files, const std::string& path, bool salvage) {
    try {
        const auto file = files.open(path, OpenMode::Read);
        LogContents contents = salvage ? salvage_log_contents(*file) : read_log_contents(*file);
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

std::string end_text(const CsvResult& result, const std::string& log) {
    const std::string at_byte = " at byte " + std::to_string(result.Position);
    switch (result.End) {
        case CsvEnd::Stopped:
            return "Stopped; the rows so far are written.\n";
        case CsvEnd::Corrupt:
            return "The log file " + log + " is corrupt. Conversion has stopped. The record" +
                   at_byte + " does not add up.\n";
        case CsvEnd::CutShort:
            return "The log file " + log + " ends inside the record" + at_byte +
                   "; the rows before it are written.\n";
        case CsvEnd::Damaged:
            return "The log file " + log + " is damaged in the record" + at_byte +
                   "; the rows before it are written.\n";
        default:
            break;
    }
    if (result.DamagedParts == 0) return {};
    return "The log file " + log + " is damaged in " + std::to_string(result.DamagedParts) +
           (result.DamagedParts == 1 ? " place; " : " places; ") + std::to_string(result.Skipped) +
           " bytes are passed over, the rows of all else are written.\n";
}

int tell_end(const CsvResult& result, const std::string& log, std::ostream& messages) {
    messages << for_terminal(end_text(result, log) + result.Check.text()) << std::flush;
    return result.whole() ? ExitDone : ExitFailed;
}

int convert(const CommandLine& line, const ConvertOptions& options) {
    const auto files = make_host_files();
    const LogContents contents = contents_of(*files, options.log, options.salvage);
    CsvPlan plan;
    plan.CsvPath = options.csv.empty() ? csv_path_of(options.log) : options.csv;
    plan.Pods = contents.Pods;
    plan.Selection = selection_of(options, contents);
    plan.Salvage = options.salvage;
    plan.Helpers = usual_csv_helpers();
    if (files->same_file(plan.CsvPath, options.log))
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

std::unique_ptr<File> sums_of(Files& files, const std::string& log_path) {
    const std::string path = sums_path_of(log_path);
    return files.exists(path) ? files.open(path, OpenMode::Read) : nullptr;
}

int info(const CommandLine& line, const std::string& path) {
    const auto files = make_host_files();
    contents_of(*files, path, true);
    const auto file = files->open(path, OpenMode::Read);
    const LogInfo log = read_log_info(*file, sums_of(*files, path).get());
    line.with.out << for_terminal(to_utf8(log_info_text(log)));
    return log.damaged() ? ExitFailed : ExitDone;
}

int repair(const CommandLine& line, const std::string& path) {
    const auto files = make_host_files();
    contents_of(*files, path, true);
    const LogRepair done = repair_log(*files, path);
    std::ostream& out = line.with.out;
    if (!done.Needed) {
        out << "There is nothing to mend.\n";
        return ExitDone;
    }
    out << "The log as it was: " << for_terminal(done.Copy) << "\n"
        << "Kept: " << done.Records << " records in " << done.Runs << " runs\n"
        << "Left out: " << done.Skipped << " bytes in " << done.DamagedParts << " places\n";
    if (done.Differing > 0)
        out << "Kept although they differ from their check sums: " << done.Differing
            << " records; info names them\n";
    return ExitDone;
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
    command->add_flag("--salvage", options->salvage, "Read on behind damage");
    command->callback([=] { line.action = [=] { return convert(line, *options); }; });
}

void add_info(const CommandLine& line) {
    CLI::App* command =
        line.app.add_subcommand("info", "Tell what a log file holds, and where it is damaged");
    const auto path = std::make_shared<std::string>();
    command->add_option("log", *path, "Log file")->type_name("LOG.DAT")->required();
    command->callback([=] { line.action = [=] { return info(line, *path); }; });
}

void add_repair(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "repair", "Copy a damaged log, then put in its place what can be read of it");
    const auto path = std::make_shared<std::string>();
    command->add_option("log", *path, "Log file")->type_name("LOG.DAT")->required();
    command->callback([=] { line.action = [=] { return repair(line, *path); }; });
}

}  // namespace kavorix
