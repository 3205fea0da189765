#include "sim/faults.h"

#include "sim/sim_clock.h"

namespace kavorix::sim {

Faults::Faults(const std::vector<Fault>& own, const std::vector<Fault>& chaos,
               const RandomSource& random)
    : random_(random) {
    for (const auto* faults : {&own, &chaos})
        for (const Fault& fault : *faults) entries_.push_back({fault});
}

const Fault* Faults::strikes(FaultKind kind, std::int64_t now_ms) {
    const double now_s = seconds(now_ms);
    for (Entry& entry : entries_) {
        const Fault& fault = entry.fault;
        if (fault.kind != kind || entry.spent || now_s < fault.from_s || now_s >= fault.to_s)
            continue;
        if (fault.rate && random_.unit(next_++) >= *fault.rate) continue;
        entry.spent = kind == FaultKind::Reset && !fault.rate;
        return &fault;
    }
    return nullptr;
}

}  // namespace kavorix::sim
