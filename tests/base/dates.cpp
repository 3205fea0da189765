#include "base/dates.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <vector>

namespace kavorix {

static void PrintTo(const WallTime& time, std::ostream* out) {
    *out << general_date(time) << "." << time.millisecond;
}

namespace {

TEST(Dates, GeneralDateHasFixedWidths) {
    EXPECT_EQ(general_date({2026, 1, 5, 8, 3, 9, 999}), "2026-01-05 08:03:09");
    EXPECT_EQ(general_date({1999, 12, 31, 23, 59, 59, 0}), "1999-12-31 23:59:59");
    EXPECT_EQ(general_date({33, 1, 1, 0, 0, 0, 0}), "0033-01-01 00:00:00");
}

TEST(Dates, MonthNames) {
    std::string names;
    for (int month = -1; month <= 13; ++month) names += month_name(month) + "|";
    EXPECT_EQ(names, "||Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec||");
}

TEST(Dates, AddDaysFollowsTheCalendarAndKeepsTheTimeOfDay) {
    const struct {
        WallTime from;
        int days;
        WallTime to;
    } rows[] = {
        {{2026, 1, 5, 8, 3, 9, 4}, 0, {2026, 1, 5, 8, 3, 9, 4}},
        {{2026, 1, 31, 8, 3, 9, 4}, 1, {2026, 2, 1, 8, 3, 9, 4}},
        {{2026, 2, 28}, 1, {2026, 3, 1}},
        {{2024, 2, 28}, 1, {2024, 2, 29}},
        {{2000, 2, 28}, 1, {2000, 2, 29}},
        {{2100, 2, 28}, 1, {2100, 3, 1}},
        {{1999, 12, 31}, 1, {2000, 1, 1}},
        {{2000, 1, 1}, -1, {1999, 12, 31}},
        {{2024, 3, 1}, -366, {2023, 3, 1}},
    };
    for (const auto& row : rows) EXPECT_EQ(add_days(row.from, row.days), row.to) << row.days;
}

TEST(Dates, KnowsWhichDaysThereAre) {
    using Days = std::vector<std::array<int, 3>>;
    for (const auto& [year, month, day] :
         Days{{2026, 1, 1}, {2026, 12, 31}, {2024, 2, 29}, {0, 1, 1}, {9999, 12, 31}})
        EXPECT_TRUE(is_date({year, month, day})) << year << "-" << month << "-" << day;
    for (const auto& [year, month, day] : Days{{2026, 2, 29},
                                               {2026, 4, 31},
                                               {2026, 0, 1},
                                               {2026, 13, 1},
                                               {2026, 1, 0},
                                               {2026, 1, 32},
                                               {2026, 99, 99},
                                               {2026, 257, 1},
                                               {2026, 1, 257}})
        EXPECT_FALSE(is_date({year, month, day})) << year << "-" << month << "-" << day;
}

TEST(Dates, AddMillisecondsCarriesThroughEveryField) {
    const struct {
        WallTime from;
        long long milliseconds;
        WallTime to;
    } rows[] = {
        {{2026, 1, 5, 8, 0, 0, 0}, 1, {2026, 1, 5, 8, 0, 0, 1}},
        {{2026, 1, 5, 8, 0, 0, 999}, 1, {2026, 1, 5, 8, 0, 1, 0}},
        {{2026, 12, 31, 23, 59, 59, 900}, 200, {2027, 1, 1, 0, 0, 0, 100}},
        {{2027, 1, 1, 0, 0, 0, 100}, -200, {2026, 12, 31, 23, 59, 59, 900}},
        {{2026, 1, 5, 0, 0, 0, 0}, 3LL * 86400000, {2026, 1, 8, 0, 0, 0, 0}},
        {{2026, 1, 5, 0, 0, 0, 0}, -86400000, {2026, 1, 4, 0, 0, 0, 0}},
        {{2026, 1, 5, 12, 30, 0, 500}, 400LL * 86400000 + 1, {2027, 2, 9, 12, 30, 0, 501}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(add_milliseconds(row.from, row.milliseconds), row.to) << row.milliseconds;
        EXPECT_EQ(milliseconds_between(row.from, row.to), row.milliseconds);
    }
}

}  // namespace
}  // namespace kavorix
