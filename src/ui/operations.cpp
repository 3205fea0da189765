#include "ui/operations.h"

#include <algorithm>
#include <utility>

#include "acquire/poll_cycle.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "ui/select_channels.h"

namespace kavorix {

namespace {

constexpr std::size_t DiscardedReplyLength = 10;

// The trace name of a menu command's handler.
std::string_view handler_name(Command command) {
    if (command <= Command::Exit) return "frmMain/mnuConfigItem_Click";
    if (command <= Command::TxCommand) return "frmMain/mnuOperateItem_Click";
    if (command <= Command::ViewStatus) return "frmMain/mnuViewItem_Click";
    if (command <= Command::StopBothLogs) return "frmMain/mnuLoggingItem_Click";
    if (command <= Command::ViewGraph) return "frmMain/mnuTrendItem_Click";
    if (command <= Command::TransmitReminder) return "frmMain/mnuOptionsItem_Click";
    if (command <= Command::PrinterSetup) return "frmMain/mnuUtilitiesItem_Click";
    if (command == Command::Configure) return "frmMain/cmdConfig_Click";
    if (command == Command::DefaultExpand) return "frmMain/cmdDefault_Click";
    if (command == Command::ClearErrors) return "frmMain/cmdClear_Click";
    if (command == Command::Guide) return "frmMain/mnuGuide_Click";
    if (command == Command::Keys) return "frmMain/mnuKeys_Click";
    return "frmMain/mnuAbout_Click";
}

// The state of the same pod when its selection changes.
std::int16_t with_selection(std::int16_t state, bool selected) {
    switch (state) {
        case Resting:
        case SelectedResting:
            return selected ? SelectedResting : Resting;
        case DataArrived:
        case SelectedDataArrived:
            return selected ? SelectedDataArrived : DataArrived;
        case LoggingResting:
        case SelectedLoggingResting:
            return selected ? SelectedLoggingResting : LoggingResting;
        case LoggingDataArrived:
        case SelectedLoggingDataArrived:
            return selected ? SelectedLoggingDataArrived : LoggingDataArrived;
        default:
            return state;
    }
}

// The state of the same pod when a log begins to record it.
std::int16_t while_logging(std::int16_t state) {
    switch (state) {
        case Resting:
            return LoggingResting;
        case SelectedResting:
            return SelectedLoggingResting;
        case DataArrived:
            return LoggingDataArrived;
        case SelectedDataArrived:
            return SelectedLoggingDataArrived;
        default:
            return state;
    }
}

}  // namespace

// While one is alive, the commands that send are not available.
class Operations::Sending {
  public:
    explicit Sending(Operations& operations)
        : operations_(operations), before_(std::exchange(operations.sending_, true)) {
        operations_.CheckItems();
    }
    ~Sending() {
        operations_.sending_ = before_;
        operations_.CheckItems();
    }
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;

