#pragma once

// Reads a log file from front to back, record by record, whatever its length, in constant memory.

#include <cstdint>
#include <optional>
#include <vector>

#include "logging/log_format.h"
#include "platform/files.h"

namespace kavorix {

// What the reader has come to.
enum class DatItem {
    Header,         // kind() and comment()
    Configuration,  // date() and pods()
    Data,           // time(), count() and values()
    End,            // of the file
    CutShort,       // the file ends inside the record that begins at item_position()
    Damaged         // the record that begins at item_position() holds what no record can hold
};

// Singles that are no marker are passed over. CutShort and Damaged are final, like End.
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

    std::int16_t kind() const { return header_.Kind; }
    const std::string& comment() const { return header_.Comment; }
    std::int32_t date() const { return header_.Date; }
    const std::vector<LoggedPod>& pods() const { return header_.Pods; }
    const RunHeader& header() const { return header_; }

    float time() const { return time_; }
    int count() const { return count_; }                 // singles behind the count
    const char* values() const { return values_; }       // their bytes, not aligned
    bool saw_unfinished() const { return unfinished_; }  // some block ended in a torn record

    std::uint64_t item_position() const { return item_position_; }
    std::uint64_t position() const { return base_ + begin_; }  // behind the item

  private:
    bool have(std::size_t count);
    const char* at() const { return buffer_.data() + begin_; }
    bool rest_is_filler() const;
    void skip_to(std::uint64_t position);
    template <class T>
    T take();
    std::optional<DatItem> read_item();
    DatItem read_header();
    DatItem read_configuration();
    std::optional<DatItem> read_pod();
    DatItem read_data();
    void skip_filler();
    void skip_unfinished_block();

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
    float time_ = 0;
    int count_ = 0;
    const char* values_ = nullptr;
    bool unfinished_ = false;
};

}  // namespace kavorix
