#include "graphs/graph_layout.h"

#include <algorithm>
#include <cmath>

namespace kavorix {

namespace {

constexpr int EntriesPerLine = 4;
constexpr int MostLines = 4;
constexpr double BarShare = 0.62;  // of the width that a bar has for itself
constexpr double WidestBar = 90;   // pixels

}  // namespace

PixelBox on_page(const PlotBox& box, double page_width, double page_height) {
    return {box.left * page_width, (1 - box.top) * page_height, (box.right - box.left) * page_width,
            (box.top - box.bottom) * page_height};
}

std::vector<PixelBox> legend_cells(const PixelBox& box, int entries, double line_height) {
    std::vector<PixelBox> cells;
    if (entries < 1) return cells;
    const int per_line =
        std::max(std::min(entries, EntriesPerLine), (entries + MostLines - 1) / MostLines);
    const int lines = (entries + per_line - 1) / per_line;
    const double height = std::min(line_height, box.height / lines);
    const double width = box.width / per_line;
    const double top = box.top + (box.height - height * lines) / 2;
    for (int i = 0; i < entries; ++i)
        cells.push_back(
            {box.left + width * (i % per_line), top + height * (i / per_line), width, height});
    return cells;
}

double bar_base(const ValueRange& range, const PixelBox& area) {
    const double base = std::clamp(0.0, range.low, range.high);
    return area.top + (range.high - base) / range.length() * area.height;
}

std::vector<BarShape> bar_shapes(std::span<const float> values, const ValueRange& range,
                                 const PixelBox& area) {
    std::vector<BarShape> shapes;
    const double place = area.width / static_cast<double>(values.size());
    const double width = std::min(place * BarShare, WidestBar);
    const double base = bar_base(range, area);
    double centre = area.left + place / 2;
    for (const float value : values) {
        BarShape shape;
        shape.box = {centre - width / 2, base, width, 0};
        centre += place;
        if (!std::isnan(value)) {
            const double wide = static_cast<double>(value);
            shape.value = true;
            shape.out = wide > range.high  ? OutOfRange::Above
                        : wide < range.low ? OutOfRange::Below
                                           : OutOfRange::No;
            const double end = area.top + (range.high - std::clamp(wide, range.low, range.high)) /
                                              range.length() * area.height;
            shape.box.top = std::min(base, end);
            shape.box.height = std::abs(end - base);
        }
        shapes.push_back(shape);
    }
    return shapes;
}

}  // namespace kavorix
