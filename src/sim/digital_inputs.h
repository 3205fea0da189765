#pragma once

// The digital inputs of a pod: levels, counts, times and frequencies of what is wired to them.

#include <array>
#include <optional>

#include "sim/held_settings.h"
#include "sim/reading.h"
#include "sim/scenario.h"

namespace kavorix::sim {

class DigitalInputs {
  public:
    // Keeps a reference to the settings.
    DigitalInputs(const PodSettings& pod, const RandomSource& random);

    // A channel (1-based) gets a mode or range: its counts start anew.
    void configure(int channel, const HeldChannel& set, double time_s);
    void clear_count(int channel, double time_s);

    // Measures a channel in mode 70, 74..76 or 90..92, starting at `time_s`.
    Reading measure(const HeldChannel& set, int channel, double time_s);

    const LogicInput& input(int channel) const;

  private:
    struct Input {
        std::optional<LogicInput> logic;
        double counted_from_s = 0.0;
        double read_at_s = 0.0;  // the last Event Increment
    };
    Reading frequency(const HeldChannel& set, const LogicInput& logic, double time_s) const;
    Reading periods(const HeldChannel& set, const LogicInput& logic, double time_s) const;
    Reading one_shot(const HeldChannel& set, const LogicInput& logic, double time_s) const;

    const PodSettings& pod_;
    RandomSource random_;
    std::array<Input, MostChannels> inputs_;
};

}  // namespace kavorix::sim