  private:
    Operations& operations_;
    bool before_;
};

Operations::Operations(const Surroundings& surroundings)
    : with_(surroundings),
      run_time_(surroundings.link.run_time),
      screen_(surroundings.link.screen) {
    fill_menu_captions(screen_);
    screen_.mnuOptionsItem[0].checked = true;
    screen_.mnuTransmitRem.checked = true;
    for (int stream = 0; stream < StreamCount; ++stream) {
        const std::string digit = std::to_string(stream);
        screen_.pnlButton[at(stream)].caption = "Stream " + digit;
        screen_.lbl1Strm[at(stream)].caption = digit;
        screen_.lbl2Strm[at(stream)].caption = digit;
    }
    register_own_commands();
}

void Operations::register_own_commands() {
    on(Command::Trigger, [this] { trigger(); });
    on(Command::Halt, [this] { halt(); });
    on(Command::TransmitConfig, [this] { transmit_config(); });
    on(Command::Delete, [this] { delete_configurations(); });
    on(Command::DefaultContScan, [this] { default_cont_scan(); });
    on(Command::Exit, with_.exit);
    on(Command::ClearEventCounter, [this] { clear_event_counter(); });
    on(Command::EventCaptureOn, [this] { send("EV1;"); });
    on(Command::EventCaptureOff, [this] { send("EV0;"); });
    on(Command::ViewStream0, [this] { with_.windows.show_stream0(); });
    on(Command::DefaultScreen, [this] { show_screen(false); });
    on(Command::ExpandScreen, [this] { show_screen(true); });
    on(Command::SelectAll, [this] { select_all(); });
    on(Command::Stream3AutoClear, [this] { toggle_stream3_auto_clear(); });
    on(Command::TransmitReminder,
       [this] { screen_.mnuTransmitRem.checked = !screen_.mnuTransmitRem.checked; });
    on(Command::Guide, [this] { with_.windows.show_guide("index"); });
    on(Command::Keys, [this] { with_.windows.show_guide("keys"); });
    on(Command::About, [this] { show_about(); });
    on(Command::Configure, [this] { configure(); });
    on(Command::DefaultExpand, [this] { show_screen(!screen_.expanded); });
    on(Command::ClearErrors, [this] { clear_errors(); });
}

void Operations::on(Command command, std::function<void()> action) {
    actions_[static_cast<std::size_t>(command)] = std::move(action);
}

template <class Action>
void Operations::handler(std::string_view name, Action&& action) {
    trapped(with_.link.failures, name, [&] {
        action();
        show_changes();
    });
}

// What was changed and not saved, in the title; what was changed and not transmitted, at the pods.
void Operations::show_changes() {
    const Configuration& configuration = with_.configuration;
    screen_.caption = MainCaption;
    if (!configuration.ConfigFileName.empty())
        screen_.caption += " - " + from_utf8_lossy(name_of(configuration.ConfigFileName));
    if (configuration.ConfigChanged == 1) screen_.caption += " *";
    for (int pod = 0; pod < MaxZavs; ++pod)
        screen_.img_ZAV[at(pod)].differs =
            screen_.img_ZAV[at(pod)].visible && with_.sent.differs(pod);
}

void Operations::run(Command command) {
    run(command, actions_[static_cast<std::size_t>(command)]);
}

void Operations::run(Command command, const std::function<void()>& action) {
    if (available(command)) handler(handler_name(command), action);
}

void Operations::send(std::string command_string) {
    const Sending sending(*this);
    run_time_.Link.CommandString = std::move(command_string);
    with_.command_link.TXString();
}

void Operations::while_sending(const std::function<void()>& work) {
    const Sending sending(*this);
    work();
}

void Operations::trigger() {
    send("TR;");
    mark_triggered();
}

void Operations::mark_triggered() {
    LinkState& link = run_time_.Link;
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (link.PollTable.InPollTable[at(pod)] == 1 && with_.command_link.reached()[at(pod)] == 1)
            link.Triggered[at(pod)] = 1;
}

void Operations::halt() {
    LinkState& link = run_time_.Link;
    send("HA;");
    // What the pods still had to give has been read while the halt was waited for.
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (with_.command_link.reached()[at(pod)] == 1) link.Triggered[at(pod)] = 0;
    if (link.ContScanning == 0 && run_time_.Log.ScanLogging == 0 && run_time_.Log.EventLogging == 0)
        ConfigItems(1);
}

void Operations::transmit_config() {
    cleared_.fill(0);
    sending_config_ = true;
    const Sending sending(*this);
    with_.transmit_config(cleared_);
    sending_config_ = false;

    // The selection stands again: icons that data changed meanwhile show it, and what the operator
    // cleared stays deselected.
    LinkState& link = run_time_.Link;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (cleared_[at(pod)] == 1 &&
            std::exchange(link.ZavSelected[at(pod)], std::int16_t{0}) == 1)
            --link.NumSelected;
        if (link.PollTable.InPollTable[at(pod)] == 1 &&
            screen_.img_ZAV[at(pod)].picture != Picture::img1ZAV_E)
            IconReverse(pod);
    }
}

