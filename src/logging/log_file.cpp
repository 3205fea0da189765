#include "logging/log_file.h"

#include <algorithm>
#include <system_error>

#include "logging/log_clock.h"
#include "logging/log_records.h"
#include "logging/log_tail.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

constexpr int SyncInterval_ms = 500;

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
    const std::string bytes = encode(header);
    Run run;
    run.file = with_.files.open(path, OpenMode::ReadWrite);
    const std::uint64_t begin = repair_log_end(*run.file);
    run.file->write_at(begin, bytes);
    with_.files.sync_directory(directory_of(path));
    run.block_at = begin + bytes.size();
    run.syncer = std::make_unique<FileSyncer>(*run.file, SyncInterval_ms);
    run.syncer->written();

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
        // A pod of no known type is logged with as many channels as it last answered with.
        channels = type == NoDevice ? status.usable_channels() : channel_count(type);
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

// Room for the next record as the header promises it, or as it will be where a pod answers with
// more channels than its type has.
int LogFile::entries_needed(std::int16_t kind) const {
    const LogState& log = with_.run_time.Log;
    const int promised =
        DataHeadEntries + (kind == ScanLog ? log.ScanPodCount + log.ScanChannelTotal
                                           : 2 * log.EventPodCount + 3 * log.EventTotal);
    int actual = DataHeadEntries;
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (is_due(kind, pod))
            actual += kind == ScanLog ? scan_entries(with_.run_time.Status[at(pod)])
                                      : event_entries(pod, with_.run_time.Poll);
    return std::max(promised, actual);
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
            append_scan(block, index, pod, status);
        } else {
            append_events(block, index, pod, with_.run_time.Poll);
        }
        status.StreamNew[at(of.Stream)] = false;
    }
    block[at(count_at)] = static_cast<float>(index - count_at);
}

// Brings the record that begins at entry `first` into the file. It is written under the marker of
// an unfinished one, which then becomes the right one with a single byte, the sign's: a program
// that is killed leaves no half record that reads as a whole one.
void LogFile::put_record(std::int16_t kind, std::int16_t first) {
    static_assert(UnfinishedMarker == -DataMarker);
    constexpr std::size_t SignByte = EntrySize - 1;
    const Fields& of = fields_of(kind);
    std::vector<float>& block = with_.run_time.Log.*of.Buffer;
    Run& run = run_of(kind);

    const std::int16_t begin = run.block_laid_out ? first : std::int16_t{0};
    const int end = run.block_laid_out ? with_.run_time.Log.*of.Index + 1 : BlockEntries;
    block[at(first)] = UnfinishedMarker;
    run.file->write_at(run.block_at + at(begin) * EntrySize,
                       bytes_of(&block[at(begin)], at(end - begin)));
    block[at(first)] = DataMarker;
    run.block_laid_out = true;
    run.file->write_at(run.block_at + at(first) * EntrySize + SignByte,
                       bytes_of(&block[at(first)], 1).substr(SignByte));
    if (run.file->deleted())
        throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory),
                                "Writing \"" + with_.run_time.Log.*of.FileName + "\"");
    run.syncer->written();
}

// The block stands in the file from its first record on; one without a record is written now.
void LogFile::finish_block(std::int16_t kind) {
    const Fields& of = fields_of(kind);
    std::vector<float>& block = with_.run_time.Log.*of.Buffer;
    Run& run = run_of(kind);
    if (!run.block_laid_out) {
        run.file->write_at(run.block_at, bytes_of(block.data(), block.size()));
        run.syncer->written();
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
    run.syncer.reset();
    run.file->sync();
    run.file->close();
    log.*of.Buffer = {};
}

}  // namespace kavorix
