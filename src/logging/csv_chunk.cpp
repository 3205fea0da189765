#include "logging/csv_chunk.h"

#include <cstring>
#include <utility>

namespace kavorix {

void CsvChunk::begin(std::shared_ptr<const CsvLayout> layout) {
    layout_ = std::move(layout);
    lines_.clear();
    scans_.clear();
    events_.clear();
    values_.clear();
    length_ = 0;
}

void CsvChunk::add(const ScanRow& row, const char* values) {
    scans_.push_back({row, values_.size()});
    values_.insert(values_.end(), values, values + at(row.count) * EntrySize);
}

void CsvChunk::make_room() {
    const std::size_t needed = lines_.size() + (rows() > 0 ? rows() * layout_->row_room() : 0);
    if (needed <= room_) return;
    text_.reset(new char[needed]);
    room_ = needed;
}

void CsvChunk::format() {
    make_room();
    char* out = text_.get();
    if (!lines_.empty()) std::memcpy(out, lines_.data(), lines_.size());
    out += lines_.size();
    for (const Scan& scan : scans_)
        out = write_row(*layout_, scan.row, values_.data() + scan.offset, out);
    for (const EventRow& event : events_) out = write_row(event, out);
    length_ = static_cast<std::size_t>(out - text_.get());
}

}  // namespace kavorix
