#include "soak/actions.h"

#include <array>

#include "soak/dice.h"

namespace kavorix::soak {

namespace {

struct Row {
    ActionKind kind;
    std::string_view name;
    int weight;      // how often the operator does it
    bool meanwhile;  // also while something else is under way
};

constexpr std::array Rows = {
    Row{ActionKind::Wait, "wait", 200, false},
    Row{ActionKind::ClickPods, "click pods", 120, true},
    Row{ActionKind::SelectAll, "select all", 35, true},
    Row{ActionKind::Trigger, "trigger", 80, true},
    Row{ActionKind::Halt, "halt", 50, true},
    Row{ActionKind::DefaultContScan, "default cont scan", 45, true},
    Row{ActionKind::SetUpPod, "set up pod", 50, true},
    Row{ActionKind::Transmit, "transmit configuration", 50, true},
    Row{ActionKind::TypeCommand, "type command", 50, true},
    Row{ActionKind::SaveConfiguration, "save configuration", 25, true},
    Row{ActionKind::OpenConfiguration, "open configuration", 50, true},
    Row{ActionKind::DeleteConfigurations, "delete configurations", 8, true},
    Row{ActionKind::InterfaceCard, "interface settings", 25, true},
    Row{ActionKind::ViewStatus, "view status", 20, true},
    Row{ActionKind::OpenView, "open view", 35, true},
    Row{ActionKind::CloseView, "close view", 20, true},
    Row{ActionKind::WorkInView, "work in view", 30, true},
    Row{ActionKind::SetUpLog, "set up log", 45, true},
    Row{ActionKind::StartLog, "start log", 60, true},
    Row{ActionKind::StopLog, "stop log", 35, true},
    Row{ActionKind::ConvertLog, "convert log", 25, true},
    Row{ActionKind::Graph, "graph", 30, true},
    Row{ActionKind::ClearErrors, "clear errors", 45, true},
    Row{ActionKind::Events, "event capture and counters", 25, true},
    Row{ActionKind::Options, "options", 12, true},
    Row{ActionKind::SetWallClock, "set wall clock", 12, true},
    Row{ActionKind::DiskTrouble, "disk trouble", 6, false},
    Row{ActionKind::ExitAndStart, "exit and start again", 20, true},
    Row{ActionKind::KillAndStart, "kill and start again", 5, false},
};

ActionKind draw(Dice& dice, bool meanwhile) {
    int total = 0;
    for (const Row& row : Rows)
        if (!meanwhile || row.meanwhile) total += row.weight;
    int drawn = dice.below(total);
    for (const Row& row : Rows) {
        if (meanwhile && !row.meanwhile) continue;
        drawn -= row.weight;
        if (drawn < 0) return row.kind;
    }
    return ActionKind::Wait;
}

constexpr bool in_order() {
    for (std::size_t i = 0; i < Rows.size(); ++i)
        if (Rows[i].kind != static_cast<ActionKind>(i)) return false;
    return true;
}
static_assert(in_order(), "a row for each kind, in the order of the enumeration");

}  // namespace

std::string_view name_of(ActionKind kind) {
    return Rows[static_cast<std::size_t>(kind)].name;
}

std::vector<Action> actions_of(std::uint32_t seed, int count) {
    constexpr int MeanwhilePercent = 15;
    constexpr int LongestMeanwhile_ms = 3500;  // a halt takes 3000
    Dice dice(seed);
    std::vector<Action> actions;
    for (int i = 0; i < count; ++i) {
        Action action{draw(dice, false), dice.bits()};
        if (dice.chance(MeanwhilePercent)) {
            action.meanwhile_after_ms = dice.number(1, LongestMeanwhile_ms);
            action.meanwhile = draw(dice, true);
        }
        actions.push_back(action);
    }
    return actions;
}

}  // namespace kavorix::soak