// While each pod is sent its own configuration, the selection names that pod, not the operator's
// choice.
bool Operations::selection_locked() {
    if (sending_config_)
        with_.link.message_line.DispMsg(
            " Configuration is being Transmitted - Selection not Changed", Colour::Red);
    return sending_config_;
}

bool Operations::confirmed(std::string_view text) {
    return with_.link.dialogs.Msg_Box(text, box::OkCancel | box::Question, ProgramName) ==
           Answer::Ok;
}

void Operations::delete_configurations() {
    if (!confirmed("Configurations for the Selected ZAV(s) will be Deleted")) return;
    with_.link.message_line.DispMsg(" Configuration(s) Deleted", Colour::Blue);
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (run_time_.Link.ZavSelected[at(pod)] == 1)
            default_ZAV_config(with_.configuration.ZavConfig[at(pod)],
                               GetZAVTypeCode(run_time_.Status[at(pod)].type_code()), 0);
}

void Operations::default_cont_scan() {
    if (!confirmed("Selected ZAV(s) will be Set to:  'Default, Continuous Scan'")) return;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (run_time_.Link.ZavSelected[at(pod)] != 1) continue;
        PodConfig& config = with_.configuration.ZavConfig[at(pod)];
        default_ZAV_config(config, GetZAVTypeCode(run_time_.Status[at(pod)].type_code()), 1);
        config.ContScan = 1;
        config.Setup = 1;
    }
    send("RE;SE;CO;");
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (with_.command_link.reached()[at(pod)] == 1) with_.sent.note(pod);
    with_.configuration.ConfigChanged = 1;
}

void Operations::clear_event_counter() {
    int channels = 0;
    bool universal = false;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const PodStatus& status = run_time_.Status[at(pod)];
        if (run_time_.Link.ZavSelected[at(pod)] != 1) continue;
        channels = std::max<int>(channels, status.Channels);
        if (is_universal_type(GetZAVTypeCode(status.type_code()))) universal = true;
    }
    ChannelChoice choice;
    choice.caption = "Clear Event Counter";
    choice.prompt = "Select Event Totalise Channels to Clear:";
    choice.sets = {{"", channels, {}}};
    choice.complaint = [universal](const std::vector<ChannelChoice::Set>& sets) -> std::string {
        ChannelFlags others = sets.front().chosen;
        others[18] = others[19] = 0;
        if (!universal || others == ChannelFlags{}) return {};
        return "Channels other than 19 and 20 do not apply to ZAV types 7V and 7W";
    };
    if (choose_in_window(with_.windows, with_.link.dialogs, with_.link.failures)(choice))
        send(tokens_for("CL", choice.sets.front().chosen));
}

void Operations::set_selected(int pod, bool selected) {
    LinkState& link = run_time_.Link;
    link.ZavSelected[at(pod)] = selected ? 1 : 0;
    IconReverse(pod);
}

void Operations::IconReverse(int pod) {
    PodStatus& status = run_time_.Status[at(pod)];
    status.IconState = with_selection(status.IconState, run_time_.Link.ZavSelected[at(pod)] == 1);
    screen_.img_ZAV[at(pod)].picture = picture_of(status.IconState);
}

void Operations::show_logged_pods() {
    const LogState& log = run_time_.Log;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        PodStatus& status = run_time_.Status[at(pod)];
        if ((log.ScanLogging != 1 || status.LogScan != 1) &&
            (log.EventLogging != 1 || status.LogEvents != 1))
            continue;
        status.IconState = while_logging(status.IconState);
        screen_.img_ZAV[at(pod)].picture = picture_of(status.IconState);
    }
}

