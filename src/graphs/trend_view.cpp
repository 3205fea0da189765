#include "graphs/trend_view.h"

#include <algorithm>
#include <cmath>

namespace kavorix {

namespace {

constexpr double FewestIntervals = 5;  // in the narrowest view
constexpr double Room = 0.05;          // of the values' range, above and below
constexpr double LeastRange = 1E-30;
constexpr double MostRange = 1E30;
constexpr double RoundingSlack = 1E-6;  // pixel columns

TimeRange moved(const TimeRange& range, double by_s) {
    return {range.begin + by_s, range.end + by_s};
}

// Within the limits, keeping its length where that fits.
TimeRange limited(const TimeRange& range, const TrendLimits& limits) {
    const double length = std::min(range.length(), limits.all.length());
    const double begin = std::clamp(range.begin, limits.all.begin, limits.all.end - length);
    return {begin, begin + length};
}

TimeRange at_newest(double length_s, const TrendLimits& limits) {
    const double begin = std::max(limits.newest_s - length_s, limits.all.begin);
    return {begin, begin + length_s};
}

TrendView with_time(const TrendView& view, const TimeRange& range, const TrendLimits& limits) {
    TrendView result = view;
    result.time = limited(range, limits);
    result.following = result.time.end >= limits.newest_s;
    return settled(result, limits);
}

double allowed_length(double length_s, const TrendLimits& limits) {
    return std::clamp(length_s, std::min(limits.shortest_s, limits.all.length()),
                      limits.all.length());
}

}  // namespace

TrendLimits trend_limits(const TimeRange& data, double span_s, double interval_s) {
    const double begin = std::max(data.begin, data.end - span_s);
    return {{begin, begin + span_s}, data.end, std::min(FewestIntervals * interval_s, span_s)};
}

TimeRange whole_span(const TrendLimits& limits) {
    return limits.all;
}

TrendView settled(const TrendView& view, const TrendLimits& limits) {
    TrendView result = view;
    result.time = limited(view.time, limits);
    // A view with room for rows to come stands still until they reach its end.
    if (view.following && result.time.end < limits.newest_s)
        result.time = at_newest(result.time.length(), limits);
    return result;
}

TrendView time_zoomed(const TrendView& view, double factor, double around_s,
                      const TrendLimits& limits) {
    const double length = allowed_length(view.time.length() * factor, limits);
    const double share = (around_s - view.time.begin) / view.time.length();
    const double begin = around_s - share * length;
    return with_time(view, {begin, begin + length}, limits);
}

TrendView time_panned(const TrendView& view, double by_s, const TrendLimits& limits) {
    return with_time(view, moved(view.time, by_s), limits);
}

TrendView time_shown(const TrendView& view, const TimeRange& range, const TrendLimits& limits) {
    const double length = allowed_length(range.length(), limits);
    const double begin = (range.begin + range.end - length) / 2;
    return with_time(view, {begin, begin + length}, limits);
}

TrendView follow(const TrendView& view, const TrendLimits& limits) {
    TrendView result = view;
    result.following = true;
    result.time = at_newest(std::min(view.time.length(), limits.all.length()), limits);
    return result;
}

TrendView all_shown(const TrendView& view, const TrendLimits& limits) {
    TrendView result = view;
    result.time = whole_span(limits);
    return follow(result, limits);
}

ValueRange values_zoomed(const ValueRange& range, double factor, double around) {
    const ValueRange result{around + (range.low - around) * factor,
                            around + (range.high - around) * factor};
    const bool usable = result.length() > LeastRange && result.length() < MostRange &&
                        result.length() > std::abs(around) * 1E-12;
    return usable ? result : range;
}

ValueRange values_panned(const ValueRange& range, double by) {
    const ValueRange result{range.low + by, range.high + by};
    return std::abs(result.low) < MostRange && std::abs(result.high) < MostRange ? result : range;
}

ValueRange room_around(double low, double high) {
    double room = (high - low) * Room;
    // A flat line stands in the middle.
    if (room <= 0) room = low == 0 ? 1 : std::abs(low) * Room;
    return {low - room, high + room};
}

TimeRange on_pixels(const TimeRange& range, int pixels) {
    const double width = range.length() / pixels;
    const double first = std::ceil(range.begin / width - RoundingSlack);
    return {first * width, (first + pixels) * width};
}

}  // namespace kavorix
