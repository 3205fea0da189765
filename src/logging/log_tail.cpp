#include "logging/log_tail.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "base/text.h"
#include "logging/dat_reader.h"

namespace kavorix {

namespace {

constexpr std::uint64_t LongestHeader = 128 * 1024;

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
    const auto begins_with = [&](const float& marker) {
        return bytes.substr(0, MarkerSize) == bytes_of(&marker, 1).substr(0, bytes.size());
    };
    if (!begins_with(HeaderMarker) && !begins_with(UnfinishedMarker)) return false;
    if (bytes.size() < Fixed) return true;
    const auto kind = read_field<std::int16_t>(bytes.data() + MarkerSize);
    const auto length = read_field<std::int16_t>(bytes.data() + MarkerSize + sizeof kind);
    if ((kind != ScanLog && kind != EventLog) || length < 0) return false;
    const std::string_view comment = bytes.substr(Fixed, static_cast<std::size_t>(length));
    return std::all_of(comment.begin(), comment.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= ' '; });
}

// Looks through a log to its end, and puts that in order where it is told to.
class LogEnd {
  public:
    LogEnd(File& file, const std::string& path) : file_(file), path_(path) {}

    // Where a new run begins.
    std::uint64_t find(bool repair) {
        size_ = file_.size();
        repair_ = repair;
        if (size_ == 0) return 0;
        DatReader reader(file_);
        reader.on_unfinished([&](std::uint64_t place) {
            if (has_run_) blank(place, reader.block_end(place));
        });
        while (true) {
            const DatItem item = reader.next();
            in_header_ = item == DatItem::Header || (in_header_ && is_last(item));
            if (item == DatItem::Header) header_ = reader.item_position();
            if (item == DatItem::Configuration) has_run_ = true;
            if (item == DatItem::Data && reader.pending())
                write(reader.item_position(), std::string(bytes_of(&DataMarker, 1)));
            if (item == DatItem::End) return behind_blocks(reader);
            if (item == DatItem::CutShort) return behind_cut(reader);
            if (is_last(item)) refuse(reader);
        }
    }

  private:
    void write(std::uint64_t place, const std::string& bytes) {
        if (repair_) file_.write_at(place, bytes);
    }
    void blank(std::uint64_t begin, std::uint64_t end) {
        if (begin < end) write(begin, std::string(static_cast<std::size_t>(end - begin), '\0'));
    }
    std::uint64_t cut_off(std::uint64_t begin) {
        if (repair_) file_.truncate(begin);
        return begin;
    }

    // Whether what stands behind `begin` can be a header that was not finished.
    bool torn_header(std::uint64_t begin) {
        const std::uint64_t rest = size_ - begin;
        return rest <= LongestHeader &&
               could_be_header(read_part(file_, begin, static_cast<std::size_t>(rest)));
    }
    bool nothing_but_zeros() {
        return size_ <= LongestHeader &&
               read_part(file_, 0, static_cast<std::size_t>(size_)).find_first_not_of('\0') ==
                   std::string::npos;
    }

    [[noreturn]] void refuse(const DatReader& reader) {
        if (!has_run_ && !in_header_)
            throw LogRefused("The file " + path_ +
                             " is no log: nothing can be added to it. Choose another file.");
        throw LogRefused("The log file " + path_ + " is damaged at byte " +
                         std::to_string(reader.item_position()) +
                         ": what is added would not be found. Choose another file, or mend it with "
                         "kavorix repair.");
    }

    // The end of the last block, or of a header without any.
    std::uint64_t behind_blocks(const DatReader& reader) {
        if (!has_run_) {
            if (!torn_header(0) && !nothing_but_zeros()) refuse(reader);
            return cut_off(0);
        }
        if (size_ <= reader.blocks_begin()) return size_;
        const std::uint64_t end = reader.block_end(size_ - 1);
        blank(size_, end);
        return end;
    }

    // A file that ends inside a record: as it may when a run is interrupted, or in another way.
    std::uint64_t behind_cut(const DatReader& reader) {
        const std::uint64_t place = in_header_ ? header_ : reader.item_position();
        const bool block_begins =
            has_run_ ? reader.block_end(place) - place == BlockSize : place == 0;
        if (block_begins && torn_header(place)) return cut_off(place);
        const std::uint64_t end = reader.block_end(place);
        const auto longest =
            static_cast<std::uint64_t>(DataHeadEntries + reader.shape().longest()) * EntrySize;
        if (!has_run_ || in_header_ || size_ >= end || size_ - place > longest) refuse(reader);
        blank(place, end);
        return end;
    }

    File& file_;
    const std::string& path_;
    std::uint64_t size_ = 0;
    bool repair_ = false;
    bool has_run_ = false;
    bool in_header_ = false;    // the last item was one
    std::uint64_t header_ = 0;  // where the last one begins
};

}  // namespace

std::uint64_t repair_log_end(File& file, const std::string& path) {
    LogEnd(file, path).find(false);
    return LogEnd(file, path).find(true);
}

void check_log_start(Files& files, const std::string& path) {
    files.check_writable(path);
    if (!files.exists(path)) return;
    const auto lock = files.lock(path);
    const auto file = files.open(path, OpenMode::Read);
    LogEnd(*file, path).find(false);
}

std::optional<std::string> log_obstacle(Files& files, const std::string& path) {
    try {
        check_log_start(files, path);
        return std::nullopt;
    } catch (const std::exception& failure) {
        return from_utf8_lossy(failure.what());
    }
}

}  // namespace kavorix
