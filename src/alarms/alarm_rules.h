#pragma once

// What is an alarm: rules of the alarm file, limits adopted from the configuration, and those that
// the station has by itself.

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "alarms/alarm_states.h"
#include "model/records.h"

namespace kavorix {

enum class AlarmKind : std::uint8_t {
    HighHigh,
    High,
    Low,
    LowLow,
    Rate,     // change a second between two readings, either way
    Invalid,  // the reading is an error, or no number
    Stale,    // no reading for so long
    Lost,     // the pod was taken out of polling
    Digital,  // the channel has this level
    LogFailing,
    DiskFilling,
    JournalUnwritable,
};

// What a rule's limit means.
enum class LimitOf : std::uint8_t { Nothing, Value, Change, Seconds, Level };

struct AlarmKindRow {
    AlarmKind kind;
    std::string_view name;  // in rules, journal and messages
    LimitOf limit;
    bool of_channel;
    bool of_pod;
    int severity;  // unless the rule says otherwise
};

inline constexpr std::array<AlarmKindRow, 12> AlarmKinds = {{
    {AlarmKind::HighHigh, "high-high", LimitOf::Value, true, false, 3},
    {AlarmKind::High, "high", LimitOf::Value, true, false, 2},
    {AlarmKind::Low, "low", LimitOf::Value, true, false, 2},
    {AlarmKind::LowLow, "low-low", LimitOf::Value, true, false, 3},
    {AlarmKind::Rate, "rate", LimitOf::Change, true, false, 2},
    {AlarmKind::Invalid, "invalid", LimitOf::Nothing, true, false, 2},
    {AlarmKind::Stale, "stale", LimitOf::Seconds, true, true, 2},
    {AlarmKind::Lost, "lost", LimitOf::Nothing, false, true, 3},
    {AlarmKind::Digital, "digital", LimitOf::Level, true, false, 2},
    {AlarmKind::LogFailing, "log-failing", LimitOf::Nothing, false, false, 4},
    {AlarmKind::DiskFilling, "disk-filling", LimitOf::Nothing, false, false, 3},
    {AlarmKind::JournalUnwritable, "journal-unwritable", LimitOf::Nothing, false, false, 4},
}};

constexpr const AlarmKindRow& alarm_kind(AlarmKind kind) {
    return AlarmKinds[static_cast<std::size_t>(kind)];
}
static_assert([] {
    for (std::size_t i = 0; i < AlarmKinds.size(); ++i)
        if (static_cast<std::size_t>(AlarmKinds[i].kind) != i) return false;
    return true;
}());

inline constexpr int LowestSeverity = 1;
inline constexpr int HighestSeverity = 4;

struct AlarmRule {
    int pod = 0;      // 1..50; 0: the station itself
    int channel = 0;  // 1..32; 0: the pod itself
    AlarmKind kind = AlarmKind::High;
    double limit = 0;       // see LimitOf; values in the shown unit
    double hysteresis = 0;  // 0 or more, in the unit of the limit
    double on_delay_s = 0;  // so long without a break before it comes
    double off_delay_s = 0;
    bool latch = false;              // held after its condition went, until it is reset
    bool acknowledge_return = true;  // also when the condition went before anyone saw it
    double realarm_s = 0;            // unacknowledged again after this time; 0: never
    int severity = 2;                // 1 lowest .. 4 highest
    std::string text;                // what is wrong, for the operator; may be empty
    std::string guidance;            // what to do; may be empty
    std::string label;               // of the channel
    std::string unit;                // of the channel
    int line = 0;                    // of the alarm file; 0 when it comes from elsewhere
    bool operator==(const AlarmRule&) const = default;

    OnReturn on_return() const {
        return latch                ? OnReturn::Latch
               : acknowledge_return ? OnReturn::WaitForAcknowledge
                                    : OnReturn::BackToNormal;
    }
};

// A time of a rule in milliseconds.
inline std::int64_t rule_ms(double seconds) {
    return std::llround(seconds * 1000);
}

// The name of an alarm, the same from start to start: "4/1/high", "4/lost", "disk-filling".
std::string alarm_id(const AlarmRule& rule);

// Whether two rules of one alarm are true of the same readings at the same times.
bool same_condition(const AlarmRule& a, const AlarmRule& b);

// The alarm limits of a configuration as the operator sees the readings: M x + c, the hysteresis
// times |M|, high and low swapped where M is negative. Channels with M = 0, whose readings do not
// follow the signal, have none.
std::vector<AlarmRule> adopted_rules(const PodConfigs& configuration);

// All rules of a station: those of the file (which replace adopted ones of the same id), the
// adopted ones, "invalid" for each channel that has any and "lost" for each such pod, unless the
// file has them, and the station's own. With label and unit of the channels.
std::vector<AlarmRule> station_rules(const PodConfigs& configuration,
                                     const std::vector<AlarmRule>& from_file);

struct RuleProblem {
    int line = 0;
    std::string message;
};

// What is wrong with the rules of a file for this configuration: pods and channels that are not
// there or not in use, levels of channels that have none, limits of one channel in the wrong order.
std::vector<RuleProblem> check_rules(const PodConfigs& configuration,
                                     const std::vector<AlarmRule>& from_file);

}  // namespace kavorix
