#pragma once

// One seed: a network, an operator, programs that start and end, and what came of it.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "soak/actions.h"
#include "soak/invariants.h"
#include "soak/witness.h"

namespace kavorix::soak {

struct Plan {
    std::uint32_t seed = 1;
    std::vector<Action> actions;
    Sabotage sabotage = Sabotage::None;
};

struct Figures {
    long long actions = 0;
    long long starts = 0;
    long long driver_calls = 0;
    long long virtual_ms = 0;
    long long link_errors = 0;  // counted by the stations
    long long records = 0;      // logged
    long long disk_faults = 0;
    long long kills = 0;

    void add(const Figures& other);
};

struct Outcome {
    std::optional<Breach> breach;
    std::vector<std::string> story;  // what was done, an entry an action
    std::uint64_t digest = 0;        // of everything that crossed driver and disk
    Figures figures;
};

Outcome run(const Plan& plan);

// Days of virtual time on 50 pods, unattended: polling, scanning and logging without operator and
// faults, under the same rules. `on_day` is called at the end of each.
Outcome run_unattended(std::uint32_t seed, int days, const std::function<void(int)>& on_day);

// Live allocations of the whole program, and their bytes.
struct Memory {
    long long blocks = 0;
    long long bytes = 0;
};
Memory memory_now();

}  // namespace kavorix::soak
