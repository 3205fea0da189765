#include "sim/scenario_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

#include "sim/pod_types.h"

namespace kavorix::test {
namespace {

using sim::load_scenario;

const std::string Pod = "[[pod]]\nnumber = 3\nident = \"7VJA 0F 1.00\"\n";
const std::string Channel = Pod + "[[pod.channel]]\nnumber = 1\nsignal = \"sine\"\n";

TEST(ScenarioTest, EveryKey) {
    const auto loaded = load_scenario(R"(seed = 42
[card]
address = "D000"
handle = 2
version = "Bench"
[[card.fault]]
from_s = 30.0
to_s = 31.0
[chaos]
receive_error = 0.25
slow_answer = 0.5
delay_ms = 77
from_s = 10.0
to_s = 20.0
[[pod]]
number = 9
ident = "8RCA 0F 2.10"
answer_ms = 40
ambient = 21.0
ambient_swing = 2.0
ambient_period_s = 3600.0
reference = 0.0
noise = 0.5
hum_v = 0.1
mains_hz = 60.0
[[pod.channel]]
number = 2
last = 4
signal = "square"
amplitude = 3.0
offset = 1.0
offset_step = 0.5
period_s = 4.0
phase = 0.5
phase_step = 0.25
duty = 0.1
step_s = 0.2
default_mode = 76
sensor = "rtd_100"
lead_ohms = 0.75
gauge_factor = 2.1
gauge_ohms = 350.0
imbalance_mv_v = -0.2
[[pod.fault]]
kind = "no_status"
from_s = 5.0
to_s = 10.0
rate = 0.75
delay_ms = 90
[[pod.text]]
text = "C01 — café"
at_s = 2.0
every_s = 60.0
[[pod]]
number = 4
ident = "7S          "
)",
                                      "x.toml");
    ASSERT_TRUE(loaded.scenario.has_value());
    const sim::Scenario& scenario = *loaded.scenario;
    EXPECT_EQ(scenario.seed, 42u);
    EXPECT_EQ(scenario.card->address, static_cast<std::int16_t>(0xD000));
    EXPECT_EQ(scenario.card->handle, 2);
    EXPECT_EQ(scenario.card->version, "Bench");
    ASSERT_EQ(scenario.pods.size(), 2u);
    EXPECT_EQ(scenario.pods[0].number, 4);
    const sim::PodSettings& pod = scenario.pods[1];
    EXPECT_EQ(pod.ident, "8RCA 0F 2.10");
    EXPECT_EQ(pod.answer_ms, 40);
    EXPECT_EQ(pod.ambient, 21.0);
    EXPECT_EQ(pod.ambient_swing, 2.0);
    EXPECT_EQ(pod.ambient_period_s, 3600.0);
    EXPECT_EQ(pod.reference, 0.0);
    EXPECT_EQ(pod.noise, 0.5);
    EXPECT_EQ(pod.hum_v, 0.1);
    EXPECT_EQ(pod.mains_hz, 60.0);
    EXPECT_EQ(pod.channels[0].signal.kind, sim::SignalKind::Open);
    sim::Signal third;
    third.kind = sim::SignalKind::Square;
    third.amplitude = 3.0;
    third.offset = 1.5;
    third.period_s = 4.0;
    third.phase = 0.75;
    third.duty = 0.1;
    third.step_s = 0.2;
    EXPECT_EQ(pod.channels[2].signal, third);
    EXPECT_EQ(pod.channels[3].default_mode, 76);
    EXPECT_EQ(pod.channels[3].sensor, sim::SensorKind::Platinum100);
    EXPECT_EQ(pod.channels[3].lead_ohms, 0.75);
    EXPECT_EQ(pod.channels[3].gauge_factor, 2.1);
    EXPECT_EQ(pod.channels[3].gauge_ohms, 350.0);
    EXPECT_EQ(pod.channels[3].imbalance_mv_v, -0.2);
    EXPECT_EQ(pod.channels[4].default_mode, std::nullopt);
    ASSERT_EQ(pod.faults.size(), 1u);
    EXPECT_EQ(pod.faults[0].kind, sim::FaultKind::NoStatus);
    EXPECT_EQ(pod.faults[0].to_s, 10.0);
    EXPECT_EQ(pod.faults[0].rate, 0.75);
    EXPECT_EQ(pod.faults[0].delay_ms, 90);
    ASSERT_EQ(scenario.card_faults.size(), 1u);
    EXPECT_EQ(scenario.card_faults[0].from_s, 30.0);
    EXPECT_EQ(scenario.card_faults[0].to_s, 31.0);
    ASSERT_EQ(scenario.chaos.size(), 2u);
    EXPECT_EQ(scenario.chaos[0].kind, sim::FaultKind::ReceiveError);
    EXPECT_EQ(scenario.chaos[0].rate, 0.25);
    EXPECT_EQ(scenario.chaos[1].kind, sim::FaultKind::SlowAnswer);
    EXPECT_EQ(scenario.chaos[1].delay_ms, 77);
    EXPECT_EQ(scenario.chaos[1].from_s, 10.0);
    EXPECT_EQ(scenario.chaos[1].to_s, 20.0);
    ASSERT_EQ(pod.texts.size(), 1u);
    EXPECT_EQ(pod.texts[0].text, "C01 \x97 caf\xE9");
    EXPECT_EQ(pod.texts[0].every_s, 60.0);
}

TEST(ScenarioTest, WithoutACardTableThereIsNoCard) {
    EXPECT_FALSE(load_scenario(Pod, "x.toml").scenario->card.has_value());
    EXPECT_EQ(load_scenario("[card]\n", "x.toml").scenario->card->address, -14336);
}

TEST(ScenarioTest, OneTableCanDescribeSeveralPods) {
    const auto scenario = *load_scenario(Channel +
                                             "[[pod]]\nnumber = 7\nlast = 9\nident = "
                                             "\"8SFA 0F 1.00\"\n",
                                         "x.toml")
                               .scenario;
    ASSERT_EQ(scenario.pods.size(), 4u);
    EXPECT_EQ(scenario.pods[1].number, 7);
    EXPECT_EQ(scenario.pods[3].number, 9);
    EXPECT_EQ(scenario.pods[3].ident, "8SFA 0F 1.00");
}

TEST(ScenarioTest, DigitalChannelsSwingBetweenLogicLevelsUnlessTold) {
    const auto scenario = *load_scenario(Pod +
                                             "[[pod.channel]]\nnumber=1\nsignal=\"square\"\n"
                                             "[[pod.channel]]\nnumber=19\nsignal=\"square\"\n",
                                         "x.toml")
                               .scenario;
    EXPECT_EQ(scenario.pods[0].channels[0].signal.amplitude, 1.0);
    EXPECT_EQ(scenario.pods[0].channels[18].signal.amplitude, 2.5);
    EXPECT_EQ(scenario.pods[0].channels[18].signal.offset, 2.5);
}

struct ErrorCase {
    std::string text;
    std::string error;
};

void expect_errors(const std::vector<ErrorCase>& cases) {
    for (const ErrorCase& c : cases) {
        const auto loaded = load_scenario(c.text, "x.toml");
        EXPECT_FALSE(loaded.scenario.has_value()) << c.text;
        EXPECT_EQ(loaded.errors, std::vector<std::string>{c.error}) << c.text;
    }
}

TEST(ScenarioTest, UnknownKeysNameTheNearestRightOne) {
    expect_errors({
        {"sede = 1", "x.toml:1:1: unknown key \"sede\"; did you mean \"seed\"?"},
        {"zzz = 1", "x.toml:1:1: unknown key \"zzz\""},
        {"[card]\nadress = \"C800\"",
         "x.toml:2:1: unknown key \"card.adress\"; did you mean \"address\"?"},
        {Pod + "answer = 5", "x.toml:4:1: unknown key \"pod.answer\"; did you mean \"answer_ms\"?"},
        {Channel + "amplitdue = 5",
         "x.toml:7:1: unknown key \"pod.channel.amplitdue\"; did you mean \"amplitude\"?"},
        {Pod + "[[pod.fault]]\nkind = \"dead\"\nto = 3",
         "x.toml:6:1: unknown key \"pod.fault.to\"; did you mean \"to_s\"?"},
        {Pod + "[[pod.text]]\ntext = \"A\"\nevery = 3",
         "x.toml:6:1: unknown key \"pod.text.every\"; did you mean \"every_s\"?"},
        {"[chaos]\nhalf_txt = 0.5",
         "x.toml:2:1: unknown key \"chaos.half_txt\"; did you mean \"half_text\"?"},
        {"[[card.fault]]\nfrom = 2",
         "x.toml:2:1: unknown key \"card.fault.from\"; did you mean \"from_s\"?"},
        {Pod + "[[pod.chanel]]\nnumber = 1",
         "x.toml:4:7: unknown key \"pod.chanel\"; did you mean \"channel\"?"},
    });
}

TEST(ScenarioTest, WrongValuesNameTheirKey) {
    expect_errors({
        {"seed = -1", "x.toml:1:8: \"seed\" must be a whole number from 0 to 9000000000000000"},
        {"card = 3", "x.toml:1:8: \"card\" must be written as [card]"},
        {"pod = 3", "x.toml:1:7: \"pod\" must be written as [[pod]]"},
        {"[card]\naddress = \"C80\"",
         "x.toml:2:11: \"card.address\" must be four hexadecimal digits in capitals, such as "
         "\"C800\""},
        {"[card]\naddress = \"c800\"",
         "x.toml:2:11: \"card.address\" must be four hexadecimal digits in capitals, such as "
         "\"C800\""},
        {"[card]\naddress = 51200",
         "x.toml:2:11: \"card.address\" must be a text of 0 to 255 characters"},
        {"[card]\nhandle = -1",
         "x.toml:2:10: \"card.handle\" must be a whole number from 0 to 32767"},
        {"[card]\nversion = \"" + std::string(35, 'v') + "\"",
         "x.toml:2:11: \"card.version\" must be a text of 0 to 34 characters"},
        {"[[pod]]\nident = \"7VJA 0F 1.00\"", "x.toml:1:1: \"pod.number\" is missing"},
        {"[[pod]]\nnumber = 3", "x.toml:1:1: \"pod.ident\" is missing"},
        {"[[pod]]\nnumber = 51\nident = \"7VJA 0F 1.00\"",
         "x.toml:2:10: \"pod.number\" must be a pod number from 1 to 50"},
        {"[[pod]]\nnumber = 2.0\nident = \"7VJA 0F 1.00\"",
         "x.toml:2:10: \"pod.number\" must be a pod number from 1 to 50"},
        {"[[pod]]\nnumber = 2\nident = \"7V\"",
         "x.toml:3:9: \"pod.ident\" must be a text of 12 characters"},
        {"[[pod]]\nnumber = 2\nident = \"7V\u0416\"",
         "x.toml:3:9: \"pod.ident\" holds a character that has no place in code page 1252"},
        {Pod + Pod, "x.toml:5:10: \"pod.number\" names pod 3 again"},
        {Pod + "last = 2", "x.toml:4:8: \"pod.last\" must not be below \"pod.number\""},
        {Pod + "last = 51", "x.toml:4:8: \"pod.last\" must be a pod number from 1 to 50"},
        {Pod + "answer_ms = 0.5",
         "x.toml:4:13: \"pod.answer_ms\" must be a whole number from 0 to 60000"},
        {Pod + "[[pod.channel]]\nsignal = \"sine\"",
         "x.toml:4:1: \"pod.channel.number\" is missing"},
        {Pod + "[[pod.channel]]\nnumber = 1", "x.toml:4:1: \"pod.channel.signal\" is missing"},
        {Pod + "[[pod.channel]]\nnumber = 21\nsignal = \"sine\"",
         "x.toml:5:10: \"pod.channel.number\" must be a channel number from 1 to 20"},
        {Channel + "last = 0",
         "x.toml:7:8: \"pod.channel.last\" must be a channel number from 1 to 20"},
        {Pod + "[[pod.channel]]\nnumber = 5\nlast = 4\nsignal = \"sine\"",
         "x.toml:6:8: \"pod.channel.last\" must not be below \"pod.channel.number\""},
        {Channel + "[[pod.channel]]\nnumber = 1\nsignal = \"sine\"",
         "x.toml:8:10: \"pod.channel.number\" names channel 1 again"},
        {Pod + "[[pod.channel]]\nnumber = 1\nsignal = \"sinus\"",
         "x.toml:6:10: \"pod.channel.signal\" must be one of constant, sine, ramp, square, "
         "pattern, noise, random_walk, counter, open, absent; did you mean \"sine\"?"},
        {Channel + "amplitude = \"big\"",
         "x.toml:7:13: \"pod.channel.amplitude\" must be a number"},
        {Channel + "offset = nan", "x.toml:7:10: \"pod.channel.offset\" must be a number"},
        {Channel + "period_s = 0",
         "x.toml:7:12: \"pod.channel.period_s\" must be a time in seconds, above 0"},
        {Channel + "phase = 1.5", "x.toml:7:9: \"pod.channel.phase\" must be a number from 0 to 1"},
        {Channel + "duty = -1", "x.toml:7:8: \"pod.channel.duty\" must be a number from 0 to 1"},
        {Channel + "step_s = 0",
         "x.toml:7:10: \"pod.channel.step_s\" must be a time in seconds, above 0"},
        {Channel + "edges_s = 3", "x.toml:7:11: \"pod.channel.edges_s\" must be a list of numbers"},
        {Channel + "edges_s = [1.0, \"x\"]",
         "x.toml:7:11: \"pod.channel.edges_s\" must be a list of numbers"},
        {Channel + "edges_s = [2.0, 1.0]",
         "x.toml:7:11: \"pod.channel.edges_s\" must rise, above 0 and below "
         "\"pod.channel.period_s\""},
        {Channel + "default_mode = 100",
         "x.toml:7:16: \"pod.channel.default_mode\" must be a mode code from 0 to 99"},
        {Channel + "default_mode = 76",
         "x.toml:7:16: \"pod.channel.default_mode\" is not a mode of channel 1 of this pod"},
        {Pod + "[[pod.fault]]\nfrom_s = 1.0", "x.toml:4:1: \"pod.fault.kind\" is missing"},
        {Pod + "[[pod.fault]]\nkind = \"deaf\"",
         "x.toml:5:8: \"pod.fault.kind\" must be one of dead, transmit_error, receive_error, "
         "no_status, slow_answer, garbage_status, garbage_counts, garbage_values, garbage_text, "
         "half_text, reset; did you mean \"dead\"?"},
        {Pod + "[[pod.fault]]\nkind = \"dead\"\nfrom_s = 5\nto_s = 5",
         "x.toml:7:8: \"pod.fault.to_s\" must be later than \"pod.fault.from_s\""},
        {Pod + "[[pod.fault]]\nkind = \"dead\"\nfrom_s = -5",
         "x.toml:6:10: \"pod.fault.from_s\" must be a time in seconds, 0 or more"},
        {Pod + "[[pod.fault]]\nkind = \"dead\"\nrate = 2",
         "x.toml:6:8: \"pod.fault.rate\" must be a number from 0 to 1"},
        {Pod + "[[pod.fault]]\nkind = \"dead\"\ndelay_ms = 0",
         "x.toml:6:12: \"pod.fault.delay_ms\" must be a whole number from 1 to 60000"},
        {"[[card.fault]]\nfrom_s = 2\nto_s = 1",
         "x.toml:3:8: \"card.fault.to_s\" must be later than \"card.fault.from_s\""},
        {"[chaos]\ntransmit_error = 1.5",
         "x.toml:2:18: \"chaos.transmit_error\" must be a number from 0 to 1"},
        {"[chaos]\nfrom_s = 2\nto_s = 1",
         "x.toml:3:8: \"chaos.to_s\" must be later than \"chaos.from_s\""},
        {Pod + "ambient = -300",
         "x.toml:4:11: \"pod.ambient\" must be a temperature in degrees Celsius"},
        {Pod + "ambient_swing = true", "x.toml:4:17: \"pod.ambient_swing\" must be a number"},
        {Pod + "ambient_period_s = 0",
         "x.toml:4:20: \"pod.ambient_period_s\" must be a time in seconds, above 0"},
        {Pod + "reference = \"0\"",
         "x.toml:4:13: \"pod.reference\" must be a temperature in degrees Celsius"},
        {Pod + "noise = -1", "x.toml:4:9: \"pod.noise\" must be a number, 0 or more"},
        {Pod + "hum_v = -1", "x.toml:4:9: \"pod.hum_v\" must be volts, 0 or more"},
        {Pod + "mains_hz = 0", "x.toml:4:12: \"pod.mains_hz\" must be a frequency from 1 to 1000"},
        {Channel + "sensor = \"thermocuple_k\"",
         "x.toml:7:10: \"pod.channel.sensor\" must be one of auto, voltage, current, resistance, "
         "rtd_100, rtd_10, thermocouple_e, thermocouple_j, thermocouple_k, thermocouple_r, "
         "thermocouple_s, thermocouple_t, thermocouple_b, thermocouple_n, strain; did you mean "
         "\"thermocouple_k\"?"},
        {Channel + "lead_ohms = -1",
         "x.toml:7:13: \"pod.channel.lead_ohms\" must be a resistance in ohms, 0 or more"},
        {Channel + "gauge_factor = \"2\"",
         "x.toml:7:16: \"pod.channel.gauge_factor\" must be a number"},
        {Channel + "gauge_ohms = 0",
         "x.toml:7:14: \"pod.channel.gauge_ohms\" must be a resistance in ohms, 1 or more"},
        {Channel + "imbalance_mv_v = []",
         "x.toml:7:18: \"pod.channel.imbalance_mv_v\" must be a number"},
        {Pod + "[[pod.text]]\nat_s = 1", "x.toml:4:1: \"pod.text.text\" is missing"},
        {Pod + "[[pod.text]]\ntext = \"\"",
         "x.toml:5:8: \"pod.text.text\" must be a text of 1 to 255 characters"},
    });
}

TEST(ScenarioTest, SeveralErrorsInTheOrderOfTheFile) {
    const auto loaded = load_scenario(
        "[[pod]]\nident = \"x\"\nfoo = 1\nnumber = 99\n[card]\nhandle = -1", "a.toml");
    EXPECT_EQ(loaded.errors,
              (std::vector<std::string>{
                  "a.toml:2:9: \"pod.ident\" must be a text of 12 characters",
                  "a.toml:3:1: unknown key \"pod.foo\"",
                  "a.toml:4:10: \"pod.number\" must be a pod number from 1 to 50",
                  "a.toml:6:10: \"card.handle\" must be a whole number from 0 to 32767"}));
}

TEST(ScenarioTest, WhatIsNoTomlIsReportedWithItsPlace) {
    const auto loaded = load_scenario("seed = 1\n[card\n", "dir/a.toml");
    ASSERT_EQ(loaded.errors.size(), 1u);
    EXPECT_EQ(loaded.errors[0].substr(0, 13), "dir/a.toml:2:");
    EXPECT_FALSE(loaded.scenario.has_value());
}

TEST(ScenarioTest, TheDemonstrationNetworkShowsEveryPodType) {
    const sim::Scenario scenario = sim::demo_scenario();
    std::set<std::string> types;
    for (const sim::PodSettings& pod : scenario.pods) {
        types.insert(pod.ident.substr(0, 2));
        const int channels = sim::channels_of(sim::pod_family(pod.ident.substr(0, 2)));
        for (int i = 0; i < channels; ++i)
            EXPECT_NE(pod.channels.at(static_cast<std::size_t>(i)).signal.kind,
                      sim::SignalKind::Open)
                << pod.number << "/" << i + 1;
    }
    EXPECT_EQ(types, (std::set<std::string>{"7R", "7S", "7T", "7U", "7V", "7W", "8R", "8S"}));
    EXPECT_TRUE(scenario.card.has_value());
}

std::string shipped(const std::string& name) {
    std::ifstream file(KAVORIX_SOURCE_DIR "/scenarios/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ShippedScenarioTest, TheBuiltInNetworkIsTheDemonstrationFile) {
    EXPECT_EQ(sim::demo_scenario_text(), shipped("demo.toml"));
}

TEST(ShippedScenarioTest, AllOfThemLoad) {
    struct Case {
        const char* name;
        std::size_t pods;
    };
    for (const Case& c : {Case{"demo.toml", 12}, Case{"full.toml", 50}, Case{"faulty.toml", 13},
                          Case{"empty.toml", 0}}) {
        const auto loaded = load_scenario(shipped(c.name), c.name);
        EXPECT_EQ(loaded.errors, std::vector<std::string>()) << c.name;
        EXPECT_EQ(loaded.scenario->pods.size(), c.pods) << c.name;
        EXPECT_TRUE(loaded.scenario->card.has_value()) << c.name;
    }
}

// The keys in the first column of the tables of the reference page, with the table that they are
// in.
std::vector<std::pair<std::string, std::string>> documented_keys() {
    std::ifstream page(KAVORIX_SOURCE_DIR "/docs/scenarios.md");
    std::vector<std::pair<std::string, std::string>> keys;
    std::string heading;
    bool in_table = false;
    bool table_of_keys = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("## ")) heading = line.substr(3);
        if (!in_table) table_of_keys = line.starts_with("| Key");
        in_table = line.starts_with("|");
        if (table_of_keys && line.starts_with("| `"))
            keys.emplace_back(heading, line.substr(3, line.find('`', 3) - 3));
    }
    return keys;
}

