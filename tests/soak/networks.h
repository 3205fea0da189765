#pragma once

// Pod networks with faults from a seed.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/driver.h"
#include "platform/event_loop.h"
#include "sim/network.h"

namespace kavorix::soak {

// Two interface cards, each with a simulated network of its own, behind one driver.
class Cards : public Driver {
  public:
    Cards(std::uint32_t seed, Clock& clock);
    // One card with 50 pods of every type, all channels wired; no faults.
    static std::unique_ptr<Cards> full(std::uint32_t seed, Clock& clock);

    const sim::Network* network(std::int16_t handle) const;
    const std::vector<std::int16_t>& addresses() const { return addresses_; }
    // Some pod may reset itself: what it holds then is not what it was sent.
    bool resets() const { return resets_; }
    int pods() const { return pods_; }

    std::int16_t Zav_Connect(std::int16_t address) override;
    std::int16_t Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) override;
    void Zav_Disconnect(std::int16_t handle) override;
    std::int16_t Zav_Tx(std::int16_t pod, std::string_view command, std::int16_t handle) override;
    std::int16_t Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) override;
    std::int16_t Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                            std::int16_t handle) override;
    std::int16_t Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                             std::span<float> values, std::span<std::int16_t> codes,
                             std::int16_t handle) override;
    std::array<std::int16_t, 4> Zav_ValToByte(float value) override;
    void Zav_DLLVersion(std::span<char, 34> text) override;
    void Zav_PowerOff(std::int16_t handle) override;
    void Zav_DLLDelay(std::int16_t milliseconds) override;

  private:
    Cards() = default;
    void add(sim::Scenario scenario, Clock& clock);
    sim::Network* of(std::int16_t handle);

    std::vector<std::unique_ptr<sim::Network>> networks_;  // index: handle
    std::vector<std::int16_t> addresses_;
    bool resets_ = false;
    int pods_ = 0;
};

}  // namespace kavorix::soak
