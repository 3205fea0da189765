#include "ui/main/main_window.h"

#include <utility>

#include "base/program_name.h"
#include "ui/main/selection.h"

namespace kavorix {

MainWindow::MainWindow(Surroundings surroundings)
    : with_(std::move(surroundings)), link_(with_.run_time.Link) {
    register_own_commands();
}

void MainWindow::register_own_commands() {
    OperatorOptions& options = with_.run_time.Options;
    on(Command::Trigger, [this] { with_.pods.trigger(); });
    on(Command::Halt, [this] { with_.pods.halt(); });
    on(Command::TransmitConfig, [this] { with_.pods.transmit_config(); });
    on(Command::Delete, [this] { with_.pods.delete_configurations(); });
    on(Command::DefaultContScan, [this] { with_.pods.default_cont_scan(); });
    on(Command::EventCaptureOn, [this] { with_.pods.capture_events(true); });
    on(Command::EventCaptureOff, [this] { with_.pods.capture_events(false); });
    on(Command::ClearErrors, [this] { with_.pods.clear_errors(); });
    on(Command::SelectAll, [this] { select_all_or_none(link_); });
    on(Command::Exit, with_.exit);
    on(Command::DefaultScreen, [&options] { options.Expanded = false; });
    on(Command::ExpandScreen, [&options] { options.Expanded = true; });
    on(Command::DefaultExpand, [&options] { options.Expanded = !options.Expanded; });
    on(Command::TransmitReminder,
       [&options] { options.TransmitReminder = !options.TransmitReminder; });
    on(Command::Stream3AutoClear, [this] { toggle_stream3_auto_clear(); });
    on(Command::Configure, [this] { configure(); });
}

MainScreen MainWindow::screen() const {
    MainScreen screen = main_screen(with_.run_time, with_.configuration);
    for (const CommandRow& row : command_rows())
        if (!action_of(row.id)) screen.command(row.id).enabled = false;
    return screen;
}

void MainWindow::on(Command command, std::function<void()> action) {
    actions_[static_cast<std::size_t>(command)] = std::move(action);
}

bool MainWindow::available(Command command) const {
    return action_of(command) && is_available(command, station_state(with_.run_time));
}

template <class Action>
void MainWindow::handler(std::string_view trace, Action&& action) {
    trapped(with_.failures, trace, [&] {
        action();
        with_.pods.look_for_changes();
    });
}

void MainWindow::run(Command command) {
    run(command, action_of(command));
}

void MainWindow::run(Command command, const std::function<void()>& action) {
    run(command, command_row(command).trace, action);
}

void MainWindow::press(const ButtonRow& button) {
    run(button.id, button.trace, action_of(button.id));
}

void MainWindow::run(Command command, std::string_view trace, const std::function<void()>& action) {
    if (available(command)) handler(trace, action);
}

void MainWindow::configure() {
    if (link_.InterfaceSelected)
        run(Command::InterfaceCard);
    else if (link_.NumSelected() == 1)
        run(Command::ZavSetup);
    else
        with_.dialogs.Msg_Box(link_.NumSelected() < 1
                                  ? "Select either Interface or ZAV Icon for Configuration"
                                  : "More than 1 ZAV Icon Selected for Configuration",
                              box::Exclamation, ProgramName);
}

void MainWindow::toggle_stream3_auto_clear() {
    bool& auto_clear = with_.run_time.Poll.Stream3AutoClear;
    auto_clear = !auto_clear;
    for (PodStatus& status : with_.run_time.Status)
        status.StreamSeen[TextStream] = status.StreamMarked[TextStream] = false;
}

void MainWindow::img_ZAV_Click(Pod pod) {
    handler("frmMain/img_ZAV_Click", [&] { toggle_selected(link_, pod); });
}

void MainWindow::select_for_menu(Pod pod) {
    handler("frmMain/img_ZAV_MouseDown", [&] { select_alone(link_, pod); });
}

void MainWindow::img_4A_Click() {
    handler("frmMain/img_4A_Click", [&] {
        if (link_.Card == CardSearch::Found) link_.InterfaceSelected = !link_.InterfaceSelected;
    });
}

void MainWindow::pnlErr_DblClick() {
    handler("frmMain/pnlErr_DblClick", [&] { with_.run_time.Reports.LastFault = Fault::None; });
}

void MainWindow::pnlButton_DblClick(int stream) {
    constexpr std::array Views = {Command::ViewStream0, Command::ViewStream1, Command::ViewStream2,
                                  Command::ViewStream3};
    const Command view = Views.at(static_cast<std::size_t>(stream));
    run(view, "frmMain/pnlButton_DblClick", action_of(view));
}

void MainWindow::unload_request() {
    handler("frmMain/Form_QueryUnload", [&] { with_.exit(); });
}

}  // namespace kavorix