TEST(ReferencePageTest, EveryKeyOnItIsKnown) {
    const std::map<std::string, std::string> tables = {
        {"The file as a whole", ""},
        {"`[card]`", "[card]\n"},
        {"`[[pod]]`", "[[pod]]\n"},
        {"`[[pod.channel]]`", Pod + "[[pod.channel]]\n"},
        {"`[[pod.fault]]`", Pod + "[[pod.fault]]\n"},
        {"`[[pod.text]]`", Pod + "[[pod.text]]\n"},
    };
    const auto keys = documented_keys();
    EXPECT_GT(keys.size(), 40u);
    for (const auto& [heading, key] : keys) {
        ASSERT_TRUE(tables.contains(heading)) << heading;
        const auto loaded = load_scenario(tables.at(heading) + key + " = 1e300\n", "x.toml");
        for (const std::string& error : loaded.errors)
            EXPECT_EQ(error.find("unknown key"), std::string::npos) << heading << " " << error;
    }
}

TEST(ShippedScenarioTest, TheFaultyNetworkHasEveryKindOfFault) {
    std::set<sim::FaultKind> kinds;
    const auto scenario = *load_scenario(shipped("faulty.toml"), "faulty.toml").scenario;
    for (const sim::PodSettings& pod : scenario.pods)
        for (const sim::Fault& fault : pod.faults) kinds.insert(fault.kind);
    EXPECT_EQ(kinds.size(), static_cast<std::size_t>(sim::FaultKind::Reset) + 1);
    EXPECT_FALSE(scenario.card_faults.empty());
    EXPECT_FALSE(scenario.chaos.empty());
}

}  // namespace
}  // namespace kavorix::test
