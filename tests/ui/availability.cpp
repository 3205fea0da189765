#include "ui/availability.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

// The states of the tables below, a column each.
std::vector<StationState> example_states() {
    const StationState no_card;
    StationState no_pods;
    no_pods.config_commands = true;
    StationState pods = no_pods;
    pods.operations = true;
    StationState interface = pods;
    interface.interface_selected = true;
    StationState one_8r = pods;
    one_8r.pods_selected = 1;
    one_8r.counter_pods = one_8r.capture_pods = true;
    StationState with_7v = one_8r;
    with_7v.pods_selected = 2;
    with_7v.capture_pods = false;
    StationState one_7r = with_7v;
    one_7r.pods_selected = 1;
    one_7r.counter_pods = false;
    StationState scanning = one_8r;
    scanning.config_commands = false;
    StationState sending = one_8r;
    sending.sending = true;
    StationState files_set = one_8r;
    files_set.scan_file = files_set.event_file = files_set.graph_set_up = true;
    StationState scan_log = files_set;
    scan_log.scan_logging = true;
    scan_log.graph_set_up = false;
    StationState both_logs = scan_log;
    both_logs.event_logging = true;
    StationState graph = one_8r;
    graph.graph_set_up = graph.graph_shown = true;
    return {no_card,  no_pods, pods,      interface, one_8r,    with_7v, one_7r,
            scanning, sending, files_set, scan_log,  both_logs, graph};
}

std::string over_states(Conditions conditions) {
    std::string marks;
    for (const StationState& state : example_states())
        marks += all_hold(conditions, state) ? '+' : '.';
    return marks;
}

struct CommandRow {
    Command command;
    std::string marks;
};

const std::vector<CommandRow> CommandRows = {
    //                             no card
    //                             |no pods
    //                             ||pods, none selected
    //                             |||interface selected
    //                             ||||an 8R pod selected
    //                             |||||a 7V and an 8R pod
    //                             ||||||a 7R pod
    //                             |||||||8R, scanning continuously
    //                             ||||||||8R, sending
    //                             |||||||||8R, log files and graph set up
    //                             ||||||||||8R, scan log runs
    //                             |||||||||||8R, both logs run
    //                             ||||||||||||8R, graph shown
    {Command::InterfaceCard, "+++++++..+..+"},
    {Command::ZavSetup, "..+++++..+..+"},
    {Command::OpenFile, ".++++++..+..+"},
    {Command::Save, ".++++++..+..+"},
    {Command::SaveAs, ".++++++..+..+"},
    {Command::TransmitConfig, "...++++..+..+"},
    {Command::Delete, "...++++..+..+"},
    {Command::DefaultContScan, "...++++..+..+"},
    {Command::Exit, "+++++++++++++"},
    {Command::Trigger, "....++++.++++"},
    {Command::Halt, "....++++.++++"},
    {Command::ClearEventCounter, "....++.+.++++"},
    {Command::EventCaptureOn, "....+..+.++++"},
    {Command::EventCaptureOff, "....+..+.++++"},
    {Command::TxCommand, "....++++.++++"},
    {Command::ViewStream0, "....+++++++++"},
    {Command::ViewStream1, "....+++++++++"},
    {Command::ViewStream2, "....+++++++++"},
    {Command::ViewStream3, "....+++++++++"},
    {Command::ViewStatus, "...+++++.++++"},
    {Command::SetupScanLog, "..++++++++..+"},
    {Command::SetupEventLog, "..+++++++++.+"},
    {Command::StartScanLog, ".........+..."},
    {Command::StartEventLog, ".........++.."},
    {Command::StartBothLogs, ".........+..."},
    {Command::StopScanLog, "..........++."},
    {Command::StopEventLog, "...........+."},
    {Command::StopBothLogs, "...........+."},
    {Command::GraphSetup, "....++++++++."},
    {Command::ViewGraph, ".........+..."},
    {Command::DefaultScreen, "..+++++++++++"},
    {Command::ExpandScreen, "..+++++++++++"},
    {Command::SelectAll, "..+++++++++++"},
    {Command::Stream3AutoClear, "..+++++++++++"},
    {Command::TransmitReminder, "..+++++++++++"},
    {Command::ConvertLogFile, ".++++++.++..+"},
    {Command::PrinterSetup, ".++++++.++..+"},
    {Command::About, "+++++++++++++"},
    {Command::Configure, "...++++..+..+"},
    {Command::DefaultExpand, "..+++++++++++"},
    {Command::ClearErrors, "..+++++++++++"},
};

TEST(Availability, OfEveryCommandInExampleStates) {
    ASSERT_EQ(CommandRows.size(), static_cast<std::size_t>(LastCommand));
    for (const auto& [command, marks] : CommandRows)
        EXPECT_EQ(over_states(needs(command)), marks) << "command " << static_cast<int>(command);
}

