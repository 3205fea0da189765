#include "sim/digital_inputs.h"

#include <algorithm>

namespace kavorix::sim {

namespace {

constexpr double StatusTime = 0.001;  // to look at a level or a count

// Time-out codes 0..5.
constexpr std::array<double, 6> TimeoutSeconds = {0.2, 2.0, 20.0, 50.0, 70.0, 130.0};
// Time between two samples, for the sample rate codes 0..4. By default a pod samples at 1 kHz.
constexpr std::array<double, 5> SampleSeconds = {1e-3, 0.05, 1e-3, 1e-4, 1e-5};
// Gates of the frequency ranges 0..3.
constexpr std::array<double, 4> GateSeconds = {0.01, 0.1, 1.0, 10.0};
// Periods of the ranges 0..3.
constexpr std::array<int, 4> PeriodCounts = {1, 10, 100, 1000};

double timeout_of(const HeldChannel& set) {
    return TimeoutSeconds.at(static_cast<std::size_t>(set.timeout));
}

// Edges of the direction that ranges 0..2 of the event modes choose.
std::int64_t chosen(const LogicInput::Edges& edges, int range) {
    return (range != 1 ? edges.falling : 0) + (range != 0 ? edges.rising : 0);
}

// Ranges 0..2 of the status mode on the analog channels of a universal pod: TTL, 3V/9V, contact.
Thresholds thresholds_of(const HeldChannel& set) {
    if (set.mode == 70 && set.range == 1) return {3.0, 9.0};
    return {};
}

}  // namespace

DigitalInputs::DigitalInputs(const PodSettings& pod, const RandomSource& random)
    : pod_(pod), random_(random) {
    for (int channel = 1; channel <= MostChannels; ++channel) configure(channel, {});
}

std::optional<double> DigitalInputs::duration(const HeldChannel& set) {
    if (set.mode == 91 || set.mode == 92) return std::nullopt;
    return set.mode == 90 ? GateSeconds.at(static_cast<std::size_t>(set.range)) : StatusTime;
}

void DigitalInputs::configure(int channel, const HeldChannel& set) {
    const auto index = static_cast<std::size_t>(channel - 1);
    inputs_.at(index).logic.emplace(pod_.channels.at(index).signal, random_.child(index),
                                    thresholds_of(set),
                                    SampleSeconds.at(static_cast<std::size_t>(set.sample_rate)));
}

void DigitalInputs::clear_count(int channel, double time_s) {
    Input& input = inputs_.at(static_cast<std::size_t>(channel - 1));
    input.counted_from_s = time_s;
    input.read_at_s = time_s;
}

const LogicInput& DigitalInputs::input(int channel) const {
    return *inputs_.at(static_cast<std::size_t>(channel - 1)).logic;
}

Reading DigitalInputs::measure(const HeldChannel& set, int channel, double time_s) {
    Input& input = inputs_.at(static_cast<std::size_t>(channel - 1));
    const LogicInput& logic = *input.logic;
    switch (set.mode) {
        case 70:
        case 76:
            return {logic.level(time_s) ? 1.0F : 0.0F, 0, StatusTime};
        case 74: {
            const auto count = chosen(logic.edges(input.counted_from_s, time_s), set.range);
            return {static_cast<float>(count), 0, StatusTime};
        }
        case 75: {
            const auto count = chosen(logic.edges(input.read_at_s, time_s), set.range);
            input.read_at_s = time_s;
            return {static_cast<float>(count), 0, StatusTime};
        }
        case 90:
            return frequency(set, logic, time_s);
        case 91:
            return periods(set, logic, time_s);
        case 92:
            return one_shot(set, logic, time_s);
        default:
            return failed(Fail::UnknownMode);
    }
}

// Rising edges within the gate, per second.
Reading DigitalInputs::frequency(const HeldChannel& set, const LogicInput& logic,
                                 double time_s) const {
    const double gate_s = GateSeconds.at(static_cast<std::size_t>(set.range));
    const auto count = logic.edges(time_s, time_s + gate_s).rising;
    return {static_cast<float>(static_cast<double>(count) / gate_s), 0, gate_s};
}

// The mean length in seconds of the periods that the range asks for.
Reading DigitalInputs::periods(const HeldChannel& set, const LogicInput& logic,
                               double time_s) const {
    const double until_s = time_s + timeout_of(set);
    const int count = PeriodCounts.at(static_cast<std::size_t>(set.range));
    const auto first = logic.nth_edge(time_s, until_s, true, 1);
    const auto last = first ? logic.nth_edge(*first, until_s, true, count) : std::nullopt;
    if (!last) return failed(Fail::TimeOut, until_s - time_s);
    return {static_cast<float>((*last - *first) / count), 0, *last - time_s};
}

// The length in seconds of the next pulse: low after a falling start, high after a rising one.
Reading DigitalInputs::one_shot(const HeldChannel& set, const LogicInput& logic,
                                double time_s) const {
    const double until_s = time_s + timeout_of(set);
    const bool rising = set.range == 1;
    const auto start = logic.nth_edge(time_s, until_s, rising, 1);
    const auto end = start ? logic.nth_edge(*start, until_s, !rising, 1) : std::nullopt;
    if (!end) return failed(Fail::TimeOut, until_s - time_s);
    return {static_cast<float>(*end - *start), 0, *end - time_s};
}

}  // namespace kavorix::sim
