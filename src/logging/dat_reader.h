#pragma once

// Reads a log file from front to back, record by record, whatever its length, in constant memory:
// its buffer, one record, one header.

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "logging/log_format.h"
#include "logging/record_shape.h"
#include "platform/files.h"

namespace kavorix {

// What the reader has come to.
enum class DatItem {
    Header,         // kind() and comment()
    Configuration,  // date() and pods()
    Data,           // time(), count() and values(), which have the shape of the run's records
    End,            // of the file
    CutShort,       // the file ends inside the record that begins at item_position()
    Damaged,        // the record that begins at item_position() holds what no record can hold
    Corrupt         // the scan record that begins at item_position() does not add up to its count
};

// Whether the reader stops there.
constexpr bool is_last(DatItem item) {
    return item != DatItem::Header && item != DatItem::Configuration && item != DatItem::Data;
}
constexpr bool is_damage(DatItem item) {
    return is_last(item) && item != DatItem::End;
}

// Singles that are no marker are passed over. What is_last() is final, unless resume() is called.
class DatReader {
  public:
    static constexpr std::size_t DefaultBufferSize = 256 * 1024;

    // Reads from `position` on, `buffer_size` bytes at a time (more where a record needs more). The
    // file outlives the reader and is read by nobody else meanwhile.
    explicit DatReader(File& file, std::size_t buffer_size = DefaultBufferSize,
                       std::uint64_t position = 0);

    // The next item. What the accessors below give belongs to the item that came last; only kind(),
    // comment(), date() and pods() hold on until the next item of their own sort.
    DatItem next();

    // Behind damage: goes to the next run, or the next record of this one, that makes sense, or to
    // the end of the file. Returns the bytes from item_position() to there.
    std::uint64_t resume();

    // Reads on at `position`, in the run that it is in.
    void go_to(std::uint64_t position);

    std::int16_t kind() const { return header_.Kind; }
    const std::string& comment() const { return header_.Comment; }
    std::int32_t date() const { return header_.Date; }
    const std::vector<LoggedPod>& pods() const { return header_.Pods; }
    const RunHeader& header() const { return header_; }
    const RecordShape& shape() const { return shape_; }

    float time() const { return time_; }
    int count() const { return count_; }            // singles behind the count
    const char* values() const { return values_; }  // their bytes, not aligned

    // The check sum of a data record behind its marker, and with a configuration of both records of
    // the run's header.
    std::uint32_t sum() const;
    // Whether the data record was not yet on the disk when it was last marked.
    bool pending() const { return pending_; }

    // Whether some block so far ended in a record that was not finished; who wants to know where
    // such records begin is called with each one's position.
    bool saw_unfinished() const { return unfinished_; }
    void on_unfinished(std::function<void(std::uint64_t)> action) {
        on_unfinished_ = std::move(action);
    }

    std::uint64_t item_position() const { return item_position_; }
    std::uint64_t position() const { return base_ + begin_; }     // behind the item
    std::uint64_t blocks_begin() const { return blocks_begin_; }  // of the run
    // Where the block that holds `position` ends.
    std::uint64_t block_end(std::uint64_t position) const;

  private:
    bool have(std::size_t count);
    const char* at() const { return buffer_.data() + begin_; }
    bool rest_is_filler() const;
    void skip_to(std::uint64_t position);
    void skip(std::size_t count);
    template <class T>
    T take();
    std::optional<DatItem> read_item();
    DatItem read_header();
    DatItem read_configuration();
    std::optional<DatItem> read_pod();
    DatItem read_data();
    std::optional<DatItem> read_pending(std::uint32_t marker);
    void skip_filler();
    bool behind_lost_page(std::uint64_t filler);
    std::optional<DatItem> skip_unfinished();
    bool run_begins_here();
    enum class Marker { Any, Right, Final };
    std::size_t record_here(Marker needed);
    bool goes_on_at(std::uint64_t place);

    File& file_;
    std::size_t buffer_size_;
    std::vector<char> buffer_;
    std::uint64_t base_;  // position of the buffer's first byte
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::uint64_t item_position_ = 0;
    std::uint64_t blocks_begin_ = 0;  // where the first block of the run stands
    std::optional<DatItem> finished_;
    RunHeader header_;
    RecordShape shape_;
    std::uint32_t header_sum_ = 0;
    bool in_header_ = false;                  // the last item was one
    std::optional<std::uint64_t> filler_at_;  // where the zeros in front of the position begin
    float time_ = 0;
    int count_ = 0;
    const char* values_ = nullptr;
    bool pending_ = false;
    bool unfinished_ = false;
    std::function<void(std::uint64_t)> on_unfinished_;
};

}  // namespace kavorix
