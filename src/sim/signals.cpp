#include "sim/signals.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kavorix::sim {

namespace {

// The place within the period, 0 <= x < 1.
double place(const Signal& signal, double time_s) {
    const double periods = time_s / signal.period_s + signal.phase;
    return periods - std::floor(periods);
}

std::int64_t step_at(double time_s, double step_s) {
    return static_cast<std::int64_t>(std::floor(time_s / step_s));
}

// Smoothly joined random values, one for each whole number.
double smooth(const RandomSource& random, double at) {
    const double whole = std::floor(at);
    const auto step = static_cast<std::int64_t>(whole);
    const double part = at - whole;
    const double blend = part * part * (3.0 - 2.0 * part);
    const double before = 2.0 * random.unit(step) - 1.0;
    const double after = 2.0 * random.unit(step + 1) - 1.0;
    return before + (after - before) * blend;
}

// Swings of ever shorter and smaller size on top of each other, -1..1.
double wander(const RandomSource& random, double at) {
    constexpr int Layers = 5;
    double sum = 0.0;
    double total = 0.0;
    double weight = 1.0;
    for (int layer = 0; layer < Layers; ++layer) {
        sum += weight * smooth(random.child(static_cast<std::uint64_t>(layer)), at);
        total += weight;
        weight /= 2.0;
        at *= 2.0;
    }
    return sum / total;
}

// Pattern: the side after the edges passed so far.
double pattern_side(const Signal& signal, double time_s) {
    const double within = place(signal, time_s) * signal.period_s;
    const auto passed = std::upper_bound(signal.edges_s.begin(), signal.edges_s.end(), within) -
                        signal.edges_s.begin();
    return passed % 2 == 0 ? -1.0 : 1.0;
}

// The swing about the offset, as a part of the amplitude.
double swing(const Signal& signal, const RandomSource& random, double time_s) {
    switch (signal.kind) {
        case SignalKind::Sine:
            return std::sin(2.0 * std::numbers::pi * place(signal, time_s));
        case SignalKind::Ramp:
            return 2.0 * place(signal, time_s) - 1.0;
        case SignalKind::Square:
            return place(signal, time_s) < signal.duty ? 1.0 : -1.0;
        case SignalKind::Pattern:
            return pattern_side(signal, time_s);
        case SignalKind::Noise:
            return random.bell(step_at(time_s, signal.step_s));
        case SignalKind::RandomWalk:
            return wander(random, time_s / signal.period_s + signal.phase);
        case SignalKind::Counter:
            return std::floor(time_s / signal.period_s + signal.phase);
        case SignalKind::Constant:
        case SignalKind::Open:
        case SignalKind::Absent:
            break;
    }
    return 0.0;
}

// A step of a random walk on a digital input, as a part of its period.
constexpr double WalkStep = 1.0 / 64.0;

}  // namespace

double signal_value(const Signal& signal, const RandomSource& random, double time_s) {
    if (signal.kind == SignalKind::Open || signal.kind == SignalKind::Absent) return 0.0;
    return signal.offset + signal.amplitude * swing(signal, random, time_s);
}

LogicInput::LogicInput(const Signal& signal, const RandomSource& random,
                       const Thresholds& thresholds, double shortest_s)
    : signal_(signal),
      random_(random),
      thresholds_(thresholds),
      stepped_(signal.kind == SignalKind::Noise || signal.kind == SignalKind::RandomWalk),
      step_s_(signal.kind == SignalKind::Noise ? signal.step_s : signal.period_s * WalkStep) {
    if (stepped_) return;
    find_toggles();
    drop_short_pulses(shortest_s);
}

// The edges of one period: where the value passes the threshold of the direction that it moves in.
// A signal that never passes both thresholds rests.
void LogicInput::find_toggles() {
    const double top = signal_.offset + std::fabs(signal_.amplitude);
    const double bottom = signal_.offset - std::fabs(signal_.amplitude);
    if (signal_.kind == SignalKind::Constant) {
        resting_ = signal_.offset > thresholds_.high;
    } else if (signal_.kind == SignalKind::Open) {
        resting_ = true;  // the input is pulled up
    } else if (signal_.kind == SignalKind::Counter) {
        toggles_ = {{0.0, true}, {0.5, false}};
    } else if (signal_.kind == SignalKind::Absent) {
        return;
    } else if (top > thresholds_.high && bottom <= thresholds_.low) {
        find_swing_toggles();
    } else {
        resting_ = bottom > thresholds_.low;
    }
    for (Toggle& toggle : toggles_) {
        toggle.at -= signal_.phase;
        toggle.at -= std::floor(toggle.at);
    }
    std::sort(toggles_.begin(), toggles_.end(),
              [](const Toggle& a, const Toggle& b) { return a.at < b.at; });
}

