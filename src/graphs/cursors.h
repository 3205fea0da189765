#pragma once

// The two cursors of a trend: lines at rows, with the values of every channel under them.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graphs/trend_data.h"
#include "graphs/trend_raster.h"
#include "platform/controls.h"

namespace kavorix {

enum class Cursor { A, B };

struct Cursors {
    bool shown = false;
    Cursor active = Cursor::A;       // moved by the keys
    std::array<double, 2> time_s{};  // of a row each
    std::array<bool, 2> placed{};

    double time(Cursor cursor) const { return time_s[static_cast<std::size_t>(cursor)]; }
    bool operator==(const Cursors&) const = default;
};

// Puts a cursor on a time.
Cursors with_cursor(const Cursors& cursors, Cursor cursor, double time_s);

// The row among those of a stretch (a pixel column) that a cursor put there stands for: the one
// with the value farthest from the stretch's first, over the lines that are not hidden, so that a
// cursor on a spike stands on its tip. Without a row in the stretch the nearest one; nothing
// without rows.
std::optional<std::uint64_t> row_for_cursor(const TrendData& data, const TimeRange& column,
                                            const std::vector<LineLook>& looks);

// The time of the row `steps` rows later (negative: earlier), within the rows.
double stepped(const TrendData& data, double time_s, int steps);

// The table of values: a line per channel with its value at A and B and the difference, above them
// a line with the times. `by_clock`: times by the wall clock. What has no value is empty.
Grid cursor_table(const TrendData& data, const Cursors& cursors,
                  const std::vector<std::string>& names, bool by_clock);

}  // namespace kavorix
