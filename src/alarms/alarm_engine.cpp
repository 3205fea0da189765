#include "alarms/alarm_engine.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kavorix {

namespace {

constexpr float Unknown = std::numeric_limits<float>::quiet_NaN();
constexpr std::int16_t LastValidCode = 128;
constexpr int PendingResult = 13;
constexpr int NotMeasured = 127;

// Signals of a scan: so many of each, a channel's at its index. NaN: nothing is known.
constexpr std::size_t ValueSignals = 0;
constexpr std::size_t RateSignals = MaxChannels;
constexpr std::size_t ErrorSignals = 2 * MaxChannels;
constexpr std::size_t ScanSignals = 3 * MaxChannels;

// Signals of a tick: the ages of the channels' readings in seconds, then these.
constexpr std::size_t PodAgeSignal = MaxChannels;
constexpr std::size_t LostSignal = MaxChannels + 1;
constexpr std::size_t TickSignals = MaxChannels + 2;

bool is_timed(AlarmKind kind) {
    return kind == AlarmKind::Stale || kind == AlarmKind::Lost;
}

std::size_t signal_of(const AlarmRule& rule) {
    const auto channel = static_cast<std::size_t>(std::max(rule.channel - 1, 0));
    switch (rule.kind) {
        case AlarmKind::Rate:
            return RateSignals + channel;
        case AlarmKind::Invalid:
            return ErrorSignals + channel;
        case AlarmKind::Stale:
            return rule.channel == 0 ? PodAgeSignal : channel;
        case AlarmKind::Lost:
            return LostSignal;
        default:
            return ValueSignals + channel;
    }
}

float seconds_between(std::int64_t from_ms, std::int64_t to_ms) {
    return static_cast<float>(to_ms - from_ms) / 1000.0F;
}

}  // namespace

AlarmEngine::Check AlarmEngine::check_of(const AlarmRule& rule, std::size_t index, bool active) {
    Check check;
    check.alarm = static_cast<std::uint32_t>(index);
    check.signal = static_cast<std::uint8_t>(signal_of(rule));
    check.active = active;
    switch (alarm_kind(rule.kind).limit) {
        case LimitOf::Nothing:
            check.on = check.off = 0.5F;
            break;
        case LimitOf::Level:
            check.sign = rule.limit != 0 ? 1.0F : -1.0F;
            check.on = check.off = check.sign * 0.5F;
            break;
        default:
            if (rule.kind == AlarmKind::Low || rule.kind == AlarmKind::LowLow) check.sign = -1;
            check.on = check.sign * static_cast<float>(rule.limit);
            check.off = static_cast<float>(static_cast<double>(check.on) - rule.hysteresis);
    }
    return check;
}

void AlarmEngine::set_rules(const std::vector<AlarmRule>& rules, const std::vector<bool>& active) {
    for (Pod& pod : pods_) {
        pod.scanned = {};
        pod.timed = {};
    }
    station_ = {};
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const AlarmRule& rule = rules[i];
        Pod& pod = pods_[static_cast<std::size_t>(std::max(rule.pod - 1, 0))];
        Checks& list = rule.pod == 0 ? station_ : is_timed(rule.kind) ? pod.timed : pod.scanned;
        list.checks.push_back(check_of(rule, i, active[i]));
        list.delays.push_back({rule_ms(rule.on_delay_s), rule_ms(rule.off_delay_s), 0});
    }
    changes_.reserve(rules.size());
}

// Most checks are neither active nor beyond their limit, and nothing more is asked of them.
void AlarmEngine::evaluate(Checks& of, const float* signals, std::int64_t now_ms) {
    const std::size_t count = of.checks.size();
    for (std::size_t i = 0; i < count; ++i) {
        Check& check = of.checks[i];
        const float signal = signals[check.signal];
        if (check.sign * signal > check.on || check.active || check.waiting)
            evaluate_slowly(check, of.delays[i], signal, now_ms);
    }
}

void AlarmEngine::evaluate_slowly(Check& check, Delays& delays, float signal, std::int64_t now_ms) {
    const float x = check.sign * signal;
    const bool turned = check.active ? x < check.off : x > check.on;  // false where it is NaN
    if (!turned) {
        check.waiting = false;
        return;
    }
    if (!check.waiting) {
        check.waiting = true;
        delays.since_ms = now_ms;
    }
    if (now_ms - delays.since_ms < (check.active ? delays.off_ms : delays.on_ms)) return;
    check.waiting = false;
    check.active = !check.active;
    changes_.push_back({check.alarm, check.active, signal});
}

