#include "sim/scenario_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

#include "sim/pod_types.h"

namespace kavorix::test {
namespace {

using sim::FaultKind;
using sim::load_scenario;
using std::tuple;

TEST(Scenario, EveryKeyIsRead) {
    const auto loaded = load_scenario(R"(
seed = 42
card = {address = "D000", handle = 2, version = "Bench", fault = [{from_s = 30.0, to_s = 31.0}]}
chaos = {receive_error = 0.25, slow_answer = 0.5, delay_ms = 77, from_s = 10.0, to_s = 20.0}
[[pod]]
number = 48
last = 50
ident = "8RCA 0F 2.10"
answer_ms = 40
ambient = 21.0
ambient_swing = 2.0
ambient_period_s = 3600.0
reference = 0.0
noise = 0.5
hum_v = 0.1
mains_hz = 60.0
fault = [{kind = "no_status", from_s = 5.0, to_s = 10.0, rate = 0.75, delay_ms = 90}]
text = [{text = "C01 — café", at_s = 2.0, every_s = 60.0}]
[[pod.channel]]
number = 2
last = 4
signal = "pattern"
amplitude = 3.0
offset = 1.0
offset_step = 0.5
period_s = 4.0
phase = 0.5
phase_step = 0.25
duty = 0.1
step_s = 0.2
edges_s = [1, 2.5]
default_mode = 76
sensor = "rtd_100"
lead_ohms = 0.75
gauge_factor = 2.1
gauge_ohms = 350.0
imbalance_mv_v = -0.2
[[pod.channel]]
number = 19
signal = "square"
[[pod]]
number = 4
ident = "7S          "
channel = [{number = 10, signal = "sine"}]
)",
                                      "x.toml");
    EXPECT_EQ(loaded.errors, std::vector<std::string>());
    ASSERT_TRUE(loaded.scenario);
    const sim::Scenario& scenario = *loaded.scenario;
    const auto& card = scenario.card.value();
    EXPECT_EQ(tuple(scenario.seed, card.address, card.handle, card.version),
              tuple(42U, static_cast<std::int16_t>(0xD000), 2, "Bench"));
    std::vector<tuple<FaultKind, double, double, double, int>> faults;
    for (const auto* some : {&scenario.chaos, &scenario.pods.back().faults})
        for (const sim::Fault& fault : *some)
            faults.emplace_back(fault.kind, fault.from_s, fault.to_s, fault.rate.value_or(2),
                                fault.delay_ms);
    const decltype(faults) expected_faults = {{FaultKind::ReceiveError, 10, 20, 0.25, 77},
                                              {FaultKind::SlowAnswer, 10, 20, 0.5, 77},
                                              {FaultKind::NoStatus, 5, 10, 0.75, 90}};
    EXPECT_EQ(faults, expected_faults);
    EXPECT_EQ(tuple(scenario.card_faults.at(0).from_s, scenario.card_faults[0].to_s),
              tuple(30., 31.));

