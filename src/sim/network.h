#pragma once

// The simulated pod network: a driver whose pods behave like pods. Its time is the clock's that it
// is given and its chance comes from the scenario's seed, so that a run repeats exactly, in real or
// virtual time. It reads the command bytes by itself and shares no table with the rest of the
// program: what its pods hold is a witness of what was sent.

#include <array>
#include <memory>
#include <vector>

#include "platform/driver.h"
#include "platform/event_loop.h"
#include "sim/faults.h"
#include "sim/pod.h"
#include "sim/scenario.h"
#include "sim/sim_clock.h"

namespace kavorix::sim {

class Network : public Driver {
  public:
    // Its time starts at 0 now. Keeps a reference to the clock.
    Network(Scenario scenario, Clock& host);
    ~Network() override;

    // What a pod (1..50) holds; nothing when the scenario has no pod of that number.
    const HeldSettings* held(int pod) const;

    // Milliseconds of simulated time so far.
    std::int64_t elapsed_ms() { return clock_.now_ms(); }

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
    struct Node {
        Node(const PodSettings& settings, const std::vector<Fault>& chaos, SimClock& clock,
             const RandomSource& random);
        Pod pod;
        Faults faults;
    };
    // The numeric results of a stream, cut to the spans.
    struct Results {
        std::int16_t& count;
        std::span<float> values;
        std::span<std::int16_t> codes;
    };

    bool card_present();
    bool card_open(std::int16_t handle);
    bool suffers(Node& node, FaultKind kind);
    // The pod that answers at a number; nothing without card, power or pod.
    Node* reach(std::int16_t pod, std::int16_t handle);
    bool waiting(Node& node, std::int16_t stream);
    std::optional<std::string> take_text(Node& node, std::int16_t stream, std::size_t size);
    bool take_results(Node& node, std::int16_t stream, const Results& results);
    std::int16_t garbage_status(Node& node);
    void spoil(Node& node, std::string& text, std::size_t room);
    void spoil(Node& node, const Results& results);

    Scenario scenario_;
    Clock& host_;
    SimClock clock_;
    std::array<std::unique_ptr<Node>, MaxZavs> nodes_;
    int connections_ = 0;
    bool powered_ = false;
};

}  // namespace kavorix::sim
