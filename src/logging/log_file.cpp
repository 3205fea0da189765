#include "logging/log_file.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "logging/check_sum.h"
#include "logging/log_clock.h"
#include "logging/log_records.h"
#include "logging/log_tail.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

// Marks a record as being added, whatever way the function is left.
class Busy {
  public:
    explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
    ~Busy() { flag_ = false; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    bool& flag_;
};

std::int32_t date_number(const WallTime& time) {
    return (time.year * 100 + time.month) * 100 + time.day;
}

}  // namespace

struct LogFile::Fields {
    std::string LogState::*FileName;
    std::string LogState::*Comment;
    bool LogState::*Logging;
    std::vector<float> LogState::*Buffer;
    std::int16_t LogState::*Index;
    std::int16_t LogState::*PodCount;
    std::int16_t LogState::*Total;
    bool PodStatus::*Marked;
    std::int16_t Stream;
};

const LogFile::Fields& LogFile::fields_of(std::int16_t kind) {
    static constexpr Fields Scan = {
        &LogState::ScanFileName,     &LogState::ScanComment, &LogState::ScanLogging,
        &LogState::ScanBuffer,       &LogState::ScanIndex,   &LogState::ScanPodCount,
        &LogState::ScanChannelTotal, &PodStatus::LogScan,    ReadingStream};
    static constexpr Fields Event = {
        &LogState::EventFileName, &LogState::EventComment, &LogState::EventLogging,
        &LogState::EventBuffer,   &LogState::EventIndex,   &LogState::EventPodCount,
        &LogState::EventTotal,    &PodStatus::LogEvents,   EventStream};
    return kind == ScanLog ? Scan : Event;
}

void LogFile::Start_Log_File(std::int16_t kind) {
    trapped(with_.failures, "LOGFILE/Start_Log_File", [&] { start(kind); });
}

void LogFile::Write_Log_File(std::int16_t kind, std::int16_t flush, std::int32_t time) {
    trapped(with_.failures, "LOGFILE/Write_Log_File", [&] {
        if (!run_of(kind).file) return;
        if (flush != 0) {
            finish_block(kind);
        } else {
            const Busy busy(with_.run_time.Log.LogBusy);
            write_record(kind, time);
        }
    });
}

void LogFile::log_scans(const Moment& now) {
    const LogState& log = with_.run_time.Log;
    PollState& poll = with_.run_time.Poll;
    // Unsigned: half the range of the tick count away from the last record is late too, not early.
    const auto due_ms =
        static_cast<std::uint32_t>(std::max(log.ScanLogInterval - with_.run_time.Link.PollTick, 0));
    if (!log.ScanLogging || now.Ticks - poll.LastScanLogTime < due_ms) return;
    poll.LastScanLogTime = now.Ticks;
    Write_Log_File(ScanLog, 0, static_cast<std::int32_t>(now.Ticks));
}

bool LogFile::log_events(const Moment& now) {
    if (!with_.run_time.Log.EventLogging) return false;
    Write_Log_File(EventLog, 0, static_cast<std::int32_t>(now.Ticks));
    return true;
}

void LogFile::Stop_Log_File(std::int16_t kind) {
    trapped(with_.failures, "LOGFILE/Stop_Log_File", [&] { stop(kind); });
}

void LogFile::start(std::int16_t kind) {
    LogState& log = with_.run_time.Log;
    const Fields& of = fields_of(kind);
    const std::string& path = log.*of.FileName;
    if (log.*of.Logging || path.empty()) return;
    log.*of.Logging = true;
    log.*of.Total = 0;

    const RunHeader header = make_header(kind);
    Run run = begin_run(path, header);
    log.*of.PodCount = static_cast<std::int16_t>(header.Pods.size());
    log.*of.Buffer = std::vector<float>(BlockEntries);
    log.*of.Index = -1;
    if (kind == ScanLog) {
        for (const LoggedPod& pod : header.Pods)
            log.ScanChannelTotal = static_cast<std::int16_t>(log.ScanChannelTotal +
                                                             static_cast<int>(pod.Channels.size()));
        log.ScanLogInterval = log.ScanIntervalChoice > 0 ? log.ScanIntervalChoice
                                                         : with_.configuration.Interface.PollRate;
    }
    run_of(kind) = std::move(run);
}

