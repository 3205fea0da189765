#pragma once

// Temperature sensors as tables of physics: thermocouples after the ITS-90 reference functions and
// platinum resistance thermometers. Temperatures in degrees Celsius.

#include <optional>

namespace kavorix::sim {

enum class Thermocouple { E, J, K, R, S, T, B, N };

// Volts of a junction at `celsius` against one at 0 degrees. Outside the range of the type the
// nearest end of it is taken.
double thermocouple_volts(Thermocouple type, double celsius);

// The temperature of a junction that gives `volts` against one at 0 degrees; nothing outside the
// range that the type is linearised over (for type B the curve is of no use below 50 degrees).
std::optional<double> thermocouple_celsius(Thermocouple type, double volts);

// Resistance of platinum relative to that at 0 degrees, and back; nothing outside -200..850.
double platinum_ratio(double celsius);
std::optional<double> platinum_celsius(double ratio);

}  // namespace kavorix::sim
