#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "logging/log_format.h"

namespace kavorix {

enum class RecordFault {
    None,
    Impossible,   // a field holds what none can hold
    DoesNotAddUp  // the pods' parts of a scan record do not use exactly its count of singles
};

// What the data records of a run must be like: those who read logs agree by asking this.
class RecordShape {
  public:
    RecordShape() = default;  // records outside of a run, which hold nothing
    explicit RecordShape(const RunHeader& header);

    RecordFault fault(float time, const char* values, int count) const;

    // Singles that a record of all pods has behind its count, at most.
    int longest() const;

  private:
    struct Part {
        float number = 0;
        int channels = 0;
    };

    RecordFault scan_fault(float time, const char* values, int count) const;

    std::int16_t kind_ = ScanLog;
    std::vector<Part> parts_;
};

// A single that stands for a decimal number without sign of up to nine digits, such as a time.
std::optional<std::int32_t> decimal(float value);

}  // namespace kavorix
