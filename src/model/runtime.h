#pragma once

// The state of a running station: what the link, the poll cycle, the logs, the graph and the
// operator's selection keep in common. Facts only: what the screen makes of them is computed where
// it is shown. One struct per subsystem, owned by the station and handed by reference to who uses
// it. Tables over pods are indexed by Pod, arrays over channels by channel number - 1.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/pods.h"
#include "model/records.h"

namespace kavorix {

using ChannelFlags = std::array<bool, MaxChannels>;
using ChannelCodes = std::array<std::int16_t, MaxChannels>;
using ChannelValues = std::array<float, MaxChannels>;
using StreamFlags = std::array<bool, StreamCount>;

inline constexpr float NoPeakMin = 3.4E38F;  // bits 7F7FC99E
inline constexpr float NoPeakMax = -3.4E38F;
inline constexpr std::size_t IdentLength = 12;
inline constexpr std::size_t StreamTextLength = 255;

// Highest result code of a valid reading; above it, the error code is the result code less this.
inline constexpr std::int16_t HighestValidCode = 128;

inline constexpr int EventTableSize = 28;

struct EventEntry {
    std::int16_t EvChannel = 0;
    std::int16_t EvDay = 0;
    std::int16_t EvHour = 0;
    std::int16_t EvMinute = 0;
    std::int16_t EvMonth = 0;
    std::int16_t EvMillisecond = 0;
    std::int16_t EvSecond = 0;
    std::int16_t EvState = 0;  // 1 = high, 0 = low
    std::int16_t EvLevel = 0;  // 1 = level report, 0 = transition
};

// Month, day, hour and minute of the last time-base record.
struct EventTimeBase {
    std::int16_t Month = 0;
    std::int16_t Day = 0;
    std::int16_t Hour = 0;
    std::int16_t Minute = 0;
};

// When something was measured or happened: by the tick count, which only goes forward (and wraps at
// 2^32), and in milliseconds since 1970 UTC, which follow the host's clock.
struct Moment {
    std::uint32_t Ticks = 0;
    std::int64_t Utc_ms = 0;
    bool operator==(const Moment&) const = default;
};

// What a pod last said and what is known of it. Texts are byte buffers without terminator.
struct PodStatus {
    std::array<char, IdentLength> Ident{};  // status reply, "NC" when no pod answers
    std::int16_t Channels = 0;              // by the type in Ident: 10, 20 or 32
    bool ErrorFlag = false;                 // after a link failure, until the operator clears it

    std::int16_t ChannelCount = 0;  // values in the last stream-0 record, as the driver said
    ChannelValues Reading{};
    ChannelValues SingleReading{};
    ChannelValues SingleReading2{};
    std::array<char, StreamTextLength> StreamText{};
    std::array<char, StreamTextLength> Stream3Text{};
    ChannelValues PeakMin{};
    ChannelValues PeakMax{};
    ChannelFlags MinChanged{};
    ChannelFlags MaxChanged{};
    ChannelCodes ResultCode{};
    ChannelCodes SingleResultCode{};
    StreamFlags StreamSeen{};
    StreamFlags StreamNew{};
    bool LogScan = false;
    bool LogEvents = false;
    ChannelFlags ViewChannel{};
    ChannelFlags SingleNew{};
    ChannelFlags SinglePending{};

    bool Found = false;          // by the last discovery: it has a place on the screen
    bool OutOfOrder = false;     // it failed, or said so of itself, at discovery; until cleared
    bool Removed = false;        // out of the poll table after a link failure, until cleared
    bool DataArrived = false;    // in this tick, or on a stream that is seen
    StreamFlags StreamMarked{};  // the stream's indicator shows its number
    std::optional<Moment> ReadingAt;  // of the last stream-0 record
    // The type code in the identification: its first two characters.
    std::string_view type_code() const { return {Ident.data(), 2}; }
    std::string_view ident() const { return {Ident.data(), Ident.size()}; }
    bool connected() const { return type_code() != "NC"; }
    // Whether the scan log or the event log is to record it.
    bool marked_for_log() const { return LogScan || LogEvents; }
    // Channel values that can be used: the driver's count within the arrays.
    int usable_channels() const {
        return ChannelCount < 0 ? 0 : ChannelCount > MaxChannels ? MaxChannels : ChannelCount;
    }
};

using PodStatuses = PodArray<PodStatus>;

struct PollTable {
    PodSet InPollTable;
    int NumInPoll() const { return InPollTable.count(); }
};

enum class ScanState { Idle, ContinuousCommanded, ContinuouslyScanning };

// How the search for an interface card ended.
enum class CardSearch { NotYet, Found, NoneFound };

// The link to the pods and the operator's selection.
struct LinkState {
    std::string CommandString;
    PodSet ZavSelected;
    bool InterfaceSelected = false;
    bool AllSelected = false;
    bool OperationsEnabled = false;  // pods were found: buttons and operation menus can be used
    CardSearch Card = CardSearch::NotYet;
    kavorix::PollTable PollTable;
    PodArray<kavorix::ScanState> ScanState;
    bool ContScanning = false;
    PodSet Triggered;
    PodArray<std::string> StreamRequests;  // tokens sent and not yet answered, each with its ";"
    PodArray<std::string> RequestKinds;    // "0" for "ME", "1" for "IN", oldest first
    std::string FirstPodInputRequests;
    int RequestCount = 0;
    std::int32_t ErrorCount = 0;
    std::int32_t SessionErrorCount = 0;
    std::array<std::int16_t, 4> IeeeBytes{};
    bool TransmitDelayDone = false;
    int Sending = 0;              // pieces of work that talk to the pods, one inside the other
    std::int16_t PollTick = 100;  // ms
    std::vector<std::int16_t> ExcludeAddresses;
    std::array<char, 34> DllVersion{};
    PodSet NotTransmitted;  // configured otherwise than it was last sent, by the last look
    PodSet AwaitingReply;
    int RepliesOutstanding = 0;
    // Failures, clearings and new discoveries of each pod so far: work that is under way goes on
    // without a pod whose count has changed since it began.
    PodArray<std::uint32_t> Interruptions;

