#pragma once

// The whole station: owns every record and wires every part to it.

#include <memory>
#include <string>
#include <utility>

#include "acquire/poll_cycle.h"
#include "config/config_files.h"
#include "config/transmission.h"
#include "graphs/station_graph.h"
#include "link/discovery.h"
#include "link/program_exit.h"
#include "logging/log_file.h"
#include "platform/system_info.h"
#include "ui/operations.h"
#include "ui/pod_setup.h"
#include "ui/status_view.h"
#include "ui/stream0_view.h"
#include "ui/stream1_view.h"
#include "ui/stream2_view.h"
#include "ui/stream3_view.h"
#include "ui/tx_command.h"

namespace kavorix {

inline constexpr std::string_view ProgramVersion = KAVORIX_VERSION;

// Where a station keeps its settings file and its error log.
struct StationFolder {
    std::string directory;       // the program directory
    bool keep_error_log = true;  // false: a short terminal run that leaves no file behind
};

class Station : private PollConsumers {
  public:
    // All of it outlives the station.
    struct Surroundings {
        Driver& driver;
        EventLoop& loop;
        Dialogs& dialogs;
        Files& files;
        Windows& windows;
        StationFolder folder;
        const SystemInfo& system_info;
    };
    explicit Station(const Surroundings& surroundings);

    // Card search, discovery, the pods on the screen. Throws ProgramEnded when the settings file is
    // malformed.
    void start();

    // The end of a run without a window: the error log is closed, and deleted after a run without
    // errors.
    void finish();

    // Selects exactly these pods (indices 0..49) among those of the poll table.
    void select_pods(const std::vector<int>& pods);

    // Gives the pod configuration dialog its windows, which outlive the station; without them its
    // command is not available.
    void set_up_pods_in(PodSetupWindows& windows);

    // Gives the status view its comparison; without one it offers none.
    void compare_with(CompareHeld compare) { compare_held_ = std::move(compare); }

    // Takes up a file that was chosen outside the file dialogs, by its extension: a configuration
    // is opened, a log is converted. Nothing happens while the command for it is not available.
    void open(const std::string& path);

    // Called at every poll boundary, with what the pods have sent so far.
    void on_poll(std::function<void()> action);

  private:
    Surroundings with_;

  public:
    Configuration configuration;
    RunTime run_time;
    MainScreen screen;

  private:
    MessageLine message_line_;
    ErrorLog error_log_;
    ErrorReporter failures_;
    std::unique_ptr<Timer> tmrPoll_;
    CommandLink::Surroundings link_surroundings();

  public:
    SentConfigurations sent;
    Operations operations;
    CommandLink link;
    Discovery discovery;
    Transmission transmission;
    ConfigFiles config_files;
    LogFile log_file;
    ProgramExit program_exit;
    Stream0View stream0;
    Stream1View stream1;
    Stream2View stream2;
    Stream3View stream3;
    StationGraph graph;

    // The status of the selected pods and of the interface, asked for now.
    StatusView make_status_view();

  private:
    void register_file_commands();
    void register_log_commands();
    void set_up_log(std::int16_t kind);
    void convert_log(const std::string& path = {});
    void configuration_opened();
    void start_logs(bool scans, bool events);
    void stop_logs(bool scans, bool events);
    void register_link_commands();
    void register_view_commands();
    void register_graph_commands();
    void note_fresh_pods();
    void set_up_interface();
    void type_command();
    ChooseChannels choose_channels();

    void refresh_stream0() override;
    void refresh_stream1() override { stream1.refresh(); }
    void refresh_stream3() override { stream3.refresh(); }
    void show_events() override { stream2.show_events(); }
    void Write_Log_File(std::int16_t kind, std::int16_t flush, std::int32_t time) override;
    bool graph_exists() override { return graph.live.exists(); }
    void WRUpdateData(std::span<const float> samples) override { graph.live.WRUpdateData(samples); }

    PodErrors pod_errors_;
    StreamDecoder decoder_;
    PollCycle poll_cycle_;
    CommandHistory typed_commands_;
    CompareHeld compare_held_;
    std::function<void()> on_poll_;
};

}  // namespace kavorix
