#include "logging/event_years.h"

#include <algorithm>

#include "model/runtime.h"

namespace kavorix {

namespace {

constexpr std::int32_t Months = 12;

bool is_month(std::int32_t month) {
    return month >= 1 && month <= Months;
}

std::int32_t months(std::int32_t year, std::int32_t month) {
    return year * Months + month - 1;
}

std::size_t index_of(float pod) {
    return pod >= 1 && pod <= MaxZavs ? at(static_cast<int>(pod) - 1) : at(MaxZavs);
}

}  // namespace

EventYears::EventYears(const WallTime& start)
    : latest_(months(start.year, is_month(start.month) ? start.month : 1)) {
    for (PodTime& pod : pods_) pod.year = start.year;
}

std::int32_t EventYears::first_year(std::int32_t month) const {
    constexpr std::int32_t Half = Months / 2;
    const std::int32_t year = latest_ / Months;
    const std::int32_t distance = months(year, month) - latest_;
    return distance > Half ? year - 1 : distance < -Half ? year + 1 : year;
}

std::int32_t EventYears::next(float pod, std::int32_t month) {
    PodTime& time = pods_[index_of(pod)];
    if (!is_month(month)) return time.month == 0 ? latest_ / Months : time.year;
    if (time.month == 0)
        time.year = first_year(month);
    else if (month < time.month)
        ++time.year;
    time.month = month;
    latest_ = std::max(latest_, months(time.year, month));
    return time.year;
}

}  // namespace kavorix
