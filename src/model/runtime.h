#pragma once

// The state of a running station: what the link, the poll cycle, the logs, the graph and the
// operator's selection keep in common. One struct per subsystem, owned by the station and handed by
// reference to who uses it. Arrays over pods have the index pod number - 1, arrays over channels
// the index channel number - 1.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/records.h"

namespace kavorix {

using PodFlags = std::array<std::int16_t, MaxZavs>;
using ChannelFlags = std::array<std::int16_t, MaxChannels>;
using ChannelValues = std::array<float, MaxChannels>;

inline constexpr float NoPeakMin = 3.4E38F;  // bits 7F7FC99E
inline constexpr float NoPeakMax = -3.4E38F;
inline constexpr std::size_t IdentLength = 12;
inline constexpr std::size_t StreamTextLength = 255;

// Highest result code of a valid reading; above it, the error code is the result code less this.
inline constexpr std::int16_t HighestValidCode = 128;

// `IconState`: states of a pod and of its icon.
enum IconStates : std::int16_t {
    Resting = 0,
    SelectedResting = 1,
    DataArrived = 2,
    SelectedDataArrived = 3,
    Removed = 4,
    LoggingResting = 5,
    SelectedLoggingResting = 6,
    LoggingDataArrived = 7,
    SelectedLoggingDataArrived = 8
};

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

// What a pod last said. Texts are byte buffers without terminator.
struct PodStatus {
    std::array<char, IdentLength> Ident{};  // status reply, "NC" when no pod answers
    std::int16_t Channels = 0;              // by the type in Ident: 10, 20 or 32
    std::int16_t ErrorFlag = 0;             // 1 after a link failure, until the operator clears it

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
    ChannelFlags ResultCode{};
    ChannelFlags SingleResultCode{};
    std::int16_t IconState = Resting;
    std::array<std::int16_t, StreamCount> StreamSeen{};
    std::array<std::int16_t, StreamCount> StreamNew{};
    std::int16_t LogScan = 0;
    std::int16_t LogEvents = 0;
    ChannelFlags ViewChannel{};
    ChannelFlags SingleNew{};
    ChannelFlags SinglePending{};

    // The type code in the identification: its first two characters.
    std::string_view type_code() const { return {Ident.data(), 2}; }
    std::string_view ident() const { return {Ident.data(), Ident.size()}; }
    bool connected() const { return type_code() != "NC"; }
    // Channel values that can be used: the driver's count within the arrays.
    int usable_channels() const {
        return ChannelCount < 0 ? 0 : ChannelCount > MaxChannels ? MaxChannels : ChannelCount;
    }
};

using PodStatuses = std::array<PodStatus, MaxZavs>;

struct PollTable {
    PodFlags InPollTable{};
    std::int16_t NumInPoll = 0;
};

// `ScanState` values.
enum ScanStates : std::int16_t { Idle = 0, ContinuousCommanded = 1, ContinuouslyScanning = 2 };

// The link to the pods and the operator's selection.
struct LinkState {
    std::string CommandString;
    PodFlags ZavSelected{};
    std::int16_t NumSelected = 0;
    std::int16_t InterfaceSelected = 0;
    std::int16_t AllSelected = 0;
    std::int16_t OperationsEnabled =
        0;  // 1 once pods were found: buttons and operation menus can be used
    kavorix::PollTable PollTable;
    PodFlags ScanState{};
    std::int16_t ContScanning = 0;
    PodFlags Triggered{};
    std::array<std::string, MaxZavs>
        StreamRequests;  // tokens sent and not yet answered, each with its ";"
    std::string FirstPodInputRequests;
    std::int16_t RequestCount = 0;
    std::int32_t ErrorCount = 0;
    std::int32_t SessionErrorCount = 0;
    std::array<std::int16_t, 4> IeeeBytes{};
    bool TransmitDelayDone = false;
    std::int16_t PollTick = 100;  // ms
    std::vector<std::int16_t> ExcludeAddresses;
    std::array<char, 34> DllVersion{};
    PodFlags AwaitingReply{};
    std::int16_t RepliesOutstanding = 0;
};

// The poll cycle. Times in ms.
struct PollState {
    std::int16_t PollStarted = 0;  // 0 makes the next tick a first tick
    std::uint32_t LastTickTime = 0;
    std::int32_t PollCount = 0;
    std::int32_t PollElapsed = 0;
    double TrendElapsed = 0;
    std::uint32_t LastScanLogTime = 0;
    std::int16_t EventPending = 0;
    std::int16_t LoadTicks = 0;
    std::int32_t LoadAccum = 0;
    std::int16_t Stream1Arrived = 0;
    std::array<std::int16_t, StreamCount> ViewOpen{};
    std::int16_t ViewedZav = 0;         // pod index shown by the stream-0 and stream-2 views
    std::int16_t Stream3AutoClear = 0;  // 1 = stream-3 texts are left as received
    std::array<kavorix::EventTimeBase, MaxZavs> EventTimeBase;
    PodFlags LastEvent = filled(-1);  // index of the last filled event entry, -1 = none
    std::array<std::array<EventEntry, EventTableSize>, MaxZavs> Events;
    std::array<std::string, MaxZavs> RequestKinds;  // "0" for "ME", "1" for "IN", oldest first

