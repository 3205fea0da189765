#include <memory>
#include <ostream>

#include "app/command_line.h"
#include "app/measurement.h"
#include "app/readings.h"

namespace kavorix {

namespace {

struct WatchOptions {
    MeasurementOptions measurement;
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
        const int duration = duration_ms(options_.duration);
        if (!terminal_.start()) return ExitFailed;
        Station& station = terminal_.station;
        // A channel in error is a reading like any other; a pod that falls silent is not.
        const int found = station.run_time.Link.PollTable.NumInPoll();
        pods_ = start_measurement(terminal_, options_.measurement);
        auto printing = station.poll_cycle.boundary.subscribe([this](const Moment&) { print(); });
        if (duration > 0) loop_->call_later(duration, [this] { interrupted_ = true; });
        loop_->wait_until([this] { return interrupted_ || !polled(); });
        const bool lost = station.run_time.Link.PollTable.NumInPoll() < found;
        printing.end();
        halt_measurement(station);
        return lost ? ExitFailed : ExitDone;
    }

  private:
    bool polled() const { return terminal_.station.run_time.Link.PollTable.NumInPoll() > 0; }

    void print() {
        const WallTime time = loop_->wall_time();
        for (const Pod pod : pods_)
            out_ << reading_line(time, pod, terminal_.station.run_time.Status[pod]) << "\n";
        out_ << std::flush;
    }

    const WatchOptions& options_;
    std::ostream& out_;
    bool interrupted_ = false;
    std::unique_ptr<EventLoop> loop_;
    TerminalStation terminal_;
    PodSet pods_;
};

}  // namespace

void add_watch(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "watch", "Trigger pods and print their readings at every poll, until Ctrl+C");
    const auto options = std::make_shared<WatchOptions>();
    command
        ->add_option("--pods", options->measurement.pods,
                     "Pod numbers, for example 1-5,7 (default: all)")
        ->type_name("LIST");
    command
        ->add_option("--config", options->measurement.config_file,
                     "Configuration to transmit first (default: each type's default modes)")
        ->type_name("FILE.CFG");
    command->add_option("--duration", options->duration, "Ends after this time, for example 90s")
        ->type_name("T");
    command->callback([=] { line.action = [=] { return Watch(line, *options).run(); }; });
}

}  // namespace kavorix
