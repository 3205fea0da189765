#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "logging/csv_rows.h"

namespace kavorix {

// A stretch of the text file: some whole lines, then a row for each of some records. Filled by one
// thread, turned into text by any.
class CsvChunk {
  public:
    // Empties it for rows of this layout, keeping its memory.
    void begin(std::shared_ptr<const CsvLayout> layout);

    void add_lines(std::string_view lines) { lines_ += lines; }
    // The values are copied.
    void add(const ScanRow& row, const char* values);
    void add(const EventRow& row) { events_.push_back(row); }

    bool has_rows() const { return !scans_.empty() || !events_.empty(); }
    std::size_t rows() const { return scans_.size() + events_.size(); }
    // Bytes of records that it holds.
    std::size_t size() const { return values_.size() + events_.size() * sizeof(EventRow); }

    void format();
    std::string_view text() const { return {text_.get(), length_}; }

  private:
    struct Scan {
        ScanRow row;
        std::size_t offset = 0;  // of its values
    };

    void make_room();

    std::shared_ptr<const CsvLayout> layout_;
    std::string lines_;
    std::vector<Scan> scans_;
    std::vector<EventRow> events_;
    std::vector<char> values_;
    std::unique_ptr<char[]> text_;  // not cleared before use, as a vector would be
    std::size_t room_ = 0;
    std::size_t length_ = 0;
};

}  // namespace kavorix
