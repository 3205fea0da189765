#include "alarms/alarm_states.h"

namespace kavorix {

namespace {

using enum AlarmLife;
using enum AlarmEvent;

constexpr std::string_view NothingThere = "there is nothing to acknowledge";
constexpr std::string_view NotYet = "it has to be acknowledged first";
constexpr std::string_view IsWithheld = "it is shelved, suppressed or out of service";

struct Row {
    bool withheld;
    AlarmLife life;
    AlarmEvent event;  // PutBack stands for the end of whatever withheld it
    AlarmLife next;
    std::optional<OnReturn> rules = {};  // only alarms of such rules
    std::string_view refused = {};
};

// What is not here changes nothing.
constexpr Row Table[] = {
    {false, Normal, Comes, Unacknowledged},
    {false, Normal, Acknowledge, Normal, {}, NothingThere},
    {false, Unacknowledged, Goes, Returned, OnReturn::WaitForAcknowledge},
    {false, Unacknowledged, Goes, Normal, OnReturn::BackToNormal},
    {false, Unacknowledged, Goes, Latched, OnReturn::Latch},
    {false, Unacknowledged, Acknowledge, Acknowledged},
    {false, Unacknowledged, Reset, Unacknowledged, {}, NotYet},
    {false, Acknowledged, Goes, Normal, OnReturn::WaitForAcknowledge},
    {false, Acknowledged, Goes, Normal, OnReturn::BackToNormal},
    {false, Acknowledged, Goes, LatchedAcknowledged, OnReturn::Latch},
    {false, Acknowledged, ReAlarm, Unacknowledged},
    {false, Returned, Comes, Unacknowledged},
    {false, Returned, Acknowledge, Normal},
    {false, Latched, Comes, Unacknowledged},
    {false, Latched, Acknowledge, LatchedAcknowledged},
    {false, Latched, Reset, Latched, {}, NotYet},
    {false, LatchedAcknowledged, Comes, Unacknowledged},
    {false, LatchedAcknowledged, Reset, Normal},

    // Beneath: the condition and what it has left held.
    {true, Normal, Comes, Unacknowledged},
    {true, Unacknowledged, Goes, Normal, OnReturn::WaitForAcknowledge},
    {true, Unacknowledged, Goes, Normal, OnReturn::BackToNormal},
    {true, Unacknowledged, Goes, Latched, OnReturn::Latch},
    {true, Acknowledged, Goes, Normal, OnReturn::WaitForAcknowledge},
    {true, Acknowledged, Goes, Normal, OnReturn::BackToNormal},
    {true, Acknowledged, Goes, LatchedAcknowledged, OnReturn::Latch},
    {true, Returned, Comes, Unacknowledged},
    {true, Latched, Comes, Unacknowledged},
    {true, LatchedAcknowledged, Comes, Unacknowledged},
    {true, Acknowledged, PutBack, Unacknowledged},
    {true, Returned, PutBack, Normal},
};

constexpr const Row* find_row(bool withheld, AlarmLife life, AlarmEvent event, OnReturn on_return) {
    const Row* found = nullptr;
    for (const Row& row : Table)
        if (row.withheld == withheld && row.life == life && row.event == event &&
            row.rules.value_or(on_return) == on_return) {
            if (found != nullptr) throw "ambiguous";
            found = &row;
        }
    return found;
}

// At most one row for each step: find_row() throws otherwise, which a constant cannot.
constexpr bool each_step_once() {
    for (const bool withheld : {false, true})
        for (int life = 0; life < AlarmLives; ++life)
            for (int event = 0; event <= static_cast<int>(PutBack); ++event)
                for (const OnReturn on_return :
                     {OnReturn::WaitForAcknowledge, OnReturn::BackToNormal, OnReturn::Latch})
                    find_row(withheld, static_cast<AlarmLife>(life), static_cast<AlarmEvent>(event),
                             on_return);
    return true;
}
static_assert(each_step_once());

struct Withholding {
    AlarmEvent begin;
    AlarmEvent end;
    Withheld kind;
    std::string_view again;  // refusal of a second one; empty when it is a new one in its place
    std::string_view none;   // refusal of an end without a beginning
    std::string_view name;
};

constexpr std::array<Withholding, 3> Withholdings = {{
    {Shelve, Unshelve, Shelved, "", "it is not shelved", "shelved"},
    {Suppress, Unsuppress, Suppressed, "it is suppressed already", "it is not suppressed",
     "suppressed"},
    {TakeOut, PutBack, OutOfService, "it is out of service already", "it is not out of service",
     "out-of-service"},
}};

constexpr std::array<std::string_view, AlarmLives> LifeNames = {
    "normal", "unacknowledged", "acknowledged", "returned", "latched", "latched-acknowledged"};

AlarmLife next_life(AlarmState state, AlarmEvent event, OnReturn on_return) {
    const Row* row = find_row(state.withheld != NotWithheld, state.life, event, on_return);
    return row != nullptr ? row->next : state.life;
}

AlarmStep begin(AlarmState state, const Withholding& of) {
    if ((state.withheld & of.kind) != 0 && !of.again.empty())
        return {state, false, false, of.again};
    state.withheld |= of.kind;
    return {state, true, false, {}};
}

AlarmStep end(AlarmState state, const Withholding& of, OnReturn on_return) {
    if ((state.withheld & of.kind) == 0) return {state, false, false, of.none};
    AlarmState next = state;
    next.withheld &= static_cast<std::uint8_t>(~of.kind);
    if (next.withheld == NotWithheld) next.life = next_life(state, PutBack, on_return);
    return {next, true, next.loud(), {}};
}

}  // namespace

AlarmStep alarm_step(AlarmState state, AlarmEvent event, OnReturn on_return) {
    for (const Withholding& of : Withholdings) {
        if (event == of.begin) return begin(state, of);
        if (event == of.end) return end(state, of, on_return);
    }
    const bool withheld = state.withheld != NotWithheld;
    if (withheld && (event == Acknowledge || event == Reset))
        return {state, false, false, IsWithheld};
    const Row* row = find_row(withheld, state.life, event, on_return);
    if (row == nullptr) return {state, false, false, {}};
    if (!row->refused.empty()) return {state, false, false, row->refused};
    const AlarmState next{row->next, state.withheld};
    return {next, true, next.loud() && next.life == Unacknowledged, {}};
}

std::string state_name(AlarmState state) {
    std::string name(LifeNames[static_cast<std::size_t>(state.life)]);
    for (const Withholding& of : Withholdings)
        if ((state.withheld & of.kind) != 0) (name += '+') += of.name;
    return name;
}

std::optional<AlarmState> state_of(std::string_view name) {
    for (int life = 0; life < AlarmLives; ++life)
        for (std::uint8_t withheld = 0; withheld < 8; ++withheld)
            if (const AlarmState state{static_cast<AlarmLife>(life), withheld};
                state_name(state) == name)
                return state;
    return std::nullopt;
}

}  // namespace kavorix