LogFile::Run LogFile::begin_run(const std::string& path, const RunHeader& header) {
    check_log_start(with_.files, path);
    const std::string bytes = encode(header);
    Run run;
    run.file = with_.files.open(path, OpenMode::ReadWrite);
    run.lock = with_.files.lock(path);
    const std::uint64_t begin = repair_log_end(*run.file, path);
    write_header(run, path, begin, bytes);
    run.block_at = begin + bytes.size();
    run.sums = std::make_unique<SumWriter>(with_.files, path, begin == 0);
    run.sums->begin_run(begin, check_sum(bytes));
    if (!run.sums->file())
        note("The check sums of the log " + path + " cannot be written: " + run.sums->failure());
    run.syncer = std::make_unique<FileSyncer>(*run.file, sync_interval_ms_, run.sums->file());
    for (const LoggedPod& pod : header.Pods)
        run.channels[at(pod.Number - 1)] = static_cast<std::int16_t>(pod.Channels.size());
    run.answered = run.channels;
    return run;
}

// The marker of the header follows when all behind it is on the disk.
void LogFile::write_header(Run& run, const std::string& path, std::uint64_t begin,
                           const std::string& bytes) {
    const std::string marker = bytes.substr(0, EntrySize);
    run.file->write_at(begin,
                       std::string(bytes_of(&UnfinishedMarker, 1)) + bytes.substr(EntrySize));
    run.file->sync();
    run.file->write_at(begin, marker);
    run.file->sync();
    with_.files.sync_directory(directory_of(path));
}

void LogFile::note(const std::string& text) const {
    if (notice_) notice_(text);
}

RunHeader LogFile::make_header(std::int16_t kind) const {
    const Fields& of = fields_of(kind);
    RunHeader header;
    header.Kind = kind == ScanLog ? ScanLog : EventLog;
    header.Comment = with_.run_time.Log.*of.Comment;
    header.Date = date_number(with_.loop.wall_time());
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (with_.run_time.Status[at(pod)].*of.Marked) header.Pods.push_back(make_pod(kind, pod));
    return header;
}

LoggedPod LogFile::make_pod(std::int16_t kind, int pod) const {
    const PodStatus& status = with_.run_time.Status[at(pod)];
    const std::int16_t type = GetZAVTypeCode(status.type_code());
    int channels = MaxChannels;
    if (kind == ScanLog) {
        channels = type == NoDevice ? UnknownTypeChannels : channel_count(type);
    } else if (type == Type8R) {
        channels = channel_count(type);
    }
    LoggedPod logged;
    logged.Number = static_cast<std::int16_t>(pod + 1);
    logged.TypeCode = status.type_code();
    for (int channel = 0; channel < channels; ++channel) {
        const ChannelConfig& config = with_.configuration.ZavConfig[at(pod)].Channel[at(channel)];
        logged.Channels.push_back({config.Label, config.Unit});
    }
    return logged;
}

bool LogFile::is_due(std::int16_t kind, int pod) const {
    const Fields& of = fields_of(kind);
    const PodStatus& status = with_.run_time.Status[at(pod)];
    return status.StreamNew[at(of.Stream)] && status.*of.Marked;
}

void LogFile::write_record(std::int16_t kind, std::int32_t time) {
    const Fields& of = fields_of(kind);
    LogState& log = with_.run_time.Log;
    if (kind != ScanLog) count_events();
    const std::int32_t stamp = record_time(log.LogClock, time, with_.loop);
    if (log.*of.Index + entries_needed(kind) >= BlockLimit) finish_block(kind);
    const auto first = static_cast<std::int16_t>(log.*of.Index + 1);
    build_record(kind, stamp);
    put_record(kind, first);
}

void LogFile::count_events() {
    LogState& log = with_.run_time.Log;
    log.EventTotal = 0;
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (is_due(EventLog, pod))
            log.EventTotal = static_cast<std::int16_t>(log.EventTotal +
                                                       with_.run_time.Poll.LastEvent[at(pod)] + 1);
}

// Room for the next record: of scans as the header promises it, of events also as it will be where
// pods were marked for the log since.
int LogFile::entries_needed(std::int16_t kind) const {
    const LogState& log = with_.run_time.Log;
    if (kind == ScanLog) return DataHeadEntries + log.ScanPodCount + log.ScanChannelTotal;
    int actual = DataHeadEntries;
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (is_due(kind, pod)) actual += event_entries(pod, with_.run_time.Poll);
    return std::max(DataHeadEntries + 2 * log.EventPodCount + 3 * log.EventTotal, actual);
}

