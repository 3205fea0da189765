#pragma once

// What part of a trend is on screen, as values: zooming, panning and following are functions from
// one view to the next.

#include "graphs/trend_data.h"

namespace kavorix {

struct ValueRange {
    double low = 0;
    double high = 1;
    double length() const { return high - low; }
    bool operator==(const ValueRange&) const = default;
};

// The times that can be shown: from the oldest row over the whole span, and the newest row.
struct TrendLimits {
    TimeRange all;
    double newest_s = 0;
    double shortest_s = 1;  // a view is not narrower
};

// For a span of `span_s` with rows every `interval_s`.
TrendLimits trend_limits(const TimeRange& data, double span_s, double interval_s);

struct TrendView {
    bool following = true;  // the right edge moves on with the newest row
    TimeRange time;
    ValueRange values;
    bool operator==(const TrendView&) const = default;
};

// The whole span with the newest row in it.
TimeRange whole_span(const TrendLimits& limits);

// The view after rows came or went: moved on when it follows, pushed along by what was dropped
// when not.
TrendView settled(const TrendView& view, const TrendLimits& limits);

// Zooms in (factor below 1) or out around a time, which keeps its place. A view goes on following
// as long as it reaches the newest row.
TrendView time_zoomed(const TrendView& view, double factor, double around_s,
                      const TrendLimits& limits);

// Moves the view by `by_s` to later times (negative: earlier). Pulled to the newest row it follows.
TrendView time_panned(const TrendView& view, double by_s, const TrendLimits& limits);

// Shows exactly this stretch, or the shortest one around it.
TrendView time_shown(const TrendView& view, const TimeRange& range, const TrendLimits& limits);

// The same width at the newest row, and all of the span there.
TrendView follow(const TrendView& view, const TrendLimits& limits);
TrendView all_shown(const TrendView& view, const TrendLimits& limits);

// The same for the values.
ValueRange values_zoomed(const ValueRange& range, double factor, double around);
ValueRange values_panned(const ValueRange& range, double by);

// A range around values from `low` to `high` with a little room above and below.
ValueRange room_around(double low, double high);

// The range moved so that it begins with a whole pixel column, `pixels` columns wide: lines then
// move on by whole pixels.
TimeRange on_pixels(const TimeRange& range, int pixels);

}  // namespace kavorix
