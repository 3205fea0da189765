// What pods make of the signals at their terminals.

#include <gtest/gtest.h>

#include <cmath>

#include "sim/bench_network.h"
#include "sim/thermocouples.h"

namespace kavorix::test {
namespace {

// A card and one ideal pod of a type, with channel tables and further keys of the pod.
std::string pod_of(const std::string& type, const std::string& channels,
                   const std::string& keys = "noise = 0\n") {
    return "[card]\n[[pod]]\nnumber = 3\nident = \"" + type + "JA 0F 1.00\"\n" + keys + channels;
}

std::string constant(int channel, double value, const std::string& keys = "") {
    return "[[pod.channel]]\nnumber = " + std::to_string(channel) +
           "\nsignal = \"constant\"\noffset = " + std::to_string(value) + "\n" + keys;
}

std::string open(int channel) {
    return "[[pod.channel]]\nnumber = " + std::to_string(channel) + "\nsignal = \"open\"\n";
}

struct Measured {
    float value;
    int error;  // 0, or the code less 128
};

Measured measure(const std::string& scenario, const std::vector<std::string>& commands,
                 std::size_t channel = 1) {
    BenchNetwork bench(scenario);
    for (const std::string& command : commands) bench.send(3, command);
    const ScanRecord record = bench.triggered_scan(3);
    const int code = record.codes.at(channel - 1);
    return {record.values.at(channel - 1), code > 128 ? code - 128 : 0};
}

struct ModeCase {
    const char* type;
    const char* sensor;
    double value;
    const char* mode;  // mode and range digits
    double reading;
    int error;
};

void expect_readings(const std::vector<ModeCase>& cases) {
    for (const ModeCase& c : cases) {
        const Measured measured = measure(
            pod_of(c.type,
                   constant(1, c.value,
                            std::string("sensor = \"") + c.sensor + "\"\nlead_ohms = 0.5\n")),
            {std::string("CH1MO") + c.mode});
        EXPECT_EQ(measured.error, c.error) << c.sensor << " in " << c.mode;
        EXPECT_NEAR(measured.value, c.reading, 1e-3 + std::fabs(c.reading) * 1e-5)
            << c.sensor << " in " << c.mode;
    }
}

TEST(AnalogTest, AutoTakesTheSignalForWhatTheModeMeasures) {
    expect_readings({
        {"7V", "auto", 1.5, "100", 1.5, 0},
        {"7V", "auto", 230.0, "200", 230.0, 0},
        {"7V", "auto", 230.0, "210", 230.0, 0},
        {"7V", "auto", 230.0, "220", 231.0, 0},
        {"7V", "auto", 650.0, "330", 650.0, 0},
        {"7V", "auto", -55.0, "360", -55.0, 0},
        {"7V", "auto", 123.0, "400", 123.0, 0},
        {"7V", "auto", -123.0, "420", -123.0, 0},
        {"7V", "auto", 0.012, "500", 0.012, 0},
        {"7R", "auto", 1500.0, "340", 1500.0, 0},
    });
}

TEST(AnalogTest, ASensorIsReadThroughTheModeThatIsSet) {
    const double k200 = sim::thermocouple_volts(sim::Thermocouple::K, 200.0) -
                        sim::thermocouple_volts(sim::Thermocouple::K, 23.0);
    const double as_j = *sim::thermocouple_celsius(
        sim::Thermocouple::J, k200 + sim::thermocouple_volts(sim::Thermocouple::J, 23.0));
    expect_readings({
        {"7V", "thermocouple_k", 200.0, "101", k200, 0},
        {"7V", "thermocouple_k", 200.0, "330", 200.0, 0},
        {"7V", "thermocouple_k", 200.0, "320", as_j, 0},
        {"7V", "rtd_100", 100.0, "200", 138.506, 0},
        {"7V", "rtd_100", 0.0, "400", 0.0, 0},
        {"7V", "rtd_10", 0.0, "400", 0.0, 3},
        {"7V", "resistance", 100.0, "400", 0.0, 0},
        {"7V", "resistance", 100.0, "100", 0.0, 0},
        {"7V", "voltage", 1.0, "500", 0.1, 0},
        {"7V", "voltage", 0.05, "400", 0.0, 5},
        {"7V", "current", 0.05, "100", 10.0, 1},
        {"7V", "current", 0.05, "500", 0.05, 0},
        {"7S", "voltage", 1.0, "600", 0.0, 12},
    });
}

TEST(AnalogTest, OverloadBeyondTheRange) {
    expect_readings({
        {"7V", "auto", 0.02, "101", 0.02, 0},
        {"7V", "auto", 0.0201, "101", 0.02, 1},
        {"7V", "auto", -0.21, "102", -0.2, 1},
        {"7V", "auto", 2.1, "103", 2.0, 1},
        {"7V", "auto", 10.0, "104", 10.0, 0},
        {"7V", "auto", 10.1, "100", 10.0, 1},
        {"7S", "auto", 2.1, "100", 2.0, 1},
        {"7V", "auto", 26.0, "201", 25.0, 1},
        {"7V", "auto", 2600.0, "223", 2500.0, 1},
        {"7V", "auto", 2600.0, "200", 2600.0, 0},
        {"7S", "auto", 2600.0, "200", 2500.0, 1},
        {"7V", "auto", 0.0003, "501", 0.0002, 1},
        {"7V", "auto", 700.0, "331", 0.02, 1},  // 28 mV of thermocouple on 20 mV
        {"7V", "auto", 100.0, "401", 0.02, 1},  // 138 mV across the thermometer
    });
}

TEST(AnalogTest, OpenInputs) {
    const auto error = [](const char* type, std::vector<std::string> commands) {
        return measure(pod_of(type, open(1)), commands).error;
    };
    EXPECT_EQ(error("7V", {"CH1MO100"}), 0);
    EXPECT_EQ(error("7V", {"CH1MO500"}), 0);
    EXPECT_EQ(error("7V", {"CH1MO200"}), 1);
    EXPECT_EQ(error("7V", {"CH1MO400"}), 5);
    EXPECT_EQ(error("7V", {"TC1", "CH1MO330"}), 6);
    EXPECT_EQ(error("7S", {"CH1MO600", "CH1GA'2'", "CH1OF'0''1'"}), 5);
    const Measured unchecked = measure(pod_of("7V", open(1)), {"TC0", "CH1MO330"});
    EXPECT_EQ(unchecked.error, 0);
    EXPECT_NEAR(unchecked.value, 23.0, 1e-3) << "no voltage: the temperature of the terminals";
}

TEST(AnalogTest, TheReferenceIsTheAmbientTemperatureOrTheOneToldTo) {
    const std::string k300 = constant(1, 300.0);
    const auto reading = [&](const std::string& keys, std::vector<std::string> commands) {
        commands.push_back("CH1MO330");
        return measure(pod_of("7V", k300, "noise = 0\n" + keys), commands);
    };
    EXPECT_NEAR(reading("ambient = 35.0\n", {}).value, 300.0, 1e-3);
    EXPECT_NEAR(reading("ambient = 35.0\n", {"TE'35'"}).value, 300.0, 1e-3);
    EXPECT_NEAR(reading("ambient = 35.0\n", {"TE'35'", "AM"}).value, 300.0, 1e-3);
    EXPECT_NEAR(reading("ambient = 35.0\n", {"TE'25'"}).value, 300.0 - 10.0, 0.6);
    EXPECT_NEAR(reading("ambient = 35.0\nreference = 0.0\n", {"TE'0'"}).value, 300.0, 1e-3);
    EXPECT_NEAR(reading("", {"UN1", "TE'73'"}).value, 572.0, 0.5);  // 73 F = 22.8 C
    EXPECT_EQ(reading("ambient = 81.0\n", {}).error, 4);
    EXPECT_EQ(reading("", {"TE'-31'"}).error, 4);
    EXPECT_EQ(reading("", {"UN1", "TE'177'"}).error, 4) << "177 F is above 80 C";
    EXPECT_EQ(reading("", {"UN1", "TE'176'"}).error, 0);
}

TEST(AnalogTest, FahrenheitIsForTemperaturesOnly) {
    EXPECT_NEAR(measure(pod_of("7V", constant(1, 100.0)), {"UN1", "CH1MO400"}).value, 212.0, 1e-3);
    EXPECT_NEAR(measure(pod_of("7V", constant(1, 100.0)), {"UN1", "CH1MO330"}).value, 212.0, 1e-3);
    EXPECT_NEAR(measure(pod_of("7V", constant(1, 100.0)), {"UN1", "CH1MO200"}).value, 100.0, 1e-3);
}

TEST(AnalogTest, UserThermocouplesUseTheirTables) {
    // 0.05 mV a degree: polynomial 20 x, inverse 0.05 x.
    const std::string linear = "'0''0''0''0''20''0''0''0''0''0''0.05''0'";
    const std::string other = "'0''0''0''0''10''0''0''0''0''0''0.1''0'";
    const std::string scenario = pod_of("7V", constant(1, 150.0) + constant(2, 60.0));
    EXPECT_EQ(measure(scenario, {"CH1MO390"}).error, 2);
    EXPECT_EQ(measure(scenario, {"UT1" + linear, "CH1MO3A0"}).error, 2) << "table 2 is missing";
    const std::vector<std::string> both = {"UT1" + linear, "UT2" + other, "CH1MO390", "CH2MO3A0"};
    EXPECT_NEAR(measure(scenario, both, 1).value, 150.0, 1e-3);
    EXPECT_NEAR(measure(scenario, both, 2).value, 60.0, 1e-3);
}

TEST(AnalogTest, PostLinearisationComesLast) {
    const std::string scenario = pod_of("7V", constant(1, 2.0) + constant(2, 100.0));
    const std::vector<std::string> commands = {"PL1'0''0''0''3''2''1'",
                                               "PL2'1''0''0''0''0''0'",
                                               "UN1",
                                               "CH1MO100",
                                               "CH01PL1",
                                               "CH2MO330",
                                               "CH02PL1"};
    EXPECT_NEAR(measure(scenario, commands, 1).value, 3.0 * 4.0 + 2.0 * 2.0 + 1.0, 1e-3);
    EXPECT_NEAR(measure(scenario, commands, 2).value, 3.0 * 212.0 * 212.0 + 425.0, 2.0);
    EXPECT_EQ(measure(scenario, {"CH1MO100", "CH01PL2"}).error, 3) << "no such equation";
    EXPECT_EQ(measure(scenario,
                      {"PL2'1E30''0''0''0''0''0'", "CH2MO100", "CH02PL2", "CH1MO100", "CH01PL2"})
                  .error,
              0);
    EXPECT_EQ(measure(scenario, {"PL2'3E38''0''0''0''0''0'", "CH1MO100", "CH01PL2"}).error, 3)
        << "beyond the numbers of a reading";
}

struct StrainCase {
    const char* mode;
    double volts_across;
};

TEST(StrainTest, InitialisingTheGaugeGivesItsMicrostrain) {
    const StrainCase cases[] = {{"600", 0.96}, {"610", 0.192}, {"620", 0.96}, {"630", 0.192},
                                {"640", 0.96}, {"650", 0.192}, {"660", 0.96}, {"670", 0.192}};
    for (const StrainCase& c : cases) {
        BenchNetwork bench(pod_of("7S",
                                  "[[pod.channel]]\nnumber = 4\nsignal = \"square\"\namplitude = "
                                  "500\noffset = 500\nphase = 0.5\nperiod_s = 20.0\n"));
        bench.send(3, std::string("CH4MO") + c.mode);
        bench.send(3, "CH4GA'2'");
        EXPECT_EQ(bench.triggered_scan(3).codes[3], 128 + 12);
        bench.send(3, "IN04");
        bench.loop.advance(100);
        const auto balance = bench.answer(3).value();
        EXPECT_EQ(balance.code, 0);
        EXPECT_NEAR(balance.first, 0.1e-3 * c.volts_across, 1e-7) << c.mode;
        EXPECT_NEAR(balance.second, c.volts_across, 1e-5) << c.mode;
        EXPECT_NEAR(bench.triggered_scan(3).values[3], 0.0, 0.01) << c.mode;
        bench.loop.advance(10000);
        EXPECT_NEAR(bench.triggered_scan(3).values[3], 1000.0, 0.1) << c.mode;
    }
}

TEST(StrainTest, OffsetAndInitialVoltCanBeTold) {
    const auto reading = [](std::vector<std::string> commands) {
        commands.insert(commands.begin(), "CH1MO620");
        return measure(
            pod_of("7S", constant(1, 1000.0, "gauge_factor = 2.1\nimbalance_mv_v = 0\n")),
            commands);
    };
    EXPECT_EQ(reading({"CH1GA'2.1'"}).error, 12);
    EXPECT_EQ(reading({"CH1OF'0''0.96'"}).error, 12);
    EXPECT_NEAR(reading({"CH1GA'2.1'", "CH1OF'0''0.96'"}).value, 1000.0, 0.1);
    EXPECT_NEAR(reading({"CH1GA'4.2'", "CH1OF'0''0.96'"}).value, 500.0, 0.1);
}

TEST(StrainTest, OnlyStrainChannelsCanBeInitialised) {
    BenchNetwork bench(pod_of("7S", constant(1, 1.0)));
    bench.send(3, "IN01");
    bench.loop.advance(100);
    EXPECT_EQ(bench.answer(3)->code, 135);
}

TEST(PairTest, AFourTerminalChannelTakesTheNextOne) {
    const std::string scenario = pod_of("7V", constant(3, 100.0) + constant(4, 1.0));
    EXPECT_EQ(measure(scenario, {"CH3MO200", "CH4MO100"}, 4).error, 7);
    EXPECT_EQ(measure(scenario, {"CH3MO200", "CH4MO000"}, 4).error, 127);
    EXPECT_EQ(measure(scenario, {"CH3MO220", "CH4MO100"}, 4).error, 0);
}

// Standard deviation of many readings of 1 V.
double spread(const std::string& keys, const std::string& command) {
    BenchNetwork bench(pod_of("7R", constant(1, 1.0), keys));
    bench.send(3, command);
    double sum = 0.0;
    double squares = 0.0;
    constexpr int Count = 300;
    for (int i = 0; i < Count; ++i) {
        const auto value = static_cast<double>(bench.triggered_scan(3).values[0]) - 1.0;
        sum += value;
        squares += value * value;
        bench.loop.advance(3);
    }
    return std::sqrt(squares / Count - sum * sum / Count / Count);
}

TEST(ConverterTest, ShorterIntegrationIsNoisier) {
    const double slow = spread("noise = 30\n", "FR0");
    const double fast = spread("noise = 30\n", "FR4");
    EXPECT_GT(slow, 1e-5);
    EXPECT_LT(slow, 2e-4);
    EXPECT_GT(fast, 2.5 * slow);
    EXPECT_EQ(spread("noise = 0\n", "FR4"), 0.0);
}

TEST(ConverterTest, AWholeMainsPeriodTakesTheHumAway) {
    EXPECT_LT(spread("noise = 0\nhum_v = 0.1\n", "FR0"), 1e-6);
    EXPECT_GT(spread("noise = 0\nhum_v = 0.1\n", "FR1"), 5e-3);
    EXPECT_LT(spread("noise = 0\nhum_v = 0.1\nmains_hz = 60\n", "FR1"), 1e-4);
    EXPECT_GT(spread("noise = 0\nhum_v = 0.1\n", "FR4"), 3e-2);
}

TEST(ConverterTest, AFixedRangeDecidesTheResolution) {
    const auto error = [](const char* mode) {
        return std::fabs(measure(pod_of("7V", constant(1, 0.015123), ""), {mode}).value -
                         0.015123F);
    };
    EXPECT_LT(error("CH1MO100"), 3e-7) << "autorange takes 20 mV";
    EXPECT_GT(error("CH1MO104"), 1e-6);
    EXPECT_LT(error("CH1MO104"), 1e-4);
}

TEST(ConverterTest, WithoutCalibrationTheGainIsOff) {
    const std::string scenario = pod_of("7V", constant(1, 1.0));
    EXPECT_EQ(measure(scenario, {"KA0"}).value, 1.0F);
    const float raw = measure(scenario, {"KA1"}).value;
    EXPECT_NE(raw, 1.0F);
    EXPECT_NEAR(raw, 1.0F, 1.1e-3);
}

TEST(StatusInputTest, UniversalChannelsKnowThreeKindsOfLogic) {
    const auto level = [](double volts, const char* mode) {
        return measure(pod_of("7V", constant(1, volts)), {mode}).value;
    };
    EXPECT_EQ(level(2.0, "CH1MO700"), 1.0F);
    EXPECT_EQ(level(1.0, "CH1MO700"), 0.0F);
    EXPECT_EQ(level(2.0, "CH1MO701"), 0.0F);
    EXPECT_EQ(level(9.5, "CH1MO701"), 1.0F);
    EXPECT_EQ(measure(pod_of("7V", open(1)), {"CH1MO702"}).value, 1.0F) << "open contact";
    EXPECT_EQ(level(0.0, "CH1MO702"), 0.0F);
}

TEST(SampleRateTest, PulsesShorterThanASampleAreNotSeen) {
    const auto count = [](const char* rate) {
        BenchNetwork bench(pod_of("8R",
                                  "[[pod.channel]]\nnumber = 1\nsignal = \"square\"\nperiod_s = "
                                  "0.2\nduty = 0.1\n"));
        bench.send(3, "CH1MO741");
        bench.send(3, rate);
        bench.loop.advance(2000);
        return bench.triggered_scan(3).values[0];
    };
    EXPECT_EQ(count("CH1RA1"), 0.0F) << "20 ms pulses at 20 Hz";
    EXPECT_GE(count("CH1RA2"), 10.0F);
    EXPECT_GE(count("CH1RA0"), 10.0F);
}

// A slow ramp through an alarm: 0 V to 4 V in 100 s, then down at once.
const std::string Ramp =
    "[[pod.channel]]\nnumber = 2\nsignal = \"ramp\"\namplitude = 2.0\noffset = 2.0\nperiod_s = "
    "100.0\n[[pod.channel]]\nnumber = 19\nlast = 20\nsignal = \"constant\"\n";

// The seconds at which the output on channel 19 changes.
std::vector<int> changes(const std::string& scenario, const std::vector<std::string>& commands) {
    BenchNetwork bench(scenario);
    for (const std::string& command : commands) bench.send(3, command);
    for (const char* command : {"SP'1000'", "CO", "TR"}) bench.send(3, command);
    std::vector<int> seen;
    float before = -1.0F;
    for (int second = 0; second < 120; ++second) {
        bench.loop.advance(1000);
        const float now = bench.scan(3).value().values[18];
        if (before >= 0.0F && now != before) seen.push_back(second);
        before = now;
    }
    return seen;
}

TEST(AlarmTest, AHighAlarmTripsBeyondItsLimitAndClearsBelowTheHysteresis) {
    const auto times = changes(pod_of("7V", Ramp), {"CH02HL'2''1'", "CH19MO802", "CH19GO102H"});
    ASSERT_EQ(times.size(), 2u);
    EXPECT_NEAR(times[0], 50, 2);
    EXPECT_NEAR(times[1], 100, 2);
}

TEST(AlarmTest, ALowAlarmAndADisassertedOutput) {
    // Low below 1 V until it passes 1.5 V at 37.5 s; asserted while there is no alarm.
    const auto times = changes(pod_of("7V", Ramp), {"CH02LL'1''0.5'", "CH19MO802", "CH19GO002L"});
    ASSERT_EQ(times.size(), 2u);
    EXPECT_NEAR(times[0], 38, 2);
    EXPECT_NEAR(times[1], 100, 2);
}

TEST(AlarmTest, OnlyMembersOfAGroupDriveATripOutput) {
    const std::string scenario = pod_of("7V", Ramp);
    EXPECT_TRUE(changes(scenario, {"CH02HL'2''1'", "CH19MO802", "CH19GO102L"}).empty());
    EXPECT_TRUE(changes(scenario, {"CH02HL'2''1'", "CH19MO802"}).empty());
    EXPECT_TRUE(changes(scenario, {"CH02HL'2''1'", "CH19MO801", "CH19GO102H"}).empty());
    EXPECT_TRUE(changes(scenario, {"CH19MO802", "CH19GO102H"}).empty());
    EXPECT_TRUE(changes(scenario, {"CH02HL'2''1'", "CH20MO802", "CH20GO102H"}).empty());
}

TEST(AlarmTest, OutputsFollowEvenScansThatNobodyReads) {
    BenchNetwork bench(pod_of("7V",
                              "[[pod.channel]]\nnumber = 2\nsignal = \"square\"\namplitude = "
                              "1.0\nperiod_s = 40.0\nduty = 0.25\n"));
    // Trips above 0.5 V; with this hysteresis it never clears: one short excursion is enough.
    for (const char* command :
         {"CH02HL'0.5''5'", "CH19MO802", "CH19GO102H", "SP'1000'", "CO", "TR"})
        bench.send(3, command);
    bench.loop.advance(35000);
    EXPECT_EQ(bench.scan(3)->values[18], 1.0F);
}

}  // namespace
}  // namespace kavorix::test
