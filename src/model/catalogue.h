#pragma once

// The fixed vocabulary of the configuration: pod types, channel modes, ranges and the option lists,
// with what each pod type offers on which channel. Channel numbers are 1-based here.

#include <cstdint>
#include <span>
#include <string_view>

#include "model/records.h"

namespace kavorix {

inline constexpr std::int16_t DefaultTimeout = 6;  // time-out code of the first list entry

struct PodTypeRow {
    std::int16_t type;             // PodType
    std::string_view code;         // what a pod reports; empty for "No Device"
    std::string_view description;  // entry of the pod type selector
    std::int16_t channels;
};

// All types in selector order, which is not the order of the type numbers.
std::span<const PodTypeRow> pod_types();

// The row of a type number; the "No Device" row for any other number.
const PodTypeRow& pod_type(std::int16_t type);

inline std::int16_t channel_count(std::int16_t type) {
    return pod_type(type).channels;
}

// Types 7R, 7S, 7T, 7U, 7V and 7W.
constexpr bool is_analog_type(std::int16_t type) {
    return (type >= Type7R && type <= Type7U) || type == Type7V || type == Type7W;
}
constexpr bool is_universal_type(std::int16_t type) {
    return type == Type7V || type == Type7W;
}

// One entry of an option list.
struct Option {
    std::int16_t code;
    std::string_view text;
};

inline constexpr std::int16_t DigitalStatus = 70;  // mode of a digital input
inline constexpr std::int16_t SwitchOutputMode = 80;
inline constexpr std::int16_t FrequencyMode = 90;
inline constexpr std::int16_t PeriodsMode = 91;
inline constexpr std::int16_t UserTable1Mode = 39;  // linearised by user thermocouple table 1
inline constexpr std::int16_t UserTable2Mode = 30;

constexpr bool is_strain_mode(std::int16_t mode) {
    return mode >= 60 && mode <= 67;
}
constexpr bool is_thermocouple_mode(std::int16_t mode) {
    return mode >= 30 && mode <= 39;
}
// Modes that have a sample rate and a time-out on universal pods; 8R pods have them in every mode.
constexpr bool has_sampling(std::int16_t mode) {
    return mode == DigitalStatus || mode == 74 || mode == 75 || mode == SwitchOutputMode ||
           mode == FrequencyMode || mode == PeriodsMode;
}
// Four- and three-terminal measurements, which take an odd channel and the even one after it on
// universal pods.
constexpr bool is_six_pole_mode(std::int16_t mode) {
    return mode == 20 || mode == 21 || (mode >= 40 && mode <= 43);
}

// Every mode of the catalogue, in the order of its codes.
std::span<const Option> all_modes();

// The modes offered on a channel of a type, in list order; empty for "No Device".
std::span<const Option> modes(std::int16_t type, int channel);

// The ranges offered, in list order; empty for mode 0 and where the mode has no list.
std::span<const Option> ranges(std::int16_t mode, std::int16_t type, int channel);

// Text of a mode code; empty for an unknown one. Text of a range code; empty when it is not in the
// list.
std::string_view mode_text(std::int16_t mode);
std::string_view range_text(std::int16_t mode, std::int16_t type, int channel, std::int16_t range);

bool is_known_mode(std::int16_t mode);
bool is_legal_mode(std::int16_t mode, std::int16_t type, int channel);
bool is_legal_range(std::int16_t range, std::int16_t mode, std::int16_t type, int channel);

// The same over all channels of a type together: what a configuration file is checked against.
bool is_legal_mode_of_type(std::int16_t mode, std::int16_t type);
bool is_legal_range_of_type(std::int16_t range, std::int16_t mode, std::int16_t type);

std::span<const Option> integration_times();
std::span<const Option> sample_rates();
// With the two long time-outs (universal pods) or without.
std::span<const Option> timeouts(bool with_long_ones);
// The code is the period in ms.
std::span<const Option> scan_periods();
// Poll rates in ms, in list order.
std::span<const std::int16_t> poll_rates();

// Whether the scan period and the integration list are offered: for a pod that reports `type` its
// identification decides by a letter each; otherwise they always are.
bool offers_scan_period(std::string_view ident, std::int16_t type);
bool offers_integration(std::string_view ident, std::int16_t type);

// Whether settings belong to a type: what is written to files and sent to pods.
constexpr bool supports_calibration(std::int16_t type) {
    return (type >= Type7R && type <= Type7T) || is_universal_type(type);
}
constexpr bool supports_integration(std::int16_t type) {
    return supports_calibration(type);
}
constexpr bool supports_temperature_reference(std::int16_t type) {
    return type == Type7R || type == Type7T || is_universal_type(type);
}
constexpr bool supports_watchdogs(std::int16_t type) {
    return type == Type8S || is_universal_type(type);
}
// Sample rate and time-out of a slot.
constexpr bool supports_sampling(std::int16_t type, int slot) {
    return type == Type8R || (is_universal_type(type) && slot >= 18);
}
// Post-linearisation and unit conversion statements of a slot.
constexpr bool supports_linearisation(std::int16_t type, int slot) {
    return is_universal_type(type) && slot < 18;
}

}  // namespace kavorix
