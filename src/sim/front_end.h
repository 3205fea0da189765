#pragma once

// The measuring side of a pod: takes any of its channels as the held settings say, and drives the
// outputs that alarms trip.

#include <array>
#include <optional>

#include "sim/analog_inputs.h"
#include "sim/digital_inputs.h"
#include "sim/held_settings.h"
#include "sim/reading.h"
#include "sim/scenario.h"

namespace kavorix::sim {

class FrontEnd {
  public:
    // Keeps references to both; the held settings may change between calls.
    FrontEnd(const PodSettings& pod, const HeldSettings& held, const RandomSource& random);

    PodFamily family() const { return family_; }
    int channels() const { return channels_; }

    // The channel's (1-based) mode was set at `time_s`: its counts and alarms start anew.
    void set_mode(int channel, double time_s);
    // Its sample rate was set.
    void set_sampling(int channel);
    void clear_count(int channel, double time_s) { digital_.clear_count(channel, time_s); }

    // One channel, starting at `time_s`.
    Reading measure(int channel, double time_s);

    // All channels, one after the other; the alarms follow the readings. Returns the time that it
    // took.
    using Readings = std::array<Reading, MostChannels>;
    double measure_all(double time_s, Readings& readings);

    // Seconds that measure_all() takes; nothing when that depends on the signals.
    std::optional<double> scan_duration() const;

    // Whether scans matter even when nobody reads them: alarms drive an output.
    bool drives_outputs() const;

    // Output volts of a strain gauge bridge and the volts across it.
    AnalogInputs::Balance balance(int channel, double time_s) const {
        return analog_.balance(held_, channel, time_s);
    }

    const LogicInput& input(int channel) const { return digital_.input(channel); }

  private:
    const HeldChannel& set_of(int channel) const {
        return held_.channels.at(static_cast<std::size_t>(channel - 1));
    }
    Fail objection(int channel) const;
    bool output(int channel) const;
    void follow_alarms(int channel, const Reading& reading);

    struct Tripped {
        bool low = false;
        bool high = false;
    };

    const PodSettings& pod_;
    const HeldSettings& held_;
    PodFamily family_;
    int channels_;
    AnalogInputs analog_;
    DigitalInputs digital_;
    std::array<Tripped, MostChannels> tripped_{};
};

}  // namespace kavorix::sim
