#pragma once

// A table whose cells are made only when they are looked at: views of many rows that change often.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/controls.h"

namespace kavorix {

class GridSource {
  public:
    virtual ~GridSource() = default;

    virtual int row_count() const = 0;
    virtual const std::vector<std::string>& headings() const = 0;

    // row 0..row_count()-1, column 0..headings().size()-1.
    virtual GridCell cell(int row, int column) const = 0;

    // Changes whenever rows or headings are others than before; all cells have then to be read
    // again. Rows that only come behind the last one need not change it.
    virtual std::uint64_t layout() const = 0;

    // Rows whose cells have changed since the last call, each once, ascending. The list stands
    // until the next call. Nothing is allocated once as many rows have changed before.
    virtual const std::vector<int>& take_changed_rows() = 0;
};

}  // namespace kavorix
