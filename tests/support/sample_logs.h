#pragma once

// Logs of any size for benchmarks and tests of throughput, written by the log writer itself.

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "support/log_rig.h"

namespace kavorix::test {

// Pods and channels of the sample scan log: 252 columns.
inline constexpr int SamplePods = 9;
inline constexpr int SampleColumns = 252;

// A scan log of at least `size` bytes at `path`: random walks, a reading in error now and then.
inline void write_sample_scans(Files& files, const std::string& path, std::uint64_t size) {
    LogRig rig(files);
    rig.run_time.Log.ScanFileName = path;
    rig.run_time.Log.ScanComment = "Sample";
    std::mt19937 random(1);
    std::normal_distribution<float> step(0, 0.05F);
    std::vector<std::vector<float>> walks;
    for (int pod = 1; pod <= SamplePods; ++pod) {
        const bool wide = pod <= 6;
        rig.add_pod(pod, wide ? "8S" : "7R");
        walks.emplace_back(wide ? 32 : 20);
        for (float& value : walks.back())
            value = std::pow(10.0F, static_cast<float>(random() % 4)) * 1.5F;
    }
    rig.log.Start_Log_File(ScanLog);
    const std::uint64_t records = size / ((DataHeadEntries + SamplePods + SampleColumns) * 4);
    for (std::uint64_t record = 0; record < records; ++record) {
        for (int pod = 1; pod <= SamplePods; ++pod) {
            auto& walk = walks[at(pod - 1)];
            for (float& value : walk) value += step(random);
            rig.give(pod, walk);
            if (random() % 50 == 0)
                rig.status(pod).ResultCode[random() % 20] = HighestValidCode + 1;
        }
        rig.write(ScanLog, 100);
    }
    rig.log.Stop_Log_File(ScanLog);
}

// An event log of at least `size` bytes: 20 digital channels of four pods.
inline void write_sample_events(Files& files, const std::string& path, std::uint64_t size) {
    LogRig rig(files);
    rig.run_time.Log.EventFileName = path;
    for (int pod = 1; pod <= 4; ++pod) rig.add_pod(pod, "8R");
    rig.log.Start_Log_File(EventLog);
    std::mt19937 random(1);
    const auto pick = [&](unsigned below) { return static_cast<std::int16_t>(random() % below); };
    std::uint64_t written = 0;
    while (written < size) {
        for (int pod = 1; pod <= 4; ++pod) {
            rig.give_events(pod, {});
            const std::int16_t events = pick(EventTableSize);
            for (std::int16_t i = 0; i < events; ++i)
                rig.run_time.Poll.Events[at(pod - 1)][at(i)] = {
                    static_cast<std::int16_t>(1 + pick(20)),
                    5,
                    8,
                    pick(60),
                    1,
                    pick(1000),
                    pick(60),
                    pick(2),
                    pick(2)};
            rig.run_time.Poll.LastEvent[at(pod - 1)] = static_cast<std::int16_t>(events - 1);
            written += at(2 + EventEntries * events) * EntrySize;
        }
        rig.write(EventLog, 100);
    }
    rig.log.Stop_Log_File(EventLog);
}

}  // namespace kavorix::test
