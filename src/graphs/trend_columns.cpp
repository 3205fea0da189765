#include "graphs/trend_columns.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kavorix {

namespace {

constexpr float None = std::numeric_limits<float>::quiet_NaN();

std::int64_t column_at(double time_s, double width_s) {
    return static_cast<std::int64_t>(std::floor(time_s / width_s));
}

Extremes only(float value) {
    return std::isfinite(value) ? Extremes{value, value, value, value}
                                : Extremes{None, None, None, None};
}

void take_in(Extremes& extremes, float value) {
    if (!std::isfinite(value)) {
        extremes.last = None;
        return;
    }
    if (!(extremes.minimum <= value)) extremes.minimum = value;
    if (!(extremes.maximum >= value)) extremes.maximum = value;
    extremes.last = value;
}

}  // namespace

void TrendColumns::show(const TrendData& data, const TimeRange& range, double width_s) {
    // Before a graph has been scaled there is no range, and nothing to show.
    if (!(width_s > 0)) {
        clear();
        return;
    }
    const std::int64_t first_shown = column_at(range.begin, width_s);
    if (!goes_on(data, range, width_s)) {
        clear();
        channels_ = static_cast<std::size_t>(data.channels());
        width_s_ = width_s;
        next_row_ = data.row_at(static_cast<double>(first_shown) * width_s);
        if (next_row_ > data.first_row()) --next_row_;
    }
    begin_s_ = range.begin;
    while (!columns_.empty() && columns_.front().end_row <= data.first_row()) drop_first();
    while (columns_.size() > 1 && columns_[1].number < first_shown) drop_first();

    while (next_row_ < data.end_row() && (columns_.empty() || latest_s_ < range.end))
        add(data, next_row_++);
}

void TrendColumns::clear() {
    columns_.clear();
    extremes_.clear();
    rows_ = 0;
    ++generation_;
}

// Whether the columns need only be added to: same width, no earlier begin, and none of the rows to
// come dropped by the data.
bool TrendColumns::goes_on(const TrendData& data, const TimeRange& range, double width_s) const {
    return !columns_.empty() && width_s == width_s_ && range.begin >= begin_s_ &&
           channels_ == static_cast<std::size_t>(data.channels()) && next_row_ <= data.end_row() &&
           next_row_ >= data.first_row() && range.begin <= latest_s_;
}

void TrendColumns::drop_first() {
    rows_ -= static_cast<std::size_t>(columns_.front().end_row - columns_.front().first_row);
    columns_.pop_front();
    extremes_.erase(extremes_.begin(), extremes_.begin() + static_cast<std::ptrdiff_t>(channels_));
}

void TrendColumns::add(const TrendData& data, std::uint64_t row) {
    latest_s_ = data.time(row);
    ++rows_;
    const std::span<const float> values = data.values(row);
    const std::int64_t number = column_at(latest_s_, width_s_);
    if (columns_.empty() || columns_.back().number != number) {
        columns_.push_back({number, row, row + 1, latest_s_});
        for (const float value : values) extremes_.push_back(only(value));
        return;
    }
    columns_.back().end_row = row + 1;
    auto extremes = extremes_.end() - static_cast<std::ptrdiff_t>(channels_);
    for (const float value : values) take_in(*extremes++, value);
}

double TrendColumns::time(std::size_t index) const {
    const Column& column = columns_[index];
    return column.end_row - column.first_row == 1
               ? column.first_time
               : (static_cast<double>(column.number) + 0.5) * width_s_;
}

std::size_t TrendColumns::index_of(std::int64_t number) const {
    const auto found = std::lower_bound(
        columns_.begin(), columns_.end(), number,
        [](const Column& column, std::int64_t wanted) { return column.number < wanted; });
    return static_cast<std::size_t>(found - columns_.begin());
}

std::size_t TrendColumns::index_of_row(std::uint64_t row) const {
    const auto found = std::lower_bound(
        columns_.begin(), columns_.end(), row,
        [](const Column& column, std::uint64_t wanted) { return column.end_row <= wanted; });
    return static_cast<std::size_t>(found - columns_.begin());
}

}  // namespace kavorix
