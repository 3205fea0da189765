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
    // Seconds that a mode takes; nothing where that depends on the signal (91, 92).
    static std::optional<double> duration(const HeldChannel& set);

    // Keeps a reference to the settings.
    DigitalInputs(const PodSettings& pod, const RandomSource& random);

    // A channel (1-based) gets another mode, range or sample rate; its counts go on.
    void configure(int channel, const HeldChannel& set);
    void clear_count(int channel, double time_s);

    // Measures a channel in mode 70, 74..76 or 90..92, starting at `time_s`. Event Increment counts
    // on from the last measurement.
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
