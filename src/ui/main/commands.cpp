#include "ui/main/commands.h"

#include <algorithm>

namespace kavorix {

namespace {

constexpr std::array Rows = {
    CommandRow{Command::InterfaceCard,
               "mnuConfigItem(0)",
               "I&nterface Card...",
               "Card address, poll rate and power",
               "frmMain/mnuConfigItem_Click",
               {&needs::NothingSent, &needs::CardConfigurable}},
    CommandRow{Command::ZavSetup,
               "mnuConfigItem(1)",
               "&ZAV Setup...",
               "Configure a pod and its channels",
               "frmMain/mnuConfigItem_Click",
               {&needs::PodsFound, &needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::OpenFile,
               "mnuConfigItem(3)",
               "&Open File...",
               "Load a configuration file",
               "frmMain/mnuConfigItem_Click",
               {&needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::Save,
               "mnuConfigItem(4)",
               "&Save",
               "Save the configuration",
               "frmMain/mnuConfigItem_Click",
               {&needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::SaveAs,
               "mnuConfigItem(5)",
               "Sa&ve As...",
               "Save the configuration under another name",
               "frmMain/mnuConfigItem_Click",
               {&needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::TransmitConfig,
               "mnuConfigItem(7)",
               "&Transmit Config",
               "Send each selected pod its configuration",
               "frmMain/mnuConfigItem_Click",
               {&needs::PodsFound, &needs::Selection, &needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::Delete,
               "mnuConfigItem(9)",
               "&Delete",
               "Reset the configuration of the selected pods",
               "frmMain/mnuConfigItem_Click",
               {&needs::PodsFound, &needs::Selection, &needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::DefaultContScan,
               "mnuConfigItem(11)",
               "Default &Cont Scan",
               "Give the selected pods their defaults and scan continuously",
               "frmMain/mnuConfigItem_Click",
               {&needs::PodsFound, &needs::Selection, &needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::Exit,
               "mnuConfigItem(13)",
               "E&xit KAVORIXER.",
               "End the program",
               "frmMain/mnuConfigItem_Click",
               {}},
    CommandRow{Command::Trigger,
               "mnuOperateItem(0)",
               "&Trigger",
               "Start measurement",
               "frmMain/mnuOperateItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::NothingSent}},
    CommandRow{Command::Halt,
               "mnuOperateItem(1)",
               "&Halt",
               "Stop measurement",
               "frmMain/mnuOperateItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::NothingSent}},
    CommandRow{Command::ClearEventCounter,
               "mnuOperateItem(3)",
               "&Clear Event Counter...",
               "Set totalising channels to zero",
               "frmMain/mnuOperateItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::NothingSent, &needs::CounterPods}},
    CommandRow{Command::EventCaptureOn,
               "mnuOperateItem(4)",
               "Event Capture O&N",
               "Selected pods report digital events",
               "frmMain/mnuOperateItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::NothingSent, &needs::CapturePods}},
    CommandRow{Command::EventCaptureOff,
               "mnuOperateItem(5)",
               "Event Capture O&FF",
               "Selected pods report no events",
               "frmMain/mnuOperateItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::NothingSent, &needs::CapturePods}},
    CommandRow{Command::TxCommand,
               "mnuOperateItem(7)",
               "T&x Command...",
               "Send a typed command string",
               "frmMain/mnuOperateItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::NothingSent}},
    CommandRow{Command::ViewStream0,
               "mnuViewDataItem(0)",
               "Stream &0...",
               "Scan results",
               "frmMain/mnuViewItem_Click",
               {&needs::PodsFound, &needs::PodSelected}},
    CommandRow{Command::ViewStream1,
               "mnuViewDataItem(1)",
               "Stream &1...",
               "Single-channel measurements",
               "frmMain/mnuViewItem_Click",
               {&needs::PodsFound, &needs::PodSelected}},
    CommandRow{Command::ViewStream2,
               "mnuViewDataItem(2)",
               "Stream &2...",
               "Digital events",
               "frmMain/mnuViewItem_Click",
               {&needs::PodsFound, &needs::PodSelected}},
    CommandRow{Command::ViewStream3,
               "mnuViewDataItem(3)",
               "Stream &3...",
               "Texts of the pods",
               "frmMain/mnuViewItem_Click",
               {&needs::PodsFound, &needs::PodSelected}},
    CommandRow{Command::ViewStatus,
               "mnuViewItem(1)",
               "View &Status...",
               "Status of the selected pods and the interface",
               "frmMain/mnuViewItem_Click",
               {&needs::PodsFound, &needs::Selection, &needs::NothingSent}},
    CommandRow{Command::SetupScanLog,
               "mnuLoggingItemSetup(0)",
               "&Scans...",
               "File and interval of the scan log",
               "frmMain/mnuLoggingItem_Click",
               {&needs::PodsFound, &needs::ScanLogStopped}},
    CommandRow{Command::SetupEventLog,
               "mnuLoggingItemSetup(1)",
               "&Events...",
               "File of the event log",
               "frmMain/mnuLoggingItem_Click",
               {&needs::PodsFound, &needs::EventLogStopped}},
    CommandRow{Command::StartScanLog,
               "mnuLoggingItemStart(0)",
               "&Scans",
               "Start the scan log",
               "frmMain/mnuLoggingItem_Click",
               {&needs::PodsFound, &needs::ScanFile, &needs::ScanLogStopped}},
    CommandRow{Command::StartEventLog,
               "mnuLoggingItemStart(1)",
               "&Events",
               "Start the event log",
               "frmMain/mnuLoggingItem_Click",
               {&needs::PodsFound, &needs::EventFile, &needs::EventLogStopped}},
    CommandRow{Command::StartBothLogs,
               "mnuLoggingItemStart(2)",
               "&Both",
               "Start both logs",
               "frmMain/mnuLoggingItem_Click",
               {&needs::PodsFound, &needs::ScanFile, &needs::ScanLogStopped, &needs::EventFile,
                &needs::EventLogStopped}},
    CommandRow{Command::StopScanLog,
               "mnuLoggingItemStop(0)",
               "&Scans",
               "Stop the scan log",
               "frmMain/mnuLoggingItem_Click",
               {&needs::ScanLogRuns}},
    CommandRow{Command::StopEventLog,
               "mnuLoggingItemStop(1)",
               "&Events",
               "Stop the event log",
               "frmMain/mnuLoggingItem_Click",
               {&needs::EventLogRuns}},
    CommandRow{Command::StopBothLogs,
               "mnuLoggingItemStop(2)",
               "&Both",
               "Stop both logs",
               "frmMain/mnuLoggingItem_Click",
               {&needs::ScanLogRuns, &needs::EventLogRuns}},
    CommandRow{Command::GraphSetup,
               "mnuTrendItem(0)",
               "&Setup...",
               "Channels, range and titles of the graph",
               "frmMain/mnuTrendItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::GraphClosed}},
    CommandRow{Command::ViewGraph,
               "mnuTrendItem(1)",
               "&View Graph...",
               "Show the graph",
               "frmMain/mnuTrendItem_Click",
               {&needs::PodsFound, &needs::PodSelected, &needs::GraphSetUp, &needs::GraphClosed}},
    CommandRow{Command::DefaultScreen,
               "mnuOptionsItem(0)",
               "&Default Screen",
               "Pod icons only",
               "frmMain/mnuOptionsItem_Click",
               {&needs::PodsFound},
               [](const RunTime& r) { return !r.Options.Expanded; }},
    CommandRow{Command::ExpandScreen,
               "mnuOptionsItem(1)",
               "&Expand Screen",
               "Pod icons with their stream indicators",
               "frmMain/mnuOptionsItem_Click",
               {&needs::PodsFound},
               [](const RunTime& r) { return r.Options.Expanded; }},
    CommandRow{Command::SelectAll,
               "mnuOptionsItem(3)",
               "&Select / De-Select All",
               "Select all pods, or none",
               "frmMain/mnuOptionsItem_Click",
               {&needs::PodsFound}},
    CommandRow{Command::Stream3AutoClear,
               "mnuOptionsItem(5)",
               "Stream 3 &AutoClear",
               "Leave pod texts as received",
               "frmMain/mnuOptionsItem_Click",
               {&needs::PodsFound},
               [](const RunTime& r) { return r.Poll.Stream3AutoClear; }},
    CommandRow{Command::TransmitReminder,
               "mnuTransmitRem",
               "&Transmit Config Reminder",
               "Remind to transmit after a configuration change",
               "frmMain/mnuOptionsItem_Click",
               {&needs::PodsFound},
               [](const RunTime& r) { return r.Options.TransmitReminder; }},
    CommandRow{Command::ConvertLogFile,
               "mnuUtilitiesItem(0)",
               "&Convert Log File to ASCII(.CSV) File...",
               "Make a comma-separated text of a log file",
               "frmMain/mnuUtilitiesItem_Click",
               {&needs::Configurable}},
    CommandRow{Command::PrinterSetup,
               "mnuUtilitiesItem(1)",
               "&Printer Setup...",
               "Printer and paper of the graphs",
               "frmMain/mnuUtilitiesItem_Click",
               {&needs::Configurable}},
    CommandRow{Command::Guide,
               "mnuGuide",
               "&Guide",
               "How to work with the station; F1 tells about a window",
               "frmMain/mnuGuide_Click",
               {}},
    CommandRow{Command::Keys,
               "mnuKeys",
               "&Keyboard Short Cuts",
               "What every key does",
               "frmMain/mnuKeys_Click",
               {}},
    CommandRow{Command::About,
               "mnuAbout",
               "&About KAVORIXER.",
               "Program and driver version",
               "frmMain/mnuAbout_Click",
               {}},
    CommandRow{Command::Configure,
               "",
               "",
               "",
               "",
               {&needs::PodsFound, &needs::Selection, &needs::NothingSent, &needs::Configurable}},
    CommandRow{Command::DefaultExpand, "", "", "", "", {&needs::PodsFound}},
    CommandRow{Command::ClearErrors, "", "", "", "", {&needs::PodsFound}},
};

constexpr bool in_command_order() {
    for (std::size_t i = 0; i < Rows.size(); ++i)
        if (Rows[i].id != static_cast<Command>(i + 1)) return false;
    return Rows.back().id == LastCommand;
}
static_assert(in_command_order(), "every command has its row, in the order of the enumeration");

constexpr MenuLine Separator{};

constexpr std::array ConfigLines = {
    MenuLine{Command::InterfaceCard},
    MenuLine{Command::ZavSetup},
    Separator,
    MenuLine{Command::OpenFile},
    MenuLine{Command::Save},
    MenuLine{Command::SaveAs},
    Separator,
    MenuLine{Command::TransmitConfig},
    Separator,
    MenuLine{Command::Delete},
    Separator,
    MenuLine{Command::DefaultContScan},
    Separator,
    MenuLine{Command::Exit},
};

constexpr std::array OperateLines = {
    MenuLine{Command::Trigger},
    MenuLine{Command::Halt},
    Separator,
    MenuLine{Command::ClearEventCounter},
    MenuLine{Command::EventCaptureOn},
    MenuLine{Command::EventCaptureOff},
    Separator,
    MenuLine{Command::TxCommand},
};

constexpr std::array ViewDataLines = {
    MenuLine{Command::ViewStream0},
    MenuLine{Command::ViewStream1},
    MenuLine{Command::ViewStream2},
    MenuLine{Command::ViewStream3},
};
constexpr MenuRow ViewData{"mnuViewItem(0)", "View &Data", ViewDataLines, {}};
constexpr std::array ViewLines = {MenuLine{ViewData}, MenuLine{Command::ViewStatus}};

constexpr std::array LogSetupLines = {
    MenuLine{Command::SetupScanLog},
    MenuLine{Command::SetupEventLog},
};
constexpr std::array LogStartLines = {
    MenuLine{Command::StartScanLog},
    MenuLine{Command::StartEventLog},
    MenuLine{Command::StartBothLogs},
};
constexpr std::array LogStopLines = {
    MenuLine{Command::StopScanLog},
    MenuLine{Command::StopEventLog},
    MenuLine{Command::StopBothLogs},
};
constexpr MenuRow LogSetup{"mnuLoggingItem(0)", "&Setup Log File", LogSetupLines, {}};
constexpr MenuRow LogStart{"mnuLoggingItem(1)", "S&tart Logging", LogStartLines, {}};
constexpr MenuRow LogStop{"mnuLoggingItem(2)", "St&op Logging", LogStopLines, {}};
constexpr std::array LoggingLines = {MenuLine{LogSetup}, MenuLine{LogStart}, MenuLine{LogStop}};

constexpr std::array TrendLines = {MenuLine{Command::GraphSetup}, MenuLine{Command::ViewGraph}};

constexpr std::array OptionsLines = {
    MenuLine{Command::DefaultScreen},
    MenuLine{Command::ExpandScreen},
    Separator,
    MenuLine{Command::SelectAll},
    Separator,
    MenuLine{Command::Stream3AutoClear},
    MenuLine{Command::TransmitReminder},
};

constexpr std::array UtilitiesLines = {
    MenuLine{Command::ConvertLogFile},
    MenuLine{Command::PrinterSetup},
};

constexpr std::array HelpLines = {
    MenuLine{Command::Guide},
    MenuLine{Command::Keys},
    MenuLine{Command::About},
};

constexpr std::array<MenuRow, MenuCount> Bar = {{
    {"mnuConfig", "&Config", ConfigLines, {}},
    {"mnuOperate", "&Operate", OperateLines, {&needs::PodsFound}},
    {"mnuView", "&View", ViewLines, {&needs::PodsFound, &needs::Selection}},
    {"mnuLogging", "&Logging", LoggingLines, {&needs::PodsFound}},
    {"mnuTrend", "&Graph", TrendLines, {&needs::PodsFound}},
    {"mnuOptions", "O&ptions", OptionsLines, {&needs::PodsFound}},
    {"mnuUtilities", "&Utilities", UtilitiesLines, {}},
    {"mnuHelp", "&Help", HelpLines, {}},
}};

constexpr std::array PodLines = {
    MenuLine{Command::Trigger},
    MenuLine{Command::Halt},
    Separator,
    MenuLine{Command::ZavSetup},
    MenuLine{Command::TransmitConfig},
    MenuLine{Command::DefaultContScan},
    Separator,
    MenuLine{Command::ViewStream0},
    MenuLine{Command::ViewStream1},
    MenuLine{Command::ViewStream2},
    MenuLine{Command::ViewStream3},
    MenuLine{Command::ViewStatus},
};

constexpr std::array Buttons = {
    ButtonRow{Command::Trigger, "cmdTrig", "&Trigger", "Start measurement", "frmMain/cmdTrig_Click",
              Glyph::Trigger},
    ButtonRow{Command::Halt, "cmdHalt", "&Halt", "Stop measurement", "frmMain/cmdHalt_Click",
              Glyph::Halt},
    ButtonRow{Command::TransmitConfig, "cmdTransmit", "T&ransmit", "Transmit Zav configuration",
              "frmMain/cmdTransmit_Click", Glyph::Transmit},
    ButtonRow{Command::Configure, "cmdConfig", "Co&nfig...", "Configure the Zav",
              "frmMain/cmdConfig_Click", Glyph::Configure},
    ButtonRow{Command::DefaultExpand, "cmdDefault", "&Default/Expand",
              "Hide or show the stream indicators", "frmMain/cmdDefault_Click", Glyph::Layout},
    ButtonRow{Command::SelectAll, "cmdSelectAll", "&Select/De-Select All",
              "Select all pods, or none", "frmMain/cmdSelectAll_Click", Glyph::SelectAll},
    ButtonRow{Command::ClearErrors, "cmdClear", "Cl&ear", "Put pods with errors back into service",
              "frmMain/cmdClear_Click", Glyph::Clear},
};

Conditions filled(const Needs& needs) {
    const auto end = std::find(needs.begin(), needs.end(), nullptr);
    return Conditions(needs).first(static_cast<std::size_t>(end - needs.begin()));
}

}  // namespace

Conditions CommandRow::conditions() const {
    return filled(needs);
}

Conditions MenuRow::conditions() const {
    return filled(needs);
}

std::span<const CommandRow> command_rows() {
    return Rows;
}

const CommandRow& command_row(Command command) {
    return Rows.at(static_cast<std::size_t>(command) - 1);
}

std::span<const MenuRow, MenuCount> menu_bar() {
    return Bar;
}

std::span<const MenuLine> pod_menu() {
    return PodLines;
}

std::span<const ButtonRow> buttons() {
    return Buttons;
}

bool is_available(Command command, const StationState& state) {
    return command != Command::None && all_hold(command_row(command).conditions(), state);
}

}  // namespace kavorix
