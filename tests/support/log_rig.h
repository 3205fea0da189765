#pragma once

// The two logs over pods of the test's making, in virtual time; and what a log file holds, read
// back.

#include <array>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "logging/dat_reader.h"
#include "logging/log_file.h"
#include "platform/virtual_event_loop.h"
#include "support/recording_failures.h"

namespace kavorix::test {

class LogRig {
  public:
    explicit LogRig(Files& files_of_log, const WallTime& start = {2026, 1, 5, 8, 0, 0, 0},
                    int sync_interval_ms = LogFile::UsualSyncInterval_ms)
        : files(files_of_log),
          loop(start, 1000),
          log({files, loop, failures, configuration, run_time}, sync_interval_ms) {
        run_time.Log.ScanFileName = "/logs/scan.DAT";
        run_time.Log.EventFileName = "/logs/event.DAT";
    }

    Files& files;
    VirtualEventLoop loop;
    RecordingFailures failures;
    Configuration configuration;
    std::unique_ptr<RunTime> run_time_owner = std::make_unique<RunTime>();
    RunTime& run_time = *run_time_owner;
    LogFile log;

    PodStatus& status(int pod) { return run_time.Status[Pod::numbered(pod)]; }
    ChannelConfig& channel(int pod, int number) {
        return configuration.ZavConfig[at(pod - 1)].Channel[at(number - 1)];
    }

    // A pod that is marked for both logs.
    void add_pod(int pod, std::string_view type_code) {
        status(pod).Ident.fill(' ');
        type_code.copy(status(pod).Ident.data(), 2);
        status(pod).LogScan = 1;
        status(pod).LogEvents = 1;
    }

    // New stream-0 data.
    void give(int pod, const std::vector<float>& values) {
        PodStatus& of = status(pod);
        of.ChannelCount = static_cast<std::int16_t>(values.size());
        of.ResultCode.fill(0);
        for (std::size_t i = 0; i < values.size(); ++i) of.Reading[i] = values[i];
        of.StreamNew[ReadingStream] = 1;
    }

    // New stream-2 data.
    void give_events(int pod, std::initializer_list<EventEntry> events) {
        std::size_t count = 0;
        for (const EventEntry& event : events) run_time.Poll.Events[at(pod - 1)][count++] = event;
        run_time.Poll.LastEvent[at(pod - 1)] = static_cast<std::int16_t>(events.size()) - 1;
        status(pod).StreamNew[EventStream] = 1;
    }

    // A record of the data given, `later_ms` after the last one.
    void write(std::int16_t kind, int later_ms = 1000) {
        loop.advance(later_ms);
        log.Write_Log_File(kind, 0, static_cast<std::int32_t>(loop.tick_count()));
    }
};

struct RecordRead {
    float time = 0;
    std::vector<float> values;
    bool operator==(const RecordRead&) const = default;
};

inline void PrintTo(const RecordRead& record, std::ostream* out) {
    *out << static_cast<long long>(record.time) << ":";
    for (const float value : record.values) *out << " " << value;
}

// A log file as the reader finds it.
struct LogRead {
    std::vector<RunHeader> runs;
    std::vector<RecordRead> records;  // of all runs
    std::size_t pending = 0;          // of them, not yet marked as being on the disk
    DatItem end = DatItem::End;
    std::uint64_t end_position = 0;  // of the item that the reading ended at
};

inline LogRead read_log(Files& files, const std::string& path,
                        std::size_t buffer_size = DatReader::DefaultBufferSize) {
    const auto file = files.open(path, OpenMode::Read);
    DatReader reader(*file, buffer_size);
    LogRead log;
    while (true) {
        const DatItem item = reader.next();
        if (item == DatItem::Configuration) log.runs.push_back(reader.header());
        if (item == DatItem::Data) {
            RecordRead record{reader.time(), std::vector<float>(at(reader.count()))};
            if (reader.count() > 0)
                std::memcpy(record.values.data(), reader.values(), at(reader.count()) * EntrySize);
            log.records.push_back(std::move(record));
        }
        if (item == DatItem::Data && reader.pending()) ++log.pending;
        if (is_last(item)) {
            log.end = item;
            log.end_position = reader.item_position();
            return log;
        }
    }
}

}  // namespace kavorix::test