void Operations::select_all() {
    if (selection_locked()) return;
    LinkState& link = run_time_.Link;
    const bool selecting = link.AllSelected == 0;
    link.NumSelected = 0;
    link.AllSelected = selecting ? 1 : 0;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (link.PollTable.InPollTable[at(pod)] != 1) continue;
        set_selected(pod, selecting);
        if (selecting) ++link.NumSelected;
    }
    CheckItems();
}

void Operations::img_ZAV_Click(int pod) {
    handler("frmMain/img_ZAV_Click", [&] {
        LinkState& link = run_time_.Link;
        if (link.PollTable.InPollTable[at(pod)] != 1 || selection_locked()) return;
        const bool selecting = link.ZavSelected[at(pod)] == 0;
        set_selected(pod, selecting);
        link.NumSelected = static_cast<std::int16_t>(link.NumSelected + (selecting ? 1 : -1));
        CheckItems();
    });
}

void Operations::select_for_menu(int pod) {
    handler("frmMain/img_ZAV_MouseDown", [&] {
        LinkState& link = run_time_.Link;
        if (link.PollTable.InPollTable[at(pod)] != 1 || link.ZavSelected[at(pod)] == 1 ||
            selection_locked())
            return;
        for (int other = 0; other < MaxZavs; ++other)
            if (link.ZavSelected[at(other)] == 1) set_selected(other, false);
        set_selected(pod, true);
        link.NumSelected = 1;
        CheckItems();
    });
}

void Operations::img_4A_Click() {
    handler("frmMain/img_4A_Click", [&] {
        LinkState& link = run_time_.Link;
        if (!screen_.img_4A.visible) return;
        link.InterfaceSelected = link.InterfaceSelected == 1 ? 0 : 1;
        screen_.img_4A.picture = link.InterfaceSelected == 1 ? Picture::img4A : Picture::img14A;
        CheckItems();
    });
}

void Operations::cmdConfig_Click() {
    handler("frmMain/cmdConfig_Click", [&] { configure(); });
}

void Operations::configure() {
    const LinkState& link = run_time_.Link;
    if (link.InterfaceSelected == 1)
        run(Command::InterfaceCard);
    else if (link.NumSelected == 1)
        run(Command::ZavSetup);
    else
        with_.link.dialogs.Msg_Box(link.NumSelected < 1
                                       ? "Select either Interface or ZAV Icon for Configuration"
                                       : "More than 1 ZAV Icon Selected for Configuration",
                                   box::Exclamation, ProgramName);
}

void Operations::cmdDefault_Click() {
    handler("frmMain/cmdDefault_Click", [&] { show_screen(!screen_.expanded); });
}

void Operations::show_screen(bool expanded) {
    screen_.expanded = expanded;
    screen_.mnuOptionsItem[0].checked = !expanded;
    screen_.mnuOptionsItem[1].checked = expanded;
}

void Operations::cmdClear_Click() {
    handler("frmMain/cmdClear_Click", [&] { clear_errors(); });
}

void Operations::clear_errors() {
    screen_.lblMsg.caption.clear();
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (screen_.img_ZAV[at(pod)].picture == Picture::img1ZAV_E ||
            run_time_.Status[at(pod)].ErrorFlag == 1)
            clear_pod_error(pod);
    screen_.pnlErr.caption.clear();
    CheckItems();
    with_.link.dialogs.message_box(
        "You will need to re-transmit the configuration to the ZAV(s) which had errors.",
        box::Information, "Clear ZAV Errors");
}

void Operations::clear_pod_error(int pod) {
    LinkState& link = run_time_.Link;
    std::array<char, DiscardedReplyLength> discarded{};
    for (std::int16_t stream = 0; stream < StreamCount; ++stream)
        with_.link.driver.Zav_String(static_cast<std::int16_t>(pod + 1), stream, discarded,
                                     with_.configuration.Interface.CardHandle);
    if (std::exchange(link.PollTable.InPollTable[at(pod)], std::int16_t{1}) != 1)
        ++link.PollTable.NumInPoll;
    if (link.ZavSelected[at(pod)] == 1) --link.NumSelected;
    run_time_.Status[at(pod)].ErrorFlag = 0;
    run_time_.Status[at(pod)].IconState = Resting;
    set_selected(pod, false);
    if (sending_config_) cleared_[at(pod)] = 1;
    with_.sent.forget(pod);
}

