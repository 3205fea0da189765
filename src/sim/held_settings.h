#pragma once

// The configuration that a pod holds: what it has read out of the commands that reached it.

#include <array>
#include <cstdint>

#include "sim/pod_types.h"

namespace kavorix::sim {

struct HeldAlarm {
    bool enabled = false;
    float limit = 0.0F;
    float hysteresis = 0.0F;
    bool operator==(const HeldAlarm&) const = default;
};

struct HeldChannel {
    std::int16_t mode = 0;
    std::int16_t range = 0;
    float gauge_factor = 0.0F;
    float offset = 0.0F;
    float initial_volt = 0.0F;
    std::int16_t sample_rate = 0;  // code 0..4
    std::int16_t timeout = 1;      // code 0..5
    std::int16_t equation = 0;     // post-linearisation: 0 none, 1 or 2
    HeldAlarm low_alarm;
    HeldAlarm high_alarm;
    bool operator==(const HeldChannel&) const = default;
};

// Polynomial coefficients, index i multiplying the i-th power.
using Coefficients = std::array<float, 6>;

struct HeldUserTable {
    bool defined = false;
    Coefficients polynomial{};
    Coefficients inverse{};
    bool operator==(const HeldUserTable&) const = default;
};

struct HeldEquation {
    bool defined = false;
    Coefficients coefficients{};
    bool operator==(const HeldEquation&) const = default;
};

// Output on channel 19 or 20; entry i of the members is channel i + 1.
struct HeldGroup {
    std::int16_t state = 2;  // 0 released by an alarm, 1 asserted by an alarm, 2 off
    std::array<bool, 18> low{};
    std::array<bool, 18> high{};
    bool operator==(const HeldGroup&) const = default;
};

struct HeldSettings {
    bool setup = false;
    bool armed = false;
    float scan_period_ms = 0.0F;
    bool calibration = true;
    std::int16_t integration = 0;  // code 0..5
    bool fahrenheit = false;
    bool ambient_reference = true;
    float external_temperature = 0.0F;  // in the pod's temperature units
    bool open_check = false;
    std::array<HeldUserTable, 2> user_tables;
    std::array<HeldEquation, 2> equations;
    std::array<HeldChannel, MostChannels> channels;
    std::array<HeldGroup, 2> groups;  // channels 19 and 20
    bool hardware_watch = false;
    std::int16_t software_watch = 0;  // time 1..255, 0 off
    bool continuous = false;
    bool event_capture = false;
    bool operator==(const HeldSettings&) const = default;
};

}  // namespace kavorix::sim
