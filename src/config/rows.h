#pragma once

// What the tables of statements share, those for the pods and those for the file: the rows, the
// conditions on them and the way texts are put together.

#include <charconv>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/numbers.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "model/runtime.h"

namespace kavorix::rows {

// A statement of a pod: when it is given and what it appends.
struct PodRow {
    bool (*given)(const PodConfig& p);
    void (*append)(std::string& out, const PodConfig& p);
};

// A statement of a channel slot.
struct ChannelRow {
    bool (*given)(const PodConfig& p, int slot);
    void (*append)(std::string& out, const PodConfig& p, int slot);
};

inline void append_rows(std::string& out, std::span<const PodRow> table, const PodConfig& p) {
    for (const PodRow& row : table)
        if (row.given(p)) row.append(out, p);
}
inline void append_rows(std::string& out, std::span<const ChannelRow> table, const PodConfig& p,
                        int slot) {
    for (const ChannelRow& row : table)
        if (row.given(p, slot)) row.append(out, p, slot);
}

// Slots that hold channels of the pod.
inline int used_slots(const PodConfig& p) {
    return p.NumChannels < ChannelSlots ? p.NumChannels : ChannelSlots;
}

// A number in at least two digits.
struct TwoDigits {
    int value;
};

inline void put_one(std::string& out, std::string_view text) {
    out += text;
}
inline void put_one(std::string& out, float value) {
    char text[GeneralBufferSize];
    out.append(text, write_general(value, text));
}
inline void put_one(std::string& out, int value) {
    char text[12];
    out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}
inline void put_one(std::string& out, TwoDigits number) {
    if (number.value >= 0 && number.value < 10) out += '0';
    put_one(out, number.value);
}

// Appends texts, whole numbers in plain decimals and singles in the general format.
template <class... Parts>
void put(std::string& out, const Parts&... parts) {
    (put_one(out, parts), ...);
}

// Coefficients from the highest order down, each between `before` and `behind`.
inline void put_coefficients(std::string& out, std::string_view before,
                             const Polynomial6& polynomial, std::string_view behind) {
    for (auto c = polynomial.rbegin(); c != polynomial.rend(); ++c) put(out, before, *c, behind);
}
inline void put_coefficients(std::string& out, std::string_view before, const UserTherm& table,
                             std::string_view behind) {
    put_coefficients(out, before, table.Polynomial, behind);
    put_coefficients(out, before, table.InversePoly, behind);
}

// State and members of an alarm group: each member's channel behind `before`, its letter behind
// `between`.
inline void put_group(std::string& out, const AlarmGroup& group, std::string_view before,
                      std::string_view between) {
    put(out, group.OutputState);
    if (group.OutputState != GroupOff)
        for (int channel = 1; channel <= AlarmGroupChannels; ++channel) {
            const std::size_t i = at(channel - 1);
            if (group.Low[i] == 1) put(out, before, TwoDigits{channel}, between, "L");
            if (group.High[i] == 1) put(out, before, TwoDigits{channel}, between, "H");
        }
    out += ';';
}

// Conditions on a pod.

inline bool always(const PodConfig&) {
    return true;
}
inline bool is_set_up(const PodConfig& p) {
    return p.Setup == 1;
}
inline bool is_armed(const PodConfig& p) {
    return p.Arm == 1;
}
inline bool scans_continuously(const PodConfig& p) {
    return p.ContScan == 1;
}
inline bool calibrates(const PodConfig& p) {
    return supports_calibration(p.TypeCode);
}
inline bool integrates(const PodConfig& p) {
    return supports_integration(p.TypeCode);
}
inline bool has_reference(const PodConfig& p) {
    return supports_temperature_reference(p.TypeCode);
}
inline bool has_watchdogs(const PodConfig& p) {
    return supports_watchdogs(p.TypeCode);
}
template <std::size_t Index>
bool has_table(const PodConfig& p) {
    return is_universal_type(p.TypeCode) && p.UserTherm[Index].Enabled == TableOn;
}
template <std::size_t Index>
bool has_equation(const PodConfig& p) {
    return is_universal_type(p.TypeCode) && p.PostLinEquation[Index].Enabled == TableOn;
}
template <std::size_t Slot>
bool has_group(const PodConfig& p) {
    return is_universal_type(p.TypeCode) && p.AlarmGroup[Slot].OutputState != GroupOff;
}

// Conditions on a channel slot.

inline bool always_given(const PodConfig&, int) {
    return true;
}
inline bool is_strain(const PodConfig& p, int slot) {
    return is_strain_mode(p.Channel[at(slot)].Mode);
}
inline bool samples(const PodConfig& p, int slot) {
    return supports_sampling(p.TypeCode, slot);
}
inline bool is_linearised(const PodConfig& p, int slot) {
    const std::int16_t equation = p.Channel[at(slot)].PostLin;
    return supports_linearisation(p.TypeCode, slot) && (equation == 1 || equation == 2);
}
inline bool has_high_alarm(const PodConfig& p, int slot) {
    const ChannelConfig& c = p.Channel[at(slot)];
    return c.Mode != DigitalStatus && c.HighAlarm.Enabled == 1;
}
inline bool has_low_alarm(const PodConfig& p, int slot) {
    const ChannelConfig& c = p.Channel[at(slot)];
    return c.Mode != DigitalStatus && c.LowAlarm.Enabled == 1;
}

}  // namespace kavorix::rows
