#include "platform/file_syncer.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <system_error>

namespace kavorix {
namespace {

// Counts its syncs; hold() keeps them from returning, fail() lets them fail.
class CountingFile : public File {
  public:
    std::size_t read(std::span<char>) override { return 0; }
    std::size_t read_at(std::uint64_t, std::span<char>) override { return 0; }
    void write(std::string_view) override {}
    void write_at(std::uint64_t, std::string_view) override {}
    std::uint64_t size() override { return 0; }
    void truncate(std::uint64_t) override {}
    void close() override {}
    void sync() override {
        std::unique_lock lock(mutex_);
        ++syncs_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !held_; });
        if (failing_) throw std::system_error(EIO, std::generic_category(), "Syncing");
    }

    void hold(bool held) { set(held_, held); }
    void fail(bool failing) { set(failing_, failing); }
    void wait_for_syncs(int count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return syncs_ >= count; });
    }
    int syncs() {
        const std::lock_guard lock(mutex_);
        return syncs_;
    }

  private:
    void set(bool& flag, bool value) {
        const std::lock_guard lock(mutex_);
        flag = value;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    int syncs_ = 0;
    bool held_ = false;
    bool failing_ = false;
};

TEST(FileSyncer, SyncsWhatWasWritten) {
    CountingFile file;
    FileSyncer syncer(file, 1);
    for (int sync = 1; sync <= 3; ++sync) {
        syncer.written();
        file.wait_for_syncs(sync);
    }
}

TEST(FileSyncer, NeverSyncsWithoutAWrite) {
    CountingFile file;
    { FileSyncer syncer(file, 1); }
    EXPECT_EQ(file.syncs(), 0);
}

TEST(FileSyncer, WritesDuringASyncAreSyncedOnceMore) {
    CountingFile file;
    FileSyncer syncer(file, 1);
    file.hold(true);
    syncer.written();
    file.wait_for_syncs(1);
    for (int i = 0; i < 100; ++i) syncer.written();  // none of them waits
    EXPECT_EQ(file.syncs(), 1);
    file.hold(false);
    file.wait_for_syncs(2);
}

TEST(FileSyncer, AnIntervalPassesBetweenTwoSyncs) {
    constexpr int Forever_ms = 1000000000;
    CountingFile file;
    FileSyncer syncer(file, Forever_ms);
    syncer.written();
    file.wait_for_syncs(1);
    syncer.written();
    EXPECT_EQ(file.syncs(), 1);
}

TEST(FileSyncer, AFailureComesOutAtALaterWrite) {
    CountingFile file;
    FileSyncer syncer(file, 1);
    file.fail(true);
    syncer.written();
    file.wait_for_syncs(1);
    file.fail(false);
    const auto write_until_it_fails = [&] {
        while (true) syncer.written();
    };
    EXPECT_THROW(write_until_it_fails(), std::system_error);
    syncer.written();
}

}  // namespace
}  // namespace kavorix
