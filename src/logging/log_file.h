#pragma once

// The scan log and the event log: binary files of the operator's choice that the poll cycle's data
// is added to (docs/log-format.md).

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/trap.h"
#include "logging/log_format.h"
#include "logging/log_sums.h"
#include "model/runtime.h"
#include "platform/event_loop.h"
#include "platform/file_syncer.h"
#include "platform/files.h"

namespace kavorix {

// Module LOGFILE. Kind 0 is the scan log, any other the event log. Failures of the file system end
// the program by way of the failure reporter.
//
// When Write_Log_File returns, the record is in the file, at its final place: nothing but the loss
// of power within the next second takes it away again. A record is in the file either whole or not
// at all, whenever the program is killed or the power is lost.
class LogFile {
  public:
    // What the logs work with; all of it outlives them.
    struct Surroundings {
        Files& files;
        EventLoop& loop;
        FailureReporter& failures;
        const Configuration& configuration;
        RunTime& run_time;
    };
    static constexpr int UsualSyncInterval_ms = 500;
    explicit LogFile(const Surroundings& surroundings, int sync_interval_ms = UsualSyncInterval_ms)
        : with_(surroundings), sync_interval_ms_(sync_interval_ms) {}

    // Called with a sentence for the operator about what does not end a log: a pod that answers
    // with another number of channels than the log holds, check sums that cannot be written.
    void on_notice(std::function<void(const std::string&)> action) { notice_ = std::move(action); }

    // Opens the file that LogState names and begins a run at its end, over the pods that are marked
    // for the log. Nothing happens when the log already runs or no file is set up. What
    // log_obstacle() tells of beforehand is a failure here.
    void Start_Log_File(std::int16_t kind);

    // flush 0: adds a record of the marked pods' new data at tick count `time` (0: the wall clock's
    // time) and clears the pods' new-data flags. flush 1: finishes the current block. Nothing
    // happens while the log does not run.
    void Write_Log_File(std::int16_t kind, std::int16_t flush, std::int32_t time);

    // A poll boundary: adds a scan record when the interval has passed since the last one.
    void log_scans(const Moment& now);

    // Events have come: adds an event record. False while the event log does not run.
    bool log_events(const Moment& now);

    // Waits while a record is being added, then finishes the file and brings it onto the disk.
    void Stop_Log_File(std::int16_t kind);

  private:
    struct Fields;  // where the state of one kind stands
    struct Run {
        std::unique_ptr<FileLock> lock;
        std::unique_ptr<File> file;
        std::unique_ptr<SumWriter> sums;
        std::unique_ptr<FileSyncer> syncer;
        std::uint64_t block_at = 0;   // position of the current block
        bool block_laid_out = false;  // whether it stands in the file
        std::uint64_t records = 0;
        std::array<std::int16_t, MaxZavs> channels{};  // by the header, of the logged pods
        std::array<std::int16_t, MaxZavs> answered{};  // as the operator was told of another number
    };

    static const Fields& fields_of(std::int16_t kind);
    Run& run_of(std::int16_t kind) { return runs_[kind == ScanLog ? 0 : 1]; }

    void start(std::int16_t kind);
    Run begin_run(const std::string& path, const RunHeader& header);
    void write_header(Run& run, const std::string& path, std::uint64_t begin,
                      const std::string& bytes);
    RunHeader make_header(std::int16_t kind) const;
    LoggedPod make_pod(std::int16_t kind, int pod) const;
    void write_record(std::int16_t kind, std::int32_t time);
    int entries_needed(std::int16_t kind) const;
    void count_events();
    void build_record(std::int16_t kind, std::int32_t time);
    void put_record(std::int16_t kind, std::int16_t first);
    void written(Run& run, std::uint64_t offset, std::string_view mark);
    void finish(Run& run);
    void compare_channels(Run& run, int pod);
    void note(const std::string& text) const;
    void finish_block(std::int16_t kind);
    void stop(std::int16_t kind);
    bool is_due(std::int16_t kind, int pod) const;

    Surroundings with_;
    int sync_interval_ms_;
    std::function<void(const std::string&)> notice_;
    std::array<Run, 2> runs_;
};

}  // namespace kavorix
