#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "logging/csv_chunk.h"

namespace kavorix {

// Formats chunks with the help of some threads and hands them on in the order that they came in.
// No more than a few chunks are under way at any time. Without helpers everything happens in the
// calls.
class CsvPool {
  public:
    // `write` gets the text of each chunk, in the thread that calls put() and finish().
    CsvPool(int helpers, std::function<void(std::string_view)> write);
    ~CsvPool();
    CsvPool(const CsvPool&) = delete;
    CsvPool& operator=(const CsvPool&) = delete;

    // An empty chunk to fill.
    std::unique_ptr<CsvChunk> take();
    // Formats and writes it, now or later. Throws what formatting or writing threw.
    void put(std::unique_ptr<CsvChunk> chunk);
    // Writes what is still under way.
    void finish();

  private:
    enum class Stage { Waiting, Formatting, Done };
    struct Job {
        std::unique_ptr<CsvChunk> chunk;
        Stage stage = Stage::Waiting;
        std::exception_ptr failure;
    };

    void help();
    void format(Job& job, std::unique_lock<std::mutex>& lock);
    Job* next_waiting();
    void write_oldest();

    std::function<void(std::string_view)> write_;
    std::size_t most_under_way_;
    std::vector<std::unique_ptr<CsvChunk>> spare_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> jobs_;  // oldest first; a deque keeps jobs in place
    bool ending_ = false;
    std::vector<std::thread> helpers_;  // last: they use the rest
};

}  // namespace kavorix
