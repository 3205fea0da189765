#pragma once

// What a station with windows has beyond one without: the main window's commands, the views, the
// dialogs and the graph.

#include <string>
#include <utility>

#include "app/station.h"
#include "config/config_files.h"
#include "graphs/station_graph.h"
#include "link/program_exit.h"
#include "platform/system_info.h"
#include "ui/card/status_view.h"
#include "ui/card/tx_command.h"
#include "ui/main/main_window.h"
#include "ui/pods/pod_setup.h"
#include "ui/streams/stream0_view.h"
#include "ui/streams/stream1_view.h"
#include "ui/streams/stream2_view.h"
#include "ui/streams/stream3_view.h"

namespace kavorix {

class Desk {
  public:
    // All of it outlives the desk.
    struct Surroundings {
        Station& station;
        Windows& windows;
        PodSetupWindows& pod_setup_windows;
        const SystemInfo& system_info;
        CompareHeld compare;  // of the status view; without one it offers none
    };
    explicit Desk(Surroundings surroundings);

    // Takes up a file that was chosen outside the file dialogs, by its extension: a configuration
    // is opened, a log is converted. Nothing happens while the command for it is not available.
    void open(const std::string& path);

  private:
    Surroundings with_;
    Station& station_;

  public:
    ConfigFiles config_files;
    ProgramExit program_exit;
    MainWindow main_window;
    Stream0View stream0;
    Stream1View stream1;
    Stream2View stream2;
    Stream3View stream3;
    StationGraph graph;

  private:
    void register_file_commands();
    void register_log_commands();
    void register_link_commands();
    void register_view_commands();
    void register_graph_commands();
    void register_help_commands();
    void listen();
    void refresh_views();
    void set_up_log(std::int16_t kind);
    void start_log(std::int16_t kind);
    void convert_log(const std::string& path = {});
    void configuration_opened();
    void set_up_interface();
    void type_command();
    void show_status();
    void show_about();
    ChooseChannels choose_channels();

    CommandHistory typed_commands_;
};

}  // namespace kavorix
