#include "graphs/trend_columns.h"

#include <gtest/gtest.h>

#include <cmath>

#include "random_trend.h"

namespace kavorix::test {
namespace {

// The column of a row, or -1.
int column_of(const TrendColumns& columns, std::uint64_t row) {
    const std::size_t index = columns.index_of_row(row);
    return index < columns.size() && columns.first_row(index) <= row ? static_cast<int>(index) : -1;
}

bool same(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

// Every value of the range is within its column's extremes, and the extremes are values of it.
void expect_faithful(const TrendColumns& columns, const TrendData& data, const TimeRange& range) {
    for (std::uint64_t row = data.row_at(range.begin);
         row < data.end_row() && data.time(row) < range.end; ++row) {
        const int column = column_of(columns, row);
        ASSERT_GE(column, 0) << "row " << row << " is in no column";
        for (int channel = 0; channel < data.channels(); ++channel) {
            const float value = data.value(row, channel);
            const Extremes& extremes = columns.extremes(static_cast<std::size_t>(column), channel);
            if (std::isfinite(value)) {
                ASSERT_LE(extremes.minimum, value);
                ASSERT_GE(extremes.maximum, value);
            }
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i)
        for (int channel = 0; channel < data.channels(); ++channel) {
            if (columns.first_row(i) < data.first_row()) continue;
            const Extremes& extremes = columns.extremes(i, channel);
            bool minimum = !extremes.any();
            bool maximum = !extremes.any();
            for (std::uint64_t row = columns.first_row(i); row < columns.end_row(i); ++row) {
                minimum |= data.value(row, channel) == extremes.minimum;
                maximum |= data.value(row, channel) == extremes.maximum;
            }
            ASSERT_TRUE(minimum && maximum) << "an extreme that no row has";
        }
}

// What was added to is what would be made anew.
void expect_same_as_new(const TrendColumns& columns, const TrendData& data,
                        const TimeRange& range) {
    TrendColumns fresh;
    fresh.show(data, range, columns.width_s());
    const std::int64_t first_shown =
        static_cast<std::int64_t>(std::floor(range.begin / columns.width_s()));
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        const double column_end = static_cast<double>(fresh.number(i) + 1) * columns.width_s();
        if (fresh.number(i) < first_shown || column_end > range.end) continue;
        const std::size_t j = columns.index_of(fresh.number(i));
        ASSERT_LT(j, columns.size());
        ASSERT_EQ(columns.number(j), fresh.number(i));
        if (columns.first_row(j) < data.first_row()) continue;
        ASSERT_EQ(columns.end_row(j), fresh.end_row(i));
        ASSERT_EQ(columns.time(j), fresh.time(i));
        for (int channel = 0; channel < data.channels(); ++channel) {
            const Extremes& a = columns.extremes(j, channel);
            const Extremes& b = fresh.extremes(i, channel);
            ASSERT_TRUE(same(a.first, b.first) && same(a.minimum, b.minimum) &&
                        same(a.maximum, b.maximum) && same(a.last, b.last));
        }
    }
}

TEST(TrendColumns, NeverLoseAnExtremeHoweverTheyGrowAndTheViewMoves) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        const bool following = seed % 2 == 0;
        RandomTrend random(seed, 3);
        const double interval_s = following ? random.whole(1, 6) : 1;
        const int capacity = following ? random.whole(2, 900) : 500;
        const double length_s = capacity * interval_s * random.whole(5, 110) / 100;
        double width_s = random.whole(1, 200) / 7.0;
        TrendData data(3, static_cast<std::size_t>(capacity));
        TrendColumns columns;
        for (int step = 0; step < 60; ++step) {
            random.append(data, random.whole(0, 40), interval_s);
            TimeRange range{data.range().end - length_s, data.range().end + width_s};
            if (!following) {
                if (random.whole(0, 3) == 0) width_s = random.whole(1, 90) / 10.0;
                range.begin = data.range().begin + random.whole(-20, 400);
                range.end = range.begin + random.whole(1, 300);
            }
            columns.show(data, range, width_s);
            ASSERT_NO_FATAL_FAILURE(expect_faithful(columns, data, range)) << "seed " << seed;
            ASSERT_NO_FATAL_FAILURE(expect_same_as_new(columns, data, range)) << "seed " << seed;
        }
    }
}

TEST(TrendColumns, GoesOnWithoutLookingAtTheRestAgain) {
    RandomTrend random(1, 1);
    TrendData data(1, 1000);
    random.append(data, 900, 1);
    TrendColumns columns;
    columns.show(data, {0, 901}, 10);
    const std::uint64_t made = columns.generation();
    for (int i = 0; i < 500; ++i) {
        random.append(data, 1, 1);
        columns.show(data, {data.range().end - 800, data.range().end + 1}, 10);
    }
    EXPECT_EQ(columns.generation(), made);
    EXPECT_LE(columns.size(), 83U);
    columns.show(data, {data.range().end - 900, data.range().end + 1}, 10);
    EXPECT_GT(columns.generation(), made) << "an earlier begin needs rows that were dropped";
}

TrendColumns columns_of(const std::vector<float>& values, double width_s) {
    TrendData data(1, 100);
    for (std::size_t i = 0; i < values.size(); ++i)
        data.append(static_cast<double>(i), {}, {&values[i], 1});
    TrendColumns columns;
    columns.show(data, {0, 10}, width_s);
    return columns;
}

TEST(TrendColumns, HoldFirstAndLastValueAndWhereTheyStand) {
    const TrendColumns columns = columns_of({3, 9, 1, 4, 8, 7}, 5);
    ASSERT_EQ(columns.size(), 2U);
    const Extremes& first = columns.extremes(0, 0);
    EXPECT_EQ((std::array{first.first, first.minimum, first.maximum, first.last}),
              (std::array{3.0F, 1.0F, 9.0F, 8.0F}));
    EXPECT_EQ(std::pair(columns.time(0), columns.time(1)), std::pair(2.5, 5.0));
    EXPECT_TRUE(columns.dense());
    EXPECT_FALSE(columns_of({3, 9, 1, 4, 8, 7}, 1).dense());
}

TEST(TrendColumns, AGapAtTheEdgeOfAColumnIsRemembered) {
    constexpr float None = std::numeric_limits<float>::quiet_NaN();
    const TrendColumns columns = columns_of({None, 2, 3, None, None, None}, 3);
    const Extremes& first = columns.extremes(0, 0);
    EXPECT_TRUE(std::isnan(first.first) && first.minimum == 2 && first.last == 3);
    EXPECT_FALSE(columns.extremes(1, 0).any());
}

}  // namespace
}  // namespace kavorix::test
