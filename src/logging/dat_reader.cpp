#include "logging/dat_reader.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "logging/check_sum.h"

namespace kavorix {

namespace {

constexpr std::size_t HeaderBuffer = 4096;
constexpr std::size_t RecordFields = 2 * EntrySize;  // time and count, behind the marker

// The count of a data record as it stands in the file: whole and no longer than a block. A count of
// 0 or less means that nothing follows.
std::optional<int> data_count(float count) {
    if (!(count <= static_cast<float>(MaxDataCount)) || count != std::trunc(count))
        return std::nullopt;
    return std::max(0, static_cast<int>(std::max(count, -1.0F)));
}

std::size_t bytes_in(int singles) {
    return static_cast<std::size_t>(singles) * EntrySize;
}

}  // namespace

DatReader::DatReader(File& file, std::size_t buffer_size, std::uint64_t position)
    : file_(file),
      buffer_size_(std::max(buffer_size, EntrySize)),
      base_(position),
      blocks_begin_(position) {}

// Has `count` bytes in the buffer from the current position on; false when the file ends before.
bool DatReader::have(std::size_t count) {
    if (end_ - begin_ >= count) return true;
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    base_ += begin_;
    end_ -= begin_;
    begin_ = 0;
    buffer_.resize(std::max({buffer_.size(), buffer_size_, count}));
    while (end_ < count) {
        const std::size_t got =
            file_.read_at(base_ + end_, {buffer_.data() + end_, buffer_.size() - end_});
        if (got == 0) return false;
        end_ += got;
    }
    return true;
}

// Passes over bytes that the buffer holds.
void DatReader::skip(std::size_t count) {
    if (in_header_) header_sum_ = check_sum({at(), count}, header_sum_);
    begin_ += count;
}

template <class T>
T DatReader::take() {
    const auto value = read_field<T>(at());
    skip(sizeof value);
    return value;
}

bool DatReader::rest_is_filler() const {
    return std::all_of(at(), buffer_.data() + end_, [](char byte) { return byte == 0; });
}

void DatReader::skip_to(std::uint64_t position) {
    const std::uint64_t buffered = base_ + end_;
    if (position >= base_ && position <= buffered) {
        begin_ = static_cast<std::size_t>(position - base_);
        return;
    }
    base_ = std::min(position, std::max(buffered, file_.size()));
    begin_ = end_ = 0;
}

std::uint64_t DatReader::block_end(std::uint64_t position) const {
    if (position < blocks_begin_) return blocks_begin_;
    return position - (position - blocks_begin_) % BlockSize + BlockSize;
}

std::uint32_t DatReader::sum() const {
    if (in_header_) return header_sum_;
    return check_sum({values_ - RecordFields, RecordFields + bytes_in(count_)});
}

DatItem DatReader::next() {
    while (!finished_) {
        item_position_ = position();
        const auto item = read_item();
        if (!item) continue;
        if (is_last(*item)) finished_ = item;
        return *item;
    }
    return *finished_;
}

std::optional<DatItem> DatReader::read_item() {
    if (!have(EntrySize)) return rest_is_filler() ? DatItem::End : DatItem::CutShort;
    const auto marker = read_field<float>(at());
    if (std::exchange(in_filler_, marker == 0) && behind_lost_page(marker))
        return skip_unfinished();
    const bool goes_on = in_header_ && marker == ConfigurationMarker;
    in_header_ = marker == HeaderMarker || marker == ConfigurationMarker;
    if (!goes_on) header_sum_ = 0;
    pending_ = false;
    skip(EntrySize);
    if (marker == DataMarker) return read_data();
    if (marker == HeaderMarker) return read_header();
    if (marker == ConfigurationMarker) return read_configuration();
    if (marker == UnfinishedMarker) return skip_unfinished();
    if (is_pending_marker(marker)) return read_pending(marker);
    if (marker == 0) skip_filler();
    return std::nullopt;
}

// Passes over the zeros that the buffer holds, as far as they make whole singles.
void DatReader::skip_filler() {
    while (end_ - begin_ >= EntrySize && read_field<std::uint32_t>(at()) == 0) begin_ += EntrySize;
}

// Whether what stands here, behind zeros, is the rest of records that a loss of power took the
// beginning of: inside a block, zeros that end where a page does are no filler, and what follows
// them begins somewhere in a record.
bool DatReader::behind_lost_page(float marker) {
    if (marker == 0) return false;
    const std::uint64_t into_page = position() % PageSize;
    if (into_page != 0 && into_page <= PageSize - EntrySize) return false;
    if ((position() - std::min(position(), blocks_begin_)) % BlockSize == 0) return false;
    if (marker == HeaderMarker) return !run_begins_here();
    if (marker == DataMarker) return record_here(true) == 0;
    return !is_pending_marker(marker);
}

DatItem DatReader::read_header() {
    constexpr std::size_t Fixed = 2 * sizeof(std::int16_t);
    shape_ = {};
    if (!have(Fixed)) return DatItem::CutShort;
    header_.Kind = take<std::int16_t>();
    const auto length = take<std::int16_t>();
    if (length < 0) return DatItem::Damaged;
    if (!have(static_cast<std::size_t>(length))) return DatItem::CutShort;
    header_.Comment.assign(at(), static_cast<std::size_t>(length));
    skip(static_cast<std::size_t>(length));
    return DatItem::Header;
}

DatItem DatReader::read_configuration() {
    constexpr std::size_t Fixed = sizeof(std::int32_t) + sizeof(std::int16_t);
    shape_ = {};
    header_.Pods.clear();
    if (!have(Fixed)) return DatItem::CutShort;
    header_.Date = take<std::int32_t>();
    const auto pods = take<std::int16_t>();
    if (header_.Date < 0 || pods < 0 || pods > MaxZavs) return DatItem::Damaged;
    for (int pod = 0; pod < pods; ++pod)
        if (const auto failure = read_pod()) return *failure;
    blocks_begin_ = position();
    shape_ = RecordShape(header_);
    return DatItem::Configuration;
}

std::optional<DatItem> DatReader::read_pod() {
    constexpr std::size_t TypeCodeSize = 2;
    if (!have(2 * sizeof(std::int16_t) + TypeCodeSize)) return DatItem::CutShort;
    const auto number = take<std::int16_t>();
    const std::string type_code(at(), TypeCodeSize);
    skip(TypeCodeSize);
    const auto channels = take<std::int16_t>();
    if (number < 1 || number > MaxZavs || channels < 0 || channels > MaxChannels)
        return DatItem::Damaged;
    for (const LoggedPod& other : header_.Pods)
        if (other.Number == number) return DatItem::Damaged;
    if (!have(static_cast<std::size_t>(channels) * (MaxLabel + MaxUnit))) return DatItem::CutShort;
    LoggedPod& pod = header_.Pods.emplace_back(LoggedPod{number, type_code, {}});
    for (int channel = 0; channel < channels; ++channel) {
        pod.Channels.push_back({{at(), MaxLabel}, {at() + MaxLabel, MaxUnit}});
        skip(MaxLabel + MaxUnit);
    }
    return std::nullopt;
}

DatItem DatReader::read_data() {
    if (!have(RecordFields)) return DatItem::CutShort;
    const auto count = data_count(read_field<float>(at() + EntrySize));
    if (!count) return DatItem::Damaged;
    if (!have(RecordFields + bytes_in(*count))) return DatItem::CutShort;
    time_ = read_field<float>(at());
    count_ = *count;
    values_ = at() + RecordFields;
    begin_ += RecordFields + bytes_in(count_);
    switch (shape_.fault(time_, values_, count_)) {
        case RecordFault::Impossible:
            return DatItem::Damaged;
        case RecordFault::DoesNotAddUp:
            return DatItem::Corrupt;
        default:
            return DatItem::Data;
    }
}

// A record that was not yet on the disk: as a whole when its check sum is right.
std::optional<DatItem> DatReader::read_pending(float marker) {
    const std::uint64_t begin = position();
    const DatItem item = read_data();
    pending_ = true;
    const bool whole = item == DatItem::Data || item == DatItem::Corrupt ||
                       (item == DatItem::Damaged && position() > begin);
    if (whole && std::bit_cast<std::uint32_t>(pending_marker(sum())) ==
                     std::bit_cast<std::uint32_t>(marker))
        return item;
    skip_to(begin);
    return skip_unfinished();
}

// Passes over the rest of a block, which a run was ended in while it wrote the record here. Marks
// follow each other onto the disk, so a marked record behind one that is not says that a bit was
// turned.
std::optional<DatItem> DatReader::skip_unfinished() {
    const std::uint64_t end = block_end(item_position_);
    for (std::uint64_t place = item_position_ + EntrySize; place < end; place += EntrySize) {
        skip_to(place);
        if (!have(EntrySize)) break;
        if (record_here(true) > 0) return DatItem::Damaged;
    }
    unfinished_ = true;
    if (on_unfinished_) on_unfinished_(item_position_);
    skip_to(end);
    return std::nullopt;
}

void DatReader::go_to(std::uint64_t position) {
    finished_.reset();
    in_filler_ = in_header_ = false;
    skip_to(position);
}

// Whether a header and a configuration begin at the current position.
bool DatReader::run_begins_here() {
    if (!have(EntrySize) || read_field<float>(at()) != HeaderMarker) return false;
    DatReader run(file_, HeaderBuffer, position());
    return run.next() == DatItem::Header && run.next() == DatItem::Configuration;
}

// The size of the data record of the run that begins at the current position, says something and
// ends within its block; 0 when there is none. A pending one counts, too, unless it must be
// finished.
std::size_t DatReader::record_here(bool finished) {
    constexpr std::size_t Head = DataHeadEntries * EntrySize;
    if (!have(Head)) return 0;
    const auto marker = read_field<float>(at());
    if (marker != DataMarker && (finished || !is_pending_marker(marker))) return 0;
    const auto count = data_count(read_field<float>(at() + RecordFields));
    if (!count || *count == 0 || !have(Head + bytes_in(*count))) return 0;
    const std::size_t size = Head + bytes_in(*count);
    if (position() + size > block_end(position())) return 0;
    const std::string_view fields(at() + EntrySize, size - EntrySize);
    if (shape_.fault(read_field<float>(fields.data()), fields.data() + RecordFields, *count) !=
        RecordFault::None)
        return 0;
    const bool right = marker == DataMarker ||
                       std::bit_cast<std::uint32_t>(pending_marker(check_sum(fields))) ==
                           std::bit_cast<std::uint32_t>(marker);
    return right ? size : 0;
}

// Whether what stands at the current position can follow a record.
bool DatReader::goes_on_here() {
    if (!have(EntrySize) || position() == block_end(position() - 1)) return true;
    const auto marker = read_field<float>(at());
    return marker == 0 || marker == UnfinishedMarker || record_here(false) > 0 || run_begins_here();
}

// Behind damage, values can look like a record. One that nothing sensible follows gives way to
// another that begins inside it.
std::uint64_t DatReader::resume() {
    const std::uint64_t from = item_position_;
    std::uint64_t doubtful = 0;  // where such a record begins and ends
    std::uint64_t doubtful_end = 0;
    for (std::uint64_t place = from + 1;; ++place) {
        go_to(place);
        const bool end = !have(EntrySize);
        if (doubtful_end > 0 && (end || place == doubtful_end)) break;
        if (end) {
            skip_to(file_.size());
            return position() - from;
        }
        if (run_begins_here()) return place - from;
        const bool aligned = place >= blocks_begin_ && (place - blocks_begin_) % EntrySize == 0;
        const std::size_t size = aligned ? record_here(false) : 0;
        if (size == 0) continue;
        go_to(place + size);
        if (goes_on_here()) {
            go_to(place);
            return place - from;
        }
        if (doubtful_end > 0) continue;
        doubtful = place;
        doubtful_end = place + size;
    }
    go_to(doubtful);
    return doubtful - from;
}

}  // namespace kavorix
