#pragma once

// What a random operator does, as a list that follows from a seed. Each action draws what it needs
// from a seed of its own, so that leaving some out does not change what the others do.

#include <cstdint>
#include <string_view>
#include <vector>

namespace kavorix::soak {

enum class ActionKind {
    Wait,
    ClickPods,
    SelectAll,
    Trigger,
    Halt,
    DefaultContScan,
    SetUpPod,
    Transmit,
    TypeCommand,
    SaveConfiguration,
    OpenConfiguration,
    DeleteConfigurations,
    InterfaceCard,
    ViewStatus,
    OpenView,
    CloseView,
    WorkInView,
    SetUpLog,
    StartLog,
    StopLog,
    ConvertLog,
    Graph,
    ClearErrors,
    Events,
    Options,
    SetWallClock,
    DiskTrouble,
    ExitAndStart,
    KillAndStart
};

std::string_view name_of(ActionKind kind);

struct Action {
    ActionKind kind = ActionKind::Wait;
    std::uint32_t seed = 0;
    // A second action that comes this much later, whatever the first is doing then; 0: none.
    int meanwhile_after_ms = 0;
    ActionKind meanwhile = ActionKind::Wait;
};

std::vector<Action> actions_of(std::uint32_t seed, int count);

}  // namespace kavorix::soak
