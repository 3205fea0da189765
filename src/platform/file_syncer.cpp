#include "platform/file_syncer.h"

#include <utility>

namespace kavorix {

FileSyncer::FileSyncer(File& file, int interval_ms, File* companion)
    : file_(file), companion_(companion), interval_(interval_ms), thread_([this] { run(); }) {}

FileSyncer::~FileSyncer() {
    try {
        finish();
    } catch (const std::exception&) {
        // Whoever wants to know calls finish().
    }
}

void FileSyncer::written(std::uint64_t offset, std::string_view mark) {
    {
        const std::lock_guard lock(mutex_);
        if (failure_) std::rethrow_exception(failure_);
        if (!mark.empty()) marks_.push_back({offset, std::string(mark)});
        if (std::exchange(written_, true)) return;
    }
    changed_.notify_one();
}

void FileSyncer::finish() {
    if (thread_.joinable()) {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        changed_.notify_one();
        thread_.join();
    }
    if (failure_) std::rethrow_exception(failure_);
}

std::exception_ptr FileSyncer::settle(const std::vector<Mark>& marks) {
    try {
        if (companion_) companion_->sync();
        file_.sync();
        if (marks.empty()) return nullptr;
        for (const Mark& mark : marks) file_.write_at(mark.offset, mark.bytes);
        file_.sync();
        return nullptr;
    } catch (const std::exception&) {
        return std::current_exception();
    }
}

void FileSyncer::run() {
    std::unique_lock lock(mutex_);
    while (!failure_) {
        changed_.wait(lock, [this] { return written_ || ending_; });
        if (!written_) return;
        written_ = false;
        const std::vector<Mark> marks = std::exchange(marks_, {});
        lock.unlock();
        const std::exception_ptr failure = settle(marks);
        lock.lock();
        failure_ = failure;
        changed_.wait_for(lock, interval_, [this] { return ending_; });
    }
}

}  // namespace kavorix
