#include "base/dates.h"

#include <chrono>
#include <string_view>

#include "base/text.h"

namespace kavorix {

namespace {

std::chrono::year_month_day to_date(const WallTime& time) {
    return std::chrono::year{time.year} / time.month / time.day;
}

constexpr long long Day = 24LL * 60 * 60 * 1000;

long long milliseconds_of_day(const WallTime& time) {
    return ((time.hour * 60LL + time.minute) * 60 + time.second) * 1000 + time.millisecond;
}

}  // namespace

std::string general_date(const WallTime& time) {
    return padded(time.year, 4) + "-" + two_digits(time.month) + "-" + two_digits(time.day) + " " +
           two_digits(time.hour) + ":" + two_digits(time.minute) + ":" + two_digits(time.second);
}

std::string month_name(int month) {
    constexpr std::string_view Names = "JanFebMarAprMayJunJulAugSepOctNovDec";
    if (month < 1 || month > 12) return {};
    return std::string(Names.substr(static_cast<std::size_t>(month - 1) * 3, 3));
}

bool is_date(const WallTime& time) {
    return time.month >= 1 && time.month <= 12 && time.day >= 1 && time.day <= 31 &&
           to_date(time).ok();
}

WallTime add_days(const WallTime& time, int days) {
    const std::chrono::year_month_day date{std::chrono::sys_days{to_date(time)} +
                                           std::chrono::days{days}};
    WallTime result = time;
    result.year = static_cast<int>(date.year());
    result.month = static_cast<int>(static_cast<unsigned>(date.month()));
    result.day = static_cast<int>(static_cast<unsigned>(date.day()));
    return result;
}

WallTime add_milliseconds(const WallTime& time, long long milliseconds) {
    long long of_day = milliseconds_of_day(time) + milliseconds % Day;
    int days = static_cast<int>(milliseconds / Day);
    if (of_day < 0) {
        of_day += Day;
        --days;
    } else if (of_day >= Day) {
        of_day -= Day;
        ++days;
    }
    WallTime result = add_days(time, days);
    result.millisecond = static_cast<int>(of_day % 1000);
    result.second = static_cast<int>(of_day / 1000 % 60);
    result.minute = static_cast<int>(of_day / 60000 % 60);
    result.hour = static_cast<int>(of_day / 3600000);
    return result;
}

long long milliseconds_between(const WallTime& from, const WallTime& to) {
    return (std::chrono::sys_days{to_date(to)} - std::chrono::sys_days{to_date(from)}).count() *
               Day +
           milliseconds_of_day(to) - milliseconds_of_day(from);
}

}  // namespace kavorix
