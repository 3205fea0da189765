#include "graphs/cursors.h"

#include <algorithm>
#include <cmath>

#include "base/numbers.h"
#include "graphs/time_axis.h"

namespace kavorix {

namespace {

constexpr double TenthsStep = 0.1;  // s: cursor times show tenths

using RowOfCursor = std::optional<std::uint64_t>;

// A cursor whose row was dropped, or that was never placed, has none.
RowOfCursor row_of(const TrendData& data, const Cursors& cursors, Cursor cursor) {
    if (!cursors.placed[static_cast<std::size_t>(cursor)] || data.empty()) return {};
    const double time_s = cursors.time(cursor);
    if (time_s < data.range().begin) return {};
    return data.nearest_row(time_s);
}

std::string time_text(const TrendData& data, RowOfCursor row, bool by_clock) {
    if (!row) return {};
    const double time_s = data.time(*row);
    if (!by_clock) return elapsed_text(time_s, TenthsStep);
    const WallTime wall = data.wall_time(time_s);
    return general_date(wall).substr(11) + "." + std::to_string(wall.millisecond / 100);
}

std::string value_text(const TrendData& data, RowOfCursor row, int channel) {
    if (!row || !std::isfinite(data.value(*row, channel))) return {};
    return general(data.value(*row, channel));
}

std::string difference_text(const TrendData& data, RowOfCursor a, RowOfCursor b, int channel) {
    if (!a || !b) return {};
    const double difference =
        static_cast<double>(data.value(*b, channel)) - static_cast<double>(data.value(*a, channel));
    return std::isfinite(difference) ? general(static_cast<float>(difference)) : std::string();
}

// The largest distance of a row's values from those of another.
double excursion(const TrendData& data, std::uint64_t row, std::uint64_t from,
                 const std::vector<LineLook>& looks) {
    double largest = -1;
    for (int channel = 0; channel < data.channels(); ++channel) {
        const auto line = static_cast<std::size_t>(channel);
        if (line < looks.size() && looks[line].hidden) continue;
        const double distance = std::abs(static_cast<double>(data.value(row, channel)) -
                                         static_cast<double>(data.value(from, channel)));
        if (distance > largest) largest = distance;
    }
    return largest;
}

}  // namespace

Cursors with_cursor(const Cursors& cursors, Cursor cursor, double time_s) {
    Cursors result = cursors;
    result.active = cursor;
    result.time_s[static_cast<std::size_t>(cursor)] = time_s;
    result.placed[static_cast<std::size_t>(cursor)] = true;
    return result;
}

std::optional<std::uint64_t> row_for_cursor(const TrendData& data, const TimeRange& column,
                                            const std::vector<LineLook>& looks) {
    if (data.empty()) return {};
    const std::uint64_t first = data.row_at(column.begin);
    const std::uint64_t end = data.row_at(column.end);
    if (first >= end) return data.nearest_row((column.begin + column.end) / 2);
    std::uint64_t best = first;
    double largest = -1;
    for (std::uint64_t row = first; row < end; ++row)
        if (const double here = excursion(data, row, first, looks); here > largest) {
            largest = here;
            best = row;
        }
    return best;
}

double stepped(const TrendData& data, double time_s, int steps) {
    if (data.empty()) return time_s;
    const auto row = static_cast<std::int64_t>(data.nearest_row(time_s)) + steps;
    return data.time(
        static_cast<std::uint64_t>(std::clamp(row, static_cast<std::int64_t>(data.first_row()),
                                              static_cast<std::int64_t>(data.end_row()) - 1)));
}

Grid cursor_table(const TrendData& data, const Cursors& cursors,
                  const std::vector<std::string>& names, bool by_clock) {
    const RowOfCursor a = row_of(data, cursors, Cursor::A);
    const RowOfCursor b = row_of(data, cursors, Cursor::B);
    std::string difference;
    if (a && b) difference = general(static_cast<float>(data.time(*b) - data.time(*a))) + " s";

    Grid grid;
    grid.headings = {"Channel", "A", "B", "B - A"};
    grid.rows.push_back({{by_clock ? "Clock" : "Time"},
                         {time_text(data, a, by_clock)},
                         {time_text(data, b, by_clock)},
                         {difference}});
    for (int channel = 0; channel < data.channels(); ++channel) {
        const auto name = static_cast<std::size_t>(channel);
        grid.rows.push_back({{name < names.size() ? names[name] : std::string()},
                             {value_text(data, a, channel)},
                             {value_text(data, b, channel)},
                             {difference_text(data, a, b, channel)}});
    }
    return grid;
}

}  // namespace kavorix
