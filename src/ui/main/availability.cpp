#include "ui/main/availability.h"

#include <algorithm>

namespace kavorix {

bool ConfigItems(const RunTime& run_time) {
    const LinkState& link = run_time.Link;
    if (!link.OperationsEnabled) return link.Card != CardSearch::NoneFound;
    return !link.ContScanning && !run_time.Log.running();
}

bool all_hold(Conditions conditions, const StationState& state) {
    return std::all_of(conditions.begin(), conditions.end(),
                       [&](const Condition* condition) { return condition->holds(state); });
}

StationState station_state(const RunTime& run_time) {
    const LinkState& link = run_time.Link;
    StationState state;
    state.operations = link.OperationsEnabled;
    state.config_commands = ConfigItems(run_time);
    state.sending = link.Sending > 0;
    state.pods_selected = link.NumSelected();
    state.interface_selected = link.InterfaceSelected;
    state.counter_pods = true;
    state.capture_pods = true;
    for (const Pod pod : link.ZavSelected) {
        const std::string_view code = run_time.Status[pod].type_code();
        const bool analog = code == "7R" || code == "7S" || code == "7T" || code == "7U";
        const bool universal = code == "7V" || code == "7W";
        if (analog || code == "8S") state.counter_pods = false;
        if (analog || universal) state.capture_pods = false;
    }
    state.scan_file = !run_time.Log.ScanFileName.empty();
    state.event_file = !run_time.Log.EventFileName.empty();
    state.scan_logging = run_time.Log.ScanLogging;
    state.event_logging = run_time.Log.EventLogging;
    state.graph_set_up = run_time.Graph.GraphsSetUp;
    state.graph_shown = run_time.Graph.TrendRunning;
    return state;
}

}  // namespace kavorix