    std::vector<std::pair<int, std::string>> pods;
    for (const sim::PodSettings& pod : scenario.pods) pods.emplace_back(pod.number, pod.ident);
    const decltype(pods) expected_pods = {
        {4, "7S          "}, {48, "8RCA 0F 2.10"}, {49, "8RCA 0F 2.10"}, {50, "8RCA 0F 2.10"}};
    ASSERT_EQ(pods, expected_pods);
    const sim::PodSettings& pod = scenario.pods[3];
    EXPECT_EQ(tuple(pod.answer_ms, pod.ambient, pod.ambient_swing, pod.ambient_period_s,
                    pod.reference, pod.noise, pod.hum_v, pod.mains_hz),
              tuple(40, 21., 2., 3600., 0., 0.5, 0.1, 60.));
    const sim::PodText& text = pod.texts.at(0);
    EXPECT_EQ(tuple(text.text, text.at_s, text.every_s), tuple("C01 \x97 caf\xE9", 2., 60.));
    sim::Signal signal = {sim::SignalKind::Pattern, 3, 1.5, 4, 0.75, 0.1, 0.2, {1, 2.5}};
    EXPECT_TRUE(pod.channels[2].signal == signal) << "the second of its group";
    const sim::ChannelSettings& third = pod.channels[3];
    EXPECT_EQ(tuple(third.default_mode, third.sensor, third.lead_ohms, third.gauge_factor,
                    third.gauge_ohms, third.imbalance_mv_v, third.signal.phase),
              tuple(76, sim::SensorKind::Platinum100, 0.75, 2.1, 350., -0.2, 0.));
    EXPECT_TRUE(pod.channels[0].signal == sim::Signal()) << "nothing is connected";
    EXPECT_EQ(pod.channels[4].default_mode, std::nullopt);
    // What is digital swings between logic levels unless told.
    signal = {sim::SignalKind::Square, 2.5, 2.5, 10, 0, 0.5, 0.1, {}};
    EXPECT_TRUE(pod.channels[18].signal == signal);
    EXPECT_EQ(scenario.pods[0].channels[9].signal.amplitude, 1.0);
}

const std::string Pod = "[[pod]]\nnumber = 3\nident = \"7VJA 0F 1.00\"\n";

TEST(Scenario, WithoutACardTableThereIsNoCard) {
    EXPECT_FALSE(load_scenario(Pod, "x.toml").scenario->card.has_value());
    EXPECT_EQ(load_scenario("[card]\n", "x.toml").scenario->card->address, -14336);
}

// Wrong files: beside each wrong line, behind "#", what is told of it. It is told of the value; of
// an unknown key, or where something is missing, of the line's beginning.
const char* const WrongFiles[] = {
    R"(sede = 1 # unknown key "sede"; did you mean "seed"?
zzz = 1 # unknown key "zzz"
seed = -1 # "seed" must be a whole number from 0 to 9000000000000000
[card]
adress = "C800" # unknown key "card.adress"; did you mean "address"?
address = "C80" # "card.address" must be four hexadecimal digits in capitals, such as "C800"
handle = -1 # "card.handle" must be a whole number from 0 to 32767
version = "12345678901234567890123456789012345" # "card.version" must be a text of 0 to 34 characters
[[card.fault]]
from = 2 # unknown key "card.fault.from"; did you mean "from_s"?
from_s = 2
to_s = 1 # "card.fault.to_s" must be later than "card.fault.from_s"
[chaos]
half_txt = 0.5 # unknown key "chaos.half_txt"; did you mean "half_text"?
transmit_error = 1.5 # "chaos.transmit_error" must be a number from 0 to 1
from_s = 2
to_s = 1 # "chaos.to_s" must be later than "chaos.from_s"
)",
    R"([card]
address = "c800" # "card.address" must be four hexadecimal digits in capitals, such as "C800"
[[pod]] # "pod.number" is missing
ident = "7VJA 0F 1.00"
[[pod]] # "pod.ident" is missing
number = 3
[[pod]]
number = 51 # "pod.number" must be a pod number from 1 to 50
ident = "7V" # "pod.ident" must be a text of 12 characters
[[pod]]
number = 2.0 # "pod.number" must be a pod number from 1 to 50
ident = "7VЖ" # "pod.ident" holds a character that has no place in code page 1252
[[pod]]
number = 4
last = 2 # "pod.last" must not be below "pod.number"
ident = 7 # "pod.ident" must be a text of 12 characters
[[pod]]
number = 1
last = 51 # "pod.last" must be a pod number from 1 to 50
ident = "7VJA 0F 1.00"
foo = 1 # unknown key "pod.foo"
answer = 5 # unknown key "pod.answer"; did you mean "answer_ms"?
answer_ms = 0.5 # "pod.answer_ms" must be a whole number from 0 to 60000
ambient = -300 # "pod.ambient" must be a temperature in degrees Celsius
ambient_swing = true # "pod.ambient_swing" must be a number
ambient_period_s = 0 # "pod.ambient_period_s" must be a time in seconds, above 0
reference = "0" # "pod.reference" must be a temperature in degrees Celsius
noise = -1 # "pod.noise" must be a number, 0 or more
hum_v = -1 # "pod.hum_v" must be volts, 0 or more
mains_hz = 0 # "pod.mains_hz" must be a frequency from 1 to 1000
[[pod]]
number = 3 # "pod.number" names pod 3 again
ident = "7VJA 0F 1.00"
[[pod.fault]] # "pod.fault.kind" is missing
from_s = -5 # "pod.fault.from_s" must be a time in seconds, 0 or more
[[pod.fault]]
kind = "deaf" # "pod.fault.kind" must be one of dead, transmit_error, receive_error, no_status, slow_answer, garbage_status, garbage_counts, garbage_values, garbage_text, half_text, reset; did you mean "dead"?
to = 3 # unknown key "pod.fault.to"; did you mean "to_s"?
from_s = 5
to_s = 5 # "pod.fault.to_s" must be later than "pod.fault.from_s"
rate = 2 # "pod.fault.rate" must be a number from 0 to 1
delay_ms = 0 # "pod.fault.delay_ms" must be a whole number from 1 to 60000
[[pod.text]] # "pod.text.text" is missing
at_s = -1 # "pod.text.at_s" must be a time in seconds, 0 or more
[[pod.text]]
text = "" # "pod.text.text" must be a text of 1 to 255 characters
every = 3 # unknown key "pod.text.every"; did you mean "every_s"?
every_s = 0 # "pod.text.every_s" must be a time in seconds, above 0
)",
    R"([[pod]]
