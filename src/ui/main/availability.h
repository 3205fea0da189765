#pragma once

// What decides whether a command can be used, in the state that the station is in.

#include <span>
#include <string_view>

#include "model/runtime.h"

namespace kavorix {

// What decides about availability.
struct StationState {
    bool operations = false;       // pods were found
    bool config_commands = false;  // ConfigItems() of the state
    bool sending = false;          // work that talks to the pods is under way
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

StationState station_state(const RunTime& run_time);

// Whether the configuration commands are enabled: not while scanning or logging, nor after a search
// that found no card.
bool ConfigItems(const RunTime& run_time);

// One thing that must be so.
struct Condition {
    std::string_view text;  // in the words of the user guide
    bool (*holds)(const StationState&);
};

// All of them must hold; none: always.
using Conditions = std::span<const Condition* const>;

bool all_hold(Conditions conditions, const StationState& state);

namespace needs {

using State = StationState;

inline constexpr Condition PodsFound{"pods found", [](const State& s) { return s.operations; }};
inline constexpr Condition NothingSent{"nothing being sent",
                                       [](const State& s) { return !s.sending; }};
inline constexpr Condition Configurable{"card found; not scanning; not logging",
                                        [](const State& s) { return s.configurable(); }};
// The way out of a start without a card.
inline constexpr Condition CardConfigurable{
    "not scanning; not logging", [](const State& s) { return s.configurable() || !s.operations; }};
inline constexpr Condition PodSelected{"pod selected",
                                       [](const State& s) { return s.pods_selected > 0; }};
inline constexpr Condition Selection{"pod or interface selected",
                                     [](const State& s) { return s.selection(); }};
inline constexpr Condition CounterPods{"no 7R, 7S, 7T, 7U, 8S selected",
                                       [](const State& s) { return s.counter_pods; }};
inline constexpr Condition CapturePods{"no 7R, 7S, 7T, 7U, 7V, 7W selected",
                                       [](const State& s) { return s.capture_pods; }};
inline constexpr Condition ScanFile{"scan log set up", [](const State& s) { return s.scan_file; }};
inline constexpr Condition EventFile{"event log set up",
                                     [](const State& s) { return s.event_file; }};
inline constexpr Condition ScanLogStopped{"scan log stopped",
                                          [](const State& s) { return !s.scan_logging; }};
inline constexpr Condition EventLogStopped{"event log stopped",
                                           [](const State& s) { return !s.event_logging; }};
inline constexpr Condition ScanLogRuns{"scan log running",
                                       [](const State& s) { return s.scan_logging; }};
inline constexpr Condition EventLogRuns{"event log running",
                                        [](const State& s) { return s.event_logging; }};
inline constexpr Condition GraphSetUp{"graph set up",
                                      [](const State& s) { return s.graph_set_up; }};
inline constexpr Condition GraphClosed{"no graph shown",
                                       [](const State& s) { return !s.graph_shown; }};

}  // namespace needs

}  // namespace kavorix