std::span<const ConditionChange> AlarmEngine::reading(int pod, std::span<const float> values,
                                                      std::span<const std::int16_t> codes,
                                                      std::int64_t now_ms) {
    changes_.clear();
    Pod& of = pods_[static_cast<std::size_t>(pod)];
    std::array<float, ScanSignals> signals;
    signals.fill(Unknown);
    const std::size_t count = std::min({values.size(), codes.size(), of.channels.size()});
    for (std::size_t i = 0; i < of.channels.size(); ++i) {
        Channel& channel = of.channels[i];
        const bool before = std::exchange(channel.fresh, false);
        const int error = i < count ? std::max(codes[i] - LastValidCode, 0) : NotMeasured;
        if (error == PendingResult || error == NotMeasured) continue;
        channel.seen_ms = now_ms;
        const bool number = std::isfinite(values[i]);
        signals[ErrorSignals + i] = error > 0 || number ? static_cast<float>(error) : NotANumber;
        if (error > 0 || !number) continue;
        if (before && now_ms > channel.value_ms)
            signals[RateSignals + i] =
                std::fabs(values[i] - channel.value) / seconds_between(channel.value_ms, now_ms);
        signals[ValueSignals + i] = values[i];
        channel.value = values[i];
        channel.value_ms = now_ms;
        channel.fresh = true;
    }
    of.seen_ms = now_ms;
    of.lost = false;
    evaluate_timed(of, now_ms);
    evaluate(of.scanned, signals.data(), now_ms);
    return changes_;
}

void AlarmEngine::evaluate_timed(Pod& pod, std::int64_t now_ms) {
    if (pod.timed.checks.empty()) return;
    std::array<float, TickSignals> signals;
    const auto age = [&](std::int64_t seen_ms) {
        return seen_ms == NotYet        ? Unknown
               : seen_ms == NotExpected ? 0.0F
                                        : seconds_between(seen_ms, now_ms);
    };
    for (std::size_t i = 0; i < pod.channels.size(); ++i) signals[i] = age(pod.channels[i].seen_ms);
    signals[PodAgeSignal] = age(pod.seen_ms);
    signals[LostSignal] = !pod.lost ? Unknown : *pod.lost ? 1.0F : 0.0F;
    evaluate(pod.timed, signals.data(), now_ms);
}

void AlarmEngine::forget_delays(Pod& pod) {
    for (Check& check : pod.scanned.checks) check.waiting = false;
    for (Channel& channel : pod.channels) channel.fresh = false;
}

std::span<const ConditionChange> AlarmEngine::pod_lost(int pod, std::int64_t now_ms) {
    changes_.clear();
    Pod& of = pods_[static_cast<std::size_t>(pod)];
    of.lost = true;
    forget_delays(of);
    evaluate_timed(of, now_ms);
    return changes_;
}

std::span<const ConditionChange> AlarmEngine::pod_back(int pod, std::int64_t now_ms) {
    changes_.clear();
    Pod& of = pods_[static_cast<std::size_t>(pod)];
    of.lost = false;
    evaluate_timed(of, now_ms);
    return changes_;
}

void AlarmEngine::pod_idle(int pod) {
    Pod& of = pods_[static_cast<std::size_t>(pod)];
    of.seen_ms = NotExpected;
    for (Channel& channel : of.channels) channel.seen_ms = NotExpected;
    forget_delays(of);
}

std::span<const ConditionChange> AlarmEngine::tick(std::int64_t now_ms) {
    changes_.clear();
    for (Pod& pod : pods_) evaluate_timed(pod, now_ms);
    return changes_;
}

std::span<const ConditionChange> AlarmEngine::station(std::size_t alarm, bool holds,
                                                      std::int64_t now_ms) {
    changes_.clear();
    for (std::size_t i = 0; i < station_.checks.size(); ++i)
        if (station_.checks[i].alarm == alarm)
            evaluate_slowly(station_.checks[i], station_.delays[i], holds ? 1.0F : 0.0F, now_ms);
    return changes_;
}

float AlarmEngine::last_value(int pod, int channel) const {
    return pods_[static_cast<std::size_t>(pod - 1)]
        .channels[static_cast<std::size_t>(channel - 1)]
        .value;
}

bool AlarmEngine::unknown(int pod, int channel) const {
    const Pod& of = pods_[static_cast<std::size_t>(pod - 1)];
    return of.lost == true || !of.channels[static_cast<std::size_t>(channel - 1)].fresh;
}

}  // namespace kavorix
