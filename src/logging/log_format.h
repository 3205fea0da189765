#pragma once

// The layout of log files (docs/log-format.md), for the writer, the reader and the converter alike.
// All numbers are little-endian, "single" is a 4-byte floating-point number, texts are Windows-1252
// bytes.

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "model/records.h"

namespace kavorix {

static_assert(std::endian::native == std::endian::little, "fields are copied as they are");

enum LogKind : std::int16_t { ScanLog = 0, EventLog = 1 };

// Markers: the singles that records begin with.
inline constexpr float HeaderMarker = 1.0F;
inline constexpr float ConfigurationMarker = 2.0F;
inline constexpr float DataMarker = 3.0F;

// Stands in place of a marker while what follows it is being written. Where a run that was killed
// left it, nothing behind it in its block counts.
inline constexpr float UnfinishedMarker = -3.0F;

// Stands in place of the data marker until the record is on the disk: these bits, which no reading
// has, with the low bits of the check sum of what follows. The record counts when that is right;
// else it is like an unfinished one.
inline constexpr std::uint32_t PendingMarkerBits = 0xFFC00000;
inline constexpr std::uint32_t PendingSumMask = 0x003FFFFF;

inline bool is_pending_marker(float marker) {
    return (std::bit_cast<std::uint32_t>(marker) & ~PendingSumMask) == PendingMarkerBits;
}
inline float pending_marker(std::uint32_t check_sum) {
    return std::bit_cast<float>(PendingMarkerBits | (check_sum & PendingSumMask));
}

// What disks and systems write as a whole; after a loss of power, each may be there or not.
inline constexpr std::uint64_t PageSize = 4096;

// A block: whole records from its first entry on, then filler (0.0).
inline constexpr int BlockEntries = 16381;
inline constexpr std::size_t EntrySize = sizeof(float);
inline constexpr std::size_t BlockSize = BlockEntries * EntrySize;
inline constexpr int BlockLimit = 16380;  // a record that could reach this index begins a new block

// A data record: marker, time of day, count of the singles that follow.
inline constexpr int DataHeadEntries = 3;
inline constexpr int MaxDataCount = BlockEntries - DataHeadEntries;

// A reading with a result code above 128.
inline constexpr std::uint32_t ErrorReadingBits = 0x8000000A;
inline constexpr float ErrorReading = std::bit_cast<float>(ErrorReadingBits);

inline constexpr int EventEntries = 3;  // singles of one event

// Channels in the records of pods whose type is not known, and in their headers.
inline constexpr int UnknownTypeChannels = 20;

struct LoggedChannel {
    std::string Label;  // written in MaxLabel bytes
    std::string Unit;   // written in MaxUnit bytes
    bool operator==(const LoggedChannel&) const = default;
};

struct LoggedPod {
    std::int16_t Number = 0;  // 1..50
    std::string TypeCode;     // two bytes
    std::vector<LoggedChannel> Channels;
    bool operator==(const LoggedPod&) const = default;
};

// What a run begins with: the header record and the configuration record.
struct RunHeader {
    std::int16_t Kind = ScanLog;
    std::string Comment;
    std::int32_t Date = 0;  // yyyymmdd
    std::vector<LoggedPod> Pods;
    bool operator==(const RunHeader&) const = default;
};

// The bytes of both records. Labels, units and comment are cut at their widths.
std::string encode(const RunHeader& header);

// A field of type T at `bytes`, which need not be aligned.
template <class T>
T read_field(const char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

template <class T>
void append_field(std::string& bytes, T value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

inline std::string_view bytes_of(const float* entries, std::size_t count) {
    return {reinterpret_cast<const char*>(entries), count * EntrySize};
}

}  // namespace kavorix
