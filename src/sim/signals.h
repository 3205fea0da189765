#pragma once

// What is wired to a channel: a physical quantity as a function of time, and the logic level that a
// digital input makes of it.

#include <cstdint>
#include <optional>
#include <vector>

#include "sim/random.h"

namespace kavorix::sim {

enum class SignalKind {
    Constant,    // offset
    Sine,        // offset + amplitude * sin
    Ramp,        // from offset - amplitude up to offset + amplitude, then back at once
    Square,      // offset + amplitude for the duty part of a period, then offset - amplitude
    Pattern,     // offset - amplitude, changing sides at each of edges_s, period by period
    Noise,       // a new random value every step
    RandomWalk,  // wanders slowly, about one swing in a period
    Counter,     // offset + amplitude * number of whole periods passed; pulses on a digital input
    Open,        // nothing is connected: an open circuit
    Absent       // the pod has no electronics for this channel
};

// All kinds but Counter stay within offset - amplitude .. offset + amplitude.
struct Signal {
    SignalKind kind = SignalKind::Open;
    double amplitude = 1.0;
    double offset = 0.0;
    double period_s = 10.0;       // above 0
    double phase = 0.0;           // start of the period, as a part of it (0..1)
    double duty = 0.5;            // Square: part of the period on the upper side (0..1)
    double step_s = 0.1;          // Noise: time between two values, above 0
    std::vector<double> edges_s;  // Pattern: ascending, within 0 < x < period_s

    bool operator==(const Signal&) const = default;
};

// The value at `time_s` (0 or later) after the start; 0 for Open and Absent.
double signal_value(const Signal& signal, const RandomSource& random, double time_s);

// Logic levels of a digital input.
struct Thresholds {
    double low = 1.5;   // at or below: 0
    double high = 1.5;  // at or above (with low == high: above): 1; between the two the level stays
};

// The logic level of a signal over time. Edges of periodic signals are exact and cost nothing to
// count over any span; noise and random walks change only at their steps.
class LogicInput {
  public:
    // Pulses of a periodic signal that are shorter than `shortest_s` are not seen.
    LogicInput(const Signal& signal, const RandomSource& random, const Thresholds& thresholds,
               double shortest_s = 0.0);

    bool level(double time_s) const;

    // The first change of the level later than `time_s` and not later than `until_s`.
    std::optional<double> next_change(double time_s, double until_s) const;

    // The `n`th (1 or more) rising or falling edge later than `time_s` and not later than
    // `until_s`.
    std::optional<double> nth_edge(double time_s, double until_s, bool rising, int n) const;

    // Rising and falling edges later than `from_s`, up to and including `to_s`.
    struct Edges {
        std::int64_t rising = 0;
        std::int64_t falling = 0;
    };
    Edges edges(double from_s, double to_s) const;

  private:
    struct Toggle {
        double at;  // part of a period
        bool rising;
    };
    void find_toggles();
    void find_swing_toggles();
    void drop_short_pulses(double shortest_s);
    bool stepped_level(std::int64_t step) const;
    double toggle_time(std::int64_t period, const Toggle& toggle) const;

    Signal signal_;
    RandomSource random_;
    Thresholds thresholds_;
    bool stepped_;
    double step_s_;
    bool resting_ = false;         // level of a signal without toggles
    std::vector<Toggle> toggles_;  // of one period, ascending, alternating
};

}  // namespace kavorix::sim
