#pragma once

// A whole station below the window, in virtual time on a scripted driver: link, discovery, poll
// cycle and decoders wired as the program wires them. station() puts it into the state that
// start-up leaves. What the poll cycle tells is recorded.

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "acquire/poll_cycle.h"
#include "link/command_link.h"
#include "link/discovery.h"
#include "platform/virtual_event_loop.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"
#include "support/scripted_driver.h"

namespace kavorix::test {

using Lines = std::vector<std::string>;

inline constexpr std::int16_t C800 = static_cast<std::int16_t>(0xC800);

// What the poll cycle tells: "reading 3", "boundary 12", "events at 5000", "graph 1.5 2.5". Counts
// readings and boundaries alone while `counting`.
class Told {
  public:
    void listen(PollCycle& cycle) {
        cycle.reading.always([this](Pod pod, const Moment&) {
            ++readings;
            if (!counting) note("reading " + std::to_string(pod.number()));
        });
        cycle.boundary.always([this](const Moment& now) {
            ++boundaries;
            if (!counting) note("boundary at " + std::to_string(now.Ticks));
            if (at_boundary) at_boundary();
        });
        cycle.events.always([this, &cycle](const Moment& now) {
            note("events at " + std::to_string(now.Ticks));
            if (takes_events) cycle.take_events();
        });
        cycle.sample.always([this](std::span<const float> samples) {
            std::string line = "graph";
            for (const float sample : samples) line += " " + FormatValue(sample, 1);
            note(line);
        });
    }

    Lines lines;
    std::function<void()> at_boundary;  // lever: what a view does
    bool takes_events = true;           // lever: a view or a log takes them up
    bool counting = false;
    long long readings = 0;
    long long boundaries = 0;

  private:
    void note(const std::string& line) {
        if (!counting) lines.push_back(line);
    }
};

class Rig {
  public:
    explicit Rig(std::uint32_t first_tick = 0) : loop({2026, 1, 5, 8, 0, 0, 0}, first_tick) {
        told.listen(cycle);
    }
    virtual ~Rig() = default;

    VirtualEventLoop loop;
    ScriptedDriver driver{loop};
    ScriptedDialogs dialogs;
    MemoryFiles files;
    Configuration configuration;
    std::unique_ptr<RunTime> run_time_owner = std::make_unique<RunTime>();
    RunTime& run_time = *run_time_owner;
    MessageLine message_line{run_time.Reports.Message, dialogs};
    ErrorLog error_log{files, loop, "/station"};
    ErrorReporter failures{error_log, dialogs};
    LinkErrors errors{message_line, error_log, configuration.Interface, run_time};
    std::unique_ptr<Timer> tmrPoll = loop.make_timer([this] { cycle.tmrPoll_Timer(); });
    Polling polling{*tmrPoll, run_time.Poll, run_time.Link};
    CommandLink link{
        {driver, loop, dialogs, message_line, errors, failures, polling, configuration, run_time}};
    Discovery discovery{
        {driver, loop, dialogs, error_log, errors, failures, polling, configuration, run_time}};
    PodErrors pod_errors{error_log, configuration.Interface, run_time};
    StreamDecoder decoder{{driver, dialogs, pod_errors, configuration, run_time}};
    PollCycle cycle{{driver, loop, *tmrPoll, errors, failures, decoder, configuration, run_time}};
    Told told;

    // A started station with these pods (number and status reply) behind a card at C800, the
    // records of the start forgotten.
    struct PodAt {
        int number;
        std::string ident;
    };
    void station(const std::vector<PodAt>& pods) {
        driver.cards[C800] = 0;
        for (const PodAt& pod : pods) driver.add_pod(pod.number, pod.ident);
        discovery.Form_Load(files, "/station/KAVORIX.INI");
        dialogs.take_boxes();
        dialogs.beeps = 0;
        driver.calls.clear();
    }

    void select(const std::vector<int>& pods) {
        for (const int pod : pods) run_time.Link.ZavSelected.add(Pod::numbered(pod));
    }
    void send(const std::string& command_string) {
        run_time.Link.CommandString = command_string;
        link.TXString();
    }
    // The poll timer runs as after a first transmission.
    void start_polling() { polling.start(); }
    void trigger(const std::vector<int>& pods) {
        for (const int pod : pods) run_time.Link.Triggered.add(Pod::numbered(pod));
    }

    PodStatus& status(int pod) { return run_time.Status[Pod::numbered(pod)]; }
    PodConfig& config(int pod) { return configuration.ZavConfig[Pod::numbered(pod)]; }
    bool polled(int pod) const {
        return run_time.Link.PollTable.InPollTable.has(Pod::numbered(pod));
    }
    bool selected(int pod) const { return run_time.Link.ZavSelected.has(Pod::numbered(pod)); }

    // The error log as it stands on disk.
    const std::string& log_text() const { return files.content("/station/ERR_LOG.TXT"); }
};

// Numbers of the pods of a set.
inline std::vector<int> pods_with(const PodSet& set) {
    std::vector<int> pods;
    for (const Pod pod : set) pods.push_back(pod.number());
    return pods;
}

// The first lines of every error log of a Rig.
inline const std::string LogHeader =
    "2026-01-05 08:00:00\r\n\r\n---- KAVORIX Error file ----\r\n\r\n";

}  // namespace kavorix::test
