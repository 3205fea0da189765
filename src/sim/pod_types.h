#pragma once

// What the pods know of their own types: channels, and which modes and ranges each channel takes.
// Channel numbers are 1-based.

#include <cstdint>
#include <string_view>

namespace kavorix::sim {

inline constexpr int MostChannels = 32;

// Families of pods that behave alike.
enum class PodFamily {
    Voltage,    // 7R, 7T, 7U: voltage, thermocouple, current
    Bridge,     // 7S: voltage, resistance, RTD, strain gauge
    Digital,    // 8R: digital inputs and outputs
    Switch,     // 8S: digital inputs, outputs on channels 29-32
    Universal,  // 7V, 7W: analog 1-18, digital 19 and 20
    Unknown     // measures nothing
};

// The family of the type code, the first two characters of a status reply.
PodFamily pod_family(std::string_view code);

// 10, 20 or 32.
int channels_of(PodFamily family);

// Channels of 8R and 8S, and 19 and 20 of 7V and 7W.
bool is_digital_channel(PodFamily family, int channel);

// The mode of a channel after a reset: 10 (voltage), 70 (status), or 0 for an unknown pod.
std::int16_t default_mode(PodFamily family, int channel);

// Mode 0 (not measured) is accepted everywhere.
bool accepts_mode(PodFamily family, int channel, int mode);
bool accepts_range(PodFamily family, int channel, int mode, int range);

}  // namespace kavorix::sim
