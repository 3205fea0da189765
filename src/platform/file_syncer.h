#pragma once

// Brings a file onto the disk in order, without holding up whoever writes it.

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/files.h"

namespace kavorix {

// Works in a thread of its own, at most once an interval and only when something was written: syncs
// `file`, writes the marks that were given before the sync began, and syncs again. So a mark is on
// the disk only when all that was written before it is. The files outlive the syncer.
//
// A sync that failed is final: the system may have dropped what it could not write, and a second
// sync would say that all is well. From then on no mark is written, and every call tells it.
class FileSyncer {
  public:
    // `companion`, if any, is brought onto the disk beside it.
    FileSyncer(File& file, int interval_ms, File* companion = nullptr);
    ~FileSyncer();  // brings all onto the disk; a failure goes unnoticed
    FileSyncer(const FileSyncer&) = delete;
    FileSyncer& operator=(const FileSyncer&) = delete;

    // Something was written, and `mark`, a few bytes, is to follow at `offset` when that is on the
    // disk (none: empty). It all is an interval and the time of four syncs later. Never waits for a
    // sync. Throws what a sync failed with.
    void written(std::uint64_t offset = 0, std::string_view mark = {});

    // Brings everything onto the disk and returns when it is there. Throws what this or an earlier
    // sync failed with. Nothing may be written afterwards.
    void finish();

  private:
    struct Mark {
        std::uint64_t offset = 0;
        std::string bytes;
    };

    void run();
    std::exception_ptr settle(const std::vector<Mark>& marks);

    File& file_;
    File* companion_;
    const std::chrono::milliseconds interval_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool written_ = false;
    std::vector<Mark> marks_;  // not yet written
    bool ending_ = false;
    std::exception_ptr failure_;
    std::thread thread_;  // last: it uses the rest
};

}  // namespace kavorix
