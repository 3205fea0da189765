#include "platform/file_syncer.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <system_error>

namespace kavorix {
namespace {

// Notes in order what is done to it: "s" a sync, anything else the mark that is written. hold()
// keeps syncs from returning, fail() lets them fail.
class NotedFile : public File {
  public:
    std::size_t read(std::span<char>) override { return 0; }
    std::size_t read_at(std::uint64_t, std::span<char>) override { return 0; }
    void write(std::string_view) override {}
    void write_at(std::uint64_t offset, std::string_view mark) override {
        const std::lock_guard lock(mutex_);
        EXPECT_EQ(offset, static_cast<std::uint64_t>(mark[0]));
        done_ += mark;
    }
    std::uint64_t size() override { return 0; }
    void truncate(std::uint64_t) override {}
    void close() override {}
    void sync() override {
        std::unique_lock lock(mutex_);
        done_ += 's';
        changed_.notify_all();
        changed_.wait(lock, [this] { return !held_; });
        if (failing_) throw std::system_error(EIO, std::generic_category(), "Syncing");
    }

    void hold(bool held) { set(held_, held); }
    void fail(bool failing) { set(failing_, failing); }
    // Waits until `what` was done.
    void wait_for(const std::string& what) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return done_ == what; });
    }
    std::string done() {
        const std::lock_guard lock(mutex_);
        return done_;
    }

  private:
    void set(bool& flag, bool value) {
        const std::lock_guard lock(mutex_);
        flag = value;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string done_;
    bool held_ = false;
    bool failing_ = false;
};

constexpr int Forever_ms = 1000000000;

TEST(FileSyncer, WritesMarksBetweenTwoSyncs) {
    NotedFile file;
    NotedFile companion;
    FileSyncer syncer(file, 1, &companion);
    syncer.written('a', "a");
    file.wait_for("sas");
    syncer.written(0, {});
    file.wait_for("sass");
    EXPECT_EQ(companion.done(), "ss");
    syncer.finish();
    EXPECT_EQ(file.done(), "sass");  // nothing was left to do
}

// What is written during a sync may have missed it, and nobody waits for one.
TEST(FileSyncer, MarksOfWritesDuringASyncWaitForTheNext) {
    NotedFile file;
    FileSyncer syncer(file, 1);
    file.hold(true);
    syncer.written('a', "a");
    file.wait_for("s");
    for (const char* mark : {"b", "c"}) syncer.written(static_cast<std::uint64_t>(*mark), mark);
    EXPECT_EQ(file.done(), "s");
    file.hold(false);
    file.wait_for("sassbcs");
}

TEST(FileSyncer, AnIntervalPassesBetweenSyncsButFinishingDoesNotWait) {
    NotedFile file;
    FileSyncer syncer(file, Forever_ms);
    syncer.written('a', "a");
    file.wait_for("sas");
    syncer.written('b', "b");
    EXPECT_EQ(file.done(), "sas");
    syncer.finish();
    EXPECT_EQ(file.done(), "sassbs");
}

TEST(FileSyncer, DestroyingItFinishesAndNothingIsDoneWithoutAWrite) {
    NotedFile file;
    { FileSyncer syncer(file, Forever_ms); }
    EXPECT_EQ(file.done(), "");
    {
        FileSyncer syncer(file, Forever_ms);
        syncer.written('a', "a");
    }
    EXPECT_EQ(file.done(), "sas");
}

// The second sync would succeed: it is never asked for.
TEST(FileSyncer, AFailureIsFinalAndToldByEveryCall) {
    NotedFile file;
    FileSyncer syncer(file, 1);
    file.fail(true);
    syncer.written('a', "a");
    const auto write_on = [&] {
        while (true) syncer.written(0, {});
    };
    EXPECT_THROW(write_on(), std::system_error);
    file.fail(false);
    EXPECT_THROW(syncer.written('b', "b"), std::system_error);
    EXPECT_THROW(syncer.finish(), std::system_error);
    EXPECT_EQ(file.done(), "s");
}

TEST(FileSyncer, AFailureWhileFinishingIsTold) {
    NotedFile file;
    NotedFile companion;
    FileSyncer syncer(file, Forever_ms, &companion);
    syncer.written(0, {});
    file.wait_for("s");
    companion.fail(true);
    syncer.written('a', "a");
    EXPECT_THROW(syncer.finish(), std::system_error);
    EXPECT_EQ(file.done(), "s");
}

}  // namespace
}  // namespace kavorix
