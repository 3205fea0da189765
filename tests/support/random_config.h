#pragma once

// Configurations from a seed: every pod type and every setting that a configuration file can hold
// and give back. Singles have a value that 7 significant digits hold. Levers: the seed, and for a
// benchmark full_network().

#include <cstdint>
#include <random>

#include "config/config_reader.h"
#include "model/records.h"

namespace kavorix::test {

class RandomConfig {
  public:
    explicit RandomConfig(std::uint32_t seed) : random_(seed) {}

    // 50 pods, about one in nine without a type.
    PodConfigs configs();
    // A pod of a type with random settings on each of its channels.
    PodConfig pod(std::int16_t type);
    InterfaceSettings interface_settings();

    // From `low` to `high`, both included.
    int number(int low, int high);
    bool chance(int percent) { return number(1, 100) <= percent; }

  private:
    template <class List>
    auto pick(const List& list) {
        return list[static_cast<std::size_t>(number(0, static_cast<int>(list.size()) - 1))];
    }
    std::int16_t whole(int low, int high) { return static_cast<std::int16_t>(number(low, high)); }
    std::int16_t flag() { return whole(0, 1); }
    float single();
    Polynomial6 polynomial();
    std::string text(std::size_t longest);
    void pod_settings(PodConfig& pod);
    void universal_settings(PodConfig& pod);
    void channel(PodConfig& pod, int slot);
    void universal_channel(PodConfig& pod, int slot);
    AlarmLimit alarm() { return {1, single(), single()}; }
    AlarmGroup group();

    std::mt19937 random_;
};

// 50 universal pods with 32 channels each and every option set.
PodConfigs full_network();

// A station on which pods of the configured types answer, all with both capability letters.
Connected station_for(const InterfaceSettings& settings, const PodConfigs& configs);

}  // namespace kavorix::test
