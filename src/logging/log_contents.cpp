#include "logging/log_contents.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/text.h"

namespace kavorix {

namespace {

constexpr std::size_t HeaderBuffer = 4096;

PodOnFile& entry_of(LogContents& contents, const LoggedPod& pod) {
    const auto known = std::find_if(contents.Pods.begin(), contents.Pods.end(),
                                    [&](const PodOnFile& p) { return p.Number == pod.Number; });
    if (known != contents.Pods.end()) return *known;
    return contents.Pods.emplace_back(PodOnFile{pod.Number, pod.TypeCode, 0, {}});
}

void add_pods(LogContents& contents, const std::vector<LoggedPod>& pods) {
    for (const LoggedPod& pod : pods) {
        PodOnFile& entry = entry_of(contents, pod);
        if (entry.Labels.size() < pod.Channels.size()) entry.Labels.resize(pod.Channels.size());
        entry.Channels = static_cast<std::int16_t>(entry.Labels.size());
        for (std::size_t i = 0; i < pod.Channels.size(); ++i)
            if (entry.Labels[i].empty()) entry.Labels[i] = trim(pod.Channels[i].Label);
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

// The next header at or behind the block that begins at `block`, found by reading every record of
// the run that begins at `run`.
std::uint64_t find_header(File& file, std::uint64_t run, std::uint64_t block) {
    DatReader reader(file, DatReader::DefaultBufferSize, run);
    while (reader.next() == DatItem::Header) {
    }
    reader.go_to(block);
    while (true) {
        const DatItem item = reader.next();
        if (item == DatItem::Header) return reader.item_position();
        if (item != DatItem::Data) return std::numeric_limits<std::uint64_t>::max();
    }
}

bool is_run(File& file, std::uint64_t position) {
    DatReader reader(file, HeaderBuffer, position);
    return reader.next() == DatItem::Header && reader.item_position() == position &&
           reader.next() == DatItem::Configuration;
}

// The next header behind the blocks of the run that begins at `run`. Blocks are passed over whole
// as long as what stands at their beginnings is what blocks begin with.
std::uint64_t next_run(File& file, std::uint64_t run, std::uint64_t first_block) {
    const std::uint64_t size = file.size();
    for (std::uint64_t block = first_block; block < size; block += BlockSize) {
        const float begin = single_at(file, block);
        if (begin == HeaderMarker && is_run(file, block)) return block;
        if (begin != 0 && begin != DataMarker && begin != UnfinishedMarker &&
            !is_pending_marker(begin))
            return find_header(file, run, first_block);
        if (size - block < BlockSize) return find_header(file, run, block);
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
        run = next_run(file, run, reader.position());
    }
    return contents;
}

LogContents salvage_log_contents(File& file) {
    LogContents contents;
    DatReader reader(file);
    for (DatItem item = reader.next(); item != DatItem::End; item = reader.next()) {
        if (item == DatItem::Configuration) add_run(contents, reader.header());
        if (is_damage(item)) reader.resume();
    }
    return contents;
}

}  // namespace kavorix
