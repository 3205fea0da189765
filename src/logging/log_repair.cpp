#include "logging/log_repair.h"

#include <array>
#include <optional>

#include "logging/check_sum.h"
#include "logging/log_info.h"
#include "logging/log_tail.h"

namespace kavorix {

namespace {

std::unique_ptr<File> open_sums(Files& files, const std::string& log_path) {
    const std::string path = sums_path_of(log_path);
    return files.exists(path) ? files.open(path, OpenMode::Read) : nullptr;
}

void copy_file(Files& files, const std::string& from, const std::string& to) {
    const auto source = files.open(from, OpenMode::Read);
    Replacement copy(files, to);
    std::array<char, 65536> buffer{};
    while (const std::size_t count = source->read(buffer))
        copy.file().write({buffer.data(), count});
    copy.commit();
}

std::string free_name(Files& files, const std::string& path) {
    std::string name = path + ".damaged";
    for (int number = 2; files.exists(name); ++number)
        name = path + ".damaged" + std::to_string(number);
    return name;
}

// Writes runs and records anew, in blocks where they stood in blocks before.
class LogRewriter {
  public:
    explicit LogRewriter(File& out) : out_(out) {}

    std::uint64_t begin_run(std::string_view header) {
        end_run();
        const std::uint64_t position = position_;
        put(header);
        blocks_begin_ = position_;
        in_run_ = true;
        block_ = 0;
        return position;
    }

    // A record (all but its marker) that stood in the block of this number of its run.
    void add(std::string_view record, std::uint64_t block) {
        const std::uint64_t room = BlockSize - used();
        if (used() > 0 && (block != block_ || room < EntrySize + record.size())) fill_block();
        block_ = block;
        put(bytes_of(&DataMarker, 1));
        put(record);
    }

    void end_run() {
        if (in_run_ && (used() > 0 || position_ == blocks_begin_)) fill_block();
        in_run_ = false;
    }

  private:
    std::uint64_t used() const { return (position_ - blocks_begin_) % BlockSize; }
    void put(std::string_view bytes) {
        out_.write(bytes);
        position_ += bytes.size();
    }
    void fill_block() { put(std::string(static_cast<std::size_t>(BlockSize - used()), '\0')); }

    File& out_;
    std::uint64_t position_ = 0;
    std::uint64_t blocks_begin_ = 0;
    std::uint64_t block_ = 0;
    bool in_run_ = false;
};

class LogMender {
  public:
    LogMender(Files& files, const std::string& path)
        : files_(files), path_(path), log_(files.open(path, OpenMode::Read)) {
        const auto sums = open_sums(files, path);
        const LogInfo info = read_log_info(*log_, sums.get());
        if (info.RunCount == 0)
            throw LogRefused("The file " + path + " is no log: there is nothing to mend.");
        result_.Needed = info.damaged() || info.Unfinished;
    }

    LogRepair mend() {
        if (!result_.Needed) return result_;
        Replacement mended(files_, path_);
        result_.Copy = free_name(files_, path_);
        copy_file(files_, path_, result_.Copy);
        if (files_.exists(sums_path_of(path_)))
            copy_file(files_, sums_path_of(path_), sums_path_of(result_.Copy));
        Replacement sums(files_, sums_path_of(path_));
        rewrite(mended.file(), sums.file());
        mended.commit();
        sums.commit();
        return result_;
    }

  private:
    void rewrite(File& out, File& out_sums) {
        const auto sums = open_sums(files_, path_);
        DatReader reader(*log_);
        LogVerifier verifier(sums.get());
        LogRewriter rewriter(out);
        SumWriter new_sums(out_sums);
        std::uint64_t header_at = 0;
        for (DatItem item = reader.next(); item != DatItem::End; item = reader.next()) {
            verifier.take(item, reader);
            if (item == DatItem::Header) header_at = reader.item_position();
            if (item == DatItem::Configuration) {
                const std::string header = bytes_at(header_at, reader.position());
                new_sums.begin_run(rewriter.begin_run(header), check_sum(header));
                ++result_.Runs;
            } else if (item == DatItem::Data && result_.Runs > 0) {
                add(reader, verifier, rewriter, new_sums);
            } else if (is_damage(item)) {
                ++result_.DamagedParts;
                result_.Skipped += reader.resume();
            }
        }
        rewriter.end_run();
    }
    void add(const DatReader& reader, const LogVerifier& verifier, LogRewriter& rewriter,
             SumWriter& new_sums) {
        const std::uint64_t place = reader.item_position();
        const char* record = reader.values() - 2 * EntrySize;
        rewriter.add({record, static_cast<std::size_t>(2 + reader.count()) * EntrySize},
                     (place - reader.blocks_begin()) / BlockSize);
        new_sums.add(verifier.expected().value_or(reader.sum()));
        if (verifier.expected()) ++result_.Differing;
        ++result_.Records;
    }
    std::string bytes_at(std::uint64_t begin, std::uint64_t end) {
        std::string bytes(static_cast<std::size_t>(end - begin), '\0');
        bytes.resize(log_->read_at(begin, bytes));
        return bytes;
    }

    Files& files_;
    std::string path_;
    std::unique_ptr<File> log_;
    LogRepair result_;
};

}  // namespace

LogRepair repair_log(Files& files, const std::string& path) {
    return LogMender(files, path).mend();
}

}  // namespace kavorix