    int NumSelected() const { return ZavSelected.count(); }
};

// What the operator was told last.
enum class Severity { Progress, Error };
struct Message {
    std::string Text;
    kavorix::Severity Severity = Severity::Progress;
    std::uint64_t Number = 0;  // counts the messages
};

// A failure that the operator has not taken note of yet.
enum class Fault { None, Transmit, Receive, Pod };

struct Reports {
    kavorix::Message Message;
    Fault LastFault = Fault::None;
};

// The operator's choices for the main window.
struct OperatorOptions {
    bool Expanded = false;         // with the stream indicators
    bool TransmitReminder = true;  // after a change of a configuration
};

// The poll cycle. Times in ms.
struct PollState {
    bool PollStarted = false;  // false makes the next tick a first tick
    std::uint32_t LastTickTime = 0;
    std::int32_t PollCount = 0;
    std::int32_t PollElapsed = 0;
    double TrendElapsed = 0;
    std::uint32_t LastScanLogTime = 0;
    bool EventPending = false;
    int LoadTicks = 0;
    std::int32_t LoadAccum = 0;
    std::optional<double> LoadPercent;  // of the poll rate that the last ten ticks took each
    bool Stream1Arrived = false;
    StreamFlags ViewOpen{};
    Pod ViewedZav = Pod::at_index(0);  // shown by the stream-0 and stream-2 views
    bool Stream3AutoClear = false;     // stream-3 texts are left as received
    PodArray<kavorix::EventTimeBase> EventTimeBase;
    PodArray<std::int16_t> LastEvent = none();  // index of the last filled event entry, -1 = none
    PodArray<std::array<EventEntry, EventTableSize>> Events;

  private:
    static constexpr PodArray<std::int16_t> none() {
        PodArray<std::int16_t> entries;
        entries.fill(-1);
        return entries;
    }
};

// The time of day that log records are stamped with, carried on by the tick counts of the records.
struct LogClock {
    std::int32_t Hours = 0;
    std::int32_t Minutes = 0;
    std::int32_t Seconds = 0;
    std::int32_t Milliseconds = 0;
    std::int32_t LastTick = 0;  // tick count of the last record
    bool Started = false;       // whether there is a last tick
};

// Set-up and state of the scan log and the event log.
struct LogState {
    std::string ScanFileName;
    std::string EventFileName;
    std::string ScanComment;
    std::string EventComment;
    std::int32_t ScanIntervalChoice = 0;  // ms, 0 = poll rate
    std::int32_t ScanLogInterval = 0;     // ms, in force while logging
    bool ScanLogging = false;
    bool EventLogging = false;
    std::vector<float> ScanBuffer;  // the record block of a running log
    std::vector<float> EventBuffer;
    std::int16_t ScanIndex = -1;  // last entry written into the block, -1 = empty
    std::int16_t EventIndex = -1;
    std::int16_t ScanChannelTotal = 0;  // channels of the logged pods, from the header
    std::int16_t ScanPodCount = 0;
    std::int16_t EventPodCount = 0;
    std::int16_t EventTotal = 0;  // events that go into the current record
    bool LogBusy = false;         // a record is being added
    kavorix::LogClock LogClock;

    bool running() const { return ScanLogging || EventLogging; }
};

enum GraphTypes : std::int16_t { TrendGraph = 0, BarGraph = 1 };

using ChosenChannels = PodArray<ChannelFlags>;

struct GraphSettings {
    std::int16_t Type = TrendGraph;
    std::int32_t Hours = 0;    // 0..23
    std::int32_t Minutes = 1;  // 0..59
    double YMaximum = 2.0;
    double YMinimum = -2.0;
    std::string Title = "Trend Graph";
    std::string XTitle = "Time";
    std::string YTitle = "ZAV Data";
    bool GridLines = true;
};

// The graph and its sampler.
struct GraphState {
    GraphSettings Settings;
    bool GraphsSetUp = false;  // the set-up last accepted has at least one channel
    ChosenChannels TrendSelected{};
    bool TrendRunning = false;
    double TrendInterval = 1;  // s
    PodArray<ChannelValues> TrendRef{};
    PodArray<ChannelValues> TrendDev{};
    PodArray<ChannelValues> TrendPeak{};
};

// Everything together, as the station owns it.
struct RunTime {
    PodStatuses Status;
    LinkState Link;
    kavorix::Reports Reports;
    OperatorOptions Options;
    PollState Poll;
    LogState Log;
    GraphState Graph;
};

}  // namespace kavorix