number = 3
ident = "7VJA 0F 1.00"
[[pod.channel]] # "pod.channel.number" is missing
signal = "sine"
[[pod.channel]] # "pod.channel.signal" is missing
number = 1
[[pod.channel]]
number = 21 # "pod.channel.number" must be a channel number from 1 to 20
signal = "sinus" # "pod.channel.signal" must be one of constant, sine, ramp, square, pattern, noise, random_walk, counter, open, absent; did you mean "sine"?
[[pod.channel]]
number = 1 # "pod.channel.number" names channel 1 again
last = 0 # "pod.channel.last" must be a channel number from 1 to 20
signal = "sine"
[[pod.channel]]
number = 5
last = 4 # "pod.channel.last" must not be below "pod.channel.number"
signal = "sine"
amplitdue = 5 # unknown key "pod.channel.amplitdue"; did you mean "amplitude"?
amplitude = "big" # "pod.channel.amplitude" must be a number
offset = nan # "pod.channel.offset" must be a number
period_s = 0 # "pod.channel.period_s" must be a time in seconds, above 0
phase = 1.5 # "pod.channel.phase" must be a number from 0 to 1
duty = -1 # "pod.channel.duty" must be a number from 0 to 1
step_s = 0 # "pod.channel.step_s" must be a time in seconds, above 0
edges_s = 3 # "pod.channel.edges_s" must be a list of numbers
default_mode = 100 # "pod.channel.default_mode" must be a mode code from 0 to 99
sensor = "thermocuple_k" # "pod.channel.sensor" must be one of auto, voltage, current, resistance, rtd_100, rtd_10, thermocouple_e, thermocouple_j, thermocouple_k, thermocouple_r, thermocouple_s, thermocouple_t, thermocouple_b, thermocouple_n, strain; did you mean "thermocouple_k"?
lead_ohms = -1 # "pod.channel.lead_ohms" must be a resistance in ohms, 0 or more
gauge_factor = "2" # "pod.channel.gauge_factor" must be a number
gauge_ohms = 0 # "pod.channel.gauge_ohms" must be a resistance in ohms, 1 or more
imbalance_mv_v = [] # "pod.channel.imbalance_mv_v" must be a number
[[pod.channel]]
number = 6
signal = "sine"
edges_s = [1.0, "x"] # "pod.channel.edges_s" must be a list of numbers
default_mode = 76 # "pod.channel.default_mode" is not a mode of channel 6 of this pod
[[pod.channel]]
number = 7
signal = "sine"
edges_s = [2.0, 1.0] # "pod.channel.edges_s" must rise, above 0 and below "pod.channel.period_s"
[[pod.channel]]
number = 8
signal = "sine"
default_mode = 99 # "pod.channel.default_mode" is not a mode of channel 8 of this pod
edges_s = [2.0, 10.0] # "pod.channel.edges_s" must rise, above 0 and below "pod.channel.period_s"
)",
    R"(card = 3 # "card" must be written as [card]
pod = 3 # "pod" must be written as [[pod]]
)",
    R"(card = {address = 51200}# "card.address" must be a text of 0 to 255 characters
)"};

