#include "app/verify.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <sstream>

#include "app/terminal.h"
#include "app/terminal_run.h"
#include "base/numbers.h"
#include "model/catalogue.h"
#include "support/random_config.h"

namespace kavorix::test {

namespace {

using Lines = std::vector<std::string>;

// A station with a pod of each given type at the numbers 1, 2 and so on.
class VerifyBench {
  public:
    explicit VerifyBench(const std::vector<std::int16_t>& types)
        : station_(options(network_file(types)), loop_, messages_, false) {
        EXPECT_TRUE(station_.start()) << messages_.str();
        for (std::size_t i = 0; i < types.size(); ++i)
            default_ZAV_config(config(static_cast<int>(i)), types[i], 1);
        for (std::size_t i = 0; i < types.size(); ++i)
            pods_.add(Pod::at_index(static_cast<int>(i)));
    }

    PodConfig& config(int pod) { return station_.station.configuration.ZavConfig[at(pod)]; }

    void transmit() {
        station_.station.select_pods(pods_);
        station_.station.transmission.transmit_config(pods_);
    }

    Lines verify() {
        return verify_pods(station_.station.configuration.ZavConfig, *station_.simulated_network(),
                           pods_);
    }

    const sim::Network& network() const { return *station_.simulated_network(); }

  private:
    std::string network_file(const std::vector<std::int16_t>& types) const {
        std::string text = "[card]\n";
        for (std::size_t i = 0; i < types.size(); ++i)
            text += "[[pod]]\nnumber = " + std::to_string(i + 1) + "\nident = \"" +
                    std::string(pod_type(types[i]).code) + "JA 0F 1.00\"\n";
        return run_.file("network.toml", text);
    }
    CommonOptions options(const std::string& network) const {
        CommonOptions common;
        common.network = network;
        common.directory = run_.path("");
        return common;
    }

