#pragma once

// The analog channels of a pod: what the wiring of a channel reads as in the mode and range that it
// is set to. A reading goes through the terminals' physics, the converter (range, overload,
// resolution, noise and hum after the integration time), the linearisation of the mode, the
// temperature units and the post-linearisation.

#include <optional>
#include <span>

#include "sim/held_settings.h"
#include "sim/random.h"
#include "sim/reading.h"
#include "sim/scenario.h"
#include "sim/wiring.h"

namespace kavorix::sim {

class AnalogInputs {
  public:
    // Keeps a reference to the settings.
    AnalogInputs(const PodSettings& pod, const RandomSource& random);

    // Seconds that a channel takes.
    double duration(const HeldSettings& held) const;

    // Measures `channel` (1-based), starting at `time_s`.
    Reading measure(const HeldSettings& held, int channel, double time_s) const;

    // The balance of a strain gauge bridge: its output volts, and the volts across it.
    struct Balance {
        Reading offset;
        float initial_volt = 0.0F;
    };
    Balance balance(const HeldSettings& held, int channel, double time_s) const;

  private:
    // One conversion.
    struct Shot {
        const HeldSettings& held;
        const HeldChannel& set;
        int channel;
        double time_s;  // middle of the integration
        double integration_s;
        Terminals terminals;
    };
    // What came of it: a value, or why there is none.
    struct Outcome {
        double value = 0.0;
        Fail fail = Fail::None;
    };

    Shot shoot(const HeldSettings& held, int channel, double time_s) const;
    Outcome convert(const Shot& shot, double exact, std::span<const double> ranges) const;
    double hum(const Shot& shot) const;

    Outcome volts(const Shot& shot) const;
    Outcome amperes(const Shot& shot) const;
    Outcome ohms(const Shot& shot) const;
    Outcome platinum(const Shot& shot) const;
    Outcome thermocouple(const Shot& shot) const;
    Outcome bridge_output(const Shot& shot) const;
    Outcome strain(const Shot& shot) const;
    Outcome quantity(const Shot& shot) const;
    std::optional<double> reference(const Shot& shot) const;
    Outcome finish(const Shot& shot, Outcome outcome) const;

    const PodSettings& pod_;
    PodFamily family_;
    RandomSource random_;
    double gain_error_;  // that calibration takes away
};

}  // namespace kavorix::sim
