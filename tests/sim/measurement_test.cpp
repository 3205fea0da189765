// What pods make of the signals at their terminals.

#include <cmath>

#include "sim/bench_network.h"
#include "sim/thermocouples.h"

namespace kavorix::test {
namespace {

// What an ideal pod of a type reads after commands; as many channels as stand there.
struct Row {
    const char* pod;
    std::string commands;
    std::string readings;
};

void expect_readings(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        BenchNetwork bench(pod(5, std::string(row.pod).insert(2, "; noise=0")));
        bench.send(5, row.commands);
        const ScanRecord scan = bench.triggered_scan(5);
        std::string readings;
        for (std::size_t i = 0; i < split(row.readings, ' ').size(); ++i)
            readings += (i == 0 ? "" : " ") + reading(scan.values.at(i), scan.codes.at(i));
        EXPECT_EQ(readings, row.readings) << row.pod << " " << row.commands;
    }
}

// What channel 1 of a pod reads of a constant signal: "230 in 200: 231" is 230 of the sensor's
// units, in mode 20 and range 0.
struct Signals {
    const char* type;
    const char* sensor;
    std::string readings;
};

void expect_signals(const std::vector<Signals>& rows) {
    for (const Signals& row : rows)
        for (const std::string& each : split(row.readings, ',')) {
            std::istringstream words(each);
            std::string value, in, mode, told;
            words >> value >> in >> mode >> told;
            BenchNetwork bench(pod(5, std::string(row.type) +
                                          "; noise=0; 1 constant lead_ohms=0.5 offset=" + value +
                                          " sensor=" + row.sensor));
            bench.send(5, "CH1MO" + mode.substr(0, 3));
            const ScanRecord scan = bench.triggered_scan(5);
            EXPECT_EQ(reading(scan.values[0], scan.codes[0]), told)
                << row.type << " " << row.sensor << " " << each;
        }
}

TEST(Analog, ASensorIsReadThroughTheModeThatIsSetAutoAsThatModeMeasures) {
    using sim::Thermocouple, sim::thermocouple_volts;
    const double k200 =
        thermocouple_volts(Thermocouple::K, 200) - thermocouple_volts(Thermocouple::K, 23);
    const double as_j =
        *sim::thermocouple_celsius(Thermocouple::J, k200 + thermocouple_volts(Thermocouple::J, 23));
    const auto shown = [](double value) { return reading(static_cast<float>(value), 0); };
    expect_signals({
        {"7V", "auto", "1.5 in 100: 1.5, 230 in 200: 230, 230 in 210: 230, 230 in 220: 231"},
        {"7V", "auto",
         "650 in 330: 650, -55 in 360: -55, 123 in 400: 123, 123 in 410: 123, 100 in 402: 100, "
         "-123 in 430: -123, "
         "-123 in 420: -123"},
        {"7V", "auto", "0.012 in 500: 0.012"},
        {"7R", "auto", "1500 in 340: 1500, 650 in 310: 650, 300 in 320: 300, 90 in 380: 90"},
        {"7V", "thermocouple_k", "200 in 101: " + shown(k200) + ", 200 in 330: 200"},
        {"7V", "thermocouple_k", "200 in 320: " + shown(as_j)},
        {"7V", "rtd_100", "100 in 200: 138.51, 0 in 400: 0"},
        {"7V", "rtd_10", "0 in 400: error3, 0 in 421: error1:0.02"},  // 0.1 V at 10 mA
        {"7V", "resistance", "100 in 400: 0, 3000 in 400: error1:2, 100 in 100: 0"},
        {"7V", "voltage", "1 in 500: 0.1, 0.01 in 200: 10, 0.05 in 400: error5"},
        {"7V", "current", "0.05 in 100: error1:10, 0.05 in 500: 0.05, 0.05 in 400: error5"},
        {"7S", "voltage", "1 in 600: error12"},
    });
}

TEST(Analog, BeyondItsRangeAReadingIsAnOverload) {
    expect_signals({
        {"7V", "auto", "0.02 in 101: 0.02, 0.0201 in 101: error1:0.02, -0.21 in 102: error1:-0.2"},
        {"7V", "auto", "2.1 in 103: error1:2, 10 in 104: 10, 10.1 in 100: error1:10"},
        {"7S", "auto", "2.1 in 100: error1:2, 2600 in 200: error1:2500"},
        {"7V", "auto", "26 in 201: error1:25, 251 in 202: error1:250, 2600 in 223: error1:2500"},
        {"7V", "auto",
         "2600 in 200: 2600, 0.0003 in 501: error1:0.0002, 0.003 in 502: error1:0.002"},
        {"7V", "auto", "0.03 in 503: error1:0.02, 0.11 in 504: error1:0.1"},
        // 28 mV of a thermocouple, 138 mV across the thermometer.
        {"7V", "auto", "700 in 331: error1:0.02, 100 in 401: error1:0.02"},
    });
}

TEST(Analog, OpenAndAbsentInputs) {
    expect_readings({
        {"7S; 1 at 1000 sensor=strain", "CH1MO600;CH1GA'2';CH1OF'0''0.96'", "1100"},
        {"7V; 1 open", "CH1MO100", "0"},
        {"7V; 1 open", "CH1MO500", "0"},
        {"7V; 1 open", "CH1MO200", "error1:25000"},
        {"7V; 1 open", "CH1MO400", "error5"},
        {"7V; 1 open", "TC1;CH1MO330", "error6"},
        {"7V; 1 open", "TC0;CH1MO330", "23"},  // no voltage: the temperature of the terminals
        {"7S; 1 open", "CH1MO600;CH1GA'2';CH1OF'0''1'", "error5"},
        {"7V; 1 absent", "CH1MO100", "error9"},
    });
}

TEST(Analog, TheReferenceIsTheAmbientTemperatureOrTheOneToldTo) {
    using sim::Thermocouple, sim::thermocouple_volts;
    const double cold = thermocouple_volts(Thermocouple::K, 300) -
                        thermocouple_volts(Thermocouple::K, 35) +
                        thermocouple_volts(Thermocouple::K, 25);
    const auto told = static_cast<float>(*sim::thermocouple_celsius(Thermocouple::K, cold));
    expect_readings({
        {"7V; ambient=35; 1 at 300", "CH1MO330", "300"},
        {"7V; ambient=35; 1 at 300", "CH1MO330;TE'35'", "300"},
        {"7V; ambient=35; 1 at 300", "CH1MO330;TE'25'", reading(told, 0)},
        {"7V; ambient=35; 1 at 300", "CH1MO330;TE'25';AM", "300"},
        {"7V; ambient=35; reference=0; 1 at 300", "CH1MO330;TE'0'", "300"},
        {"7V; ambient=35; 1 at 300", "CH1MO330;UN1;TE'95'", "572"},
        {"7V; ambient=80; 1 at 300", "CH1MO330", "300"},
        {"7V; ambient=81; 1 at 300", "CH1MO330", "error4"},
        {"7V; ambient=-30; 1 at 300", "CH1MO330;TE'-30'", "300"},
        {"7V; 1 at 300", "CH1MO330;TE'-31'", "error4"},
        {"7V; ambient=80; 1 at 300", "CH1MO330;UN1;TE'176'", "572"},  // 80 C
        {"7V; 1 at 300", "CH1MO330;UN1;TE'177'", "error4"},
        {"7V; 1 at 100", "UN1;CH1MO400", "212"},
        {"7V; 1 at 100", "UN1;CH1MO200", "100"},  // no temperature
    });
    // A quarter of its period after the start the ambient temperature is at its highest: 33 + 3 C.
    BenchNetwork bench(
        pod(5, "7V; noise=0; ambient=33; ambient_swing=3; ambient_period_s=400; 1 open"));
    bench.send(5, "CH1MO330");
    bench.loop.advance(100000);
    EXPECT_NEAR(bench.triggered_scan(5).values[0], 36.0, 1e-3);
}

// Table 1 says 0.05 mV a degree (20 x, back 0.05 x), table 2 0.1 mV; equations are written from the
// 5th power down.
TEST(Analog, UserThermocouplesAndEquationsAreThoseTold) {
    const std::string one = "UT1'0''0''0''0''20''0''0''0''0''0''0.05''0'";
    const std::string two = "UT2'0''0''0''0''10''0''0''0''0''0''0.1''0'";
    const char* const both = "7V; 1 at 150; 2 at 60";
    expect_readings({
        {both, "CH1MO390", "error2"},
        {both, one + ";CH1MO3A0", "error2"},
        {both, one + ";" + two + ";CH1MO390;CH2MO3A0", "150 60"},
        {both, one + ";" + two + ";CH1MO3A0;CH2MO390", "150 60"},
        {"7V; 1 at 2; 2 at 100", "PL1'1''1''1''3''2''1';UN1;CH1MO100;CH1PL1;CH2MO330;CH2PL1",
         "73 " + reading(static_cast<float>(std::pow(212., 5) + std::pow(212., 4) +
                                            std::pow(212., 3) + 3 * 212. * 212. + 2 * 212. + 1),
                         0)},
        {"7V; 1 at 2", "PL1'0''0''0''0''0''1';CH1MO100;CH1PL2", "error3"},
        {"7V; 1 at 2", "PL2'1E30''0''0''0''0''0';CH1MO100;CH1PL2", "3.2e+31"},
        {"7V; 1 at 2", "PL2'3E38''0''0''0''0''0';CH1MO100;CH1PL2", "error3"},
    });
}

// Mode, and the volts across a bridge of 120 ohm gauges: 8 or 1.6 mA in all.
TEST(Strain, InitialisingTheGaugeGivesItsMicrostrain) {
    for (const auto& [mode, volts] : {std::pair{"600", 0.96},
                                      {"610", 0.192},
                                      {"620", 0.96},
                                      {"630", 0.192},
                                      {"640", 0.96},
                                      {"650", 0.192},
                                      {"660", 0.96},
                                      {"670", 0.192}}) {
        // No strain for 10 s, then 1000 microstrain, on a bridge that is 0.1 mV/V off.
        BenchNetwork bench(
            pod(5, "7S; noise=0; 4 square amplitude=500 offset=500 phase=0.5 period_s=20"));
        bench.send(5, "CH4MO" + std::string(mode) + ";CH4GA'2'");
        EXPECT_EQ(bench.triggered_scan(5).codes[3], 128 + 12) << "not initialised";
        bench.play(5, "send IN4 | wait 100 ms");
        const ScanRecord balance = bench.scan(5, RequestStream).value();
        EXPECT_NEAR(balance.values[0], 0.1e-3 * volts, 1e-8) << mode;
        EXPECT_NEAR(balance.values[1], volts, 1e-6) << mode;
        EXPECT_NEAR(bench.triggered_scan(5).values[3], 0.0, 0.01) << mode;
        bench.loop.advance(10000);
        EXPECT_NEAR(bench.triggered_scan(5).values[3], 1000.0, 0.01) << mode;
    }
}

TEST(Strain, OffsetAndInitialVoltCanBeTold) {
    const char* const gauge = "7S; 1 at 1000 gauge_factor=2.1 imbalance_mv_v=0";
    expect_readings({{gauge, "CH1MO620;CH1GA'2.1'", "error12"},
                     {gauge, "CH1MO620;CH1OF'0''0.96'", "error12"},
                     {gauge, "CH1MO620;CH1GA'2.1';CH1OF'0''0.96'", "1000"},
                     {gauge, "CH1MO620;CH1GA'4.2';CH1OF'0''0.96'", "500"}});
}

TEST(Analog, AFourTerminalChannelTakesTheNextOne) {
    const char* const pod = "7V; 1 at 100; 2 at 1";
    expect_readings({{pod, "CH1MO200;CH2MO100", "100 error7"},
                     {pod, "CH1MO210;CH2MO100", "100 error7"},
                     {pod, "CH1MO400;CH2MO100", "100 error7"},
                     {pod, "CH1MO430;CH2MO100", "100 error7"},
                     {pod, "CH1MO200;CH2MO000", "100 error127"},
                     {pod, "CH1MO220;CH2MO100", "100 1"}});
}

// Standard deviation of many readings of 1 V.
double spread(const std::string& keys, const std::string& command) {
    BenchNetwork bench(pod(1, "7R; " + keys + "; 1 at 1"));
    bench.send(1, command);
    double sum = 0.0;
    double squares = 0.0;
    constexpr int Count = 300;
    for (int i = 0; i < Count; ++i) {
        const double value = static_cast<double>(bench.triggered_scan(1).values[0]) - 1.0;
        sum += value;
        squares += value * value;
        bench.loop.advance(3);
    }
    return std::sqrt(squares / Count - sum * sum / Count / Count);
}

TEST(Converter, ShorterIntegrationIsNoisierAndAWholeMainsPeriodTakesTheHumAway) {
    const double slow = spread("noise=30", "FR0");
    EXPECT_GT(slow, 1e-5);
    EXPECT_LT(slow, 2e-4);
    EXPECT_GT(spread("noise=30", "FR4"), 2.5 * slow);
    EXPECT_EQ(spread("noise=0", "FR4"), 0.0);
    EXPECT_LT(spread("noise=0; hum_v=0.1", "FR0"), 1e-6);
    EXPECT_GT(spread("noise=0; hum_v=0.1", "FR1"), 5e-3);
    EXPECT_LT(spread("noise=0; hum_v=0.1; mains_hz=60", "FR1"), 1e-4);
    EXPECT_GT(spread("noise=0; hum_v=0.1", "FR4"), 3e-2);
}

// What is left of the hum after an integration of 1.25 ms, in its middle: 1 ms of settling and half
// of it.
TEST(Converter, HumIsASineOfTheMainsFrequency) {
    BenchNetwork bench(pod(50, "7V; noise=0; hum_v=0.1; mains_hz=60; 1-2 at 0"));
    bench.send(50, "FR4");
    const ScanRecord scan = bench.triggered_scan(50);
    for (const std::size_t channel : {0U, 1U}) {
        const double turn = 3.14159265358979 * 60,
                     middle_s = 0.00225 * static_cast<double>(channel) + 0.001625;
        const double left = 0.1 * std::sin(turn * 0.00125) / (turn * 0.00125);
        EXPECT_NEAR(scan.values[channel], left * std::sin(2 * turn * middle_s), 1e-7);
    }
}

TEST(Converter, AFixedRangeDecidesTheResolutionAndCalibrationTheGain) {
    const auto off = [](const char* keys, const char* command) {
        BenchNetwork bench(pod(50, std::string("7V; 1 at 0.015123; ").insert(3, keys)));
        bench.send(50, command);
        return std::fabs(bench.triggered_scan(50).values[0] - 0.015123F);
    };
    EXPECT_LT(off("", "CH1MO100"), 3e-7) << "autorange takes 20 mV";
    EXPECT_GT(off("", "CH1MO104"), 1e-6);
    EXPECT_LT(off("", "CH1MO104"), 1e-4);
    EXPECT_EQ(off(" noise=0;", "KA0"), 0.0F);
    EXPECT_GT(off(" noise=0;", "KA1"), 0.0F);
    EXPECT_LT(off(" noise=0;", "KA1"), 1.6e-5F) << "a thousandth at most";
}

TEST(StatusInput, UniversalChannelsKnowThreeKindsOfLogic) {
    expect_readings({
        {"7V; 1 at 2; 2 at 1", "CH1MO700;CH2MO700", "1 0"},
        {"7V; 1 at 9.5; 2 at 2", "CH1MO701;CH2MO701", "1 0"},
        {"7V; 1 open; 2 at 0", "CH1MO702;CH2MO702", "1 0"},
    });
}

TEST(SampleRate, PulsesShorterThanASampleAreNotSeen) {
    const std::string pulses = "8R; 1 square period_s=0.2 duty=0.1";  // of 20 ms
    const std::string brief = "8R; 1 square period_s=0.2 duty=0.0004";
    expect_told({
        {"20 Hz", pulses, "send CH1MO741;CH1RA1 | wait 2 s | send TR | wait 1 s | scan 1? 0"},
        {"1 kHz", pulses, "send CH1MO741;CH1RA2 | wait 2 s | send TR | wait 1 s | scan 1? 10"},
        {"by default", pulses, "send CH1MO741;CH1RA0 | wait 2 s | send TR | wait 1 s | scan 1? 10"},
        {"80 us", brief, "send CH1MO741 | wait 2 s | send TR | wait 1 s | scan 1? 0"},
        {"at 10 kHz", brief, "send CH1MO741;CH1RA3 | wait 2 s | send TR | wait 1 s | scan 1? 0"},
        {"at 100 kHz", brief, "send CH1MO741;CH1RA4 | wait 2 s | send TR | wait 1 s | scan 1? 10"},
        {"of two pulses the longer one is seen",
         "8R; 1 pattern period_s=1 edges_s=[0.1,0.11,0.4,0.8]",
         "send CH1MO741;CH1RA1 | wait 2950 ms | send TR | wait 1 s | scan 1? 3"},
    });
}

// The seconds at which the output on channel 19 changes, while channel 2 rises from 0 V to 4 V in
// 100 s and falls at once.
std::string changes(const std::string& commands) {
    BenchNetwork bench(
        pod(50, "7V; noise=0; 2 ramp amplitude=2 offset=2 period_s=100; 19-20 constant"));
    bench.send(50, commands + ";SP'1000';CO;TR");
    std::string seen;
    float before = 0.0F;
    for (int second = 0; second < 120; ++second) {
        bench.loop.advance(1000);
        const float now = bench.scan(50).value().values[18];
        if (now != before) seen += std::to_string(second) + (now == 1.0F ? " on " : " off ");
        before = now;
    }
    return seen;
}

// A scan begins with every second; outputs are taken in the scan that trips them, behind
// channel 18.
TEST(Alarm, TripsBeyondItsLimitAndClearsOnTheOtherSideOfTheHysteresis) {
    EXPECT_EQ(changes("CH02HL'2''1';CH19MO802;CH19GO102H"), "50 on 100 off ");
    EXPECT_EQ(changes("CH02LL'1''0.5';CH19MO802;CH19GO102L"), "0 on 38 off 100 on ");
    EXPECT_EQ(changes("CH02LL'1''0.5';CH19MO802;CH19GO002L"), "38 on 100 off ") << "turned round";
    EXPECT_EQ(changes("CH02HL'3''0';CH02LL'1''0';CH19MO802;CH19GO102L02H"), "0 on 25 off 75 on ");
    // None of these drives the output: the other alarm, no group, no trip output, no alarm, another
    // channel.
    for (const char* commands :
         {"CH02HL'2''1';CH19MO802;CH19GO102L", "CH02HL'2''1';CH19MO802",
          "CH02HL'2''1';CH19MO800;CH19GO102H", "CH19MO802;CH19GO102H",
          "CH02HL'2''1';CH19MO800;CH20MO802;CH20GO102H", "CH02HL'2''1';CH19MO802;CH19GO202H"})
        EXPECT_EQ(changes(commands), "") << commands;
    EXPECT_EQ(changes("CH19MO801"), "0 on ");
}

TEST(Alarm, AReadingAtItsLimitTripsNothing) {
    BenchNetwork bench(pod(5, "7V; noise=0; 2 at 1"));
    bench.send(5, "CH02HL'1''0';CH02LL'1''0';CH19MO802;CH19GO102L02H");
    EXPECT_EQ(bench.triggered_scan(5).values[18], 0.0F);
}

TEST(Alarm, OutputsFollowEvenScansThatNobodyReads) {
    // Trips above 0.5 V; with this hysteresis it never clears: one short excursion is enough.
    BenchNetwork bench(pod(5, "7V; 2 square amplitude=1 period_s=40 duty=0.25"));
    bench.play(5, "send CH02HL'0.5''5';CH19MO802;CH19GO102H;SP'1000';CO;TR | wait 35 s");
    EXPECT_EQ(bench.scan(5)->values[18], 1.0F);
}

}  // namespace
}  // namespace kavorix::test