TEST(Availability, OfTheMenus) {
    const std::map<std::string_view, std::string> marks = {{"mnuOperate", "..+++++++++++"},
                                                           {"mnuView", "...++++++++++"},
                                                           {"mnuLogging", "..+++++++++++"},
                                                           {"mnuTrend", "..+++++++++++"},
                                                           {"mnuOptions", "..+++++++++++"}};
    for (const MenuEntry& menu : menu_bar()) {
        const auto found = marks.find(menu.name);
        EXPECT_EQ(over_states(menu_needs(menu.name)),
                  found == marks.end() ? "+++++++++++++" : found->second)
            << menu.name;
    }
}

// Every state that there can be.
template <class Visit>
void each_state(Visit&& visit) {
    for (unsigned bits = 0; bits < 1U << 12U; ++bits)
        for (int pods = 0; pods <= 2; ++pods) {
            const auto bit = [&](unsigned n) { return (bits >> n & 1U) != 0; };
            visit(StationState{bit(0), bit(1), bit(2), pods, bit(3), bit(4), bit(5), bit(6), bit(7),
                               bit(8), bit(9), bit(10), bit(11)});
        }
}

std::vector<Command> available_commands(const StationState& state) {
    std::vector<Command> commands;
    for (int i = 1; i <= static_cast<int>(LastCommand); ++i)
        if (is_available(static_cast<Command>(i), state))
            commands.push_back(static_cast<Command>(i));
    return commands;
}

bool contains(const std::vector<Command>& commands, std::initializer_list<Command> any_of) {
    return std::find_first_of(commands.begin(), commands.end(), any_of.begin(), any_of.end()) !=
           commands.end();
}

// Rules that hold in every state whatsoever.
TEST(Availability, KeepsItsRulesInEveryState) {
    using enum Command;
    each_state([&](const StationState& state) {
        const auto commands = available_commands(state);
        const auto never = [&](bool in_this_state, std::initializer_list<Command> these) {
            EXPECT_FALSE(in_this_state && contains(commands, these));
        };
        EXPECT_TRUE(contains(commands, {Exit}) && contains(commands, {About}));
        never(!state.operations, {Trigger, Halt, TxCommand, ViewStream0, ViewStatus, SelectAll,
                                  Delete, GraphSetup, Configure});
        never(state.sending, {InterfaceCard, ZavSetup, OpenFile, Save, SaveAs, TransmitConfig,
                              Delete, DefaultContScan, Trigger, Halt, ClearEventCounter,
                              EventCaptureOn, EventCaptureOff, TxCommand, ViewStatus, Configure});
        never(state.pods_selected < 1,
              {Trigger, Halt, ClearEventCounter, EventCaptureOn, EventCaptureOff, TxCommand,
               ViewStream0, ViewStream1, ViewStream2, ViewStream3});
        never(!state.selection(), {Configure, TransmitConfig, Delete, DefaultContScan, ViewStatus});
        never(state.operations && (state.scan_logging || state.event_logging),
              {InterfaceCard, ZavSetup, OpenFile, Save, SaveAs, TransmitConfig, Delete,
               DefaultContScan, Configure, ConvertLogFile, PrinterSetup});
    });
}

class OperationsState : public testing::Test, public UiRig {};

// The types of the selected pods decide about three items of the Operate menu.
TEST_F(OperationsState, FollowsTheTypesOfTheSelectedPods) {
    struct TypeRow {
        std::vector<std::string> types;
        std::string items;  // Clear Event Counter, Event Capture ON, OFF
    };
    for (const auto& [types, items] : std::vector<TypeRow>{{{"7R"}, "..."},
                                                           {{"7S"}, "..."},
                                                           {{"7T"}, "..."},
                                                           {{"7U"}, "..."},
                                                           {{"7V"}, "+.."},
                                                           {{"7W"}, "+.."},
                                                           {{"8R"}, "+++"},
                                                           {{"8S"}, ".++"},
                                                           {{"7X"}, "+++"},
                                                           {{"8R", "8S"}, ".++"},
                                                           {{"7V", "8S"}, "..."},
                                                           {{"7W", "8R"}, "+.."},
                                                           {{"8R", "7R"}, "..."}}) {
        UiRig rig;
        std::vector<PodAt> pods = {{50, "7RAA 0F 1.00"}};  // not selected, does not matter
        std::vector<int> numbers;
        for (const std::string& type : types) {
            numbers.push_back(static_cast<int>(pods.size()));
            pods.push_back({numbers.back(), type + "AA 0F 1.00"});
        }
        rig.station(pods);
        rig.click(numbers);
        rig.operations.mnuOperate_Click();
        std::string enabled;
        for (const std::size_t item : {3U, 4U, 5U})
            enabled += rig.screen.mnuOperateItem[item].enabled ? '+' : '.';
        EXPECT_EQ(enabled, items) << types.front();
    }
}

