#pragma once

// A simulated pod network as plain data: the card, the pods, what is wired to their channels and
// what goes wrong when.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/signals.h"

namespace kavorix::sim {

// Length of a pod's status reply.
inline constexpr std::size_t IdentLength = 12;

struct CardSettings {
    std::int16_t address = -14336;  // C800 hexadecimal
    std::int16_t handle = 0;        // 0 or more
    std::string version = "Simulated pod network 1.0";
};

// What makes the signal of a channel. The signal's values are volts, ohms, amperes, degrees Celsius
// or microstrain accordingly.
enum class SensorKind {
    Auto,         // whatever the channel's mode measures
    Voltage,      // V
    Current,      // A
    Resistance,   // ohm
    Platinum100,  // degrees; 100 ohm at 0
    Platinum10,   // degrees; 10 ohm at 0
    ThermocoupleE,
    ThermocoupleJ,
    ThermocoupleK,
    ThermocoupleR,
    ThermocoupleS,
    ThermocoupleT,
    ThermocoupleB,
    ThermocoupleN,
    Strain  // microstrain
};

// What a channel's terminals are wired to.
struct ChannelSettings {
    Signal signal;
    SensorKind sensor = SensorKind::Auto;
    double lead_ohms = 0.0;                    // of each lead to a resistance
    double gauge_factor = 2.0;                 // of a strain gauge
    double gauge_ohms = 120.0;                 // of a strain gauge, above 0
    double imbalance_mv_v = 0.1;               // of an unstrained bridge, mV for each V across it
    std::optional<std::int16_t> default_mode;  // mode after a reset, in place of the type's
};

enum class FaultKind {
    Dead,           // nothing answers at the pod's number
    TransmitError,  // commands do not get through
    ReceiveError,   // tests and reads fail
    NoStatus,       // the status request stays without answer
    SlowAnswer,     // what a stream holds shows only delay_ms later
    GarbageStatus,  // calls end with a status value that means nothing
    GarbageCounts,  // the count of numeric results is any number
    GarbageValues,  // readings and codes are any numbers
    GarbageText,    // texts and events are any bytes
    HalfText,       // texts and events break off half-way
    Reset  // the pod resets itself: once when the span begins, or as often as the rate says
};

// A fault that can strike from `from_s` until before `to_s`, seconds since the start.
struct Fault {
    FaultKind kind = FaultKind::Dead;
    double from_s = 0.0;
    double to_s = 0.0;
    std::optional<double> rate;  // share of the driver calls that it strikes (0..1); none: all
    int delay_ms = 500;          // SlowAnswer
};

// A span of time without the interface card.
struct CardFault {
    double from_s = 0.0;
    double to_s = 0.0;
};

// A text that the pod sends of its own accord.
struct PodText {
    std::string text;      // 1..255 bytes
    double at_s = 0.0;     // first time
    double every_s = 0.0;  // and again after this time; 0: once only
};

struct PodSettings {
    int number = 1;                            // 1..50
    std::string ident;                         // 12 bytes, the first two being the type code
    int answer_ms = 5;                         // from a request to its answer
    double ambient = 23.0;                     // temperature of the terminals, degrees Celsius
    double ambient_swing = 0.0;                // up and down from it
    double ambient_period_s = 86400.0;         // above 0
    std::optional<double> reference;           // degrees of an external reference junction
    double noise = 1.0;                        // of the converter; 0: an ideal one
    double hum_v = 0.0;                        // mains hum on the analog inputs, peak volts
    double mains_hz = 50.0;                    // above 0
    std::array<ChannelSettings, 32> channels;  // index: channel number - 1
    std::vector<Fault> faults;
    std::vector<PodText> texts;
};

struct Scenario {
    std::uint64_t seed = 1;
    std::optional<CardSettings> card;
    std::vector<CardFault> card_faults;
    std::vector<Fault> chaos;       // strike every pod, at random
    std::vector<PodSettings> pods;  // ascending numbers
};

}  // namespace kavorix::sim
