#include <chrono>
#include <memory>
#include <ostream>

#include "app/command_line.h"
#include "app/measurement.h"
#include "base/text.h"
#include "logging/log_tail.h"
#include "platform/host_event_loop.h"
#include "platform/virtual_event_loop.h"

namespace kavorix {

namespace {

struct LogOptions {
    MeasurementOptions measurement;
    std::string scans;
    std::string events;
    std::string interval;
    std::string comment;
    std::string duration;
    std::string speed = "real";
};

// A run as fast as possible starts at midnight of today, so that it repeats exactly but for the
// date.
WallTime midnight(const WallTime& now) {
    return {now.year, now.month, now.day, 0, 0, 0, 0};
}

class UnattendedRun {
  public:
    UnattendedRun(const CommandLine& line, const LogOptions& options)
        : options_(options),
          messages_(line.with.messages),
          host_loop_(line.with.make_loop([this] { interrupted_ = true; })),
          virtual_loop_(midnight(host_loop_->wall_time())),
          fast_(options.speed == "max"),
          loop_(fast_ ? virtual_loop_ : *host_loop_),
          terminal_(line.common, loop_, line.with.messages, true) {}

    int run() {
        const int duration = duration_ms(options_.duration);
        if (options_.scans.empty() && options_.events.empty())
            throw UnusableInput{"Neither --scans nor --events names a file to log to"};
        if (!options_.scans.empty() && !options_.events.empty() &&
            terminal_.files().same_file(options_.scans, options_.events))
            throw UnusableInput{"Scans and events cannot go to the same file"};
        for (const std::string& path : {options_.scans, options_.events})
            if (!path.empty())
                if (const auto obstacle = log_obstacle(terminal_.files(), path))
                    throw UnusableInput{to_utf8(*obstacle)};
        if (!terminal_.start()) return ExitFailed;
        pods_ = start_measurement(terminal_, options_.measurement);
        set_up_logs();
        terminal_.station.poll_cycle.boundary.always([this](const Moment&) { look_for_signals(); });
        const int pods = terminal_.station.run_time.Link.PollTable.NumInPoll();
        start();
        loop_.call_later(duration, [this] { interrupted_ = true; });
        loop_.wait_until([this] { return interrupted_ || !polled(); });
        // A channel in error is a reading like any other; a pod that fell silent is not.
        const bool lost = terminal_.station.run_time.Link.PollTable.NumInPoll() < pods;
        stop();
        return lost ? ExitFailed : ExitDone;
    }

  private:
    void set_up_logs() {
        Station& station = terminal_.station;
        LogState& log = station.run_time.Log;
        const auto comment = from_utf8(options_.comment);
        if (!comment) throw UnusableInput{"The comment holds a character that a log cannot keep"};
        log.ScanFileName = options_.scans;
        log.EventFileName = options_.events;
        log.ScanComment = *comment;
        log.EventComment = *comment;
        log.ScanIntervalChoice = interval_ms(station.configuration.Interface.PollRate);
        for (const Pod pod : pods_) {
            station.run_time.Status[pod].LogScan = !options_.scans.empty();
            station.run_time.Status[pod].LogEvents = !options_.events.empty();
        }
    }

    int interval_ms(int poll_rate_ms) const {
        const int interval = duration_ms(options_.interval);
        if (interval % poll_rate_ms != 0)
            throw UnusableInput{"The interval " + options_.interval +
                                " is no multiple of the poll rate, " +
                                std::to_string(poll_rate_ms) + " ms"};
        return interval;
    }

    void start() {
        LogFile& logs = terminal_.station.log_file;
        if (!options_.events.empty()) {
            logs.Start_Log_File(EventLog);
            capture_events();
        }
        if (!options_.scans.empty()) logs.Start_Log_File(ScanLog);
    }

    // The digital pods among those measured report their events; the others know no such command.
    void capture_events() {
        Station& station = terminal_.station;
        PodSet digital;
        for (const Pod pod : pods_)
            if (station.run_time.Status[pod].type_code().starts_with('8')) digital.add(pod);
        station.select_pods(digital);
        if (station.run_time.Link.NumSelected() > 0) station.pods.capture_events(true);
        station.select_pods(pods_);
    }

    void stop() {
        Station& station = terminal_.station;
        station.log_file.Stop_Log_File(ScanLog);
        station.log_file.Stop_Log_File(EventLog);
        halt_measurement(station);
        station.finish();
        if (errors() > 0)
            messages_ << errors() << " errors occurred, see ERR_LOG.TXT in the program directory"
                      << std::endl;
    }

    std::int32_t errors() const { return terminal_.station.run_time.Link.SessionErrorCount; }
    bool polled() const { return terminal_.station.run_time.Link.PollTable.NumInPoll() > 0; }

    // Virtual time does not wait for anything, signals included.
    void look_for_signals() {
        if (fast_) host_loop_->process_events(0);
    }

    const LogOptions& options_;
    std::ostream& messages_;
    bool interrupted_ = false;
    std::unique_ptr<EventLoop> host_loop_;
    VirtualEventLoop virtual_loop_;
    bool fast_;
    EventLoop& loop_;
    TerminalStation terminal_;
    PodSet pods_;
};

}  // namespace

void add_log(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "log", "Measure and log unattended, until the time is over or Ctrl+C");
    const auto options = std::make_shared<LogOptions>();
    command
        ->add_option(
            "--pods", options->measurement.pods,
            "Pod numbers, for example 1-5,7 (default: all, or all that the file configures)")
        ->type_name("LIST");
    command
        ->add_option("--config", options->measurement.config_file,
                     "Configuration to transmit first (default: each type's default modes)")
        ->type_name("FILE.CFG");
    command->add_option("--scans", options->scans, "Scan log file, appended to when it exists")
        ->type_name("S.DAT");
    command->add_option("--events", options->events, "Event log file, likewise")
        ->type_name("E.DAT");
    command
        ->add_option("--interval", options->interval,
                     "Time between scan records, a multiple of the poll rate (default: every poll)")
        ->type_name("T");
    command->add_option("--comment", options->comment, "Comment in the file header")
        ->type_name("TEXT");
    command->add_option("--duration", options->duration, "Length of the run, for example 8h")
        ->type_name("T")
        ->required();
    command->add_option("--speed", options->speed, "Real time, or as fast as possible (simulated)")
        ->check(CLI::IsMember({"real", "max"}));
    command->callback([=] { line.action = [=] { return UnattendedRun(line, *options).run(); }; });
}

}  // namespace kavorix
