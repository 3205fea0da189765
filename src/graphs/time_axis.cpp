#include "graphs/time_axis.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"

namespace kavorix {

namespace {

constexpr double Millisecond = 0.001;
constexpr double Minute = 60;
constexpr double Hour = 3600;
constexpr double Day = 24 * Hour;

// A step and how many small ticks divide it.
struct Step {
    double length_s;
    int parts;
};
constexpr std::array Steps = {
    Step{0.1, 2},         Step{0.2, 2},         Step{0.5, 5},         Step{1, 2},
    Step{2, 2},           Step{5, 5},           Step{10, 2},          Step{15, 3},
    Step{30, 3},          Step{Minute, 4},      Step{2 * Minute, 4},  Step{5 * Minute, 5},
    Step{10 * Minute, 2}, Step{15 * Minute, 3}, Step{30 * Minute, 3}, Step{Hour, 4},
    Step{2 * Hour, 4},    Step{3 * Hour, 3},    Step{6 * Hour, 6},    Step{12 * Hour, 4},
    Step{Day, 4},         Step{2 * Day, 2},     Step{7 * Day, 7},     Step{14 * Day, 2},
    Step{28 * Day, 4}};

const Step& step_for(double length_s, int most) {
    for (const Step& step : Steps)
        if (length_s <= step.length_s * most) return step;
    return Steps.back();
}

// Multiples of `step_s` in begin..end.
std::vector<double> multiples(double begin, double end, double step_s) {
    if (!(step_s > 0) || !std::isfinite(begin / step_s) || !std::isfinite(end / step_s))
        return {};  // no range yet
    std::vector<double> result;
    constexpr double Slack = 1E-9;
    const auto first = static_cast<long long>(std::ceil(begin / step_s - Slack));
    const auto last = static_cast<long long>(std::floor(end / step_s + Slack));
    for (long long i = first; i <= last; ++i) result.push_back(static_cast<double>(i) * step_s);
    return result;
}

std::string clock_text(const WallTime& time, double step_s) {
    std::string text = two_digits(time.hour) + ":" + two_digits(time.minute);
    if (step_s < Minute) text += ":" + two_digits(time.second);
    if (step_s < 1) text += "." + std::to_string(time.millisecond / 100);
    return text;
}

std::string date_text(const WallTime& time) {
    return std::to_string(time.day) + " " + month_name(time.month) + " " +
           std::to_string(time.year);
}

// A stretch over which the clock runs on.
struct ClockStretch {
    TimeRange range;
    WallTime midnight;     // before its begin
    double midnight_at_s;  // the time axis there
};

std::vector<ClockStretch> stretches(const TrendData& data, const TimeRange& range) {
    std::vector<ClockStretch> result;
    const auto anchors = data.clock();
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        const bool last = i + 1 == anchors.size();
        const TimeRange part{
            i == 0 ? range.begin : std::max(range.begin, anchors[i].time_s),
            last ? range.end : std::min(range.end, anchors[i + 1].time_s - Millisecond)};
        if (part.end < part.begin) continue;
        WallTime midnight = data.wall_time(part.begin);
        const WallTime begin = midnight;
        midnight.hour = midnight.minute = midnight.second = midnight.millisecond = 0;
        const double since = static_cast<double>(milliseconds_between(midnight, begin)) / 1000;
        result.push_back({part, midnight, part.begin - since});
    }
    return result;
}

}  // namespace

double tick_step_s(double length_s, int most) {
    return step_for(length_s, most).length_s;
}

std::string elapsed_text(double time_s, double step_s) {
    const long long tenths = std::llround(time_s * 10);
    const long long seconds = tenths / 10;
    std::string text = std::to_string(seconds / 3600) + ":" +
                       two_digits(static_cast<int>(seconds / 60 % 60)) + ":" +
                       two_digits(static_cast<int>(seconds % 60));
    if (step_s < 1) text += "." + std::to_string(tenths % 10);
    return text;
}

TimeTicks elapsed_ticks(const TimeRange& range, int most) {
    const Step& step = step_for(range.length(), most);
    TimeTicks result;
    for (const double time : multiples(range.begin, range.end, step.length_s))
        result.ticks.push_back({time, elapsed_text(time, step.length_s)});
    result.between = multiples(range.begin, range.end, step.length_s / step.parts);
    return result;
}

TimeTicks clock_ticks(const TrendData& data, const TimeRange& range, int most) {
    const Step& step = step_for(range.length(), most);
    TimeTicks result;
    std::string date;
    for (const ClockStretch& stretch : stretches(data, range)) {
        const double origin = stretch.midnight_at_s;
        const double begin = stretch.range.begin - origin;
        const double end = stretch.range.end - origin;
        for (const double since : multiples(begin, end, step.length_s)) {
            const WallTime time = add_milliseconds(stretch.midnight, std::llround(since * 1000));
            std::string label = clock_text(time, step.length_s);
            if (const std::string today = date_text(time); today != date) {
                label += "\n" + today;
                date = today;
            }
            result.ticks.push_back({origin + since, label});
        }
        for (const double since : multiples(begin, end, step.length_s / step.parts))
            result.between.push_back(origin + since);
    }
    return result;
}

}  // namespace kavorix
