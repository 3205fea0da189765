#include "logging/record_shape.h"

#include <cmath>

#include "model/runtime.h"

namespace kavorix {

namespace {

RecordFault event_fault(const char* values, int count) {
    int read = 0;
    const auto next = [&] { return read_field<float>(values + at(read++) * EntrySize); };
    while (read < count) {
        if (count - read < 2) return RecordFault::Impossible;
        next();  // the pod
        const float last = next();
        const auto room = static_cast<float>(count - read);
        if (!((last + 1) * EventEntries <= room)) return RecordFault::Impossible;
        for (float event = 0; event <= last; ++event)
            for (int field = 0; field < EventEntries; ++field)
                if (!decimal(next())) return RecordFault::Impossible;
    }
    return RecordFault::None;
}

}  // namespace

std::optional<std::int32_t> decimal(float value) {
    if (!(value >= 0 && value < 1E9F)) return std::nullopt;
    return static_cast<std::int32_t>(std::lrint(value));
}

RecordShape::RecordShape(const RunHeader& header) : kind_(header.Kind) {
    for (const LoggedPod& pod : header.Pods)
        parts_.push_back({static_cast<float>(pod.Number), static_cast<int>(pod.Channels.size())});
}

RecordFault RecordShape::fault(float time, const char* values, int count) const {
    return kind_ == ScanLog ? scan_fault(time, values, count) : event_fault(values, count);
}

RecordFault RecordShape::scan_fault(float time, const char* values, int count) const {
    if (!decimal(time)) return RecordFault::Impossible;
    int read = 0;
    for (const Part& part : parts_) {
        if (read == count) break;
        if (read_field<float>(values + at(read) * EntrySize) == part.number)
            read += 1 + part.channels;
        if (read > count) return RecordFault::DoesNotAddUp;
    }
    return read == count ? RecordFault::None : RecordFault::DoesNotAddUp;
}

int RecordShape::longest() const {
    int singles = 0;
    for (const Part& part : parts_)
        singles += kind_ == ScanLog ? 1 + part.channels : 2 + EventEntries * EventTableSize;
    return singles;
}

}  // namespace kavorix
