#include "platform/file_syncer.h"

#include <utility>

namespace kavorix {

FileSyncer::FileSyncer(File& file, int interval_ms)
    : file_(file), interval_(interval_ms), thread_([this] { run(); }) {}

FileSyncer::~FileSyncer() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void FileSyncer::written() {
    {
        const std::lock_guard lock(mutex_);
        if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
        if (std::exchange(written_, true)) return;
    }
    changed_.notify_one();
}

void FileSyncer::run() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return written_ || ending_; });
        if (ending_) return;
        written_ = false;
        lock.unlock();
        std::exception_ptr failure;
        try {
            file_.sync();
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        if (failure) failure_ = failure;
        changed_.wait_for(lock, interval_, [this] { return ending_; });
    }
}

}  // namespace kavorix
