#pragma once

// The file of check sums beside a log (docs/log-format.md).

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/files.h"

namespace kavorix {

std::string sums_path_of(const std::string& log_path);

// Writes the sums of a log while it is written. The log is worth more than they are: what fails
// here ends the writing of sums and nothing else.
class SumWriter {
  public:
    // Goes on with the file beside the log; makes it anew when the log is `fresh`. A file that is
    // there and holds no sums is left alone.
    SumWriter(Files& files, const std::string& log_path, bool fresh);
    // Writes into an empty file, which outlives the writer.
    explicit SumWriter(File& file);

    void begin_run(std::uint64_t position, std::uint32_t header_sum);
    void add(std::uint32_t record_sum);
    // The disk failed to take what was written up to the record number `records` or before.
    void mark_unsynced(std::uint64_t records);
    // The run was ended in order.
    void end_run(std::uint64_t records);

    // Null when nothing is written any more.
    File* file() { return file_; }
    // Why that is, in the system's words; empty as long as all is well.
    const std::string& failure() const { return failure_; }

  private:
    void open(Files& files, const std::string& path, bool fresh);
    void write_line(const std::string& line);

    std::unique_ptr<File> own_;
    File* file_ = nullptr;
    std::uint64_t end_ = 0;
    std::string failure_;
};

// Reads them beside the log, from front to back, in constant memory.
class SumReader {
  public:
    // The file outlives the reader.
    explicit SumReader(File& file);

    // Goes to the run that begins at `position` of the log. Its header's sum; nothing when the file
    // does not tell of it. Positions ascend from call to call; runs in between are passed over and
    // counted.
    std::optional<std::uint32_t> begin_run(std::uint64_t position);

    // The sums of the run's next records, as far as they are looked at: at least `count` of them,
    // as long as there are so many. Whoever has used the first takes it away.
    std::deque<std::uint32_t>& ahead(std::size_t count);

    // Of the current run, once its sums are at an end: where the disk failed.
    std::optional<std::uint64_t> unsynced() const { return unsynced_; }
    std::uint64_t runs_passed_over() const { return passed_over_; }

  private:
    bool fill();
    std::optional<std::string> next_line();
    bool read_sum();

    File& file_;
    std::uint64_t position_ = 0;  // behind the buffer
    std::string buffer_;
    std::size_t begin_ = 0;
    std::optional<std::string> held_;  // a line that was read too early
    bool in_run_ = false;
    std::deque<std::uint32_t> ahead_;
    std::optional<std::uint64_t> unsynced_;
    std::uint64_t passed_over_ = 0;
};

}  // namespace kavorix
