#pragma once

// Whether the conditions of the rules hold: limits with hysteresis and delays, evaluated for each
// reading that arrives. Knows nothing of acknowledging or shelving.

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "alarms/alarm_rules.h"
#include "platform/driver.h"

namespace kavorix {

// A condition that came or went.
struct ConditionChange {
    std::size_t alarm = 0;  // index of its rule
    bool active = false;
    // What made it: the reading, the change a second, the error code or NotANumber, the age in
    // seconds, 1 for lost and 0 for back.
    float value = 0;
};

// In the place of an error code: the pod called a reading valid that is no number.
inline constexpr float NotANumber = 256;

// Times are milliseconds of a count that never goes back. A delay is over with the first reading
// (for "lost" and "stale": the first tick) that comes so long after the one that began it; in
// between none may break it. At first a condition is what set_rules() says until something is known
// of it. No call allocates but set_rules().
class AlarmEngine {
  public:
    // Begins anew with these rules; `active` says of each whether its condition holds at present.
    void set_rules(const std::vector<AlarmRule>& rules, const std::vector<bool>& active);

    // A scan of a pod (index) has arrived: a value and a result code a channel. A code above 128
    // is an error, code - 128, of which "pending" and "not measured" mean that there is no reading.
    // The condition of a channel without a valid reading stays, its delays begin anew. A pod that
    // sends readings is not lost. What it returns is valid until the next call.
    std::span<const ConditionChange> reading(int pod, std::span<const float> values,
                                             std::span<const std::int16_t> codes,
                                             std::int64_t now_ms);

    // The pod was taken out of polling; it is polled again; it is not expected to measure.
    std::span<const ConditionChange> pod_lost(int pod, std::int64_t now_ms);
    std::span<const ConditionChange> pod_back(int pod, std::int64_t now_ms);
    void pod_idle(int pod);
    bool is_lost(int pod) const { return pods_[static_cast<std::size_t>(pod)].lost == true; }

    // Time has passed: what depends on it alone.
    std::span<const ConditionChange> tick(std::int64_t now_ms);

    // One of the station's own.
    std::span<const ConditionChange> station(std::size_t alarm, bool holds, std::int64_t now_ms);

    // The last valid reading of a channel (number), NaN without one; whether what is known of it is
    // old: the last reading was none, or the pod is lost.
    float last_value(int pod, int channel) const;
    bool unknown(int pod, int channel) const;

  private:
    // A condition that holds where a signal is above `on` and no longer where it is below `off`;
    // `sign` -1 turns the signal round.
    struct Check {
        float sign = 1;
        float on = 0;
        float off = 0;
        std::uint32_t alarm = 0;
        std::uint8_t signal = 0;  // index into the signals of its list
        bool active = false;
        bool waiting = false;  // a delay is running
    };
    struct Delays {
        std::int64_t on_ms = 0;
        std::int64_t off_ms = 0;
        std::int64_t since_ms = 0;
    };
    // The delays stand apart: they are looked at only where one runs.
    struct Checks {
        std::vector<Check> checks;
        std::vector<Delays> delays;
    };
    // In the place of a moment: nothing was read since the start, none is expected.
    static constexpr std::int64_t NotYet = -2;
    static constexpr std::int64_t NotExpected = -1;
    struct Channel {
        float value = std::numeric_limits<float>::quiet_NaN();  // the last valid one
        std::int64_t value_ms = 0;
        std::int64_t seen_ms = NotYet;  // the last reading, errors included
        bool fresh = false;             // `value` is what the last scan said
    };
    struct Pod {
        Checks scanned;  // evaluated with each scan
        Checks timed;    // evaluated with each tick: stale, lost
        std::array<Channel, MaxChannels> channels;
        std::int64_t seen_ms = NotYet;
        std::optional<bool> lost;  // nothing: not told yet
    };

    static Check check_of(const AlarmRule& rule, std::size_t index, bool active);
    void evaluate(Checks& of, const float* signals, std::int64_t now_ms);
    void evaluate_slowly(Check& check, Delays& delays, float signal, std::int64_t now_ms);
    void evaluate_timed(Pod& pod, std::int64_t now_ms);
    static void forget_delays(Pod& pod);

    std::array<Pod, MaxZavs> pods_;
    Checks station_;
    std::vector<ConditionChange> changes_;
};

}  // namespace kavorix
