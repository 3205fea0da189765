// Properties of writer and reader together, over configurations from fixed seeds.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "config/config_reader.h"
#include "config/config_writer.h"
#include "support/random_config.h"

namespace kavorix {
namespace {

const WallTime Created{2026, 3, 1, 12, 30, 0, 0};

// A configuration of a station whose card is at C800.
std::unique_ptr<Configuration> make_configuration() {
    auto configuration = std::make_unique<Configuration>();
    configuration->Interface.CardAddress = -14336;
    return configuration;
}

struct Load {
    LoadOutcome outcome = LoadOutcome::NoHeader;
    std::vector<std::string> messages;
};

Load load(const std::string& text, const Connected& connected, Configuration& configuration) {
    Load result;
    result.outcome = load_configuration(text, connected, configuration, [&](const LoadMessage& m) {
        result.messages.push_back("line " + std::to_string(m.line) + ": " + m.text);
        return true;
    });
    return result;
}

TEST(RoundTrip, LoadingWhatWasWrittenGivesEveryFieldAndByteBack) {
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        test::RandomConfig random(seed);
        const auto written = make_configuration();
        written->Interface = random.interface_settings();
        written->ZavConfig = random.configs();
        const std::string text = config_text(written->Interface, written->ZavConfig, Created);

        const auto loaded = make_configuration();
        loaded->Interface.CardHandle = written->Interface.CardHandle;
        loaded->Interface.CardAddress = written->Interface.CardAddress;
        const Load result =
            load(text, test::station_for(written->Interface, written->ZavConfig), *loaded);
        ASSERT_EQ(result.messages, std::vector<std::string>{}) << "seed " << seed;
        ASSERT_EQ(result.outcome, LoadOutcome::Loaded) << "seed " << seed;
        EXPECT_TRUE(loaded->Interface == written->Interface) << "seed " << seed;
        for (std::size_t pod = 0; pod < MaxZavs; ++pod)
            EXPECT_TRUE(loaded->ZavConfig[pod] == written->ZavConfig[pod])
                << "seed " << seed << " pod " << pod + 1;
        EXPECT_EQ(config_text(loaded->Interface, loaded->ZavConfig, Created), text)
            << "seed " << seed;
    }
}

TEST(RoundTrip, WhatWasThereBeforeDoesNotShowThrough) {
    test::RandomConfig random(7);
    const auto written = make_configuration();
    written->ZavConfig = random.configs();
    const std::string text = config_text(written->Interface, written->ZavConfig, Created);
    const auto loaded = make_configuration();
    loaded->ZavConfig = random.configs();
    ASSERT_EQ(
        load(text, test::station_for(written->Interface, written->ZavConfig), *loaded).outcome,
        LoadOutcome::Loaded);
    EXPECT_EQ(config_text(loaded->Interface, loaded->ZavConfig, Created), text);
}

TEST(RoundTrip, CalibrationOfA7UIsOffAfterALoad) {
    const auto configuration = make_configuration();
    default_ZAV_config(configuration->ZavConfig[0], Type7U, 1);
    PodConfig expected = configuration->ZavConfig[0];
    const Connected connected =
        test::station_for(configuration->Interface, configuration->ZavConfig);
    const std::string text =
        config_text(configuration->Interface, configuration->ZavConfig, Created);
    ASSERT_EQ(load(text, connected, *configuration).outcome, LoadOutcome::Loaded);
    EXPECT_EQ(expected.CalOn, 1);
    expected.CalOn = 0;
    // Slots behind the pod's channels have no mode after a load.
    for (std::size_t slot = 20; slot < 32; ++slot) expected.Channel[slot].Mode = 0;
    EXPECT_TRUE(configuration->ZavConfig[0] == expected);
}

TEST(RoundTrip, WithoutCapabilityLettersPeriodAndIntegrationStayAtZero) {
    const auto configuration = make_configuration();
    PodConfig& pod = configuration->ZavConfig[4];
    default_ZAV_config(pod, Type7R, 0);
    pod.ScanPeriod = 2500;
    pod.Integration = 3;
    const std::string text =
        config_text(configuration->Interface, configuration->ZavConfig, Created);
    Connected connected = test::station_for(configuration->Interface, configuration->ZavConfig);
    connected.Ident[4] = "7RJB 0X 1.00";
    PodConfig expected = pod;
    expected.ScanPeriod = expected.Integration = 0;
    ASSERT_EQ(load(text, connected, *configuration).outcome, LoadOutcome::Loaded);
    EXPECT_TRUE(pod == expected);
}

TEST(RoundTrip, AFileFitsTheStationThatItAssumes) {
    test::RandomConfig random(11);
    const auto written = make_configuration();
    written->Interface = random.interface_settings();
    written->ZavConfig = random.configs();
    const std::string text = config_text(written->Interface, written->ZavConfig, Created);
    const auto loaded = make_configuration();
    ASSERT_EQ(load_on_its_own(text, *loaded, [](const LoadMessage&) { return true; }),
              LoadOutcome::Loaded);
    EXPECT_EQ(config_text(loaded->Interface, loaded->ZavConfig, Created), text);
}

// Changes a text in a place: a byte changed, left out or put in, a line doubled, moved or dropped,
// the end cut off.
void mutate(std::string& text, test::RandomConfig& random) {
    const auto position = [&] {
        return static_cast<std::size_t>(random.number(0, static_cast<int>(text.size()) - 1));
    };
    const std::string telling = std::string("0123456789,;'{}-+.EHLCMO \r\n") + '\0' + '\xFF';
    const char byte =
        telling[static_cast<std::size_t>(random.number(0, static_cast<int>(telling.size()) - 1))];
    const std::size_t at = position();
    const std::size_t line_start = text.rfind('\n', at) + 1;
    const std::size_t line_end = std::min(text.find('\n', at), text.size());
    const std::string line = text.substr(line_start, line_end - line_start + 1);
    switch (random.number(0, 6)) {
        case 0:
            text[at] = byte;
            break;
        case 1:
            text.erase(at, static_cast<std::size_t>(random.number(1, 3)));
            break;
        case 2:
            text.insert(at, static_cast<std::size_t>(random.number(1, 3)), byte);
            break;
        case 3:
            text.insert(line_start, line);
            break;
        case 4:
            text.erase(line_start, line.size());
            break;
        case 5:
            text.insert(text.find('\n', position()) + 1, line);
            break;
        default:
            if (random.chance(10)) text.resize(at);
    }
}

TEST(Mutation, AnEditedFileLoadsOrGivesMessagesAndLeavesTheConfigurationAlone) {
    int loaded = 0;
    int refused = 0;
    const auto configuration = make_configuration();
    for (std::uint32_t seed = 1; seed <= 400; ++seed) {
        test::RandomConfig random(seed);
        PodConfigs pods;
        for (std::size_t pod = 0; pod < 3; ++pod)
            pods[pod] = random.pod(static_cast<std::int16_t>(random.number(1, 8)));
        const Connected connected = test::station_for(configuration->Interface, pods);
        std::string text = config_text(configuration->Interface, pods, Created);
        for (int edits = random.number(1, 8); edits > 0 && !text.empty(); --edits)
            mutate(text, random);

        const PodConfigs before = configuration->ZavConfig;
        const Load result = load(text, connected, *configuration);
        const bool unchanged = configuration->ZavConfig == before;
        EXPECT_EQ(result.messages.empty(), result.outcome != LoadOutcome::Errors) << seed;
        EXPECT_TRUE(unchanged || result.outcome == LoadOutcome::Loaded) << seed;
        for (const PodConfig& pod : configuration->ZavConfig)
            EXPECT_TRUE(pod.NumChannels >= 0 && pod.NumChannels <= ChannelSlots) << seed;
        ++(result.outcome == LoadOutcome::Loaded ? loaded : refused);
    }
    // The edits reach both ends.
    EXPECT_GT(loaded, 40);
    EXPECT_GT(refused, 40);
}

}  // namespace
}  // namespace kavorix
