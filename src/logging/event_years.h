#pragma once

#include <array>
#include <cstdint>

#include "base/dates.h"
#include "model/records.h"

namespace kavorix {

// The years of a run's events, which their pods date without one.
//
// The first event of a pod is in the year that puts its month nearest to the latest one of the run
// so far, which at first is the month of the run's start; six months away is the run's year still.
// From then on a month before the pod's last one is one of the next year.
class EventYears {
  public:
    EventYears() = default;
    explicit EventYears(const WallTime& start);

    // The year of the next event of a pod (its number, or anything else that stands in its place).
    // A month that is none moves nothing.
    std::int32_t next(float pod, std::int32_t month);

  private:
    struct PodTime {
        std::int32_t year = 0;
        std::int32_t month = 0;  // of its last event, 0 = none yet
    };

    std::int32_t first_year(std::int32_t month) const;

    std::int32_t latest_ = 0;                  // months since the year 0
    std::array<PodTime, MaxZavs + 1> pods_{};  // the last one for whatever is no pod
};

}  // namespace kavorix
