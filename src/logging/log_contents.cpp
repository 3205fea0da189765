#include "logging/log_contents.h"

#include <algorithm>
#include <array>

namespace kavorix {

namespace {

constexpr std::size_t HeaderBuffer = 4096;

void add_pods(LogContents& contents, const std::vector<LoggedPod>& pods) {
    for (const LoggedPod& pod : pods) {
        const auto channels = static_cast<std::int16_t>(pod.Channels.size());
        const auto known = std::find_if(contents.Pods.begin(), contents.Pods.end(),
                                        [&](const PodOnFile& p) { return p.Number == pod.Number; });
        if (known == contents.Pods.end()) {
            contents.Pods.push_back({pod.Number, pod.TypeCode, channels});
        } else {
            known->Channels = std::max(known->Channels, channels);
        }
    }
}

void add_run(LogContents& contents, const RunHeader& header) {
    if (contents.Runs == 0) {
        contents.Kind = header.Kind;
        contents.Comment = header.Comment;
        contents.Date = header.Date;
    }
    ++contents.Runs;
    add_pods(contents, header.Pods);
}

// The first single at `position`; a number that begins nothing when the file ends there.
float single_at(File& file, std::uint64_t position) {
    std::array<char, EntrySize> bytes{};
    return file.read_at(position, bytes) == bytes.size() ? read_field<float>(bytes.data()) : -1.0F;
}

// The next header at or behind the block that begins at `block`, found by reading every record.
std::uint64_t find_header(File& file, std::uint64_t block) {
    DatReader reader(file, DatReader::DefaultBufferSize, block);
    while (true) {
        const DatItem item = reader.next();
        if (item == DatItem::Header) return reader.item_position();
        if (item != DatItem::Data) return file.size();
    }
}

// The next header behind the blocks of a run. Blocks are passed over whole as long as what stands
// at their beginnings is what blocks begin with.
std::uint64_t next_run(File& file, std::uint64_t first_block) {
    const std::uint64_t size = file.size();
    for (std::uint64_t block = first_block; block < size; block += BlockSize) {
        const float begin = single_at(file, block);
        if (begin == HeaderMarker) return block;
        if (begin != 0 && begin != DataMarker && begin != UnfinishedMarker)
            return find_header(file, first_block);
        if (size - block < BlockSize) return find_header(file, block);
    }
    return size;
}

}  // namespace

LogContents read_log_contents(File& file) {
    LogContents contents;
    std::uint64_t run = 0;
    while (run < file.size()) {
        DatReader reader(file, HeaderBuffer, run);
        if (reader.next() != DatItem::Header || reader.next() != DatItem::Configuration) break;
        add_run(contents, reader.header());
        run = next_run(file, reader.position());
    }
    return contents;
}

}  // namespace kavorix
