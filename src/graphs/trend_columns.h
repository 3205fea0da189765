#pragma once

// A trend as a screen can show it: per pixel column and channel the first, lowest, highest and last
// value, so that no spike is lost however many rows fall into a column.

#include <cstdint>
#include <deque>

#include "graphs/trend_data.h"

namespace kavorix {

// What a column holds of a channel. First and last are NaN where the line has a gap, the extremes
// where the column has no value at all.
struct Extremes {
    float first;
    float minimum;
    float maximum;
    float last;

    bool any() const { return minimum <= maximum; }
};

// Column k covers the times from k * width up to (k + 1) * width, so a column stays what it is
// while the graph moves on. Columns without a row are left out.
class TrendColumns {
  public:
    // Brings the columns to the rows of `range`, the column of its begin being whole, and one row
    // before and behind it. As long as the
    // range moves to later times and the width stays, only what is new is looked at.
    void show(const TrendData& data, const TimeRange& range, double width_s);

    // The rows are no longer those of before.
    void clear();

    std::size_t size() const { return columns_.size(); }
    double width_s() const { return width_s_; }

    // Of column `index`, 0 the earliest.
    std::int64_t number(std::size_t index) const { return columns_[index].number; }
    std::uint64_t first_row(std::size_t index) const { return columns_[index].first_row; }
    std::uint64_t end_row(std::size_t index) const { return columns_[index].end_row; }
    const Extremes& extremes(std::size_t index, int channel) const {
        return extremes_[index * channels_ + static_cast<std::size_t>(channel)];
    }

    // Where its values stand: at the time of its row, in its middle when it has several.
    double time(std::size_t index) const;

    // Changes whenever the columns were made anew rather than added to.
    std::uint64_t generation() const { return generation_; }

    // The row behind those that the columns hold.
    std::uint64_t next_row() const { return next_row_; }

    // The index of the first column with this number or a higher one, and of the first one with
    // this row or a later one.
    std::size_t index_of(std::int64_t number) const;
    std::size_t index_of_row(std::uint64_t row) const;

    // Whether columns have several rows as a rule.
    bool dense() const { return rows_ * 2 > columns_.size() * 3; }

  private:
    struct Column {
        std::int64_t number;
        std::uint64_t first_row;
        std::uint64_t end_row;
        double first_time;
    };

    bool goes_on(const TrendData& data, const TimeRange& range, double width_s) const;
    void drop_first();
    void add(const TrendData& data, std::uint64_t row);

    std::deque<Column> columns_;
    std::deque<Extremes> extremes_;  // column by column
    std::size_t channels_ = 0;
    double width_s_ = 0;
    double begin_s_ = 0;
    std::uint64_t next_row_ = 0;
    double latest_s_ = 0;  // time of the row before it
    std::size_t rows_ = 0;
    std::uint64_t generation_ = 0;
};

}  // namespace kavorix