    static constexpr PodFlags filled(std::int16_t value) {
        PodFlags flags{};
        flags.fill(value);
        return flags;
    }
};

// The time of day that log records are stamped with, carried on by the tick counts of the records.
struct LogClock {
    std::int32_t Hours = 0;
    std::int32_t Minutes = 0;
    std::int32_t Seconds = 0;
    std::int32_t Milliseconds = 0;
    std::int32_t LastTick = 0;  // tick count of the last record
    std::int16_t Started = 0;   // 0 = no last tick yet
};

// Set-up and state of the scan log and the event log.
struct LogState {
    std::string ScanFileName;
    std::string EventFileName;
    std::string ScanComment;
    std::string EventComment;
    std::int32_t ScanIntervalChoice = 0;  // ms, 0 = poll rate
    std::int32_t ScanLogInterval = 0;     // ms, in force while logging
    std::int16_t ScanLogging = 0;
    std::int16_t EventLogging = 0;
    std::vector<float> ScanBuffer;  // the record block of a running log
    std::vector<float> EventBuffer;
    std::int16_t ScanIndex = -1;  // last entry written into the block, -1 = empty
    std::int16_t EventIndex = -1;
    std::int16_t ScanChannelTotal = 0;  // channels of the logged pods, from the header
    std::int16_t ScanPodCount = 0;
    std::int16_t EventPodCount = 0;
    std::int16_t EventTotal = 0;  // events that go into the current record
    std::int16_t LogBusy = 0;     // 1 while a record is added
    kavorix::LogClock LogClock;
};

enum GraphTypes : std::int16_t { TrendGraph = 0, BarGraph = 1 };

using ChosenChannels = std::array<ChannelFlags, MaxZavs>;

struct GraphSettings {
    std::int16_t Type = TrendGraph;
    std::int32_t Hours = 0;    // 0..23
    std::int32_t Minutes = 1;  // 0..59
    double YMaximum = 2.0;
    double YMinimum = -2.0;
    std::string Title = "Trend Graph";
    std::string XTitle = "Time";
    std::string YTitle = "ZAV Data";
    std::int16_t GridLines = 1;
};

// The graph and its sampler.
struct GraphState {
    GraphSettings Settings;
    std::int16_t GraphsSetUp = 0;  // 1 when the set-up last accepted has at least one channel
    ChosenChannels TrendSelected{};
    std::int16_t TrendRunning = 0;
    double TrendInterval = 1;  // s
    std::array<ChannelValues, MaxZavs> TrendRef{};
    std::array<ChannelValues, MaxZavs> TrendDev{};
    std::array<ChannelValues, MaxZavs> TrendPeak{};
};

// Everything together, as the station owns it.
struct RunTime {
    PodStatuses Status;
    LinkState Link;
    PollState Poll;
    LogState Log;
    GraphState Graph;
};

constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

}  // namespace kavorix
