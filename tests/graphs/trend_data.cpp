#include "graphs/trend_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "graphs/page_plot.h"

namespace kavorix::test {
namespace {

constexpr WallTime Start{2026, 1, 5, 8, 0, 0, 0};

WallTime later(double seconds) {
    return add_milliseconds(Start, std::llround(seconds * 1000));
}

// `rows` rows, `interval_s` apart, each holding its number; `clock` tells by how many seconds the
// wall clock is ahead of a row's time.
TrendData rows_of(
    int rows, std::size_t capacity, double interval_s = 1,
    const std::function<double(int)>& clock = [](int) { return 0.0; }) {
    TrendData data(1, capacity);
    for (int i = 0; i < rows; ++i) {
        const auto value = static_cast<float>(i);
        data.append(i * interval_s, later(i * interval_s + clock(i)), {&value, 1});
    }
    return data;
}

TEST(TrendData, KeepsTheLatestRowsUnderTheirNumbers) {
    const TrendData data = rows_of(10, 3, 2);
    EXPECT_EQ(std::pair(data.first_row(), data.end_row()), std::pair(7UL, 10UL));
    EXPECT_EQ(data.value(7, 0), 7);
    EXPECT_EQ(data.time(9), 18);
    EXPECT_EQ(data.range(), (TimeRange{14, 18}));
}

TEST(TrendData, FindsRowsByTime) {
    const TrendData data = rows_of(5, 100, 10);
    for (const auto& [time_s, row] : {std::pair{-5.0, 0U}, {10, 1U}, {10.5, 2U}, {41, 5U}})
        EXPECT_EQ(data.row_at(time_s), row) << time_s;
    for (const auto& [time_s, row] :
         {std::pair{-1000.0, 0U}, {14, 1U}, {15, 1U}, {16, 2U}, {1000, 4U}})
        EXPECT_EQ(data.nearest_row(time_s), row) << time_s;
}

TEST(TrendData, TheClockRunsWithTheRowsUnlessNobodyPolled) {
    const TrendData late = rows_of(50, 100, 1, [](int i) { return i % 3 * 0.1; });
    EXPECT_EQ(late.clock().size(), 1U);
    EXPECT_EQ(late.wall_time(30), later(30));
    EXPECT_EQ(late.wall_time(-10), later(-10));
    // Rows 10 to 19 come with the last of them.
    const TrendData repeated = rows_of(30, 100, 1, [](int i) { return i / 10 == 1 ? 19 - i : 0; });
    EXPECT_EQ(repeated.clock().size(), 1U);
    const TrendData jumped = rows_of(20, 100, 1, [](int i) { return i < 10 ? 0 : 3600; });
    EXPECT_EQ(jumped.clock().size(), 2U);
    for (const int time_s : {9, 10, 15})
        EXPECT_EQ(jumped.wall_time(time_s), later(time_s < 10 ? time_s : time_s + 3600)) << time_s;
    const TrendData forgotten = rows_of(30, 5, 1, [](int i) { return i < 10 ? 0 : -7200; });
    EXPECT_EQ(forgotten.clock().size(), 1U);
    EXPECT_EQ(forgotten.wall_time(27), later(27 - 7200));
}

// A second besides the interval is no jump.
TEST(TrendData, TheClockJumpsByMoreThanALateRow) {
    for (const auto& [ahead_s, anchors] :
         {std::pair{2.0, 1U}, {2.001, 2U}, {-2.0, 1U}, {-2.001, 2U}}) {
        const double ahead = ahead_s;
        EXPECT_EQ(rows_of(20, 100, 1, [=](int i) { return i < 10 ? 0 : ahead; }).clock().size(),
                  anchors)
            << ahead_s;
    }
}

TEST(TrendData, ASpanHoldsBothItsEndsAndARowOnTheWayOut) {
    std::size_t most = 0;
    for (int minutes = 1; minutes < 24 * 60; ++minutes)
        most = std::max(most, rows_of_span(minutes * 60, minutes / 240 + 1));
    EXPECT_EQ(most, 14392U);
    EXPECT_EQ(rows_of_span(60, 1), 62U);
}

}  // namespace
}  // namespace kavorix::test
