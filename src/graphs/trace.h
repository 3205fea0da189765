#pragma once

// Lines of a trend in pixel coordinates: x from the left, y downwards.

#include <cstdint>
#include <vector>

#include "graphs/plot.h"
#include "graphs/trend_columns.h"

namespace kavorix {

// From times and values to pixels. Pixel column 0 is the column with number `first_column`.
struct PixelMapping {
    std::int64_t first_column = 0;
    int width = 0;
    int height = 0;
    double y_minimum = 0;
    double y_maximum = 1;
    double pixel_scale = 1;  // pixels for the width that a line has at 1

    double x(double time_s, double column_width_s) const {
        return time_s / column_width_s - static_cast<double>(first_column);
    }
    // Values far outside end a few heights away.
    double y(float value) const;

    bool operator==(const PixelMapping&) const = default;
};

struct PlotPoint {
    double x = 0;
    double y = 0;
    bool operator==(const PlotPoint&) const = default;
};

using Polyline = std::vector<PlotPoint>;

// Whether a dashed line pauses in a pixel column. The dashes belong to the columns' numbers, so
// they move on with the line.
bool in_dash_gap(std::int64_t column, double pixel_scale);

// A dashed line does not pause where it rises or falls by more than this many (unscaled) pixels
// within a column: no spike can hide in a gap.
inline constexpr double SteepestGap = 2;

// The line of a channel as pieces: gaps in the data and pauses of a dashed line are between them. A
// column with several rows gives its first, lowest, highest and last value.
std::vector<Polyline> trace(const TrendColumns& columns, int channel, const PixelMapping& mapping,
                            Dash dash);

}  // namespace kavorix
