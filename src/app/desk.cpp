#include "app/desk.h"

#include "base/program_name.h"
#include "base/text.h"
#include "logging/csv_dialog.h"
#include "logging/log_setup.h"
#include "logging/log_tail.h"
#include "ui/card/interface_settings.h"
#include "ui/main/event_counters.h"

namespace kavorix {

Desk::Desk(Surroundings surroundings)
    : with_(std::move(surroundings)),
      station_(with_.station),
      config_files({station_.configuration, station_.run_time.Status, station_.with.dialogs,
                    station_.with.files, station_.with.loop, station_.message_line,
                    station_.failures, station_.with.folder.directory}),
      program_exit({station_.with.driver, station_.with.dialogs, station_.error_log,
                    station_.failures, station_.polling, station_.configuration, station_.run_time,
                    [this](std::int16_t saveAs) { return config_files.save_file(saveAs); }}),
      main_window({station_.pods, station_.with.dialogs, station_.failures, station_.configuration,
                   station_.run_time, [this] { program_exit.ExitKAVORIX(); }}),
      stream0(station_.run_time, station_.configuration, choose_channels()),
      stream1({station_.pods, station_.with.loop, station_.message_line, station_.failures,
               station_.configuration, station_.run_time, choose_channels()}),
      stream2(station_.run_time, station_.with.loop),
      stream3(station_.run_time),
      graph({station_.run_time, station_.configuration, station_.with.loop, station_.with.dialogs,
             station_.failures, with_.windows}) {
    register_file_commands();
    register_log_commands();
    register_link_commands();
    register_view_commands();
    register_graph_commands();
    register_help_commands();
    listen();
}

void Desk::listen() {
    PollCycle& cycle = station_.poll_cycle;
    cycle.boundary.always([this](const Moment&) { refresh_views(); });
    cycle.events.always([this](const Moment&) {
        const PollState& poll = station_.run_time.Poll;
        if (!poll.ViewOpen[EventStream] ||
            !station_.run_time.Status[poll.ViewedZav].StreamSeen[EventStream])
            return;
        station_.poll_cycle.take_events();
        stream2.show_events();
    });
    cycle.sample.always([this](std::span<const float> samples) {
        if (graph.live.exists()) graph.live.WRUpdateData(samples);
    });
}

void Desk::refresh_views() {
    PollState& poll = station_.run_time.Poll;
    if (poll.ViewOpen[ReadingStream]) stream0.refresh();
    if (poll.ViewOpen[RequestStream] && poll.Stream1Arrived) {
        stream1.refresh();
        poll.Stream1Arrived = false;
    }
    if (poll.ViewOpen[TextStream]) stream3.refresh();
}

void Desk::register_file_commands() {
    main_window.on(Command::OpenFile, [this] {
        config_files.open_file();
        configuration_opened();
    });
    main_window.on(Command::Save, [this] { config_files.save_file(0); });
    main_window.on(Command::SaveAs, [this] { config_files.save_file(1); });
}

void Desk::configuration_opened() {
    stream0.configuration_changed();
    stream1.configuration_changed();
}

void Desk::open(const std::string& path) {
    if (upper(path).ends_with(".DAT"))
        main_window.run(Command::ConvertLogFile, [&] { convert_log(path); });
    else
        main_window.run(Command::OpenFile, [&] {
            config_files.open_file(path);
            configuration_opened();
        });
}

void Desk::register_log_commands() {
    const auto start = [this](std::int16_t kind) { start_log(kind); };
    const auto stop = [this](std::int16_t kind) { station_.log_file.Stop_Log_File(kind); };
    main_window.on(Command::SetupScanLog, [this] { set_up_log(ScanLog); });
    main_window.on(Command::SetupEventLog, [this] { set_up_log(EventLog); });
    main_window.on(Command::ConvertLogFile, [this] { convert_log(); });
    main_window.on(Command::StartScanLog, [start] { start(ScanLog); });
    main_window.on(Command::StartEventLog, [start] { start(EventLog); });
    main_window.on(Command::StartBothLogs, [start] { start(ScanLog), start(EventLog); });
    main_window.on(Command::StopScanLog, [stop] { stop(ScanLog); });
    main_window.on(Command::StopEventLog, [stop] { stop(EventLog); });
    main_window.on(Command::StopBothLogs, [stop] { stop(ScanLog), stop(EventLog); });
}

void Desk::set_up_log(std::int16_t kind) {
    RunTime& run_time = station_.run_time;
    LogSetup rules({run_time.Log, run_time.Status, run_time.Link, station_.configuration.Interface,
                    station_.with.files, station_.with.dialogs, station_.failures},
                   kind);
    rules.Form_Load();
    with_.windows.show_log_setup(rules);
}

// What can be known beforehand does not end the program.
void Desk::start_log(std::int16_t kind) {
    const LogState& log = station_.run_time.Log;
    const std::string& path = kind == ScanLog ? log.ScanFileName : log.EventFileName;
    if (const auto obstacle = log_obstacle(station_.with.files, path))
        station_.with.dialogs.Msg_Box(*obstacle, box::Exclamation, ProgramName);
    else
        station_.log_file.Start_Log_File(kind);
}

void Desk::convert_log(const std::string& path) {
    CsvProgress* progress = nullptr;
    CsvDialog rules({station_.with.files, station_.with.loop, station_.with.dialogs,
                     station_.failures,
                     [&](bool open) { with_.windows.show_csv_progress(*progress, open); }});
    progress = &rules.progress_window;
    rules.Form_Load();
    if (!path.empty()) rules.open_log(path);
    with_.windows.show_csv_conversion(rules);
}

ChooseChannels Desk::choose_channels() {
    return choose_in_window(with_.windows, station_.with.dialogs, station_.failures);
}

void Desk::register_link_commands() {
    main_window.on(Command::InterfaceCard, [this] { set_up_interface(); });
    main_window.on(Command::ZavSetup, [this] {
        setup_selected_pod({station_.configuration, station_.run_time, station_.with.driver,
                            station_.with.dialogs, station_.message_line, station_.failures,
                            with_.pod_setup_windows, [this] { configuration_opened(); }});
    });
    main_window.on(Command::TxCommand, [this] { type_command(); });
    main_window.on(Command::ClearEventCounter, [this] {
        clear_event_counters(station_.pods, station_.run_time, choose_channels());
    });
}

void Desk::set_up_interface() {
    InterfaceSettings& card = station_.configuration.Interface;
    InterfaceSettingsDialog dialog(
        {station_.discovery, station_.with.dialogs, station_.message_line, station_.failures,
         station_.configuration, station_.run_time,
         [this](std::int16_t saveAs) { return config_files.save_file(saveAs); }});
    dialog.Form_Load();
    const std::int16_t address = card.CardAddress;
    with_.windows.show_interface_settings(dialog);
    if (card.CardAddress == address) return;
    station_.note_fresh_pods();
    // Another network: what the open views show is gone.
    const StreamFlags& open = station_.run_time.Poll.ViewOpen;
    if (open[ReadingStream]) stream0.load();
    if (open[RequestStream]) stream1.load();
    if (open[EventStream]) stream2.load();
    if (open[TextStream]) stream3.load();
}

void Desk::type_command() {
    TxCommandDialog dialog({station_.pods, station_.link, typed_commands_, station_.with.dialogs,
                            station_.failures,
                            [this](std::string_view command) { stream1.note_sent(command); }});
    with_.windows.show_tx_command(dialog);
}

void Desk::register_view_commands() {
    main_window.on(Command::ViewStream0, [this] { with_.windows.show_stream0(stream0); });
    main_window.on(Command::ViewStream1, [this] { with_.windows.show_stream1(stream1); });
    main_window.on(Command::ViewStream2, [this] { with_.windows.show_stream2(stream2); });
    main_window.on(Command::ViewStream3, [this] { with_.windows.show_stream3(stream3); });
    main_window.on(Command::ViewStatus, [this] { show_status(); });
}

void Desk::show_status() {
    StatusView view({station_.discovery, station_.message_line, station_.failures,
                     with_.system_info, station_.configuration, station_.run_time, with_.compare});
    view.Form_Load();
    with_.windows.show_status(view);
}

void Desk::register_graph_commands() {
    main_window.on(Command::GraphSetup, [this] {
        graph.setup.Form_Load();
        with_.windows.show_graph_setup(graph.setup);
    });
    main_window.on(Command::ViewGraph, [this] { graph.live.view_graph(); });
    main_window.on(Command::PrinterSetup, [this] { graph.live.printer_setup(); });
}

void Desk::register_help_commands() {
    main_window.on(Command::Guide, [this] { with_.windows.show_guide("index"); });
    main_window.on(Command::Keys, [this] { with_.windows.show_guide("keys"); });
    main_window.on(Command::About, [this] { show_about(); });
}

void Desk::show_about() {
    const auto& version = station_.run_time.Link.DllVersion;
    const std::string_view driver(version.data(), version.size());
    with_.windows.show_about({"About " + std::string(ProgramName), std::string(ProgramName),
                              "Model 7260", "Version  " + std::string(ProgramVersion),
                              std::string(trim(driver.substr(0, driver.find('\0'))))});
}

}  // namespace kavorix
