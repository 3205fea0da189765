#include "app/station.h"

#include <algorithm>

#include "base/text.h"
#include "logging/csv_dialog.h"
#include "logging/log_setup.h"
#include "ui/interface_settings.h"

namespace kavorix {

CommandLink::Surroundings Station::link_surroundings() {
    return {with_.driver, with_.loop, with_.dialogs, screen,   message_line_, error_log_,
            failures_,    operations, configuration, run_time, *tmrPoll_};
}

Station::Station(const Surroundings& surroundings)
    : with_(surroundings),
      message_line_(screen, with_.dialogs),
      error_log_(with_.files, with_.loop, with_.folder.directory, with_.folder.keep_error_log),
      failures_(error_log_, with_.dialogs),
      tmrPoll_(with_.loop.make_timer([this] { poll_cycle_.tmrPoll_Timer(); })),
      sent(configuration.ZavConfig),
      operations({link_surroundings(), configuration, link, with_.windows, sent,
                  std::string(ProgramVersion),
                  [this](const PodFlags& withdrawn) { transmission.transmit_config(withdrawn); },
                  [this] { program_exit.ExitKAVORIX(); }}),
      link(link_surroundings()),
      discovery(link_surroundings(), link, configuration),
      transmission(configuration, run_time.Status, run_time.Link, with_.dialogs, failures_, sent,
                   [this] { link.TXString(); }),
      config_files({configuration, run_time.Status, with_.dialogs, with_.files, with_.loop,
                    message_line_, failures_, with_.folder.directory}),
      log_file({with_.files, with_.loop, failures_, screen, configuration, run_time}),
      program_exit(link_surroundings(),
                   [this](std::int16_t saveAs) { return config_files.save_file(saveAs); }),
      stream0(run_time, configuration, choose_channels()),
      stream1(link_surroundings(), operations, choose_channels()),
      stream2(run_time, with_.loop),
      stream3(run_time),
      graph({run_time, configuration, with_.loop, with_.dialogs, failures_, operations,
             with_.windows}),
      pod_errors_(error_log_, run_time.Link, screen, configuration.Interface),
      decoder_(link_surroundings(), link, pod_errors_),
      poll_cycle_(link_surroundings(), link, decoder_, *this) {
    for (PodConfig& pod : configuration.ZavConfig) default_ZAV_config(pod, NoDevice, 0);
    register_file_commands();
    register_log_commands();
    register_link_commands();
    register_view_commands();
    register_graph_commands();
    operations.CheckItems();
}

void Station::register_log_commands() {
    operations.on(Command::SetupScanLog, [this] { set_up_log(ScanLog); });
    operations.on(Command::SetupEventLog, [this] { set_up_log(EventLog); });
    operations.on(Command::ConvertLogFile, [this] { convert_log(); });
    operations.on(Command::StartScanLog, [this] { start_logs(true, false); });
    operations.on(Command::StartEventLog, [this] { start_logs(false, true); });
    operations.on(Command::StartBothLogs, [this] { start_logs(true, true); });
    operations.on(Command::StopScanLog, [this] { stop_logs(true, false); });
    operations.on(Command::StopEventLog, [this] { stop_logs(false, true); });
    operations.on(Command::StopBothLogs, [this] { stop_logs(true, true); });
}

void Station::set_up_log(std::int16_t kind) {
    LogSetup rules({run_time.Log, run_time.Status, run_time.Link, configuration.Interface,
                    with_.dialogs, failures_},
                   kind);
    rules.Form_Load();
    with_.windows.show_log_setup(rules);
    operations.CheckItems();
}

void Station::convert_log(const std::string& path) {
    CsvProgress* progress = nullptr;
    CsvDialog rules({with_.files, with_.loop, with_.dialogs, failures_,
                     [&](bool open) { with_.windows.show_csv_progress(*progress, open); }});
    progress = &rules.progress_window;
    rules.Form_Load();
    if (!path.empty()) rules.open_log(path);
    with_.windows.show_csv_conversion(rules);
}

void Station::start_logs(bool scans, bool events) {
    if (scans) log_file.Start_Log_File(ScanLog);
    if (events) log_file.Start_Log_File(EventLog);
    operations.show_logged_pods();
    operations.ConfigItems(0);
}

void Station::stop_logs(bool scans, bool events) {
    if (scans) log_file.Stop_Log_File(ScanLog);
    if (events) log_file.Stop_Log_File(EventLog);
    operations.show_logged_pods();
    operations.CheckItems();
}

void Station::Write_Log_File(std::int16_t kind, std::int16_t flush, std::int32_t time) {
    log_file.Write_Log_File(kind, flush, time);
}

void Station::register_file_commands() {
    operations.on(Command::OpenFile, [this] {
        config_files.open_file();
        configuration_opened();
    });
    operations.on(Command::Save, [this] { config_files.save_file(0); });
    operations.on(Command::SaveAs, [this] { config_files.save_file(1); });
}

void Station::configuration_opened() {
    stream0.configuration_changed();
    stream1.configuration_changed();
}

void Station::open(const std::string& path) {
    if (upper(path).ends_with(".DAT"))
        operations.run(Command::ConvertLogFile, [&] { convert_log(path); });
    else
        operations.run(Command::OpenFile, [&] {
            config_files.open_file(path);
            configuration_opened();
        });
}

ChooseChannels Station::choose_channels() {
    return choose_in_window(with_.windows, with_.dialogs, failures_);
}

void Station::register_link_commands() {
    operations.on(Command::InterfaceCard, [this] { set_up_interface(); });
    operations.on(Command::TxCommand, [this] { type_command(); });
}

void Station::register_view_commands() {
    operations.on(Command::ViewStream1, [this] { with_.windows.show_stream1(stream1); });
    operations.on(Command::ViewStream2, [this] { with_.windows.show_stream2(stream2); });
    operations.on(Command::ViewStream3, [this] { with_.windows.show_stream3(stream3); });
    operations.on(Command::ViewStatus, [this] {
        StatusView view = make_status_view();
        view.Form_Load();
        with_.windows.show_status(view);
    });
}

void Station::set_up_pods_in(PodSetupWindows& windows) {
    operations.on(Command::ZavSetup, [this, &windows] {
        setup_selected_pod({configuration, run_time, screen, with_.driver, with_.dialogs,
                            message_line_, failures_, windows, [this] {
                                stream0.configuration_changed();
                                stream1.configuration_changed();
                            }});
    });
    operations.CheckItems();
}

void Station::register_graph_commands() {
    operations.on(Command::GraphSetup, [this] {
        graph.setup.Form_Load();
        with_.windows.show_graph_setup(graph.setup);
    });
    operations.on(Command::ViewGraph, [this] { graph.live.view_graph(); });
    operations.on(Command::PrinterSetup, [this] { graph.live.printer_setup(); });
}

void Station::set_up_interface() {
    InterfaceSettingsDialog dialog(
        link_surroundings(), configuration, discovery, operations,
        [this](std::int16_t saveAs) { return config_files.save_file(saveAs); });
    dialog.Form_Load();
    const std::int16_t address = configuration.Interface.CardAddress;
    with_.windows.show_interface_settings(dialog);
    if (configuration.Interface.CardAddress == address) return;
    note_fresh_pods();
    // Another network: what the open views show is gone.
    const auto& open = run_time.Poll.ViewOpen;
    if (open[ReadingStream] == 1) stream0.load();
    if (open[RequestStream] == 1) stream1.load();
    if (open[EventStream] == 1) stream2.load();
    if (open[TextStream] == 1) stream3.load();
}

void Station::type_command() {
    TxCommandDialog dialog(link_surroundings(), link, operations, typed_commands_,
                           [this](std::string_view command) { stream1.note_sent(command); });
    with_.windows.show_tx_command(dialog);
}

StatusView Station::make_status_view() {
    return {link_surroundings(), discovery, operations, with_.system_info, compare_held_};
}

void Station::start() {
    discovery.Form_Load(with_.files, join_path(with_.folder.directory, "KAVORIX.INI"));
    note_fresh_pods();
}

// Pods that were found just now have nothing to be sent yet.
void Station::note_fresh_pods() {
    for (int pod = 0; pod < MaxZavs; ++pod) sent.note(pod);
}

void Station::finish() {
    tmrPoll_->stop();
    error_log_.close();
    if (run_time.Link.SessionErrorCount == 0) error_log_.remove();
    with_.driver.Zav_Disconnect(configuration.Interface.CardHandle);
}

void Station::on_poll(std::function<void()> action) {
    on_poll_ = std::move(action);
    // The poll cycle calls for what a stream-0 view would show.
    run_time.Poll.ViewOpen[ReadingStream] = on_poll_ ? 1 : 0;
}

void Station::select_pods(const std::vector<int>& pods) {
    LinkState& selection = run_time.Link;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const bool wanted = std::find(pods.begin(), pods.end(), pod) != pods.end();
        if (wanted != (selection.ZavSelected[at(pod)] == 1)) operations.img_ZAV_Click(pod);
    }
}

void Station::refresh_stream0() {
    stream0.refresh();
    if (on_poll_) on_poll_();
}

}  // namespace kavorix
