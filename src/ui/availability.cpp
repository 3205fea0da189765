#include "ui/availability.h"

#include <algorithm>
#include <array>

namespace kavorix {

namespace {

struct Rule {
    Command command;
    bool (*available)(const StationState&);
};

// Configuration commands that send nothing and need no pod.
constexpr auto Settings = [](const StationState& s) { return s.config_commands && !s.sending; };
// Those that act on the selected pods.
constexpr auto PodSettings = [](const StationState& s) {
    return s.operations && s.config_commands && !s.sending && s.selection();
};
constexpr auto Send = [](const StationState& s) {
    return s.operations && !s.sending && s.pods_selected > 0;
};
constexpr auto View = [](const StationState& s) { return s.operations && s.pods_selected > 0; };
constexpr auto Always = [](const StationState&) { return true; };
constexpr auto WithPods = [](const StationState& s) { return s.operations; };

constexpr std::array Rules = {
    // Usable without pods whatever else is switched off: the way out of a start without a card.
    Rule{Command::InterfaceCard,
         [](const StationState& s) { return !s.sending && (s.config_commands || !s.operations); }},
    Rule{Command::ZavSetup,
         [](const StationState& s) { return s.operations && s.config_commands && !s.sending; }},
    Rule{Command::OpenFile, Settings},
    Rule{Command::Save, Settings},
    Rule{Command::SaveAs, Settings},
    Rule{Command::TransmitConfig, PodSettings},
    Rule{Command::Delete, PodSettings},
    Rule{Command::DefaultContScan, PodSettings},
    Rule{Command::Exit, Always},
    Rule{Command::Trigger, Send},
    Rule{Command::Halt, Send},
    Rule{Command::ClearEventCounter,
         [](const StationState& s) { return Send(s) && s.counter_pods; }},
    Rule{Command::EventCaptureOn, [](const StationState& s) { return Send(s) && s.capture_pods; }},
    Rule{Command::EventCaptureOff, [](const StationState& s) { return Send(s) && s.capture_pods; }},
    Rule{Command::TxCommand, Send},
    Rule{Command::ViewStream0, View},
    Rule{Command::ViewStream1, View},
    Rule{Command::ViewStream2, View},
    Rule{Command::ViewStream3, View},
    Rule{Command::ViewStatus,
         [](const StationState& s) { return s.operations && !s.sending && s.selection(); }},
    Rule{Command::SetupScanLog,
         [](const StationState& s) { return s.operations && !s.scan_logging; }},
    Rule{Command::SetupEventLog,
         [](const StationState& s) { return s.operations && !s.event_logging; }},
    Rule{Command::StartScanLog,
         [](const StationState& s) { return s.operations && s.scan_file && !s.scan_logging; }},
    Rule{Command::StartEventLog,
         [](const StationState& s) { return s.operations && s.event_file && !s.event_logging; }},
    Rule{Command::StartBothLogs,
         [](const StationState& s) {
             return s.operations && s.scan_file && !s.scan_logging && s.event_file &&
                    !s.event_logging;
         }},
    Rule{Command::StopScanLog, [](const StationState& s) { return s.scan_logging; }},
    Rule{Command::StopEventLog, [](const StationState& s) { return s.event_logging; }},
    Rule{Command::StopBothLogs,
         [](const StationState& s) { return s.scan_logging && s.event_logging; }},
    Rule{Command::GraphSetup,
         [](const StationState& s) {
             return s.operations && s.pods_selected > 0 && !s.graph_shown;
         }},
    Rule{Command::ViewGraph,
         [](const StationState& s) {
             return s.operations && s.pods_selected > 0 && s.graph_set_up && !s.graph_shown;
         }},
    Rule{Command::DefaultScreen, WithPods},
    Rule{Command::ExpandScreen, WithPods},
    Rule{Command::SelectAll, WithPods},
    Rule{Command::Stream3AutoClear, WithPods},
    Rule{Command::TransmitReminder, WithPods},
    Rule{Command::ConvertLogFile, [](const StationState& s) { return s.config_commands; }},
    Rule{Command::PrinterSetup, [](const StationState& s) { return s.config_commands; }},
    Rule{Command::About, Always},
};

constexpr bool in_command_order() {
    for (std::size_t i = 0; i < Rules.size(); ++i)
        if (Rules[i].command != static_cast<Command>(i + 1)) return false;
    return Rules.back().command == Command::About;
}
static_assert(in_command_order(), "every command has its rule, in the order of the enumeration");

}  // namespace

bool is_available(Command command, const StationState& state) {
    return command != Command::None &&
           Rules[static_cast<std::size_t>(command) - 1].available(state);
}

bool view_menu_available(const StationState& state) {
    return state.operations && state.selection();
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
