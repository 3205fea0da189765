#pragma once

// Which faults strike a pod at a call. Every question of one that has a rate draws from the pod's
// own source of chance, so that a run with the same calls repeats exactly.

#include <cstdint>
#include <vector>

#include "sim/random.h"
#include "sim/scenario.h"

namespace kavorix::sim {

class Faults {
  public:
    // A pod's own faults and those that strike every pod.
    Faults(const std::vector<Fault>& own, const std::vector<Fault>& chaos,
           const RandomSource& random);

    // The first fault of a kind that strikes now; nothing when there is none.
    const Fault* strikes(FaultKind kind, std::int64_t now_ms);

    // Random bits for what a fault makes up.
    std::uint64_t draw() { return random_.bits(next_++); }

  private:
    struct Entry {
        Fault fault;
        bool spent = false;  // a reset that happens once has happened
    };
    std::vector<Entry> entries_;
    RandomSource random_;
    std::int64_t next_ = 0;
};

}  // namespace kavorix::sim
