#pragma once

// Keeps a file's data on the disk without holding up whoever writes it.

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "platform/files.h"

namespace kavorix {

// Syncs `file` from a thread of its own, at most once an interval and only when something was
// written since. The file outlives the syncer.
class FileSyncer {
  public:
    FileSyncer(File& file, int interval_ms);
    ~FileSyncer();  // ends without a further sync
    FileSyncer(const FileSyncer&) = delete;
    FileSyncer& operator=(const FileSyncer&) = delete;

    // Something was written: it is on the disk an interval and the time of two syncs later. Never
    // waits for a sync. Throws what an earlier sync failed with, once.
    void written();

  private:
    void run();

    File& file_;
    const std::chrono::milliseconds interval_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool written_ = false;
    bool ending_ = false;
    std::exception_ptr failure_;
    std::thread thread_;  // last: it uses the rest
};

}  // namespace kavorix