// The same, counted from the start of the signal's period, for one that passes both thresholds.
void LogicInput::find_swing_toggles() {
    const bool upside_down = signal_.amplitude < 0.0;
    if (signal_.kind == SignalKind::Sine) {
        const double turn = 2.0 * std::numbers::pi;
        const double size = std::fabs(signal_.amplitude);
        const double shift = upside_down ? 0.5 : 0.0;
        const double up = std::asin((thresholds_.high - signal_.offset) / size) / turn;
        const double down = 0.5 - std::asin((thresholds_.low - signal_.offset) / size) / turn;
        toggles_ = {{up + shift, true}, {down + shift, false}};
    } else if (signal_.kind == SignalKind::Ramp) {
        const double start = signal_.offset - signal_.amplitude;
        const double up = (thresholds_.high - start) / (2.0 * signal_.amplitude);
        const double down = (thresholds_.low - start) / (2.0 * signal_.amplitude);
        toggles_ = upside_down ? std::vector<Toggle>{{0.0, true}, {down, false}}
                               : std::vector<Toggle>{{up, true}, {0.0, false}};
    } else if (signal_.kind == SignalKind::Square) {
        if (signal_.duty > 0.0 && signal_.duty < 1.0)
            toggles_ = {{0.0, !upside_down}, {signal_.duty, upside_down}};
        else
            resting_ = (signal_.duty > 0.0) != upside_down;
    } else {
        bool rising = !upside_down;
        for (const double edge : signal_.edges_s) {
            toggles_.push_back({edge / signal_.period_s, rising});
            rising = !rising;
        }
        // An odd number of edges leaves the other side at the end; the period starts over.
        if (toggles_.size() % 2 == 1) toggles_.push_back({0.0, upside_down});
        if (toggles_.empty()) resting_ = upside_down;
    }
}

// Takes out both ends of every pulse that is too short; what stays of a signal without a long
// enough one is the level that it has most of the time.
void LogicInput::drop_short_pulses(double shortest_s) {
    const auto length = [&](std::size_t i) {
        const double next = i + 1 < toggles_.size() ? toggles_[i + 1].at : toggles_[0].at + 1.0;
        return next - toggles_[i].at;
    };
    double high = 0.0;
    for (std::size_t i = 0; i < toggles_.size(); ++i)
        if (toggles_[i].rising) high += length(i);
    if (!toggles_.empty()) resting_ = high > 0.5;
    for (std::size_t i = 0; i < toggles_.size();) {
        if (length(i) * signal_.period_s >= shortest_s) {
            ++i;
            continue;
        }
        const std::size_t other = (i + 1) % toggles_.size();
        toggles_.erase(toggles_.begin() + static_cast<std::ptrdiff_t>(std::max(i, other)));
        toggles_.erase(toggles_.begin() + static_cast<std::ptrdiff_t>(std::min(i, other)));
        i = 0;
    }
}

bool LogicInput::stepped_level(std::int64_t step) const {
    const double time_s = (static_cast<double>(step) + 0.5) * step_s_;
    const double middle = (thresholds_.low + thresholds_.high) / 2.0;
    return signal_value(signal_, random_, time_s) > middle;
}

double LogicInput::toggle_time(std::int64_t period, const Toggle& toggle) const {
    return (static_cast<double>(period) + toggle.at) * signal_.period_s;
}

bool LogicInput::level(double time_s) const {
    if (stepped_) return stepped_level(step_at(time_s, step_s_));
    if (toggles_.empty()) return resting_;
    const std::int64_t period = step_at(time_s, signal_.period_s);
    bool level = toggles_.back().rising;  // from the last edge of the period before
    for (const Toggle& toggle : toggles_)
        if (toggle_time(period, toggle) <= time_s) level = toggle.rising;
    return level;
}

std::optional<double> LogicInput::next_change(double time_s, double until_s) const {
    if (stepped_) {
        std::int64_t step = step_at(time_s, step_s_);
        const bool now = stepped_level(step);
        while (static_cast<double>(++step) * step_s_ <= until_s)
            if (stepped_level(step) != now) return static_cast<double>(step) * step_s_;
        return std::nullopt;
    }
    if (toggles_.empty()) return std::nullopt;
    for (std::int64_t period = step_at(time_s, signal_.period_s);; ++period)
        for (const Toggle& toggle : toggles_) {
            const double at = toggle_time(period, toggle);
            if (at > until_s) return std::nullopt;
            if (at > time_s) return at;
        }
}

std::optional<double> LogicInput::nth_edge(double time_s, double until_s, bool rising,
                                           int n) const {
    double skipped_s = 0.0;
    if (!stepped_ && !toggles_.empty()) {
        // Whole periods hold the same number of edges; only the rest needs a walk.
        const int of_period = static_cast<int>(toggles_.size() / 2);
        skipped_s = (n - 1) / of_period * signal_.period_s;
        n = (n - 1) % of_period + 1;
    }
    for (bool rises = !level(time_s);; rises = !rises) {
        const auto change = next_change(time_s, until_s - skipped_s);
        if (!change) return std::nullopt;
        if (rises == rising && --n == 0) return *change + skipped_s;
        time_s = *change;
    }
}

LogicInput::Edges LogicInput::edges(double from_s, double to_s) const {
    Edges counted;
    if (to_s <= from_s) return counted;
    if (stepped_) {
        bool level = stepped_level(step_at(from_s, step_s_));
        while (const auto change = next_change(from_s, to_s)) {
            level = !level;
            ++(level ? counted.rising : counted.falling);
            from_s = *change;
        }
        return counted;
    }
    if (toggles_.empty()) return counted;
    // Edges up to a moment, then the difference.
    const auto up_to = [&](double time_s, const Toggle& toggle) {
        const std::int64_t period = step_at(time_s, signal_.period_s);
        return period + (toggle_time(period, toggle) <= time_s ? 1 : 0);
    };
    for (const Toggle& toggle : toggles_)
        (toggle.rising ? counted.rising : counted.falling) +=
            up_to(to_s, toggle) - up_to(from_s, toggle);
    return counted;
}

}  // namespace kavorix::sim
