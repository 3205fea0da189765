#pragma once

// Which commands can be used in which state of the station: one table, for buttons, menus and menu
// items alike. The user guide prints the same table (docs/commands.md).

#include <span>
#include <string_view>

#include "model/runtime.h"
#include "ui/commands.h"

namespace kavorix {

// What decides about availability.
struct StationState {
    bool operations = false;       // pods were found
    bool config_commands = false;  // not switched off by ConfigItems(0)
    bool sending = false;          // a transmission is under way
    bool config_sent = false;      // of configurations: the selection names the pod it goes to
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
    // Configuration commands can be used: no card is missing, nothing scans or logs.
    bool configurable() const { return config_commands && !scan_logging && !event_logging; }
};

// One thing that must be so.
struct Condition {
    std::string_view text;  // in the words of the user guide
    bool (*holds)(const StationState&);
};

// All of them must hold; none: always.
using Conditions = std::span<const Condition* const>;

// What a command needs to be available. Command::None needs nothing.
Conditions needs(Command command);

// What a menu of the bar needs to be opened, by its control name, for example "mnuOperate".
Conditions menu_needs(std::string_view menu);

bool all_hold(Conditions conditions, const StationState& state);

// False for Command::None.
bool is_available(Command command, const StationState& state);

// The state as the run-time records tell it; `config_commands` and `sending` are the caller's to
// set.
StationState station_state(const RunTime& run_time);

}  // namespace kavorix