    TerminalRun run_;
    VirtualEventLoop loop_;
    std::ostringstream messages_;
    PodSet pods_;
    TerminalStation station_;
};

// A number travels as four bytes; a command loses a blank at the end of what it has when more
// follows. Such numbers lie about 2E-19.
float without_end_blank(float value) {
    constexpr std::uint32_t Blank = 0x20;
    return std::bit_cast<std::uint32_t>(value) >> 24u == Blank ? value * 1024.0F : value;
}

void remove_end_blanks(PodConfig& pod) {
    const auto mend = [](auto& numbers) {
        for (float& number : numbers) number = leading_single(general(without_end_blank(number)));
    };
    for (UserTherm& table : pod.UserTherm) {
        mend(table.Polynomial);
        mend(table.InversePoly);
    }
    for (PostLinEquation& equation : pod.PostLinEquation) mend(equation.Coeff);
    for (StrainSettings& strain : pod.Strain) strain.Offset = without_end_blank(strain.Offset);
    for (ChannelConfig& channel : pod.Channel)
        for (AlarmLimit* alarm : {&channel.LowAlarm, &channel.HighAlarm})
            alarm->Limit = without_end_blank(alarm->Limit);
}

const std::vector<std::int16_t> EveryType = {Type7R, Type7S, Type7T, Type7U,
                                             Type8R, Type8S, Type7V, Type7W};

}  // namespace

class RandomConfigurations : public testing::TestWithParam<int> {};

TEST_P(RandomConfigurations, AreWhatThePodsThenHold) {
    VerifyBench bench(EveryType);
    RandomConfig random(static_cast<std::uint32_t>(GetParam()));
    for (int pod = 0; pod < static_cast<int>(EveryType.size()); ++pod) {
        PodConfig& config = bench.config(pod);
        config = random.pod(EveryType[at(pod)]);
        config.NumChannels = std::min(config.NumChannels, channel_count(config.TypeCode));
        remove_end_blanks(config);
    }
    bench.transmit();
    EXPECT_EQ(bench.verify(), Lines());
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomConfigurations, testing::Range(1, 41));

// One change of a configuration that has been transmitted, and the words for it.
struct Change {
    std::int16_t type;
    std::function<void(PodConfig&)> change;
    Lines differences;
};

TEST(Verify, NamesEverySettingThatDiffers) {
    const std::vector<Change> changes = {
        {Type7R, [](PodConfig& p) { p.Setup = 1; }, {"set-up: configured on, held off"}},
        {Type7R, [](PodConfig& p) { p.Arm = 1; }, {"arm: configured on, held off"}},
        {Type7R,
         [](PodConfig& p) { p.ScanPeriod = 2500; },
         {"scan period: configured 2500, held 0"}},
        {Type7R, [](PodConfig& p) { p.CalOn = 0; }, {"calibration: configured off, held on"}},
        {Type7R,
         [](PodConfig& p) { p.Integration = 3; },
         {"integration time: configured 3, held 0"}},
        {Type7R,
         [](PodConfig& p) { p.DegF = 1; },
         {"temperature units: configured Fahrenheit, held Celsius"}},
        {Type7R,
         [](PodConfig& p) { p.AmbTemp = 0; },
         {"reference temperature: configured external, held ambient"}},
        {Type7R,
         [](PodConfig& p) { p.OpenTC = 1; },
         {"open thermocouple check: configured on, held off"}},
        {Type7R,
         [](PodConfig& p) { p.ContScan = 1; },
         {"continuous scan: configured on, held off"}},
        {Type7R,
         [](PodConfig& p) { p.Channel[4].Mode = 33; },
         {"channel 5 mode: configured 33 Thermocouple Type K, held 10 Volts DC"}},
        {Type7R,
         [](PodConfig& p) { p.Channel[4].Mode = 0; },
         {"channel 5 mode: configured 0 Skip, held 10 Volts DC"}},  // and the same range code
        {Type7R,
         [](PodConfig& p) { p.Channel[19].Range = 4; },
         {"channel 20 range: configured 4 10V, held 0 Autorange"}},
        {Type7R,
         [](PodConfig& p) { p.Channel[0].HighAlarm.Enabled = 1; },
         {"channel 1 high alarm: configured on, held off"}},
        {Type7R,
         [](PodConfig& p) { p.NumChannels = 21; },
         {"channel 21 does not exist in the pod"}},
        {Type7U, [](PodConfig& p) { p.CalOn = p.Integration = p.OpenTC = 1; }, {}},
        {Type8R,
         [](PodConfig& p) { p.SampleRate[2] = 4; },
         {"channel 3 sample rate: configured 4, held 0"}},
        {Type8R,
         [](PodConfig& p) { p.Timeout[2] = 0; },
         {"channel 3 time-out: configured 0, held 1"}},
        {Type8R, [](PodConfig& p) { p.Timeout[2] = 1; }, {}},
        {Type8S,
         [](PodConfig& p) {
             p.HWWatch = 1;
             p.SWWatch = 1;
             p.SWWatchTime = 9;
         },
         {"hardware watchdog: configured on, held off",
          "software watchdog time: configured 9, held 0"}},
        {Type8S, [](PodConfig& p) { p.SWWatch = 1; }, {}},
        {Type7V,
         [](PodConfig& p) { p.UserTherm[1].Enabled = -1; },
         {"user thermocouple 2: configured on, held off"}},
        {Type7V,
         [](PodConfig& p) { p.PostLinEquation[0].Enabled = -1; },
         {"post-linearisation equation 1: configured on, held off"}},
        {Type7V, [](PodConfig& p) { p.UserTherm[1].Enabled = 1; }, {}},
        {Type7V,
         [](PodConfig& p) { p.Channel[17].PostLin = 2; },
         {"channel 18 post-linearisation: configured 2, held 0"}},
        {Type7V, [](PodConfig& p) { p.Channel[18].PostLin = 2; }, {}},
        {Type7V,
         [](PodConfig& p) {
             p.AlarmGroup[1].OutputState = 1;
             p.AlarmGroup[1].High[2] = p.AlarmGroup[1].Low[2] = p.AlarmGroup[1].High[6] = 1;
         },
         {"alarm group of channel 20: configured assert, 3 low, 3 high, 7 high, held off"}},
    };
    for (const Change& c : changes) {
        VerifyBench bench({c.type});
        bench.transmit();
        EXPECT_EQ(bench.verify(), Lines());
        c.change(bench.config(0));
        Lines expected;
        for (const std::string& line : c.differences) expected.push_back("ZAV 01 " + line);
        EXPECT_EQ(bench.verify(), expected);
    }
}

TEST(Verify, NamesNumbersThatDiffer) {
    VerifyBench bench({Type7V, Type7S});
    PodConfig& universal = bench.config(0);
    universal.AmbTemp = 0;
    universal.ExtTemp = 21.6F;
    universal.Channel[3].LowAlarm = {1, -1.5F, 0.25F};
    universal.UserTherm[0].Enabled = -1;
    universal.PostLinEquation[1] = {-1, {0, 1, 2, 3, 4, 5}};
    PodConfig& bridge = bench.config(1);
    bridge.Channel[0].Mode = 62;
    bridge.Strain[0] = {2.1F, 0.001F, 0.96F};
    bench.transmit();
    ASSERT_EQ(bench.verify(), Lines());
    universal.ExtTemp = 22.5F;
    universal.Channel[3].LowAlarm = {1, -1.25F, 0.5F};
    universal.UserTherm[0].InversePoly[5] = 1e-9F;
    universal.PostLinEquation[1].Coeff[0] = 0.1F;
    bridge.Strain[0] = {2.0F, 0.002F, 0.5F};
    EXPECT_EQ(bench.verify(),
              (Lines{"ZAV 01 external temperature: configured 23, held 22",
                     "ZAV 01 user thermocouple 1 inverse coefficient 5: configured 9.99999972e-10, "
                     "held 0",
                     "ZAV 01 post-linearisation equation 2 coefficient 0: configured 0.100000001, "
                     "held 0",
                     "ZAV 01 channel 4 low alarm limit: configured -1.25, held -1.5",
                     "ZAV 01 channel 4 low alarm hysteresis: configured 0.5, held 0.25",
                     "ZAV 02 channel 1 gauge factor: configured 2, held 2.0999999",
                     "ZAV 02 channel 1 offset: configured 0.00200000009, held 0.00100000005",
                     "ZAV 02 channel 1 initial volt: configured 0.5, held 0.959999979"}));
}

TEST(Verify, WhatAnEarlierConfigurationSwitchedOnIsADifference) {
    VerifyBench bench({Type7V});
    PodConfig& config = bench.config(0);
    config.PostLinEquation[0].Enabled = -1;
    config.AlarmGroup[0].OutputState = 0;
    config.Channel[0].HighAlarm.Enabled = 1;
    bench.transmit();
    ASSERT_EQ(bench.verify(), Lines());
    default_ZAV_config(config, Type7V, 1);
    bench.transmit();
    EXPECT_EQ(bench.verify(),
              (Lines{"ZAV 01 post-linearisation equation 1: configured off, held on",
                     "ZAV 01 alarm group of channel 19: configured off, held disassert"}));
}

TEST(Verify, ANumberThatLosesABlankOnItsWayIsFound) {
    VerifyBench bench({Type7V});
    bench.config(0).Channel[0].HighAlarm = {1, 2e-19F, 1.0F};
    bench.transmit();
    EXPECT_EQ(bench.verify(), (Lines{"ZAV 01 channel 1 high alarm: configured on, held off"}));
}

TEST(Verify, PodsOutsideTheNetwork) {
    VerifyBench bench({Type7V});
    PodConfigs configs;
    default_ZAV_config(configs[5], Type8R, 1);
    const PodSet pods = {Pod::numbered(5), Pod::numbered(6)};
    EXPECT_EQ(verify_pods(configs, bench.network(), pods),
              Lines{"ZAV 06 is not in the simulated network"});
}

}  // namespace kavorix::test
