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

// Whether a marker is that of a pending record with this check sum, or the final one, or partly the
// one and partly the other, as where a page of the disk ends inside it.
bool marks(std::uint32_t marker, std::uint32_t sum) {
    const auto final_bits = std::bit_cast<std::uint32_t>(DataMarker);
    const auto pending_bits = std::bit_cast<std::uint32_t>(pending_marker(sum));
    for (std::uint32_t byte = 0xFF; byte != 0; byte <<= 8u)
        if ((marker & byte) != (final_bits & byte) && (marker & byte) != (pending_bits & byte))
            return false;
    return true;
}

// Whether it can be such a marker: its two high bytes are those of one or the other.
bool may_mark(std::uint32_t marker) {
    const std::uint32_t high = marker >> 24u;
    const std::uint32_t next = marker >> 16u & 0xFFu;
    return (high == 0x40 || high == 0xFF) && (next == 0x40 || next >= 0xC0);
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
    if (marker == 0) {
        if (!filler_at_) filler_at_ = position();
    } else if (const auto filler = std::exchange(filler_at_, std::nullopt);
               filler && behind_lost_page(*filler)) {
        return skip_unfinished();
    }
    const bool goes_on = in_header_ && marker == ConfigurationMarker;
    in_header_ = marker == HeaderMarker || marker == ConfigurationMarker;
    if (!goes_on) header_sum_ = 0;
    pending_ = false;
    skip(EntrySize);
    if (marker == DataMarker) return read_data();
    if (marker == HeaderMarker) return read_header();
    if (marker == ConfigurationMarker) return read_configuration();
    if (marker == UnfinishedMarker) return skip_unfinished();
    if (const auto bits = std::bit_cast<std::uint32_t>(marker); may_mark(bits))
        return read_pending(bits);
    if (marker == 0) skip_filler();
    return std::nullopt;
}

// Passes over the zeros that the buffer holds, as far as they make whole singles.
void DatReader::skip_filler() {
    while (end_ - begin_ >= EntrySize && read_field<std::uint32_t>(at()) == 0) begin_ += EntrySize;
}

// Whether what stands here, behind zeros that begin at `filler`, is the rest of records that a loss
// of power took the beginning of: inside a block, over the end of a page, and no record or run.
bool DatReader::behind_lost_page(std::uint64_t filler) {
    const std::uint64_t last = position() + EntrySize - 1;
    if (filler / PageSize == last / PageSize) return false;
    if ((position() - std::min(position(), blocks_begin_)) % BlockSize == 0) return false;
    return !run_begins_here() && record_here(Marker::Right) == 0;
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
std::optional<DatItem> DatReader::read_pending(std::uint32_t marker) {
    const std::uint64_t begin = position();
    const DatItem item = read_data();
    if (position() > begin && marks(marker, sum())) {
        pending_ = true;
        return item;
    }
    skip_to(begin);
    if ((marker & ~PendingSumMask) == PendingMarkerBits) return skip_unfinished();
    return std::nullopt;
}

// Passes over the rest of a block, which a run was ended in while it wrote the record here. Marks
// follow each other onto the disk, so a record that is there as a whole, and has a marked one
// behind it, says that a bit was turned.
std::optional<DatItem> DatReader::skip_unfinished() {
    const std::uint64_t end = block_end(item_position_);
    go_to(item_position_);
    if (const std::size_t size = record_here(Marker::Any); size > 0) {
        go_to(item_position_ + size);
        if (record_here(Marker::Final) > 0) return DatItem::Damaged;
    }
    unfinished_ = true;
    if (on_unfinished_) on_unfinished_(item_position_);
    skip_to(end);
    return std::nullopt;
}

void DatReader::go_to(std::uint64_t position) {
    finished_.reset();
    filler_at_.reset();
    in_header_ = false;
    skip_to(position);
}

// Whether a header and a configuration begin at the current position.
bool DatReader::run_begins_here() {
    if (!have(EntrySize) || read_field<float>(at()) != HeaderMarker) return false;
    DatReader run(file_, HeaderBuffer, position());
    return run.next() == DatItem::Header && run.next() == DatItem::Configuration;
}

// The size of the data record of the run that begins at the current position, says something and
// ends within its block; 0 when there is none. Its marker is final, or right: that or a pending
// one, or any.
std::size_t DatReader::record_here(Marker needed) {
    constexpr std::size_t Head = DataHeadEntries * EntrySize;
    if (!have(Head)) return 0;
    const auto marker = read_field<std::uint32_t>(at());
    const bool marked = needed == Marker::Any || marker == std::bit_cast<std::uint32_t>(DataMarker);
    if (!marked && (needed == Marker::Final || !may_mark(marker))) return 0;
    const auto count = data_count(read_field<float>(at() + RecordFields));
    if (!count || *count == 0 || !have(Head + bytes_in(*count))) return 0;
    const std::size_t size = Head + bytes_in(*count);
    if (position() + size > block_end(position())) return 0;
    const std::string_view fields(at() + EntrySize, size - EntrySize);
    if (shape_.fault(read_field<float>(fields.data()), fields.data() + RecordFields, *count) !=
        RecordFault::None)
        return 0;
    return marked || marks(marker, check_sum(fields)) ? size : 0;
}

// Whether what stands at `place` can follow a record: another one, a run, or filler up to there or
// to the end of the block. The position is then some other one.
bool DatReader::goes_on_at(std::uint64_t place) {
    const std::uint64_t end = block_end(place - 1);
    for (go_to(place); have(EntrySize) && position() < end; go_to(position() + EntrySize))
        if (const auto marker = read_field<float>(at()); marker != 0)
            return marker == UnfinishedMarker || record_here(Marker::Right) > 0 ||
                   run_begins_here();
    return true;
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
        const std::size_t size = aligned ? record_here(Marker::Right) : 0;
        if (size == 0) continue;
        if (goes_on_at(place + size)) {
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
