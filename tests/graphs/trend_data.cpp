#include "graphs/trend_data.h"

#include <gtest/gtest.h>

#include <cmath>

#include "graphs/page_plot.h"

namespace kavorix::test {
namespace {

constexpr WallTime Start{2026, 1, 5, 8, 0, 0, 0};

WallTime later(double seconds) {
    return add_milliseconds(Start, std::llround(seconds * 1000));
}

void append(TrendData& data, double time_s, const WallTime& wall, float value = 0) {
    data.append(time_s, wall, {&value, 1});
}

TEST(TrendData, KeepsTheLatestRowsUnderTheirNumbers) {
    TrendData data(1, 3);
    for (int i = 0; i < 10; ++i) append(data, i * 2, later(i * 2), static_cast<float>(i));
    EXPECT_EQ(data.first_row(), 7U);
    EXPECT_EQ(data.end_row(), 10U);
    EXPECT_EQ(data.value(7, 0), 7);
    EXPECT_EQ(data.time(9), 18);
    EXPECT_EQ(data.range(), (TimeRange{14, 18}));
}

TEST(TrendData, FindsRowsByTime) {
    TrendData data(1, 100);
    for (int i = 0; i < 5; ++i) append(data, i * 10, later(i * 10));
    EXPECT_EQ(data.row_at(-5), 0U);
    EXPECT_EQ(data.row_at(10), 1U);
    EXPECT_EQ(data.row_at(10.5), 2U);
    EXPECT_EQ(data.row_at(41), 5U);
    EXPECT_EQ(data.nearest_row(14), 1U);
    EXPECT_EQ(data.nearest_row(16), 2U);
    EXPECT_EQ(data.nearest_row(1000), 4U);
    EXPECT_EQ(data.nearest_row(-1000), 0U);
}

TEST(TrendData, TheClockRunsWithTheRows) {
    TrendData data(1, 100);
    for (int i = 0; i < 50; ++i) append(data, i, later(i + (i % 3) * 0.1));
    EXPECT_EQ(data.clock().size(), 1U);
    EXPECT_EQ(data.wall_time(30), later(30));
    EXPECT_EQ(data.wall_time(-10), later(-10));
}

TEST(TrendData, RowsRepeatedAfterALateTickDoNotMoveTheClock) {
    TrendData data(1, 100);
    for (int i = 0; i < 10; ++i) append(data, i, later(i));
    for (int i = 10; i < 20; ++i) append(data, i, later(19));
    for (int i = 20; i < 30; ++i) append(data, i, later(i));
    EXPECT_EQ(data.clock().size(), 1U);
}

TEST(TrendData, TheClockJumpsWhereNobodyPolled) {
    TrendData data(1, 100);
    for (int i = 0; i < 10; ++i) append(data, i, later(i));
    for (int i = 10; i < 20; ++i) append(data, i, later(i + 3600));
    EXPECT_EQ(data.clock().size(), 2U);
    EXPECT_EQ(data.wall_time(9), later(9));
    EXPECT_EQ(data.wall_time(10), later(3610));
    EXPECT_EQ(data.wall_time(15), later(3615));
}

TEST(TrendData, AJumpIsForgottenWithItsRows) {
    TrendData data(1, 5);
    for (int i = 0; i < 10; ++i) append(data, i, later(i));
    for (int i = 10; i < 30; ++i) append(data, i, later(i - 7200));
    EXPECT_EQ(data.clock().size(), 1U);
    EXPECT_EQ(data.wall_time(27), later(27 - 7200));
}

TEST(RowsOfSpan, NeverExceedTheMostThatASpanHolds) {
    std::size_t most = 0;
    for (int minutes = 1; minutes < 24 * 60; ++minutes)
        most = std::max(most, rows_of_span(minutes * 60, minutes / 240 + 1));
    EXPECT_EQ(most, 14392U);
    EXPECT_EQ(rows_of_span(60, 1), 62U);
}

}  // namespace
}  // namespace kavorix::test
