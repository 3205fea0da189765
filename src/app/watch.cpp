#include <array>
#include <memory>
#include <ostream>

#include "acquire/result_codes.h"
#include "app/command_line.h"
#include "app/readings.h"
#include "app/terminal.h"

namespace kavorix {

namespace {

struct WatchOptions {
    std::string pods;
    std::string duration;
};

class Watch {
  public:
    Watch(const CommandLine& line, const WatchOptions& options)
        : options_(options),
          out_(line.with.out),
          loop_(line.with.make_loop([this] { interrupted_ = true; })),
          terminal_(line.common, *loop_, line.with.messages, false) {}

    int run() {
        const auto duration = duration_ms();
        if (!terminal_.start()) return ExitFailed;
        Station& station = terminal_.station;
        const auto pods = terminal_.pods(options_.pods);
        station.select_pods(pods);
        start_scanning(station);
        station.run_time.Poll.ViewOpen[ReadingStream] = 1;
        station.on_poll([&] { print(pods); });
        if (duration > 0) loop_->call_later(duration, [this] { interrupted_ = true; });
        loop_->wait_until([&] { return interrupted_ || !polled(); });
        const bool lost = !polled();
        station.on_poll({});
        station.operations.run(Command::Halt);
        return lost || station.run_time.Link.SessionErrorCount > 0 ? ExitFailed : ExitDone;
    }

  private:
    int duration_ms() const {
        if (options_.duration.empty()) return 0;
        const auto duration = parse_duration(options_.duration);
        if (!duration || duration->count() > std::numeric_limits<int>::max())
            throw UnusableInput{"\"" + options_.duration +
                                "\" is not a duration such as 90, 15m or 2h"};
        return static_cast<int>(duration->count());
    }

    // Every selected pod with its type's default modes, scanning continuously.
    void start_scanning(Station& station) {
        station.operations.run(Command::DefaultContScan);
        station.operations.run(Command::Trigger);
    }

    bool polled() const { return terminal_.station.run_time.Link.PollTable.NumInPoll > 0; }

    void print(const std::vector<int>& pods) {
        const WallTime time = loop_->wall_time();
        for (const int pod : pods)
            out_ << reading_line(time, pod, terminal_.station.run_time.Status[at(pod)]) << "\n";
        out_ << std::flush;
    }

    const WatchOptions& options_;
    std::ostream& out_;
    bool interrupted_ = false;
    std::unique_ptr<EventLoop> loop_;
    TerminalStation terminal_;
};

}  // namespace

void add_watch(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "watch", "Trigger pods and print their readings at every poll, until Ctrl+C");
    const auto options = std::make_shared<WatchOptions>();
    command->add_option("--pods", options->pods, "Pod numbers, for example 1-5,7 (default: all)")
        ->type_name("LIST");
    command->add_option("--duration", options->duration, "Ends after this time, for example 90s")
        ->type_name("T");
    command->callback([=] { line.action = [=] { return Watch(line, *options).run(); }; });
}

}  // namespace kavorix
