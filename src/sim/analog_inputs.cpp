#include "sim/analog_inputs.h"

#include <cmath>
#include <span>

namespace kavorix::sim {

namespace {

constexpr std::array<double, 6> IntegrationSeconds = {0.02,    0.01667, 0.005,
                                                      0.00417, 0.00125, 0.00104};
constexpr double SolidStateSettling = 0.001;
constexpr double ReedSettling = 0.004;

// Full scales of the ranges 1, 2, 3, 4 in V, ohm and A.
constexpr std::array<double, 4> VoltRanges = {0.02, 0.2, 2.0, 10.0};
constexpr std::array<double, 4> OhmRanges = {25.0, 250.0, 2500.0, 25000.0};
constexpr std::array<double, 4> AmpereRanges = {200e-6, 2e-3, 20e-3, 100e-3};

std::span<const double> ranges_of(PodFamily family, int mode) {
    if (mode == 50) return AmpereRanges;
    if (mode >= 20 && mode <= 22)
        return std::span(OhmRanges).first(family == PodFamily::Universal ? 4 : 3);
    return std::span(VoltRanges).first(family == PodFamily::Bridge ? 3 : 4);
}

}  // namespace

AnalogInputs::AnalogInputs(const PodSettings& pod, const RandomSource& random)
    : pod_(pod), family_(pod_family(std::string_view(pod.ident).substr(0, 2))), random_(random) {}

Reading AnalogInputs::measure(const HeldSettings& held, int channel, double time_s) const {
    const auto index = static_cast<std::size_t>(channel - 1);
    const HeldChannel& set = held.channels.at(index);
    const Signal& signal = pod_.channels.at(index).signal;
    const bool reed = pod_.ident.starts_with("7T") || pod_.ident.starts_with("7U");
    const double duration_s = IntegrationSeconds.at(static_cast<std::size_t>(held.integration)) +
                              (reed ? ReedSettling : SolidStateSettling);
    const double value = signal_value(signal, random_.child(index), time_s);
    if (signal.kind == SignalKind::Open && set.mode != 10 && set.mode != 50)
        return failed(Fail::Overload, duration_s);
    const auto ranges = ranges_of(family_, set.mode);
    const double limit =
        set.range == 0 ? ranges.back() : ranges[static_cast<std::size_t>(set.range - 1)];
    const bool direct = set.mode == 10 || set.mode == 50 || (set.mode >= 20 && set.mode <= 22);
    if (direct && std::fabs(value) > limit)
        return failed(Fail::Overload, duration_s, std::copysign(limit, value));
    return {static_cast<float>(value), 0, duration_s};
}

}  // namespace kavorix::sim
