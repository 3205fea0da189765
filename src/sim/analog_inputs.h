#pragma once

// The analog channels of a pod: what the wiring of a channel reads as in the mode and range that it
// is set to.

#include "sim/held_settings.h"
#include "sim/random.h"
#include "sim/reading.h"
#include "sim/scenario.h"

namespace kavorix::sim {

class AnalogInputs {
  public:
    // Keeps a reference to the settings.
    AnalogInputs(const PodSettings& pod, const RandomSource& random);

    // Measures `channel` (1-based), starting at `time_s`.
    Reading measure(const HeldSettings& held, int channel, double time_s) const;

  private:
    const PodSettings& pod_;
    PodFamily family_;
    RandomSource random_;
};

}  // namespace kavorix::sim
