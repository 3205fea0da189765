#include "ui/main/availability.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "support/ui_rig.h"

namespace kavorix {
namespace {

using enum Command;
using Commands = std::set<Command>;

// The control names of commands, for messages.
std::string names(const Commands& commands) {
    std::string text;
    for (const Command command : commands) {
        text += std::string(command_row(command).name) + " ";
        for (const ButtonRow& button : buttons())
            if (button.id == command) text += std::string(button.name) + " ";
    }
    return text;
}

bool view_menu_available(const StationState& state) {
    return all_hold(menu_bar()[2].conditions(), state);
}

Commands available_in(const StationState& state) {
    Commands commands;
    for (int i = 0; i <= static_cast<int>(LastCommand); ++i)
        if (is_available(static_cast<Command>(i), state)) commands.insert(static_cast<Command>(i));
    return commands;
}

Commands operator+(Commands a, const Commands& b) {
    a.insert(b.begin(), b.end());
    return a;
}

const Commands Always = {Exit, Guide, Keys, About};
const Commands Files = {OpenFile, Save, SaveAs};
const Commands Utilities = {ConvertLogFile, PrinterSetup};
const Commands Setups = {InterfaceCard, ZavSetup};
const Commands PodConfiguration = {TransmitConfig, Delete, DefaultContScan, Configure};
const Commands Options = {DefaultScreen,    ExpandScreen,  SelectAll,  Stream3AutoClear,
                          TransmitReminder, DefaultExpand, ClearErrors};
const Commands LogSetups = {SetupScanLog, SetupEventLog};
const Commands Sending = {Trigger, Halt, TxCommand};
const Commands Events = {ClearEventCounter, EventCaptureOn, EventCaptureOff};
const Commands Views = {ViewStream0, ViewStream1, ViewStream2, ViewStream3};
const Commands WithoutSelection = Always + Files + Utilities + Setups + Options + LogSetups;
const Commands WithPod = WithoutSelection + PodConfiguration + Sending + Events + Views +
                         Commands{ViewStatus, GraphSetup};

struct Row {
    const char* what;
    std::function<void(StationState&)> change;  // to a connected station with an 8R pod selected
    Commands available;
    bool view_menu;
};

Commands without(Commands all, const Commands& some) {
    for (const Command command : some) all.erase(command);
    return all;
}

TEST(Availability, EveryStateHasItsCommands) {
    const Row rows[] = {
        {"a pod selected", [](StationState&) {}, WithPod, true},
        {"no card", [](StationState& s) { s = {}; }, Always + Commands{InterfaceCard}, false},
        {"a card without pods",
         [](StationState& s) {
             s = {};
             s.config_commands = true;
         },
         Always + Files + Utilities + Commands{InterfaceCard}, false},
        {"nothing selected", [](StationState& s) { s.pods_selected = 0; }, WithoutSelection, false},
        {"the interface selected",
         [](StationState& s) {
             s.pods_selected = 0;
             s.interface_selected = true;
         },
         WithoutSelection + PodConfiguration + Commands{ViewStatus}, true},
        {"scanning continuously", [](StationState& s) { s.config_commands = false; },
         without(WithPod, Files + Utilities + Setups + PodConfiguration), true},
        {"sending", [](StationState& s) { s.sending = true; },
         without(WithPod,
                 Files + Setups + PodConfiguration + Sending + Events + Commands{ViewStatus}),
         true},
        {"a pod without event counters", [](StationState& s) { s.counter_pods = false; },
         without(WithPod, {ClearEventCounter}), true},
        {"a pod without event capture", [](StationState& s) { s.capture_pods = false; },
         without(WithPod, {EventCaptureOn, EventCaptureOff}), true},
        {"a scan log set up", [](StationState& s) { s.scan_file = true; },
         WithPod + Commands{StartScanLog}, true},
        {"both logs set up", [](StationState& s) { s.scan_file = s.event_file = true; },
         WithPod + Commands{StartScanLog, StartEventLog, StartBothLogs}, true},
        {"the scan log runs",
         [](StationState& s) { s.scan_file = s.event_file = s.scan_logging = true; },
         without(WithPod, Files + Utilities + Setups + PodConfiguration + Commands{SetupScanLog}) +
             Commands{StartEventLog, StopScanLog},
         true},
        {"both logs run",
         [](StationState& s) {
             s.scan_file = s.event_file = s.scan_logging = s.event_logging = true;
         },
         without(WithPod, Files + Utilities + Setups + PodConfiguration + LogSetups) +
             Commands{StopScanLog, StopEventLog, StopBothLogs},
         true},
        {"a graph set up", [](StationState& s) { s.graph_set_up = true; },
         WithPod + Commands{ViewGraph}, true},
        {"the graph shown", [](StationState& s) { s.graph_set_up = s.graph_shown = true; },
         without(WithPod, {GraphSetup}), true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        StationState state;
        state.operations = state.config_commands = true;
        state.pods_selected = 1;
        state.counter_pods = state.capture_pods = true;
        row.change(state);
        EXPECT_EQ(names(available_in(state)), names(row.available));
        EXPECT_EQ(view_menu_available(state), row.view_menu);
    }
}

// What holds in every one of the states that the flags can form.
TEST(Availability, HoldsItsPromisesInEveryState) {
    for (int bits = 0; bits < 1 << 13; ++bits) {
        const auto bit = [&](int n) { return (bits >> n & 1) != 0; };
        StationState s;
        s.operations = bit(0);
        s.config_commands = bit(1);
        s.sending = bit(2);
        s.pods_selected = bit(3) ? 2 : 0;
        s.interface_selected = bit(4);
        s.counter_pods = bit(5);
        s.capture_pods = bit(6);
        s.scan_file = bit(7);
        s.event_file = bit(8);
        s.scan_logging = bit(9);
        s.event_logging = bit(10);
        s.graph_set_up = bit(11);
        s.graph_shown = bit(12);
        const Commands commands = available_in(s);
        const auto some_of = [&](const Commands& some) {
            return std::any_of(some.begin(), some.end(),
                               [&](Command command) { return commands.contains(command); });
        };
        ASSERT_FALSE(commands.contains(None));
        ASSERT_TRUE(commands.contains(Exit) && commands.contains(About));
        ASSERT_FALSE(s.sending && some_of(Sending + Events + PodConfiguration + Setups + Files));
        ASSERT_FALSE(!s.config_commands && some_of(PodConfiguration + Files + Utilities));
        ASSERT_FALSE(!s.config_commands && s.operations && some_of(Setups));
        ASSERT_FALSE(s.operations && (s.scan_logging || s.event_logging) &&
                     some_of(PodConfiguration + Files + Utilities + Setups));
        ASSERT_FALSE(s.pods_selected < 1 && some_of(Sending + Events + Views));
        ASSERT_FALSE(!s.selection() && some_of(PodConfiguration + Commands{ViewStatus}));
        ASSERT_FALSE(!s.operations &&
                     some_of(Sending + Events + Views + PodConfiguration + Options + LogSetups));
        ASSERT_FALSE(!s.operations && view_menu_available(s));
        // The way out of a start without a card.
        ASSERT_TRUE(s.operations || s.sending || commands.contains(InterfaceCard));
    }
}

struct TypeRow {
    std::vector<const char*> types;  // of the selected pods
    bool counter;
    bool capture;
};

TEST(StationStateOf, TheTypesOfTheSelectedPodsDecideAboutEvents) {
    const TypeRow rows[] = {
        {{}, true, true},
        {{"7R"}, false, false},
        {{"7S"}, false, false},
        {{"7T"}, false, false},
        {{"7U"}, false, false},
        {{"7V"}, true, false},
        {{"7W"}, true, false},
        {{"8R"}, true, true},
        {{"8S"}, false, true},
        {{"7X"}, true, true},
        {{"NC"}, true, true},
        {{"8R", "8S"}, false, true},
        {{"8R", "7V"}, true, false},
        {{"8S", "7V"}, false, false},
        {{"8R", "7R"}, false, false},
    };
    for (const TypeRow& row : rows) {
        RunTime run_time;
        std::copy_n("7R", 2, run_time.Status[40].Ident.begin());  // not selected
        for (std::size_t i = 0; i < row.types.size(); ++i) {
            std::copy_n(row.types[i], 2, run_time.Status[i].Ident.begin());
            run_time.Link.ZavSelected.add(Pod::at_index(static_cast<int>(i)));
        }
        EXPECT_EQ(station_state(run_time).counter_pods, row.counter);
        EXPECT_EQ(station_state(run_time).capture_pods, row.capture);
    }
}

TEST(ConfigItems, AreOffWithoutACardAndWhileSomethingRuns) {
    struct Case {
        const char* what;
        std::function<void(RunTime&)> change;  // to a station with pods at rest
        bool on;
    };
    for (const Case& row : {
             Case{"at rest", [](RunTime&) {}, true},
             Case{"scanning", [](RunTime& r) { r.Link.ContScanning = true; }, false},
             Case{"scan log", [](RunTime& r) { r.Log.ScanLogging = true; }, false},
             Case{"event log", [](RunTime& r) { r.Log.EventLogging = true; }, false},
             Case{"before the search", [](RunTime& r) { r.Link = {}; }, true},
             Case{"card without pods",
                  [](RunTime& r) {
                      r.Link = {};
                      r.Link.Card = CardSearch::Found;
                  },
                  true},
             Case{"no card",
                  [](RunTime& r) {
                      r.Link = {};
                      r.Link.Card = CardSearch::NoneFound;
                  },
                  false},
         }) {
        RunTime run_time;
        run_time.Link.OperationsEnabled = true;
        row.change(run_time);
        EXPECT_EQ(ConfigItems(run_time), row.on) << row.what;
    }
}

TEST(AvailabilityOnScreen, WithoutACardOnlyTheInterfaceCanBeSet) {
    test::UiRig rig;
    for (int i = 1; i <= static_cast<int>(LastCommand); ++i)
        rig.main_window.on(static_cast<Command>(i), [] {});
    rig.discovery.Form_Load(rig.files, "/station/KAVORIX.INI");
    Commands commands;
    for (int i = 0; i <= static_cast<int>(LastCommand); ++i)
        if (rig.main_window.available(static_cast<Command>(i)))
            commands.insert(static_cast<Command>(i));
    EXPECT_EQ(names(commands), names(Always + Commands{InterfaceCard}));
}

}  // namespace
}  // namespace kavorix
