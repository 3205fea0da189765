#include "ui/availability.h"

#include <algorithm>
#include <array>

namespace kavorix {

namespace {

using State = StationState;

constexpr Condition PodsFound{"pods found", [](const State& s) { return s.operations; }};
constexpr Condition NothingSent{"nothing being sent", [](const State& s) { return !s.sending; }};
constexpr Condition SelectionStands{"no configuration being sent",
                                    [](const State& s) { return !s.config_sent; }};
constexpr Condition Configurable{"card found; not scanning; not logging",
                                 [](const State& s) { return s.configurable(); }};
// The way out of a start without a card.
constexpr Condition CardConfigurable{
    "not scanning; not logging", [](const State& s) { return s.configurable() || !s.operations; }};
constexpr Condition PodSelected{"pod selected", [](const State& s) { return s.pods_selected > 0; }};
constexpr Condition Selection{"pod or interface selected",
                              [](const State& s) { return s.selection(); }};
constexpr Condition CounterPods{"no 7R, 7S, 7T, 7U, 8S selected",
                                [](const State& s) { return s.counter_pods; }};
constexpr Condition CapturePods{"no 7R, 7S, 7T, 7U, 7V, 7W selected",
                                [](const State& s) { return s.capture_pods; }};
constexpr Condition ScanFile{"scan log set up", [](const State& s) { return s.scan_file; }};
constexpr Condition EventFile{"event log set up", [](const State& s) { return s.event_file; }};
constexpr Condition ScanLogStopped{"scan log stopped",
                                   [](const State& s) { return !s.scan_logging; }};
constexpr Condition EventLogStopped{"event log stopped",
                                    [](const State& s) { return !s.event_logging; }};
constexpr Condition ScanLogRuns{"scan log running", [](const State& s) { return s.scan_logging; }};
constexpr Condition EventLogRuns{"event log running",
                                 [](const State& s) { return s.event_logging; }};
constexpr Condition GraphSetUp{"graph set up", [](const State& s) { return s.graph_set_up; }};
constexpr Condition GraphClosed{"no graph shown", [](const State& s) { return !s.graph_shown; }};

constexpr std::size_t MostNeeds = 5;

struct Rule {
    Command command;
    std::array<const Condition*, MostNeeds> needs;  // null behind the last
};

constexpr std::array Rules = {
    Rule{Command::InterfaceCard, {&NothingSent, &CardConfigurable}},
    Rule{Command::ZavSetup, {&PodsFound, &NothingSent, &Configurable}},
    Rule{Command::OpenFile, {&NothingSent, &Configurable}},
    Rule{Command::Save, {&NothingSent, &Configurable}},
    Rule{Command::SaveAs, {&NothingSent, &Configurable}},
    Rule{Command::TransmitConfig, {&PodsFound, &Selection, &NothingSent, &Configurable}},
    Rule{Command::Delete, {&PodsFound, &Selection, &NothingSent, &Configurable}},
    Rule{Command::DefaultContScan, {&PodsFound, &Selection, &NothingSent, &Configurable}},
    Rule{Command::Exit, {}},
    Rule{Command::Trigger, {&PodsFound, &PodSelected, &NothingSent}},
    Rule{Command::Halt, {&PodsFound, &PodSelected, &NothingSent}},
    Rule{Command::ClearEventCounter, {&PodsFound, &PodSelected, &NothingSent, &CounterPods}},
    Rule{Command::EventCaptureOn, {&PodsFound, &PodSelected, &NothingSent, &CapturePods}},
    Rule{Command::EventCaptureOff, {&PodsFound, &PodSelected, &NothingSent, &CapturePods}},
    Rule{Command::TxCommand, {&PodsFound, &PodSelected, &NothingSent}},
    Rule{Command::ViewStream0, {&PodsFound, &PodSelected, &SelectionStands}},
    Rule{Command::ViewStream1, {&PodsFound, &PodSelected, &SelectionStands}},
    Rule{Command::ViewStream2, {&PodsFound, &PodSelected, &SelectionStands}},
    Rule{Command::ViewStream3, {&PodsFound, &PodSelected, &SelectionStands}},
    Rule{Command::ViewStatus, {&PodsFound, &Selection, &NothingSent}},
    Rule{Command::SetupScanLog, {&PodsFound, &ScanLogStopped, &SelectionStands}},
    Rule{Command::SetupEventLog, {&PodsFound, &EventLogStopped, &SelectionStands}},
    Rule{Command::StartScanLog, {&PodsFound, &ScanFile, &ScanLogStopped}},
    Rule{Command::StartEventLog, {&PodsFound, &EventFile, &EventLogStopped}},
    Rule{Command::StartBothLogs,
         {&PodsFound, &ScanFile, &ScanLogStopped, &EventFile, &EventLogStopped}},
    Rule{Command::StopScanLog, {&ScanLogRuns}},
    Rule{Command::StopEventLog, {&EventLogRuns}},
    Rule{Command::StopBothLogs, {&ScanLogRuns, &EventLogRuns}},
    Rule{Command::GraphSetup, {&PodsFound, &PodSelected, &GraphClosed, &SelectionStands}},
    Rule{Command::ViewGraph,
         {&PodsFound, &PodSelected, &GraphSetUp, &GraphClosed, &SelectionStands}},
    Rule{Command::DefaultScreen, {&PodsFound}},
    Rule{Command::ExpandScreen, {&PodsFound}},
    Rule{Command::SelectAll, {&PodsFound}},
    Rule{Command::Stream3AutoClear, {&PodsFound}},
    Rule{Command::TransmitReminder, {&PodsFound}},
    Rule{Command::ConvertLogFile, {&Configurable}},
    Rule{Command::PrinterSetup, {&Configurable}},
    Rule{Command::Guide, {}},
    Rule{Command::Keys, {}},
    Rule{Command::About, {}},
    Rule{Command::Configure, {&PodsFound, &Selection, &NothingSent, &Configurable}},
    Rule{Command::DefaultExpand, {&PodsFound}},
    Rule{Command::ClearErrors, {&PodsFound}},
};

constexpr bool in_command_order() {
    for (std::size_t i = 0; i < Rules.size(); ++i)
        if (Rules[i].command != static_cast<Command>(i + 1)) return false;
    return Rules.back().command == LastCommand;
}
static_assert(in_command_order(), "every command has its rule, in the order of the enumeration");

struct MenuRule {
    std::string_view menu;
    std::array<const Condition*, MostNeeds> needs;
};

// The other menus can always be opened.
constexpr std::array MenuRules = {
    MenuRule{"mnuOperate", {&PodsFound}}, MenuRule{"mnuView", {&PodsFound, &Selection}},
    MenuRule{"mnuLogging", {&PodsFound}}, MenuRule{"mnuTrend", {&PodsFound}},
    MenuRule{"mnuOptions", {&PodsFound}},
};

Conditions filled(const std::array<const Condition*, MostNeeds>& needs) {
    const auto end = std::find(needs.begin(), needs.end(), nullptr);
    return Conditions(needs).first(static_cast<std::size_t>(end - needs.begin()));
}

}  // namespace

Conditions needs(Command command) {
    if (command == Command::None) return {};
    return filled(Rules[static_cast<std::size_t>(command) - 1].needs);
}

Conditions menu_needs(std::string_view menu) {
    for (const MenuRule& rule : MenuRules)
        if (rule.menu == menu) return filled(rule.needs);
    return {};
}

bool all_hold(Conditions conditions, const StationState& state) {
    return std::all_of(conditions.begin(), conditions.end(),
                       [&](const Condition* condition) { return condition->holds(state); });
}

bool is_available(Command command, const StationState& state) {
    return command != Command::None && all_hold(needs(command), state);
}

StationState station_state(const RunTime& run_time) {
    const LinkState& link = run_time.Link;
    StationState state;
    state.operations = link.OperationsEnabled == 1;
    state.pods_selected = link.NumSelected;
    state.interface_selected = link.InterfaceSelected == 1;
    state.counter_pods = true;
    state.capture_pods = true;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (link.ZavSelected[at(pod)] != 1) continue;
        const std::string_view code = run_time.Status[at(pod)].type_code();
        const bool analog = code == "7R" || code == "7S" || code == "7T" || code == "7U";
        const bool universal = code == "7V" || code == "7W";
        if (analog || code == "8S") state.counter_pods = false;
        if (analog || universal) state.capture_pods = false;
    }
    state.scan_file = !run_time.Log.ScanFileName.empty();
    state.event_file = !run_time.Log.EventFileName.empty();
    state.scan_logging = run_time.Log.ScanLogging == 1;
    state.event_logging = run_time.Log.EventLogging == 1;
    state.graph_set_up = run_time.Graph.GraphsSetUp == 1;
    state.graph_shown = run_time.Graph.TrendRunning == 1;
    return state;
}

}  // namespace kavorix