TEST(Scenario, EveryErrorIsToldWithItsPlace) {
    for (const char* const text : WrongFiles) {
        std::vector<std::string> expected;
        std::istringstream lines(text);
        int number = 0;
        for (std::string line; std::getline(lines, line);) {
            ++number;
            const auto mark = line.find("# ");
            if (mark == std::string::npos) continue;
            const std::string told = line.substr(mark + 2);
            const bool at_begin = line[0] == '[' || told.starts_with("unknown");
            expected.push_back("x.toml:" + std::to_string(number) + ":" +
                               std::to_string(at_begin ? 1 : line.rfind("= ", mark) + 3) + ": " +
                               told);
        }
        const auto loaded = load_scenario(text, "x.toml");
        EXPECT_EQ(loaded.errors, expected);
        EXPECT_FALSE(loaded.scenario.has_value());
    }
    const auto no_table = load_scenario(Pod + "[[pod.chanel]]\nnumber = 1", "x.toml");
    EXPECT_EQ(no_table.errors, std::vector<std::string>{"x.toml:4:7: unknown key \"pod.chanel\"; "
                                                        "did you mean \"channel\"?"});
    const auto no_toml = load_scenario("seed = 1\n[card\n", "dir/a.toml");
    ASSERT_EQ(no_toml.errors.size(), 1u);
    EXPECT_EQ(no_toml.errors[0].substr(0, 13), "dir/a.toml:2:");
    EXPECT_FALSE(no_toml.scenario.has_value());
}

std::string file_text(const std::string& name) {
    std::ifstream file(KAVORIX_SOURCE_DIR "/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Scenario, ThoseShippedLoad) {
    for (const auto& [name, pods] : {std::pair{"demo.toml", 12U},
                                     {"full.toml", 50U},
                                     {"faulty.toml", 13U},
                                     {"empty.toml", 0U}}) {
        const auto loaded = load_scenario(file_text(std::string("scenarios/") + name), name);
        EXPECT_EQ(loaded.errors, std::vector<std::string>()) << name;
        EXPECT_EQ(loaded.scenario->pods.size(), pods) << name;
        EXPECT_TRUE(loaded.scenario->card.has_value()) << name;
    }
}

TEST(Scenario, TheDemonstrationShowsEveryPodTypeWithSignalsOnEveryChannel) {
    EXPECT_EQ(sim::demo_scenario_text(), file_text("scenarios/demo.toml"));
    std::set<std::string> types;
    for (const sim::PodSettings& pod : sim::demo_scenario().pods) {
        types.insert(pod.ident.substr(0, 2));
        const int channels = sim::channels_of(sim::pod_family(pod.ident.substr(0, 2)));
        for (int i = 0; i < channels; ++i)
            EXPECT_NE(pod.channels.at(static_cast<std::size_t>(i)).signal.kind,
                      sim::SignalKind::Open)
                << pod.number << "/" << i + 1;
    }
    EXPECT_EQ(types, (std::set<std::string>{"7R", "7S", "7T", "7U", "7V", "7W", "8R", "8S"}));
}

TEST(Scenario, TheFaultyNetworkHasEveryKindOfFault) {
    std::set<FaultKind> kinds;
    const auto scenario =
        *load_scenario(file_text("scenarios/faulty.toml"), "faulty.toml").scenario;
    for (const sim::PodSettings& pod : scenario.pods)
        for (const sim::Fault& fault : pod.faults) kinds.insert(fault.kind);
    EXPECT_EQ(kinds.size(), static_cast<std::size_t>(FaultKind::Reset) + 1);
    EXPECT_FALSE(scenario.card_faults.empty());
    EXPECT_FALSE(scenario.chaos.empty());
}

// The keys stand in the first column of the page's tables.
TEST(Scenario, EveryKeyOnTheReferencePageIsKnown) {
    const std::map<std::string, std::string> tables = {
        {"The file as a whole", ""},
        {"`[card]`", "[card]\n"},
        {"`[[pod]]`", "[[pod]]\n"},
        {"`[[pod.channel]]`", Pod + "[[pod.channel]]\n"},
        {"`[[pod.fault]]`", Pod + "[[pod.fault]]\n"},
        {"`[[pod.text]]`", Pod + "[[pod.text]]\n"}};
    std::istringstream page(file_text("docs/scenarios.md"));
    std::string heading, row_before, title;
    int keys = 0;
    for (std::string line; std::getline(page, line); row_before = line) {
        if (line.starts_with("## ")) heading = line.substr(3);
        if (!row_before.starts_with("|")) title = line;
        if (!title.starts_with("| Key") || !line.starts_with("| `")) continue;
        const std::string key = line.substr(3, line.find('`', 3) - 3);
        ASSERT_TRUE(tables.contains(heading)) << heading;
        ++keys;
        for (const auto& error :
             load_scenario(tables.at(heading) + key + " = 1e300\n", "x.toml").errors)
            EXPECT_EQ(error.find("unknown key"), std::string::npos) << heading << " " << error;
    }
    EXPECT_GT(keys, 40);
}

}  // namespace
}  // namespace kavorix::test
