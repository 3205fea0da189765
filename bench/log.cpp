// The cost of a record on the poll path: 50 pods of 32 channels into a scan log on the disk of the
// temporary directory, the file synced by its own thread meanwhile. Beside it, in the same run, the
// least that the promise of a record on disk costs: two bare writes of the same bytes. The 99th
// percentile counts; the mean hides the record that lays out a block.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "support/log_rig.h"
#include "support/temporary_directory.h"

namespace {

using namespace kavorix;
using namespace kavorix::test;

constexpr int Pods = 50;
constexpr std::size_t RecordSize = (DataHeadEntries + Pods * (1 + MaxChannels)) * EntrySize;
constexpr int Pause_us = 200;  // a poll tick does not come straight after the last

// Times of single calls in microseconds.
class Times {
  public:
    template <class Call>
    void take(Call call) {
        const auto begin = std::chrono::steady_clock::now();
        call();
        const auto end = std::chrono::steady_clock::now();
        times_.push_back(std::chrono::duration<double, std::micro>(end - begin).count());
    }
    void report(benchmark::State& state) {
        std::sort(times_.begin(), times_.end());
        for (const auto& [name, part] :
             {std::pair{"p50_us", 0.5}, {"p90_us", 0.9}, {"p99_us", 0.99}, {"p999_us", 0.999}})
            state.counters[name] =
                times_[static_cast<std::size_t>(static_cast<double>(times_.size() - 1) * part)];
    }

  private:
    std::vector<double> times_;
};

void pause() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(Pause_us);
    while (std::chrono::steady_clock::now() < end) {
    }
}

void scan_record(benchmark::State& state) {
    const TemporaryDirectory directory;
    const auto files = make_host_files();
    LogRig rig(*files);
    rig.run_time.Log.ScanFileName = directory / "bench.DAT";
    std::mt19937 random(1);
    std::vector<std::vector<float>> values(Pods, std::vector<float>(MaxChannels));
    for (auto& pod : values)
        for (float& value : pod) value = static_cast<float>(random() % 1000000) / 77777.0F;
    for (int pod = 1; pod <= Pods; ++pod) rig.add_pod(pod, "8S");
    rig.log.Start_Log_File(ScanLog);
    Times times;
    for (auto _ : state) {
        for (int pod = 1; pod <= Pods; ++pod) rig.give(pod, values[at(pod - 1)]);
        pause();
        rig.loop.advance(100);
        times.take([&] {
            rig.log.Write_Log_File(ScanLog, 0, static_cast<std::int32_t>(rig.loop.tick_count()));
        });
    }
    rig.log.Stop_Log_File(ScanLog);
    times.report(state);
}

void two_bare_writes(benchmark::State& state) {
    const TemporaryDirectory directory;
    const auto files = make_host_files();
    const auto file = files->open(directory / "bench.DAT", OpenMode::ReadWrite);
    const std::string record(RecordSize, 'x');
    std::uint64_t position = 0;
    Times times;
    for (auto _ : state) {
        pause();
        times.take([&] {
            file->write_at(position, record);
            file->write_at(position, "y");
        });
        position += record.size();
    }
    times.report(state);
}

constexpr int Records = 20000;
BENCHMARK(two_bare_writes)->Iterations(Records)->Unit(benchmark::kMicrosecond);
BENCHMARK(scan_record)->Iterations(Records)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
