#include "sim/thermocouples.h"

#include <gtest/gtest.h>

namespace kavorix::test {
namespace {

using sim::Thermocouple;

struct TableCase {
    Thermocouple type;
    double celsius;
    double millivolts;
};

// Values of the published reference tables, to their last digit.
constexpr TableCase Table[] = {
    {Thermocouple::E, -200, -8.825}, {Thermocouple::E, 100, 6.319},
    {Thermocouple::E, 1000, 76.373}, {Thermocouple::J, -200, -7.890},
    {Thermocouple::J, 100, 5.269},   {Thermocouple::J, 760, 42.919},
    {Thermocouple::J, 1000, 57.953}, {Thermocouple::K, -200, -5.891},
    {Thermocouple::K, 100, 4.096},   {Thermocouple::K, 500, 20.644},
    {Thermocouple::K, 1000, 41.276}, {Thermocouple::R, 100, 0.647},
    {Thermocouple::R, 1000, 10.506}, {Thermocouple::R, 1700, 20.222},
    {Thermocouple::S, 100, 0.646},   {Thermocouple::S, 1000, 9.587},
    {Thermocouple::S, 1700, 17.947}, {Thermocouple::T, -200, -5.603},
    {Thermocouple::T, 100, 4.279},   {Thermocouple::T, 400, 20.872},
    {Thermocouple::B, 100, 0.033},   {Thermocouple::B, 1000, 4.834},
    {Thermocouple::B, 1800, 13.591}, {Thermocouple::N, -200, -3.990},
    {Thermocouple::N, 100, 2.774},   {Thermocouple::N, 1300, 47.513},
};

TEST(ThermocoupleTest, VoltagesAreThoseOfTheTables) {
    for (const TableCase& c : Table)
        EXPECT_NEAR(sim::thermocouple_volts(c.type, c.celsius) * 1000.0, c.millivolts, 0.00051)
            << static_cast<int>(c.type) << " at " << c.celsius;
}

TEST(ThermocoupleTest, EveryTemperatureComesBack) {
    for (int type = 0; type < 8; ++type)
        for (double celsius = type == 6                ? 50.0
                              : type == 3 || type == 4 ? -50.0
                                                       : -210.0;
             celsius <= 400.0; celsius += 1.37) {
            const double volts = sim::thermocouple_volts(static_cast<Thermocouple>(type), celsius);
            const auto back = sim::thermocouple_celsius(static_cast<Thermocouple>(type), volts);
            ASSERT_TRUE(back.has_value()) << type << " at " << celsius;
            EXPECT_NEAR(*back, celsius, 1e-4) << type;
        }
}

TEST(ThermocoupleTest, PiecesMeetWithoutAJump) {
    struct Joint {
        Thermocouple type;
        double celsius;
    };
    const Joint joints[] = {{Thermocouple::E, 0},       {Thermocouple::J, 760},
                            {Thermocouple::K, 0},       {Thermocouple::R, 1064.18},
                            {Thermocouple::R, 1664.5},  {Thermocouple::S, 1064.18},
                            {Thermocouple::S, 1664.5},  {Thermocouple::T, 0},
                            {Thermocouple::B, 630.615}, {Thermocouple::N, 0}};
    for (const Joint& joint : joints)
        EXPECT_NEAR(sim::thermocouple_volts(joint.type, joint.celsius - 1e-6),
                    sim::thermocouple_volts(joint.type, joint.celsius + 1e-6), 1e-6)
            << static_cast<int>(joint.type) << " at " << joint.celsius;
}

TEST(ThermocoupleTest, OutsideTheCurveThereIsNoTemperature) {
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::K, 0.056));
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::K, -0.007));
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::B, 0.0));
    EXPECT_FALSE(sim::thermocouple_celsius(Thermocouple::T, 0.021));
}

TEST(PlatinumTest, RatiosAreThoseOfTheStandard) {
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
