#pragma once

// A whole station below the window, in virtual time on a scripted driver: link, discovery, poll
// cycle and decoders wired as the program wires them. station() puts it into the state that
// start-up leaves. Main-window calls and what the poll cycle hands on are recorded.

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "acquire/poll_cycle.h"
#include "link/discovery.h"
#include "platform/virtual_event_loop.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"
#include "support/scripted_driver.h"

namespace kavorix::test {

using Lines = std::vector<std::string>;

inline constexpr std::int16_t C800 = static_cast<std::int16_t>(0xC800);

// Records what the link asks of the main window and hands it on to `target` when there is one.
class RecordingMainWindow : public MainWindow {
  public:
    void ConfigItems(std::int16_t mode) override {
        calls.push_back("ConfigItems " + std::to_string(mode));
        if (target) target->ConfigItems(mode);
    }
    void CheckItems() override {
        calls.push_back("CheckItems");
        if (target) target->CheckItems();
    }
    void IconReverse(int pod) override {
        calls.push_back("IconReverse " + std::to_string(pod));
        if (target) target->IconReverse(pod);
    }
    void ClearScreen() override {
        calls.push_back("ClearScreen");
        if (target) target->ClearScreen();
    }
    void StatusRefresh() override {
        calls.push_back("StatusRefresh");
        if (target) target->StatusRefresh();
    }

    Lines calls;
    MainWindow* target = nullptr;
};

// Records what the poll cycle hands on: "stream0", "stream1", "events", "log 0 at 5000", "graph 1.5
// 2.5". Counts alone while `counting`.
class RecordingConsumers : public PollConsumers {
  public:
    void refresh_stream0() override { note("stream0"); }
    void refresh_stream1() override {
        note("stream1");
        if (at_stream1) at_stream1();
    }
    void refresh_stream3() override { note("stream3"); }
    void show_events() override { note("events"); }
    void Write_Log_File(std::int16_t kind, std::int16_t, std::int32_t time) override {
        ++(kind == 0 ? scan_records : event_records);
        note("log " + std::to_string(kind) + " at " + std::to_string(time));
    }
    bool graph_exists() override { return graph; }
    void WRUpdateData(std::span<const float> samples) override {
        std::string line = "graph";
        for (const float sample : samples) line += " " + FormatValue(sample, 1);
        note(line);
    }

    Lines calls;
    std::function<void()> at_stream1;  // lever: what the stream-1 view does
    bool graph = false;
    bool counting = false;
    long long scan_records = 0;
    long long event_records = 0;

  private:
    void note(const std::string& line) {
        if (!counting) calls.push_back(line);
    }
};

class Rig {
  public:
    explicit Rig(std::uint32_t first_tick = 0) : loop({2026, 1, 5, 8, 0, 0, 0}, first_tick) {}
    virtual ~Rig() = default;

    VirtualEventLoop loop;
    ScriptedDriver driver{loop};
    ScriptedDialogs dialogs;
    MemoryFiles files;
    MainScreen screen;
    MessageLine message_line{screen, dialogs};
    ErrorLog error_log{files, loop, "/station"};
    ErrorReporter failures{error_log, dialogs};
    RecordingMainWindow main_window;
    RecordingConsumers consumers;
    Configuration configuration;
    std::unique_ptr<RunTime> run_time_owner = std::make_unique<RunTime>();
    RunTime& run_time = *run_time_owner;
    std::unique_ptr<Timer> tmrPoll = loop.make_timer([this] { cycle.tmrPoll_Timer(); });
    CommandLink::Surroundings surroundings{driver,        loop,      dialogs,  screen,
                                           message_line,  error_log, failures, main_window,
                                           configuration, run_time,  *tmrPoll};
    CommandLink link{surroundings};
    Discovery discovery{surroundings, link, configuration};
    PodErrors pod_errors{error_log, run_time.Link, screen, configuration.Interface};
    StreamDecoder decoder{surroundings, link, pod_errors};
    PollCycle cycle{surroundings, link, decoder, consumers};

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
        main_window.calls.clear();
    }

    void select(const std::vector<int>& pods) {
        for (const int pod : pods) run_time.Link.ZavSelected[at(pod - 1)] = 1;
        run_time.Link.NumSelected = static_cast<std::int16_t>(
            std::count(run_time.Link.ZavSelected.begin(), run_time.Link.ZavSelected.end(), 1));
    }
    void send(const std::string& command_string) {
        run_time.Link.CommandString = command_string;
        link.TXString();
    }
    // The poll timer runs as after a first transmission.
    void start_polling() {
        run_time.Poll.PollStarted = 0;
        tmrPoll->start(run_time.Link.PollTick);
    }
    void trigger(const std::vector<int>& pods) {
        for (const int pod : pods) run_time.Link.Triggered[at(pod - 1)] = 1;
    }

    PodStatus& status(int pod) { return run_time.Status[at(pod - 1)]; }
    PodConfig& config(int pod) { return configuration.ZavConfig[at(pod - 1)]; }
    bool polled(int pod) const { return run_time.Link.PollTable.InPollTable[at(pod - 1)] == 1; }
    bool selected(int pod) const { return run_time.Link.ZavSelected[at(pod - 1)] == 1; }

    // The error log as it stands on disk.
    const std::string& log_text() const { return files.content("/station/ERR_LOG.TXT"); }
};

// Numbers of the pods whose flag is 1.
inline std::vector<int> pods_with(const PodFlags& flags) {
    std::vector<int> pods;
    for (int pod = 1; pod <= MaxZavs; ++pod)
        if (flags[at(pod - 1)] == 1) pods.push_back(pod);
    return pods;
}

// The first lines of every error log of a Rig.
inline const std::string LogHeader =
    "2026-01-05 08:00:00\r\n\r\n---- KAVORIX Error file ----\r\n\r\n";

}  // namespace kavorix::test
