#include "base/dates.h"

#include <gtest/gtest.h>

#include <ostream>

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
    const char* const names[] = {"",    "Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec", ""};
    for (int month = 0; month <= 13; ++month) EXPECT_EQ(month_name(month), names[month]) << month;
    EXPECT_EQ(month_name(-1), "");
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
    const struct {
        int year, month, day;
        bool exists;
    } rows[] = {{2026, 1, 1, true},    {2026, 12, 31, true}, {2024, 2, 29, true},
                {2026, 2, 29, false},  {2026, 4, 31, false}, {2026, 0, 1, false},
                {2026, 13, 1, false},  {2026, 1, 0, false},  {2026, 1, 32, false},
                {0, 1, 1, true},       {9999, 12, 31, true}, {2026, 99, 99, false},
                {2026, 257, 1, false}, {2026, 1, 257, false}};
    for (const auto& row : rows)
        EXPECT_EQ(is_date({row.year, row.month, row.day}), row.exists)
            << row.year << "-" << row.month << "-" << row.day;
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
