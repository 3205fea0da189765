#pragma once

// Log files put together by hand, record by record, right or wrong.

#include <string>
#include <vector>

#include "logging/log_format.h"

namespace kavorix::test {

class DatBuilder {
  public:
    std::string bytes;

    DatBuilder& run(std::int16_t kind, const std::string& comment, std::int32_t date,
                    const std::vector<LoggedPod>& pods) {
        bytes += encode({kind, comment, date, pods});
        return *this;
    }
    DatBuilder& singles(const std::vector<float>& values) {
        bytes += bytes_of(values.data(), values.size());
        return *this;
    }
    // A data record with the count that belongs to its values.
    DatBuilder& data(float time, const std::vector<float>& values) {
        return singles({DataMarker, time, static_cast<float>(values.size())}).singles(values);
    }
    DatBuilder& filler(std::size_t entries) {
        bytes.append(entries * EntrySize, '\0');
        return *this;
    }
};

// A pod whose channels are labelled "L1", "L2", ... with the unit "V".
inline LoggedPod logged_pod(std::int16_t number, int channels) {
    LoggedPod pod{number, "7R", {}};
    for (int i = 1; i <= channels; ++i) pod.Channels.push_back({"L" + std::to_string(i), "V"});
    return pod;
}

}  // namespace kavorix::test
