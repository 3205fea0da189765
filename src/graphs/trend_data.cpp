#include "graphs/trend_data.h"

#include <algorithm>
#include <cmath>

namespace kavorix {

namespace {

// How far a row may come from the moment that its time says before the clock counts as having
// jumped: a late tick delays a row by less than an interval.
constexpr double ClockTolerance = 1;  // s, besides the interval

WallTime wall_after(const ClockAnchor& anchor, double time_s) {
    return add_milliseconds(anchor.wall, std::llround((time_s - anchor.time_s) * 1000));
}

}  // namespace

TrendData::TrendData(int channels, std::size_t capacity)
    : channels_(channels),
      times_(std::max<std::size_t>(capacity, 1)),
      values_(times_.size() * static_cast<std::size_t>(channels)) {}

void TrendData::append(double time_s, const WallTime& wall, std::span<const float> values) {
    note_clock(time_s, wall);
    if (end_ - first_ == times_.size()) drop_first_row();
    times_[place(end_)] = time_s;
    std::copy_n(values.begin(), channels_,
                values_.begin() +
                    static_cast<std::ptrdiff_t>(place(end_) * static_cast<std::size_t>(channels_)));
    ++end_;
}

// A row that is repeated for missed intervals comes at the same moment as those before it; the last
// of them tells the time. So the clock of a row is looked at when the next one comes at another
// moment.
void TrendData::note_clock(double time_s, const WallTime& wall) {
    if (clock_.empty()) {
        clock_.push_back({time_s, wall});
    } else if (wall != latest_.wall) {
        const double jump_s = static_cast<double>(milliseconds_between(
                                  wall_after(clock_.back(), latest_.time_s), latest_.wall)) /
                              1000;
        if (std::abs(jump_s) > ClockTolerance + (time_s - latest_.time_s))
            clock_.push_back(latest_);
    }
    latest_ = {time_s, wall};
}

void TrendData::drop_first_row() {
    ++first_;
    while (clock_.size() > 1 && clock_[1].time_s <= times_[place(first_)])
        clock_.erase(clock_.begin());
}

TimeRange TrendData::range() const {
    return empty() ? TimeRange{} : TimeRange{time(first_), time(end_ - 1)};
}

std::uint64_t TrendData::row_at(double time_s) const {
    std::uint64_t low = first_;
    std::uint64_t high = end_;
    while (low < high) {
        const std::uint64_t middle = low + (high - low) / 2;
        if (time(middle) < time_s)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

std::uint64_t TrendData::nearest_row(double time_s) const {
    const std::uint64_t after = row_at(time_s);
    if (after == first_) return after;
    if (after == end_) return end_ - 1;
    return time_s - time(after - 1) <= time(after) - time_s ? after - 1 : after;
}

WallTime TrendData::wall_time(double time_s) const {
    if (clock_.empty()) return {};
    auto in_force = clock_.begin();
    while (std::next(in_force) != clock_.end() && std::next(in_force)->time_s <= time_s) ++in_force;
    return wall_after(*in_force, time_s);
}

}  // namespace kavorix