// The records show what the table says, for the commands that something was given to do.
TEST_F(OperationsState, IsShownOnButtonsAndMenus) {
    station({{3, "8RCA 0F 1.00"}});
    operations.on(Command::ZavSetup, [] {});
    const auto shown = [&] {
        std::string text;
        for (const ButtonEntry& entry : buttons())
            text += (screen.*entry.button).enabled ? '+' : '.';
        text += ' ';
        for (const MenuEntry& menu : menu_bar()) text += menu.item(screen).enabled ? '+' : '.';
        return text;
    };
    //         buttons: Trigger, Halt, Transmit, Config, Default, Select, Clear
    //                 menus: Config, Operate, View, Logging, Graph, Options, Utilities, Help
    EXPECT_EQ(shown(), "....+++ ++.+++++");
    operations.img_4A_Click();
    EXPECT_EQ(shown(), "..+++++ ++++++++");
    click({3});
    EXPECT_EQ(shown(), "+++++++ ++++++++");
    EXPECT_TRUE(screen.mnuConfigItem[1].enabled);
    EXPECT_FALSE(screen.mnuConfigItem[0].enabled) << "was given nothing to do";
    operations.ConfigItems(0);
    EXPECT_EQ(shown(), "++..+++ ++++++++");
    EXPECT_FALSE(screen.mnuConfigItem[1].enabled);
    operations.ConfigItems(1);
    EXPECT_EQ(shown(), "+++++++ ++++++++");
    loop.call_later(100, [&] { EXPECT_EQ(shown(), "....+++ ++++++++"); });
    operations.send("RE;");
    EXPECT_EQ(shown(), "+++++++ ++++++++");
}

TEST_F(OperationsState, HaltWhileALogRunsLeavesTheConfigurationAlone) {
    station({{3, "8RCA 0F 1.00"}});
    click({3});
    for (std::int16_t* logging : {&run_time.Log.ScanLogging, &run_time.Log.EventLogging}) {
        config(3).ContScan = 1;
        operations.cmdTrig_Click();
        EXPECT_FALSE(operations.available(Command::Delete)) << "scanning";
        *logging = 1;
        operations.cmdHalt_Click();
        EXPECT_FALSE(operations.available(Command::Delete)) << "logging";
        *logging = 0;
        operations.CheckItems();
        EXPECT_TRUE(operations.available(Command::Delete));
    }
}

// The user guide has the same table.

std::string without_marks(std::string_view caption) {
    std::string text(caption);
    std::erase(text, '&');
    return text;
}

std::string when(Conditions conditions) {
    std::string text;
    for (const Condition* condition : conditions)
        text += (text.empty() ? "" : "; ") + std::string(condition->text);
    return text.empty() ? "always" : text;
}

// "| Config > Save | `mnuConfigItem(4)` | conditions |" for every item.
void add_rows(std::span<const MenuEntry> entries, const std::string& path, Lines& rows) {
    for (const MenuEntry& entry : entries) {
        if (entry.separator()) continue;
        const std::string own = path + without_marks(entry.caption);
        if (entry.command != Command::None)
            rows.push_back("| " + own + " | `" + std::string(entry.name) + "` | " +
                           when(needs(entry.command)) + " |");
        add_rows(entry.children, own + " > ", rows);
    }
}

TEST(CommandsPage, PrintsTheTable) {
    Lines rows;
    const MainScreen screen;
    for (const ButtonEntry& entry : buttons())
        rows.push_back("| " + without_marks((screen.*entry.button).caption) + " | `" +
                       std::string(entry.name) + "` | " + when(needs(entry.command)) + " |");
    for (const MenuEntry& menu : menu_bar())
        rows.push_back("| " + without_marks(menu.caption) + " | `" + std::string(menu.name) +
                       "` | " + when(menu_needs(menu.name)) + " |");
    add_rows(menu_bar(), "", rows);

    std::ifstream page(KAVORIX_SOURCE_DIR "/docs/commands.md");
    Lines lines;
    for (std::string line; std::getline(page, line);)
        if (line.find("| `") != std::string::npos) lines.push_back(line);
    ASSERT_EQ(lines.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with(rows[i])) << rows[i] << "\n" << lines[i];
        EXPECT_GT(lines[i].size(), rows[i].size() + 10) << "says what it does: " << lines[i];
    }
}

}  // namespace
}  // namespace kavorix::test
