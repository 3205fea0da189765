#pragma once

// Wall-clock times as plain values and the texts that files and views make of them.

#include <compare>
#include <string>

namespace kavorix {

// A local date and time. month 1..12, day 1..31, hour 0..23, minute and second 0..59, millisecond
// 0..999.
struct WallTime {
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;

    auto operator<=>(const WallTime&) const = default;
};

// "yyyy-mm-dd hh:nn:ss": file headers and log headers.
std::string general_date(const WallTime& time);

// The English month abbreviation of 1..12 ("Jan" .. "Dec"); empty for any other number.
std::string month_name(int month);

// Whether the calendar has this day.
bool is_date(const WallTime& time);

// The same time of day `days` days later (negative: earlier), by the Gregorian calendar.
WallTime add_days(const WallTime& time, int days);

// The same moment `milliseconds` later (negative: earlier), every day having 24 hours.
WallTime add_milliseconds(const WallTime& time, long long milliseconds);

// Milliseconds from one moment to another, negative when it is earlier.
long long milliseconds_between(const WallTime& from, const WallTime& to);

}  // namespace kavorix
