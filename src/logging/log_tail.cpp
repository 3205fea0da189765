#include "logging/log_tail.h"

#include <algorithm>
#include <string>
#include <vector>

#include "logging/dat_reader.h"

namespace kavorix {

namespace {

std::string read_part(File& file, std::uint64_t begin, std::size_t size) {
    std::string bytes(size, '\0');
    std::size_t read = 0;
    while (read < size) {
        const std::size_t got = file.read_at(begin + read, {bytes.data() + read, size - read});
        if (got == 0) break;
        read += got;
    }
    bytes.resize(read);
    return bytes;
}

// Whether these bytes, the last ones of a file, can be the beginning of a header: nothing else is
// ever cut off.
bool could_be_header(std::string_view bytes) {
    constexpr std::size_t MarkerSize = sizeof HeaderMarker;
    constexpr std::size_t Fixed = MarkerSize + 2 * sizeof(std::int16_t);
    const std::string_view marker = bytes_of(&HeaderMarker, 1);
    if (bytes.substr(0, MarkerSize) != marker.substr(0, bytes.size())) return false;
    if (bytes.size() < Fixed) return true;
    const auto kind = read_field<std::int16_t>(bytes.data() + MarkerSize);
    const auto length = read_field<std::int16_t>(bytes.data() + MarkerSize + sizeof kind);
    if ((kind != ScanLog && kind != EventLog) || length < 0) return false;
    const std::string_view comment = bytes.substr(Fixed, static_cast<std::size_t>(length));
    return std::all_of(comment.begin(), comment.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= ' '; });
}

// Bytes of a block, which may be cut short, that hold complete records.
std::size_t complete_part(std::string_view block) {
    std::size_t at = 0;
    while (block.size() - at >= DataHeadEntries * EntrySize) {
        const char* record = block.data() + at;
        if (read_field<float>(record) != DataMarker) break;
        const auto count = read_field<float>(record + 2 * EntrySize);
        if (!(count >= 0 && count <= static_cast<float>(MaxDataCount))) break;
        const std::size_t size = (DataHeadEntries + static_cast<std::size_t>(count)) * EntrySize;
        if (size > block.size() - at) break;
        at += size;
    }
    return at;
}

// Blanks what stands behind the complete records of a run's last block and fills the block up.
void repair_block(File& file, std::uint64_t begin) {
    const std::string block = read_part(file, begin, BlockSize);
    const std::size_t complete = complete_part(block);
    const bool blank = block.find_first_not_of('\0', complete) == std::string::npos;
    if (block.size() == BlockSize && blank) return;
    file.write_at(begin + complete, std::string(BlockSize - complete, '\0'));
}

enum class RunStart {
    Whole,  // header and configuration
    Torn,   // the file ends within them
    None    // something else
};

// Looks for a run at `run`; `blocks` becomes the position of its first block when it is whole.
RunStart look_for_run(File& file, std::uint64_t run, std::uint64_t& blocks) {
    constexpr std::size_t HeaderBuffer = 4096;
    DatReader reader(file, HeaderBuffer, run);
    std::uint64_t expected_at = run;
    for (const DatItem expected : {DatItem::Header, DatItem::Configuration}) {
        const DatItem item = reader.next();
        if (reader.item_position() != expected_at) return RunStart::None;
        if (item == DatItem::CutShort || item == DatItem::End) return RunStart::Torn;
        if (item != expected) return RunStart::None;
        expected_at = reader.position();
    }
    blocks = expected_at;
    return RunStart::Whole;
}

bool is_header(File& file, std::uint64_t position) {
    const std::string bytes = read_part(file, position, EntrySize);
    return bytes == bytes_of(&HeaderMarker, 1);
}

// The position behind the blocks that begin at `block`: the next header or the end of the file,
// which is moved to the end of its block.
std::uint64_t behind_blocks(File& file, std::uint64_t block, std::uint64_t size) {
    const std::uint64_t first = block;
    while (block < size && !is_header(file, block)) block += BlockSize;
    if (block >= size && block > first) repair_block(file, block - BlockSize);
    return block;
}

}  // namespace

std::uint64_t repair_log_end(File& file) {
    constexpr std::uint64_t LongestHeader = 128 * 1024;
    const std::uint64_t size = file.size();
    std::uint64_t run = 0;
    while (run < size) {
        std::uint64_t blocks = 0;
        const RunStart start = look_for_run(file, run, blocks);
        if (start == RunStart::Whole) {
            run = behind_blocks(file, blocks, size);
            continue;
        }
        const std::uint64_t rest = size - run;
        if (start == RunStart::None || rest > LongestHeader ||
            !could_be_header(read_part(file, run, static_cast<std::size_t>(rest))))
            return size;
        file.truncate(run);
        return run;
    }
    return run;
}

}  // namespace kavorix
