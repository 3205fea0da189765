#include "logging/csv_pool.h"

#include <algorithm>
#include <utility>

namespace kavorix {

CsvPool::CsvPool(int helpers, std::function<void(std::string_view)> write)
    : write_(std::move(write)), most_under_way_(static_cast<std::size_t>(2 * helpers)) {
    for (int i = 0; i < helpers; ++i) helpers_.emplace_back([this] { help(); });
}

CsvPool::~CsvPool() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    for (std::thread& helper : helpers_) helper.join();
}

std::unique_ptr<CsvChunk> CsvPool::take() {
    if (spare_.empty()) return std::make_unique<CsvChunk>();
    auto chunk = std::move(spare_.back());
    spare_.pop_back();
    return chunk;
}

void CsvPool::put(std::unique_ptr<CsvChunk> chunk) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back({std::move(chunk), Stage::Waiting, nullptr});
    }
    changed_.notify_all();
    while (jobs_.size() > most_under_way_) write_oldest();
}

void CsvPool::finish() {
    while (!jobs_.empty()) write_oldest();
}

CsvPool::Job* CsvPool::next_waiting() {
    const auto job = std::find_if(jobs_.begin(), jobs_.end(),
                                  [](const Job& j) { return j.stage == Stage::Waiting; });
    return job == jobs_.end() ? nullptr : &*job;
}

void CsvPool::format(Job& job, std::unique_lock<std::mutex>& lock) {
    job.stage = Stage::Formatting;
    lock.unlock();
    try {
        job.chunk->format();
    } catch (...) {
        job.failure = std::current_exception();
    }
    lock.lock();
    job.stage = Stage::Done;
}

void CsvPool::help() {
    std::unique_lock lock(mutex_);
    while (!ending_) {
        if (Job* job = next_waiting()) {
            format(*job, lock);
            changed_.notify_all();
        } else {
            changed_.wait(lock);
        }
    }
}

// Formats it itself, or a later chunk meanwhile, rather than wait for a helper.
void CsvPool::write_oldest() {
    std::unique_lock lock(mutex_);
    while (jobs_.front().stage != Stage::Done) {
        if (Job* job = next_waiting()) {
            format(*job, lock);
        } else {
            changed_.wait(lock);
        }
    }
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    lock.unlock();
    if (job.failure) std::rethrow_exception(job.failure);
    if (const auto text = job.chunk->text(); !text.empty()) write_(text);
    spare_.push_back(std::move(job.chunk));
}

}  // namespace kavorix
