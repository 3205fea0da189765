#pragma once

// The scan log and the event log: binary files of the operator's choice that the poll cycle's data
// is added to (docs/log-format.md).

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "base/trap.h"
#include "logging/log_format.h"
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
// at all, whenever the program is killed.
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
    explicit LogFile(const Surroundings& surroundings) : with_(surroundings) {}

    // Opens the file that LogState names and begins a run at its end, over the pods that are marked
    // for the log. Nothing happens when the log already runs or no file is set up.
    void Start_Log_File(std::int16_t kind);

    // flush 0: adds a record of the marked pods' new data at tick count `time` (0: the wall clock's
    // time) and clears the pods' new-data flags. flush 1: finishes the current block. Nothing
    // happens while the log does not run.
    void Write_Log_File(std::int16_t kind, std::int16_t flush, std::int32_t time);

    // A poll boundary: adds a scan record when the interval has passed since the last one.
    void log_scans(const Moment& now);

    // Events have come: adds an event record. False while the event log does not run.
    bool log_events(const Moment& now);

    // Waits while a record is being added, then finishes the file.
    void Stop_Log_File(std::int16_t kind);

  private:
    struct Fields;  // where the state of one kind stands
    struct Run {
        std::unique_ptr<File> file;
        std::unique_ptr<FileSyncer> syncer;
        std::uint64_t block_at = 0;   // position of the current block
        bool block_laid_out = false;  // whether it stands in the file
    };

    static const Fields& fields_of(std::int16_t kind);
    Run& run_of(std::int16_t kind) { return runs_[kind == ScanLog ? 0 : 1]; }

    void start(std::int16_t kind);
    RunHeader make_header(std::int16_t kind) const;
    LoggedPod make_pod(std::int16_t kind, int pod) const;
    void write_record(std::int16_t kind, std::int32_t time);
    int entries_needed(std::int16_t kind) const;
    void count_events();
    void build_record(std::int16_t kind, std::int32_t time);
    void put_record(std::int16_t kind, std::int16_t first);
    void finish_block(std::int16_t kind);
    void stop(std::int16_t kind);
    bool is_due(std::int16_t kind, int pod) const;

    Surroundings with_;
    std::array<Run, 2> runs_;
};

}  // namespace kavorix
