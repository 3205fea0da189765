#include "sim/wiring.h"

#include <cmath>
#include <numbers>

#include "sim/thermocouples.h"

namespace kavorix::sim {

namespace {

Thermocouple thermocouple_of(SensorKind sensor) {
    return static_cast<Thermocouple>(static_cast<int>(sensor) -
                                     static_cast<int>(SensorKind::ThermocoupleE));
}

// A user thermocouple has no curve of its own but the one that the pod was given: millivolts of a
// temperature after its inverse polynomial.
double user_volts(const HeldUserTable& table, double celsius) {
    return polynomial_value(table.inverse, celsius) / 1000.0;
}

}  // namespace

double ambient_at(const PodSettings& pod, double time_s) {
    return pod.ambient +
           pod.ambient_swing * std::sin(2.0 * std::numbers::pi * time_s / pod.ambient_period_s);
}

SensorKind sensor_for_mode(int mode) {
    if (mode >= 31 && mode <= 38) {
        // The modes follow the letters' order of the catalogue: E, J, K, R, S, T, B, N.
        return static_cast<SensorKind>(static_cast<int>(SensorKind::ThermocoupleE) + mode - 31);
    }
    if (mode >= 20 && mode <= 22) return SensorKind::Resistance;
    if (mode == 40 || mode == 41) return SensorKind::Platinum100;
    if (mode == 42 || mode == 43) return SensorKind::Platinum10;
    if (mode == 50) return SensorKind::Current;
    if (mode >= 60 && mode <= 67) return SensorKind::Strain;
    return SensorKind::Voltage;
}

int active_gauges(int mode) {
    if (mode == 60 || mode == 61) return 2;
    if (mode == 64 || mode == 65) return 4;
    return 1;
}

double polynomial_value(const Coefficients& coefficients, double x) {
    double sum = 0.0;
    for (std::size_t i = coefficients.size(); i-- > 0;)
        sum = sum * x + static_cast<double>(coefficients.at(i));
    return sum;
}

Terminals terminals_at(const PodSettings& pod, int channel, const HeldSettings& held,
                       const RandomSource& random, double time_s) {
    const auto index = static_cast<std::size_t>(channel - 1);
    const ChannelSettings& wired = pod.channels.at(index);
    const int mode = held.channels.at(index).mode;
    const double value = signal_value(wired.signal, random.child(index), time_s);
    const double junction = pod.reference.value_or(ambient_at(pod, time_s));
    Terminals terminals;
    terminals.open = wired.signal.kind == SignalKind::Open;
    if (terminals.open) return terminals;
    if (wired.sensor == SensorKind::Auto && (mode == 30 || mode == 39)) {
        const HeldUserTable& table = held.user_tables.at(mode == 39 ? 0 : 1);
        terminals.volts = user_volts(table, value) - user_volts(table, junction);
        terminals.is_source = true;
        return terminals;
    }
    const SensorKind sensor =
        wired.sensor == SensorKind::Auto ? sensor_for_mode(mode) : wired.sensor;
    switch (sensor) {
        case SensorKind::Auto:
        case SensorKind::Voltage:
            terminals.volts = value;
            terminals.is_source = true;
            break;
        case SensorKind::Current:
            terminals.amperes = value;
            terminals.is_source = true;
            break;
        case SensorKind::Resistance:
            terminals.ohms = value;
            break;
        case SensorKind::Platinum100:
            terminals.ohms = 100.0 * platinum_ratio(value);
            break;
        case SensorKind::Platinum10:
            terminals.ohms = 10.0 * platinum_ratio(value);
            break;
        case SensorKind::Strain: {
            const int gauges = mode >= 60 && mode <= 67 ? active_gauges(mode) : 1;
            terminals.is_bridge = true;
            terminals.bridge =
                value * 1e-6 * wired.gauge_factor * gauges / 4.0 + wired.imbalance_mv_v * 1e-3;
            break;
        }
        default: {
            const Thermocouple type = thermocouple_of(sensor);
            terminals.volts = thermocouple_volts(type, value) - thermocouple_volts(type, junction);
            terminals.is_source = true;
            break;
        }
    }
    terminals.lead_ohms = wired.lead_ohms;
    return terminals;
}

}  // namespace kavorix::sim
