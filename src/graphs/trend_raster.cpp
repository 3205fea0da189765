#include "graphs/trend_raster.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kavorix {

namespace {

constexpr double LineWidth = 1.5;  // unscaled pixels

std::uint32_t blended(std::uint32_t under, std::uint32_t rgb, std::uint32_t alpha) {
    const auto mixed = [&](unsigned shift, std::uint32_t over) {
        const std::uint32_t below = (under >> shift) & 0xFF;
        return ((over * alpha + below * (255 - alpha) + 127) / 255) << shift;
    };
    return mixed(24, 255) | mixed(16, (rgb >> 16) & 0xFF) | mixed(8, (rgb >> 8) & 0xFF) |
           mixed(0, rgb & 0xFF);
}

// Pixels down per column from one to the other.
double slope(std::pair<std::int64_t, double> from, std::pair<std::int64_t, double> to) {
    return (to.second - from.second) / static_cast<double>(to.first - from.first);
}

}  // namespace

void TrendRaster::draw(const TrendColumns& columns, const PixelMapping& mapping,
                       const std::vector<LineLook>& looks) {
    const int from = move_on(columns, mapping, looks);
    mapping_ = mapping;
    wipe(from);
    for (std::size_t channel = 0; channel < looks.size(); ++channel)
        if (!looks[channel].hidden)
            draw_line(columns, static_cast<int>(channel), looks[channel], from);
    painted_ = mapping.width - from;
    drawn_ = Drawn{mapping, looks, columns.generation(), columns.next_row()};
}

// Moves what is drawn to its new place; the pixel column from which on the picture has to be drawn,
// 0 for all of it.
int TrendRaster::move_on(const TrendColumns& columns, const PixelMapping& mapping,
                         const std::vector<LineLook>& looks) {
    const auto needed =
        static_cast<std::size_t>(mapping.width) * static_cast<std::size_t>(mapping.height);
    PixelMapping unmoved = mapping;
    if (drawn_) unmoved.first_column = drawn_->mapping.first_column;
    if (!drawn_ || unmoved != drawn_->mapping || looks != drawn_->looks ||
        drawn_->generation != columns.generation() || pixels_.size() != needed) {
        pixels_.resize(needed);
        return 0;
    }
    const std::int64_t shift = mapping.first_column - drawn_->mapping.first_column;
    if (shift < 0 || shift >= mapping.width) return 0;
    const auto width = static_cast<std::size_t>(mapping.width);
    const auto moved = static_cast<std::size_t>(shift);
    if (moved > 0)
        for (std::size_t row = 0; row < needed; row += width)
            std::memmove(&pixels_[row], &pixels_[row + moved],
                         (width - moved) * sizeof(std::uint32_t));

    // The stroke of a column depends on the column before it, so all from the first new row on.
    std::int64_t first = mapping.first_column + mapping.width - shift;
    const std::size_t changed = columns.index_of_row(drawn_->next_row);
    if (changed < columns.size()) first = std::min(first, columns.number(changed));
    return static_cast<int>(
        std::clamp<std::int64_t>(first - mapping.first_column, 0, mapping.width));
}

void TrendRaster::wipe(int from) {
    const auto width = static_cast<std::size_t>(mapping_.width);
    for (std::size_t row = 0; row < pixels_.size(); row += width)
        std::fill(pixels_.begin() + static_cast<std::ptrdiff_t>(row) + from,
                  pixels_.begin() + static_cast<std::ptrdiff_t>(row + width), 0U);
}

void TrendRaster::draw_line(const TrendColumns& columns, int channel, const LineLook& look,
                            int from) {
    // Begins at the last column before those to be drawn: the line comes from there.
    std::size_t index = columns.index_of(mapping_.first_column + from);
    if (index > 0) --index;
    std::optional<std::pair<std::int64_t, double>> last;  // column and y where the line stands
    for (; index < columns.size(); ++index) {
        const Extremes& extremes = columns.extremes(index, channel);
        const std::int64_t number = columns.number(index);
        if (std::isnan(extremes.first)) last.reset();
        if (!extremes.any()) continue;
        Stroke stroke{mapping_.y(extremes.maximum), mapping_.y(extremes.minimum)};
        if (last) {
            const std::pair first{number, mapping_.y(extremes.first)};
            draw_line_between(*last, first, look, from);
            const double reached = first.second - slope(*last, first);
            stroke = {std::min(stroke.top, reached), std::max(stroke.bottom, reached)};
        }
        draw_column(number, stroke, look, from);
        last.reset();
        if (!std::isnan(extremes.last)) last = {number, mapping_.y(extremes.last)};
    }
}

// Over columns without a row the line goes straight.
void TrendRaster::draw_line_between(std::pair<std::int64_t, double> from,
                                    std::pair<std::int64_t, double> to, const LineLook& look,
                                    int first) {
    const double rise = slope(from, to);
    const std::int64_t begin = std::max(from.first + 1, mapping_.first_column + first);
    const std::int64_t end = std::min(to.first, mapping_.first_column + mapping_.width);
    for (std::int64_t number = begin; number < end; ++number) {
        const double y = from.second + rise * static_cast<double>(number - from.first);
        draw_column(number, {std::min(y - rise, y), std::max(y - rise, y)}, look, first);
    }
}

void TrendRaster::draw_column(std::int64_t number, Stroke stroke, const LineLook& look, int from) {
    const std::int64_t x = number - mapping_.first_column;
    if (x < from || x >= mapping_.width) return;
    if (look.dash == Dash::Dashed &&
        stroke.bottom - stroke.top <= SteepestGap * mapping_.pixel_scale &&
        in_dash_gap(number, mapping_.pixel_scale))
        return;
    const double half = LineWidth / 2 * mapping_.pixel_scale;
    stroke_column(static_cast<int>(x), {stroke.top - half, stroke.bottom + half}, look.rgb);
}

// A stroke covers its first and last pixel only partly.
void TrendRaster::stroke_column(int x, Stroke stroke, std::uint32_t rgb) {
    const double top = std::max(stroke.top, 0.0);
    const double bottom = std::min(stroke.bottom, static_cast<double>(mapping_.height));
    if (top >= bottom) return;
    const auto width = static_cast<std::size_t>(mapping_.width);
    const int first = static_cast<int>(top);
    const int last = std::min(static_cast<int>(bottom), mapping_.height - 1);
    std::uint32_t* pixel =
        &pixels_[static_cast<std::size_t>(first) * width + static_cast<std::size_t>(x)];
    const auto partly = [&](double share) {
        *pixel = blended(*pixel, rgb, static_cast<std::uint32_t>(share * 255 + 0.5));
    };
    if (first == last) {
        partly(bottom - top);
        return;
    }
    partly(first + 1 - top);
    pixel += width;
    for (int y = first + 1; y < last; ++y, pixel += width) *pixel = 0xFF000000 | rgb;
    partly(bottom - last);
}

}  // namespace kavorix