void LogFile::build_record(std::int16_t kind, std::int32_t time) {
    const Fields& of = fields_of(kind);
    std::vector<float>& block = with_.run_time.Log.*of.Buffer;
    std::int16_t& index = with_.run_time.Log.*of.Index;
    block[at(++index)] = DataMarker;
    block[at(++index)] = static_cast<float>(time);
    const std::int16_t count_at = ++index;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (!is_due(kind, pod)) continue;
        PodStatus& status = with_.run_time.Status[at(pod)];
        if (kind == ScanLog) {
            Run& run = run_of(kind);
            compare_channels(run, pod);
            append_scan(block, index, pod, status, run.channels[at(pod)]);
        } else {
            append_events(block, index, pod, with_.run_time.Poll);
        }
        status.StreamNew[at(of.Stream)] = false;
    }
    block[at(count_at)] = static_cast<float>(index - count_at);
}

// Tells, once for each number, of a pod that answers with another number of channels than the
// header promises.
void LogFile::compare_channels(Run& run, int pod) {
    const auto answered = static_cast<std::int16_t>(with_.run_time.Status[at(pod)].ChannelCount);
    if (std::exchange(run.answered[at(pod)], answered) == answered ||
        answered == run.channels[at(pod)])
        return;
    note("ZAV " + std::to_string(pod + 1) + " answers with " + std::to_string(answered) +
         " channels, the scan log holds " + std::to_string(run.channels[at(pod)]) +
         (answered < run.channels[at(pod)] ? ": those missing are logged as readings in error"
                                           : ": the others are not logged"));
}

// Brings the record that begins at entry `first` into the file, in one piece, marked as one that is
// not yet on the disk. The marker becomes the right one when it is there.
void LogFile::put_record(std::int16_t kind, std::int16_t first) {
    const Fields& of = fields_of(kind);
    LogState& log = with_.run_time.Log;
    std::vector<float>& block = log.*of.Buffer;
    Run& run = run_of(kind);

    const std::uint32_t sum = check_sum(bytes_of(&block[at(first + 1)], at(log.*of.Index - first)));
    const std::int16_t begin = run.block_laid_out ? first : std::int16_t{0};
    const int end = run.block_laid_out ? log.*of.Index + 1 : BlockEntries;
    block[at(first)] = pending_marker(sum);
    run.file->write_at(run.block_at + at(begin) * EntrySize,
                       bytes_of(&block[at(begin)], at(end - begin)));
    block[at(first)] = DataMarker;
    run.block_laid_out = true;
    ++run.records;
    run.sums->add(sum);
    if (run.file->deleted())
        throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory),
                                "Writing \"" + log.*of.FileName + "\"");
    written(run, run.block_at + at(first) * EntrySize, bytes_of(&DataMarker, 1));
}

// A disk that failed is noted beside the log before it is told.
void LogFile::written(Run& run, std::uint64_t offset, std::string_view mark) {
    try {
        run.syncer->written(offset, mark);
    } catch (const std::exception&) {
        run.sums->mark_unsynced(run.records);
        throw;
    }
}

// The block stands in the file from its first record on; one without a record is written now.
void LogFile::finish_block(std::int16_t kind) {
    const Fields& of = fields_of(kind);
    std::vector<float>& block = with_.run_time.Log.*of.Buffer;
    Run& run = run_of(kind);
    if (!run.block_laid_out) {
        run.file->write_at(run.block_at, bytes_of(block.data(), block.size()));
        written(run, run.block_at, {});
    }
    run.block_at += BlockSize;
    run.block_laid_out = false;
    std::fill(block.begin(), block.end(), 0.0F);
    with_.run_time.Log.*of.Index = -1;
}

void LogFile::stop(std::int16_t kind) {
    const Fields& of = fields_of(kind);
    LogState& log = with_.run_time.Log;
    if (log.LogBusy) with_.loop.wait_until([&] { return !log.LogBusy; });
    if (!(log.*of.Logging)) return;
    log.*of.Logging = false;
    Write_Log_File(kind, 1, 0);
    Run run = std::move(run_of(kind));
    run_of(kind) = {};
    finish(run);
    log.*of.Buffer = {};
}

void LogFile::finish(Run& run) {
    try {
        run.syncer->finish();
    } catch (const std::exception&) {
        run.sums->mark_unsynced(run.records);
        throw;
    }
    run.syncer.reset();
    run.sums->end_run(run.records);
    run.file->close();
}

}  // namespace kavorix
