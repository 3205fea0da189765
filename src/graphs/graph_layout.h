#pragma once

// Where things stand on the page, in pixels: x from the left, y downwards.

#include <span>
#include <vector>

#include "graphs/plot.h"
#include "graphs/trend_view.h"

namespace kavorix {

struct PixelBox {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    double right() const { return left + width; }
    double bottom() const { return top + height; }
    bool contains(double x, double y) const {
        return x >= left && x < right() && y >= top && y < bottom();
    }
    bool operator==(const PixelBox&) const = default;
};

// A box given in fractions of a page.
PixelBox on_page(const PlotBox& box, double page_width, double page_height);

// The places of the legend entries, line by line, four and four side by side (more than sixteen:
// four lines). `line_height` is what a line of text needs; lines move closer when the box is low.
std::vector<PixelBox> legend_cells(const PixelBox& box, int entries, double line_height);

enum class OutOfRange { No, Above, Below };

// A bar from the base line (zero, or the end of the range next to it) to its value.
struct BarShape {
    PixelBox box;
    bool value = false;  // false: no value, no bar
    OutOfRange out = OutOfRange::No;
    bool operator==(const BarShape&) const = default;
};

// One bar per value, side by side over the width of `area`.
std::vector<BarShape> bar_shapes(std::span<const float> values, const ValueRange& range,
                                 const PixelBox& area);

// The y of the base line.
double bar_base(const ValueRange& range, const PixelBox& area);

}  // namespace kavorix
