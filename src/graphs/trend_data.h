#pragma once

// The rows of a trend: a time and a value per channel, as many as the span on screen needs.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/dates.h"

namespace kavorix {

// A stretch of time in seconds.
struct TimeRange {
    double begin = 0;
    double end = 0;
    double length() const { return end - begin; }
    bool operator==(const TimeRange&) const = default;
};

// From `time_s` on, a row's wall-clock time is `wall` plus its distance from `time_s`.
struct ClockAnchor {
    double time_s = 0;
    WallTime wall;
    bool operator==(const ClockAnchor&) const = default;
};

// Rows have numbers that go on for ever; the oldest are dropped when the capacity is reached. Times
// ascend. A value that is not finite is no value: a gap in the line.
class TrendData {
  public:
    TrendData() : TrendData(0, 1) {}
    TrendData(int channels, std::size_t capacity);

    // One more row, taken at wall-clock time `wall`.
    void append(double time_s, const WallTime& wall, std::span<const float> values);

    int channels() const { return channels_; }
    std::size_t capacity() const { return times_.size(); }
    bool empty() const { return first_ == end_; }

    // Numbers of the oldest row that is kept, and of the row to come.
    std::uint64_t first_row() const { return first_; }
    std::uint64_t end_row() const { return end_; }

    double time(std::uint64_t row) const { return times_[place(row)]; }
    float value(std::uint64_t row, int channel) const {
        return values_[place(row) * static_cast<std::size_t>(channels_) +
                       static_cast<std::size_t>(channel)];
    }
    std::span<const float> values(std::uint64_t row) const {
        return {&values_[place(row) * static_cast<std::size_t>(channels_)],
                static_cast<std::size_t>(channels_)};
    }

    // From the oldest row to the newest; {0, 0} without rows.
    TimeRange range() const;

    // The first row at `time_s` or later; end_row() when there is none.
    std::uint64_t row_at(double time_s) const;

    // The row closest to `time_s`; end_row() without rows.
    std::uint64_t nearest_row(double time_s) const;

    // The wall clock at a time. Where rows came later than their times say (nobody polled the pods
    // meanwhile, or the clock was set), the clock jumps.
    WallTime wall_time(double time_s) const;

    // The anchors of the rows that are kept, by time; one unless the clock jumped.
    std::span<const ClockAnchor> clock() const { return clock_; }

  private:
    std::size_t place(std::uint64_t row) const {
        return static_cast<std::size_t>(row % times_.size());
    }
    void note_clock(double time_s, const WallTime& wall);
    void drop_first_row();

    int channels_ = 0;
    std::vector<double> times_;
    std::vector<float> values_;  // row by row
    std::uint64_t first_ = 0;
    std::uint64_t end_ = 0;
    std::vector<ClockAnchor> clock_;
    ClockAnchor latest_;  // time and wall time of the newest row
};

}  // namespace kavorix