void Operations::toggle_stream3_auto_clear() {
    std::int16_t& auto_clear = run_time_.Poll.Stream3AutoClear;
    auto_clear = auto_clear == 1 ? 0 : 1;
    screen_.mnuOptionsItem[5].checked = auto_clear == 1;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        run_time_.Status[at(pod)].StreamSeen[TextStream] = 0;
        screen_.lblStrm3[at(pod)].caption = "-";
    }
}

void Operations::show_about() {
    const auto& version = run_time_.Link.DllVersion;
    const std::string_view driver(version.data(), version.size());
    with_.windows.show_about({"About " + std::string(ProgramName), std::string(ProgramName),
                              "Model 7260", "Version  " + with_.version,
                              std::string(trim(driver.substr(0, driver.find('\0'))))});
}

void Operations::pnlErr_DblClick() {
    screen_.pnlErr.caption.clear();
}

void Operations::pnlButton_DblClick(int stream) {
    constexpr std::array Views = {Command::ViewStream0, Command::ViewStream1, Command::ViewStream2,
                                  Command::ViewStream3};
    run(Views[at(stream)]);
}

void Operations::unload_request() {
    handler("frmMain/Form_QueryUnload", [&] { with_.exit(); });
}

void Operations::mnuOperate_Click() {
    handler("frmMain/mnuOperate_Click", [&] { show_availability(); });
}

StationState Operations::state() const {
    StationState state = station_state(run_time_);
    state.config_commands = config_commands_;
    state.sending = sending();
    state.config_sent = sending_config_;
    return state;
}

bool Operations::available(Command command) const {
    return available(command, state());
}

bool Operations::available(Command command, const StationState& now) const {
    return actions_[static_cast<std::size_t>(command)] && is_available(command, now);
}

void Operations::ConfigItems(std::int16_t mode) {
    config_commands_ = mode != 0;
    show_availability();
}

void Operations::CheckItems() {
    const LinkState& link = run_time_.Link;
    if (link.OperationsEnabled == 1 && link.ContScanning == 0 && run_time_.Log.ScanLogging == 0 &&
        run_time_.Log.EventLogging == 0)
        config_commands_ = true;
    show_availability();
}

void Operations::show_availability() {
    const StationState now = state();
    for (const MenuEntry& menu : menu_bar())
        menu.item(screen_).enabled = all_hold(menu_needs(menu.name), now);
    show_menu(menu_bar(), now);
    for (const ButtonEntry& entry : buttons())
        (screen_.*entry.button).enabled = available(entry.command, now);
}

void Operations::show_menu(std::span<const MenuEntry> entries, const StationState& now) {
    for (const MenuEntry& entry : entries) {
        if (entry.separator()) continue;
        if (entry.command != Command::None)
            entry.item(screen_).enabled = available(entry.command, now);
        show_menu(entry.children, now);
    }
}

void Operations::ClearScreen() {
    for (int pod = 0; pod < MaxZavs; ++pod) {
        screen_.img_ZAV[at(pod)] = Icon{};
        screen_.lblZAVType[at(pod)] = Label{};
        screen_.lblZAVType[at(pod)].visible = false;
        for (int stream = 0; stream < StreamCount; ++stream)
            screen_.lblStrm(stream)[at(pod)].caption = "-";
    }
}

void Operations::StatusRefresh() {
    for (Label* panel :
         {&screen_.pnlContScan, &screen_.pnlErr, &screen_.pnlPollCnt, &screen_.pnlBars})
        *panel = Label{};
    screen_.pnlStatus.caption =
        screen_.img_4A.visible ? "Card " + hex16(with_.configuration.Interface.CardAddress) : "";
}

}  // namespace kavorix
