#pragma once

// A disk that loses power. It keeps what was synced and, of what was written since, every state
// that each page has been in: after a cut any of them may be the one that is found.
//
//   hold_syncs(true)   syncs from other threads than the test's wait ...
//   wait_for_sync()    ... until one does,
//   let_sync()         and then happen one by one
//   cut(choose)        the files as a loss of power now may leave them; choose(n) picks one of n

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/memory_files.h"

namespace kavorix::test {

class LosingDisk : public MemoryFiles {
  public:
    using Choice = std::function<std::size_t(std::size_t)>;

    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;

    void hold_syncs(bool held);
    void wait_for_sync();
    void let_sync();

    // Content by path. Files that were made are there: their folder is synced when they are opened.
    std::map<std::string, std::string> cut(const Choice& choose);
    // Choices of more than one state that the next cut has.
    std::size_t unsynced_pages();

  private:
    class LosingFile;
    struct Unsynced {
        std::string synced;
        std::map<std::uint64_t, std::vector<std::string>> pages;  // states by number of the page
    };

    void note_write(const std::string& path, std::uint64_t offset, std::size_t size);
    void note_sync(const std::string& path);

    static constexpr std::uint64_t Page = 4096;
    std::mutex disk_mutex_;
    std::condition_variable changed_;
    std::thread::id thread_ = std::this_thread::get_id();
    bool held_ = false;
    int waiting_ = 0;
    int allowed_ = 0;
    std::map<std::string, Unsynced> unsynced_;
};

}  // namespace kavorix::test
