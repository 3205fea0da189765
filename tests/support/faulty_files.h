#pragma once

// Files that fail on demand. Levers: fail() lets operations of one kind fail from now on,
// fail_after() spares the first ones, fail_operation() counts operations of every kind, before()
// runs code of the test ahead of each. What does not fail goes to the files behind.

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include "platform/files.h"

namespace kavorix::test {

enum class FileOperation {
    Open,
    Read,
    Write,
    Size,
    Truncate,
    Sync,
    Close,
    Exists,
    Remove,
    Rename,
    MakeDirectories,
    SyncDirectory,
    Lock
};

class FaultyFiles : public Files {
  public:
    explicit FaultyFiles(Files& behind) : behind_(behind) {}

    void fail(FileOperation kind, std::errc reason) { fail_after(kind, 0, reason); }
    void fail_after(FileOperation kind, int spared, std::errc reason) {
        faults_[kind] = {spared, reason};
    }
    // Whatever is asked for after `spared` more operations fails, once or from then on. What the
    // program does in another thread (the syncing of logs) is left alone: when it comes is chance.
    void fail_operation(int spared, std::errc reason, bool for_ever = false) {
        any_fault_ = AnyFault{{spared, reason}, for_ever};
        struck_ = false;
    }
    // A write that fails has brought half of its bytes into the file.
    bool short_writes = false;
    // Whether fail_operation() has come true. heal() takes it back.
    bool struck() const { return struck_; }
    void heal() {
        any_fault_.reset();
        struck_ = short_writes = false;
    }
    // Operations of the test's thread so far.
    int operations() const { return operations_; }
    void before(FileOperation kind, std::function<void()> action) {
        actions_[kind] = std::move(action);
    }
    // Operations of the kind so far, failed ones included.
    int count(FileOperation kind) const {
        const auto found = counts_.find(kind);
        return found == counts_.end() ? 0 : found->second;
    }

    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
    bool exists(const std::string& path) override;
    void remove(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void make_directories(const std::string& path) override;
    void sync_directory(const std::string& directory) override;
    FileKind kind(const std::string& path) override { return behind_.kind(path); }
    bool same_file(const std::string& a, const std::string& b) override {
        return behind_.same_file(a, b);
    }
    std::string target_of(const std::string& path) override { return behind_.target_of(path); }
    std::unique_ptr<File> create_beside(const std::string& path, std::string& name) override;
    std::unique_ptr<FileLock> lock(const std::string& path) override;
    void check_writable(const std::string& path) override { behind_.check_writable(path); }

    // For the files that it opens: counts an operation; throws when it is to fail.
    void pass(FileOperation kind, const std::string& path);

  private:
    struct Fault {
        int spared = 0;
        std::errc reason{};
    };

    struct AnyFault {
        Fault fault;
        bool for_ever = false;
    };
    void strike(const std::string& path);

    Files& behind_;
    std::mutex mutex_;
    std::thread::id thread_ = std::this_thread::get_id();
    std::optional<AnyFault> any_fault_;
    bool struck_ = false;
    int operations_ = 0;
    std::map<FileOperation, Fault> faults_;
    std::map<FileOperation, std::function<void()>> actions_;
    std::map<FileOperation, int> counts_;
};

}  // namespace kavorix::test
