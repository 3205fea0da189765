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

// What a channel's terminals are wired to.
struct ChannelSettings {
    Signal signal;
    std::optional<std::int16_t> default_mode;  // mode after a reset, in place of the type's
};

enum class FaultKind {
    Dead,           // nothing answers at the pod's number
    TransmitError,  // commands do not get through
    ReceiveError,   // tests and reads fail
    NoStatus        // the status request stays without answer
};

// A fault that lasts from `from_s` until before `to_s`, seconds since the start.
struct Fault {
    FaultKind kind = FaultKind::Dead;
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
    int number = 1;     // 1..50
    std::string ident;  // 12 bytes, the first two being the type code
    int answer_ms = 5;  // from a request to its answer
    std::array<ChannelSettings, 32> channels;
    std::vector<Fault> faults;
    std::vector<PodText> texts;
};

struct Scenario {
    std::uint64_t seed = 1;
    std::optional<CardSettings> card;
    std::vector<PodSettings> pods;  // ascending numbers
};

}  // namespace kavorix::sim
