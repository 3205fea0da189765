#include "sim/analog_inputs.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "sim/thermocouples.h"

namespace kavorix::sim {

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();

constexpr std::array<double, 6> IntegrationSeconds = {0.02,    0.01667, 0.005,
                                                      0.00417, 0.00125, 0.00104};
// Steps of the converter over a range, for each integration time.
constexpr std::array<double, 6> Steps = {131072, 131072, 32768, 32768, 8192, 8192};
constexpr double SolidStateSettling = 0.001;
constexpr double ReedSettling = 0.004;

// Full scales of the ranges 1, 2, 3, 4 in V, ohm and A.
constexpr std::array<double, 4> VoltRanges = {0.02, 0.2, 2.0, 10.0};
constexpr std::array<double, 4> OhmRanges = {25.0, 250.0, 2500.0, 25000.0};
constexpr std::array<double, 4> AmpereRanges = {200e-6, 2e-3, 20e-3, 100e-3};

constexpr double ShuntOhms = 10.0;           // across a current input
constexpr double ProbeAmperes = 1e-3;        // through a resistance
constexpr double Platinum10Amperes = 10e-3;  // through a 10 ohm thermometer
constexpr double NoiseShare = 1e-6;          // of the range, at 20 ms
constexpr double LargestGainError = 1e-3;

constexpr double LowestAmbient = -30.0;
constexpr double HighestAmbient = 80.0;

// Random steps are numbered by the microsecond of a measurement.
std::int64_t step_of(double time_s) {
    return std::llround(time_s * 1e6);
}

double to_celsius(double temperature, bool fahrenheit) {
    return fahrenheit ? (temperature - 32.0) / 1.8 : temperature;
}

double from_celsius(double celsius, bool fahrenheit) {
    return fahrenheit ? celsius * 1.8 + 32.0 : celsius;
}

// Volts across the bridge of a strain mode.
double bridge_volts(int mode, double gauge_ohms) {
    const bool full = mode == 64 || mode == 65;
    const bool strong = mode % 2 == 0;
    if (full) return gauge_ohms * (strong ? 8e-3 : 1.6e-3);
    return 2.0 * gauge_ohms * (strong ? 4e-3 : 0.8e-3);
}

}  // namespace

AnalogInputs::AnalogInputs(const PodSettings& pod, const RandomSource& random)
    : pod_(pod),
      family_(pod_family(std::string_view(pod.ident).substr(0, 2))),
      random_(random),
      gain_error_((2.0 * random.child(1000).unit(0) - 1.0) * LargestGainError) {}

double AnalogInputs::duration(const HeldSettings& held) const {
    const bool reed = pod_.ident.starts_with("7T") || pod_.ident.starts_with("7U");
    return IntegrationSeconds.at(static_cast<std::size_t>(held.integration)) +
           (reed ? ReedSettling : SolidStateSettling);
}

AnalogInputs::Shot AnalogInputs::shoot(const HeldSettings& held, int channel, double time_s) const {
    const double integration_s = IntegrationSeconds.at(static_cast<std::size_t>(held.integration));
    const double middle_s = time_s + duration(held) - integration_s / 2.0;
    return {held,          held.channels.at(static_cast<std::size_t>(channel - 1)),
            channel,       middle_s,
            integration_s, terminals_at(pod_, channel, held, random_, middle_s)};
}

Reading AnalogInputs::measure(const HeldSettings& held, int channel, double time_s) const {
    const Shot shot = shoot(held, channel, time_s);
    const Outcome outcome = finish(shot, quantity(shot));
    return {static_cast<float>(outcome.value), code_of(outcome.fail), duration(held)};
}

AnalogInputs::Balance AnalogInputs::balance(const HeldSettings& held, int channel,
                                            double time_s) const {
    const Shot shot = shoot(held, channel, time_s);
    const Outcome output = bridge_output(shot);
    const double across = bridge_volts(
        shot.set.mode, pod_.channels.at(static_cast<std::size_t>(channel - 1)).gauge_ohms);
    return {{static_cast<float>(output.value), code_of(output.fail), duration(held)},
            static_cast<float>(across)};
}

