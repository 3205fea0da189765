#pragma once

// Which commands can be used in which state of the station: one table, for buttons and menu items
// alike.

#include "model/runtime.h"
#include "ui/commands.h"

namespace kavorix {

// What decides about availability.
struct StationState {
    bool operations =
        false;  // pods were found; without them only the interface settings, About and Exit
    bool config_commands =
        false;             // configuration commands are not switched off by scanning or logging
    bool sending = false;  // a transmission is under way
    int pods_selected = 0;
    bool interface_selected = false;
    bool counter_pods = false;  // every selected pod can have its event counters cleared
    bool capture_pods = false;  // every selected pod can capture events
    bool scan_file = false;     // a scan log file is set up
    bool event_file = false;
    bool scan_logging = false;
    bool event_logging = false;
    bool graph_set_up = false;  // the graph set-up last accepted has a channel
    bool graph_shown = false;

    bool selection() const { return pods_selected > 0 || interface_selected; }
};

// The state as the run-time records tell it; `config_commands` and `sending` are the caller's to
// set.
StationState station_state(const RunTime& run_time);

bool is_available(Command command, const StationState& state);

// Whether the menus of the bar that open at all only with pods can be opened: Operate, View,
// Logging, Graph, Options.
bool view_menu_available(const StationState& state);

}  // namespace kavorix
