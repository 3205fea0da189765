#include "sim/thermocouples.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kavorix::test {
namespace {

using sim::Thermocouple;

struct Curve {
    Thermocouple type;
    double lowest;  // from here on every voltage has one temperature
    std::vector<double> joints;
    std::vector<std::pair<double, double>> table;  // degrees Celsius and mV
};

// Values of the published reference tables, to their last digit.
const Curve Curves[] = {
    {Thermocouple::E, -210, {0}, {{-200, -8.825}, {100, 6.319}, {1000, 76.373}}},
    {Thermocouple::J, -210, {760}, {{-200, -7.890}, {100, 5.269}, {760, 42.919}, {1000, 57.953}}},
    {Thermocouple::K, -210, {0}, {{-200, -5.891}, {100, 4.096}, {500, 20.644}, {1000, 41.276}}},
    {Thermocouple::R, -50, {1064.18, 1664.5}, {{100, 0.647}, {1000, 10.506}, {1700, 20.222}}},
    {Thermocouple::S, -50, {1064.18, 1664.5}, {{100, 0.646}, {1000, 9.587}, {1700, 17.947}}},
    {Thermocouple::T, -210, {0}, {{-200, -5.603}, {100, 4.279}, {400, 20.872}}},
    {Thermocouple::B, 50, {630.615}, {{100, 0.033}, {1000, 4.834}, {1800, 13.591}}},
    {Thermocouple::N, -210, {0}, {{-200, -3.990}, {100, 2.774}, {1300, 47.513}}},
};

TEST(Thermocouples, FollowTheirTablesWithoutAJumpAndBack) {
    for (const Curve& curve : Curves) {
        SCOPED_TRACE(static_cast<int>(curve.type));
        const auto volts = [&](double celsius) {
            return sim::thermocouple_volts(curve.type, celsius);
        };
        for (const auto& [celsius, millivolts] : curve.table)
            EXPECT_NEAR(volts(celsius) * 1000.0, millivolts, 0.00051) << celsius;
        for (const double joint : curve.joints)
            EXPECT_NEAR(volts(joint - 1e-6), volts(joint + 1e-6), 1e-6) << joint;
        for (double celsius = curve.lowest; celsius <= 400.0; celsius += 1.37)
            EXPECT_NEAR(sim::thermocouple_celsius(curve.type, volts(celsius)).value_or(NAN),
                        celsius, 1e-4);
    }
}

TEST(Thermocouples, OutsideTheCurveThereIsNoTemperature) {
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::K, 0.056));
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::K, -0.007));
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::B, 0.0));
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::T, 0.021));
}

TEST(Platinum, RatiosAreThoseOfTheStandard) {
    EXPECT_NEAR(sim::platinum_ratio(-200), 0.1852, 5e-5);
    EXPECT_NEAR(sim::platinum_ratio(0), 1.0, 1e-12);
    EXPECT_NEAR(sim::platinum_ratio(100), 1.3851, 5e-5);
    EXPECT_NEAR(sim::platinum_ratio(850), 3.9048, 5e-5);
    for (double celsius = -200.0; celsius <= 850.0; celsius += 3.3)
        EXPECT_NEAR(sim::platinum_celsius(sim::platinum_ratio(celsius)).value(), celsius, 1e-4);
    EXPECT_FALSE(sim::platinum_celsius(0.1));
    EXPECT_FALSE(sim::platinum_celsius(4.0));
}

}  // namespace
}  // namespace kavorix::test