// What the mode measures, in degrees Celsius where it is a temperature.
AnalogInputs::Outcome AnalogInputs::quantity(const Shot& shot) const {
    const int mode = shot.set.mode;
    if (mode >= 20 && mode <= 22) return ohms(shot);
    if (mode >= 30 && mode <= 39) return thermocouple(shot);
    if (mode >= 40 && mode <= 43) return platinum(shot);
    if (mode == 50) return amperes(shot);
    if (mode >= 60 && mode <= 67) return strain(shot);
    return volts(shot);
}

// Mains hum that an integration time leaves over: none when it holds whole periods.
double AnalogInputs::hum(const Shot& shot) const {
    if (pod_.hum_v == 0.0) return 0.0;
    const double half_turns = std::numbers::pi * pod_.mains_hz * shot.integration_s;
    return pod_.hum_v * std::sin(half_turns) / half_turns *
           std::sin(2.0 * std::numbers::pi * pod_.mains_hz * shot.time_s);
}

// The converter: range 0 takes the smallest of `ranges` that holds the value, any other is fixed.
AnalogInputs::Outcome AnalogInputs::convert(const Shot& shot, double exact,
                                            std::span<const double> ranges) const {
    double limit = ranges.back();
    if (shot.set.range > 0) {
        limit = ranges[static_cast<std::size_t>(shot.set.range - 1)];
    } else {
        for (const double range : ranges)
            if (std::fabs(exact) <= range) {
                limit = range;
                break;
            }
    }
    if (!(std::fabs(exact) <= limit)) return {std::copysign(limit, exact), Fail::Overload};
    if (!shot.held.calibration) exact *= 1.0 + gain_error_;
    if (pod_.noise == 0.0) return {exact};
    const auto integration = static_cast<std::size_t>(shot.held.integration);
    const double noise =
        pod_.noise * NoiseShare * limit * 3.0 *
        std::sqrt(IntegrationSeconds[0] / shot.integration_s) *
        random_.child(2000 + static_cast<std::uint64_t>(shot.channel)).bell(step_of(shot.time_s));
    const double step = limit / Steps.at(integration);
    return {std::round((exact + noise) / step) * step};
}

AnalogInputs::Outcome AnalogInputs::volts(const Shot& shot) const {
    const std::size_t ranges = family_ == PodFamily::Bridge ? 3 : 4;
    // A current that finds no way through drives the input out of range.
    const double exact = shot.terminals.amperes != 0.0
                             ? std::copysign(Infinite, shot.terminals.amperes)
                             : shot.terminals.volts + hum(shot);
    return convert(shot, exact, std::span(VoltRanges).first(ranges));
}

AnalogInputs::Outcome AnalogInputs::amperes(const Shot& shot) const {
    return convert(shot, shot.terminals.amperes + (shot.terminals.volts + hum(shot)) / ShuntOhms,
                   AmpereRanges);
}

AnalogInputs::Outcome AnalogInputs::ohms(const Shot& shot) const {
    const std::size_t ranges = family_ == PodFamily::Universal ? 4 : 3;
    // Two terminals measure the leads as well.
    const double leads = shot.set.mode == 22 ? 2.0 * shot.terminals.lead_ohms : 0.0;
    const double exact = shot.terminals.open || shot.terminals.amperes != 0.0
                             ? Infinite
                             : shot.terminals.ohms + leads + shot.terminals.volts / ProbeAmperes;
    return convert(shot, exact, std::span(OhmRanges).first(ranges));
}

AnalogInputs::Outcome AnalogInputs::platinum(const Shot& shot) const {
    if (shot.terminals.open || shot.terminals.is_source || shot.terminals.is_bridge)
        return {0.0, Fail::Transducer};
    const bool ten_ohm = shot.set.mode >= 42;
    const double probe = ten_ohm ? Platinum10Amperes : ProbeAmperes;
    const Outcome across =
        convert(shot, shot.terminals.ohms * probe, std::span(VoltRanges).first(3));
    if (across.fail != Fail::None) return across;
    const auto celsius = platinum_celsius(across.value / probe / (ten_ohm ? 10.0 : 100.0));
    return celsius ? Outcome{*celsius} : Outcome{0.0, Fail::OutOfLinearisation};
}

