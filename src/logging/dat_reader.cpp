#include "logging/dat_reader.h"

#include <algorithm>
#include <cmath>

namespace kavorix {

namespace {

// The count of a data record as it stands in the file: whole and no longer than a block. A count of
// 0 or less means that nothing follows.
std::optional<int> data_count(float count) {
    if (!(count <= static_cast<float>(MaxDataCount)) || count != std::trunc(count))
        return std::nullopt;
    return std::max(0, static_cast<int>(std::max(count, -1.0F)));
}

}  // namespace

DatReader::DatReader(File& file, std::size_t buffer_size, std::uint64_t position)
    : file_(file), buffer_size_(std::max(buffer_size, EntrySize)), base_(position) {}

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

template <class T>
T DatReader::take() {
    const auto value = read_field<T>(at());
    begin_ += sizeof value;
    return value;
}

bool DatReader::rest_is_filler() const {
    return std::all_of(at(), buffer_.data() + end_, [](char byte) { return byte == 0; });
}

void DatReader::skip_to(std::uint64_t position) {
    const std::uint64_t buffered = base_ + end_;
    if (position <= buffered) {
        begin_ = static_cast<std::size_t>(position - base_);
        return;
    }
    base_ = std::min(position, std::max(buffered, file_.size()));
    begin_ = end_ = 0;
}

DatItem DatReader::next() {
    while (!finished_) {
        item_position_ = position();
        const auto item = read_item();
        if (!item) continue;
        if (*item != DatItem::Header && *item != DatItem::Configuration && *item != DatItem::Data)
            finished_ = item;
        return *item;
    }
    return *finished_;
}

std::optional<DatItem> DatReader::read_item() {
    if (!have(EntrySize)) return rest_is_filler() ? DatItem::End : DatItem::CutShort;
    const auto marker = take<float>();
    if (marker == DataMarker) return read_data();
    if (marker == HeaderMarker) return read_header();
    if (marker == ConfigurationMarker) return read_configuration();
    if (marker == UnfinishedMarker) skip_unfinished_block();
    if (marker == 0) skip_filler();
    return std::nullopt;
}

// Passes over the zeros that the buffer holds, as far as they make whole singles.
void DatReader::skip_filler() {
    while (end_ - begin_ >= EntrySize && read_field<std::uint32_t>(at()) == 0) begin_ += EntrySize;
}

DatItem DatReader::read_header() {
    constexpr std::size_t Fixed = 2 * sizeof(std::int16_t);
    if (!have(Fixed)) return DatItem::CutShort;
    header_.Kind = take<std::int16_t>();
    const auto length = take<std::int16_t>();
    if (length < 0) return DatItem::Damaged;
    if (!have(static_cast<std::size_t>(length))) return DatItem::CutShort;
    header_.Comment.assign(at(), static_cast<std::size_t>(length));
    begin_ += static_cast<std::size_t>(length);
    return DatItem::Header;
}

DatItem DatReader::read_configuration() {
    constexpr std::size_t Fixed = sizeof(std::int32_t) + sizeof(std::int16_t);
    if (!have(Fixed)) return DatItem::CutShort;
    header_.Date = take<std::int32_t>();
    const auto pods = take<std::int16_t>();
    if (header_.Date < 0 || pods < 0 || pods > MaxZavs) return DatItem::Damaged;
    header_.Pods.clear();
    for (int pod = 0; pod < pods; ++pod)
        if (const auto failure = read_pod()) return *failure;
    blocks_begin_ = position();
    return DatItem::Configuration;
}

std::optional<DatItem> DatReader::read_pod() {
    constexpr std::size_t TypeCodeSize = 2;
    if (!have(2 * sizeof(std::int16_t) + TypeCodeSize)) return DatItem::CutShort;
    const auto number = take<std::int16_t>();
    const std::string type_code(at(), TypeCodeSize);
    begin_ += TypeCodeSize;
    const auto channels = take<std::int16_t>();
    if (number < 1 || number > MaxZavs || channels < 0 || channels > MaxChannels)
        return DatItem::Damaged;
    if (!have(static_cast<std::size_t>(channels) * (MaxLabel + MaxUnit))) return DatItem::CutShort;
    LoggedPod& pod = header_.Pods.emplace_back(LoggedPod{number, type_code, {}});
    for (int channel = 0; channel < channels; ++channel) {
        pod.Channels.push_back({{at(), MaxLabel}, {at() + MaxLabel, MaxUnit}});
        begin_ += MaxLabel + MaxUnit;
    }
    return std::nullopt;
}

DatItem DatReader::read_data() {
    if (!have(2 * EntrySize)) return DatItem::CutShort;
    time_ = take<float>();
    const auto count = data_count(take<float>());
    if (!count) return DatItem::Damaged;
    count_ = *count;
    const std::size_t size = static_cast<std::size_t>(count_) * EntrySize;
    if (!have(size)) return DatItem::CutShort;
    values_ = at();
    begin_ += size;
    return DatItem::Data;
}

// The run was killed while it wrote this record: its block ends here.
void DatReader::skip_unfinished_block() {
    unfinished_ = true;
    const std::uint64_t into_block = (item_position_ - blocks_begin_) % BlockSize;
    skip_to(item_position_ - into_block + BlockSize);
}

}  // namespace kavorix
