#pragma once

// Ticks and labels of the time axis, elapsed or by the wall clock.

#include <string>
#include <vector>

#include "graphs/trend_data.h"

namespace kavorix {

struct TimeTick {
    double time_s = 0;
    std::string label;
    bool operator==(const TimeTick&) const = default;
};

struct TimeTicks {
    std::vector<TimeTick> ticks;
    std::vector<double> between;  // times of the small ticks without a label
};

// The step between labels: a round number of seconds, minutes or hours, such that at most `most`
// labels fall into `length_s`.
double tick_step_s(double length_s, int most);

// A time since the start: "1:05:30", with a step below a second "0:00:05.5".
std::string elapsed_text(double time_s, double step_s);

// Labels as elapsed time.
TimeTicks elapsed_ticks(const TimeRange& range, int most);

// Labels by the clock of the data: "13:45" or "13:45:30"; the first label and the first one of a
// day carry the date on a second line. Where the clock jumps, the labels jump with it.
TimeTicks clock_ticks(const TrendData& data, const TimeRange& range, int most);

}  // namespace kavorix