// The temperature that the pod takes for its reference junctions: its own, or the one it was told.
std::optional<double> AnalogInputs::reference(const Shot& shot) const {
    double celsius =
        to_celsius(static_cast<double>(shot.held.external_temperature), shot.held.fahrenheit);
    if (shot.held.ambient_reference)
        celsius = ambient_at(pod_, shot.time_s) +
                  pod_.noise * 0.03 * random_.child(3000).bell(step_of(shot.time_s));
    if (!(celsius >= LowestAmbient && celsius <= HighestAmbient)) return std::nullopt;
    return celsius;
}

AnalogInputs::Outcome AnalogInputs::thermocouple(const Shot& shot) const {
    const int mode = shot.set.mode;
    const bool user = mode == 30 || mode == 39;
    const HeldUserTable& table = shot.held.user_tables.at(mode == 30 ? 1 : 0);
    if (user && !table.defined) return {0.0, Fail::UndefinedThermocouple};
    if (shot.terminals.open && shot.held.open_check) return {0.0, Fail::OpenThermocouple};
    const Outcome measured = volts(shot);
    if (measured.fail != Fail::None) return measured;
    const auto junction = reference(shot);
    if (!junction) return {0.0, Fail::AmbientRange};
    if (user) {
        const double millivolts =
            measured.value * 1000.0 + polynomial_value(table.inverse, *junction);
        return {polynomial_value(table.polynomial, millivolts)};
    }
    const auto type = static_cast<Thermocouple>(mode - 31);
    const auto celsius =
        thermocouple_celsius(type, measured.value + thermocouple_volts(type, *junction));
    return celsius ? Outcome{*celsius} : Outcome{0.0, Fail::OutOfLinearisation};
}

// Output volts of a strain gauge bridge.
AnalogInputs::Outcome AnalogInputs::bridge_output(const Shot& shot) const {
    const ChannelSettings& wired = pod_.channels.at(static_cast<std::size_t>(shot.channel - 1));
    if (shot.terminals.open || !shot.terminals.is_bridge) return {0.0, Fail::Transducer};
    return convert(shot, shot.terminals.bridge * bridge_volts(shot.set.mode, wired.gauge_ohms),
                   std::span(VoltRanges).first(3));
}

// Microstrain against the balance that the pod was given.
AnalogInputs::Outcome AnalogInputs::strain(const Shot& shot) const {
    const double gain = static_cast<double>(shot.set.gauge_factor) *
                        static_cast<double>(shot.set.initial_volt) * active_gauges(shot.set.mode) /
                        4.0;
    if (gain == 0.0) return {0.0, Fail::StrainNotInitialised};
    Outcome outcome = bridge_output(shot);
    if (outcome.fail == Fail::None)
        outcome.value = (outcome.value - static_cast<double>(shot.set.offset)) / gain * 1e6;
    return outcome;
}

// Units and post-linearisation. A polynomial can lead out of the numbers that a reading can hold.
AnalogInputs::Outcome AnalogInputs::finish(const Shot& shot, Outcome outcome) const {
    if (outcome.fail != Fail::None) return outcome;
    if (shot.set.mode >= 30 && shot.set.mode <= 43)
        outcome.value = from_celsius(outcome.value, shot.held.fahrenheit);
    if (shot.set.equation != 0) {
        const HeldEquation& equation =
            shot.held.equations.at(static_cast<std::size_t>(shot.set.equation - 1));
        if (!equation.defined) return {0.0, Fail::OutOfLinearisation};
        outcome.value = polynomial_value(equation.coefficients, outcome.value);
    }
    constexpr double Largest = static_cast<double>(std::numeric_limits<float>::max());
    if (!(std::fabs(outcome.value) <= Largest)) return {0.0, Fail::OutOfLinearisation};
    return outcome;
}

}  // namespace kavorix::sim
