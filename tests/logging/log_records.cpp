#include "logging/log_records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "base/numbers.h"

namespace kavorix {
namespace {

using testing::ElementsAre;

TEST(LoggedValue, IsRoundedToSixDecimals) {
    const struct {
        float reading;
        float logged;
    } rows[] = {
        {0.0F, 0.0F},
        {1.0F, 1.0F},
        {0.1234564F, 0.123456F},
        {0.1234567F, 0.123457F},
        {-1.2345678F, -1.234568F},
        {0.0078125F, 0.007813F},  // a tie: 2^-7
        {-0.0078125F, -0.007813F},
        {4E-7F, 0.0F},
        {6E-7F, 1E-6F},
        {2.7E-19F, 0.0F},
        {15.999999F, 15.999999F},
        {123.456F, 123.456F},
        {1E10F, 1E10F},
        {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity()},
    };
    for (const auto& row : rows) EXPECT_EQ(logged_value(row.reading), row.logged) << row.reading;
    EXPECT_TRUE(std::isnan(logged_value(std::numeric_limits<float>::quiet_NaN())));
}

TEST(LoggedValue, AValueThatRoundsToZeroHasNoSign) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(logged_value(-4E-7F)), 0u);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(logged_value(-0.0F)), 0u);
}

// The rule as it reads: the text with six decimals, read back.
TEST(LoggedValue, IsTheTextWithSixDecimalsReadBack) {
    std::mt19937 random(3);
    const auto check = [](float reading) {
        ASSERT_EQ(logged_value(reading), leading_single(fixed(static_cast<double>(reading), 6)))
            << std::hexfloat << reading;
    };
    for (int i = 0; i < 20000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        const auto any = std::bit_cast<float>(bits);
        if (std::isfinite(any)) check(any);
        // 0.00000012 .. 128, where rounding does something or just no longer does
        const auto near = std::bit_cast<float>(0x34000000u + bits % (0x43000000u - 0x34000000u));
        check(near);
        check(-near);
    }
}

TEST(ScanRecord, HoldsThePodNumberAndItsValues) {
    const auto status = std::make_unique<PodStatus>();
    status->ChannelCount = 4;
    status->Reading = {1.5F, 2.0F, 3.0F, -0.25F};
    status->ResultCode = {0, 128, 129, 141};
    std::vector<float> block(16, 0.0F);
    std::int16_t index = 2;
    append_scan(block, index, 6, *status, 4);
    EXPECT_EQ(index, 7);
    EXPECT_THAT(std::vector(block.begin() + 3, block.begin() + 9),
                ElementsAre(7.0F, 1.5F, 2.0F, ErrorReading, ErrorReading, 0.0F));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(block[6]), 0x8000000Au);
}

// As many singles as the header promises, whatever the pod answers.
TEST(ScanRecord, HoldsAnErrorForEachMissingValueAndNoneTooMany) {
    const auto status = std::make_unique<PodStatus>();
    status->Reading.fill(1.5F);
    for (const int answered : {-1, 0, 1, 9, 10, 11, 32, 1000})
        for (const int promised : {0, 10, 20, 32}) {
            status->ChannelCount = static_cast<std::int16_t>(answered);
            std::vector<float> block(40, 7.0F);
            std::int16_t index = -1;
            append_scan(block, index, 6, *status, promised);
            std::vector<float> expected(40, 7.0F);
            for (int i = 1; i <= promised; ++i)
                expected[at(i)] = i <= answered ? 1.5F : ErrorReading;
            EXPECT_EQ(index, promised);
            EXPECT_EQ(block, expected) << answered << " " << promised;
        }
}

TEST(EventRecord, HoldsThreeDecimalNumbersPerEvent) {
    const auto poll = std::make_unique<PollState>();
    EventEntry& first = poll->Events[4][0];
    first = {19, 5, 13, 45, 12, 7, 2, 1, 0};  // channel 19, 5 December 13:45:02.007, Lo to Hi
    poll->Events[4][1] = {3, 31, 0, 0, 1, 999, 59, 0, 1};
    poll->LastEvent[4] = 1;
    std::vector<float> block(16, 0.0F);
    std::int16_t index = -1;
    append_events(block, index, 4, *poll);
    EXPECT_EQ(index, 7);
    EXPECT_EQ(index + 1, event_entries(4, *poll));
    EXPECT_THAT(
        std::vector(block.begin(), block.begin() + 9),
        ElementsAre(5.0F, 1.0F, 51219.0F, 134502.0F, 701.0F, 310103.0F, 59.0F, 99910.0F, 0.0F));
}

TEST(EventRecord, APodWithoutEventsHoldsItsNumberAlone) {
    const auto poll = std::make_unique<PollState>();
    std::vector<float> block(4, 0.0F);
    std::int16_t index = -1;
    append_events(block, index, 49, *poll);
    EXPECT_THAT(block, ElementsAre(50.0F, -1.0F, 0.0F, 0.0F));
    EXPECT_EQ(index, 1);
}

}  // namespace
}  // namespace kavorix
