#include "soak/networks.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "soak/dice.h"

namespace kavorix::soak {

namespace {

// Type, connector, channels.
struct PodKind {
    const char* code;
    char connector;
    int channels;
    bool digital;
};
constexpr std::array PodKinds = {
    PodKind{"7R", 'A', 20, false}, PodKind{"7S", 'B', 10, false}, PodKind{"7T", 'D', 20, false},
    PodKind{"7U", 'D', 20, false}, PodKind{"7V", 'J', 20, false}, PodKind{"7W", 'J', 20, false},
    PodKind{"8R", 'C', 20, true},  PodKind{"8S", 'F', 32, true},
};

constexpr std::array Addresses = {static_cast<std::int16_t>(0xC800),
                                  static_cast<std::int16_t>(0xCB00),
                                  static_cast<std::int16_t>(0xD000)};

sim::Signal analog_signal(Dice& dice) {
    constexpr std::array Signals = {sim::SignalKind::Constant, sim::SignalKind::Sine,
                                    sim::SignalKind::Ramp,     sim::SignalKind::Noise,
                                    sim::SignalKind::Counter,  sim::SignalKind::RandomWalk};
    sim::Signal signal;
    signal.kind = dice.chance(4) ? sim::SignalKind::Open : dice.pick(Signals);
    signal.amplitude = dice.number(0, 50) / 10.0;
    signal.offset = dice.number(-50, 50) / 10.0;
    signal.period_s = dice.number(1, 600);
    return signal;
}

sim::Signal digital_signal(Dice& dice) {
    sim::Signal signal;
    signal.kind = dice.chance(20) ? sim::SignalKind::Constant : sim::SignalKind::Square;
    signal.amplitude = 2.5;
    signal.offset = 2.5;
    signal.period_s = dice.number(5, 3000) / 10.0;
    return signal;
}

sim::PodSettings random_pod(Dice& dice, int number) {
    const PodKind& kind = dice.pick(PodKinds);
    sim::PodSettings pod;
    pod.number = number;
    pod.ident = std::string(kind.code) + kind.connector + (dice.chance(70) ? 'A' : ' ') + " 0" +
                (dice.chance(70) ? 'F' : ' ') + " 1.0" + std::to_string(dice.below(10));
    for (int channel = 0; channel < kind.channels; ++channel) {
        sim::ChannelSettings& wired = pod.channels[static_cast<std::size_t>(channel)];
        const bool digital = kind.digital || (kind.connector == 'J' && channel >= 18);
        wired.signal = digital ? digital_signal(dice) : analog_signal(dice);
        if (kind.digital && dice.chance(30)) wired.default_mode = std::int16_t{76};
    }
    if (dice.chance(20))
        pod.texts.push_back({"E00" + std::to_string(dice.below(10)) + " C1 2",
                             static_cast<double>(dice.below(60)),
                             static_cast<double>(dice.number(5, 300))});
    return pod;
}

sim::Fault random_fault(Dice& dice) {
    constexpr std::array FaultKinds = {
        sim::FaultKind::Dead,          sim::FaultKind::TransmitError, sim::FaultKind::ReceiveError,
        sim::FaultKind::NoStatus,      sim::FaultKind::SlowAnswer,    sim::FaultKind::GarbageStatus,
        sim::FaultKind::GarbageCounts, sim::FaultKind::GarbageValues, sim::FaultKind::GarbageText,
        sim::FaultKind::HalfText,      sim::FaultKind::Reset};
    sim::Fault fault;
    fault.kind = dice.pick(FaultKinds);
    fault.from_s = dice.below(3000);
    fault.to_s = fault.from_s + (dice.chance(30) ? 1e9 : dice.number(1, 600));
    if (fault.kind != sim::FaultKind::Dead && dice.chance(70))
        fault.rate = dice.number(1, 1000) / 10000.0;
    fault.delay_ms = dice.number(1, 5000);
    return fault;
}

sim::Scenario random_scenario(Dice& dice, std::int16_t address, std::int16_t handle) {
    sim::Scenario scenario;
    scenario.seed = dice.bits();
    scenario.card = sim::CardSettings{address, handle, "Soak network"};
    const int pods = dice.chance(5) ? 50 : dice.number(0, 14);
    for (int number = 1; number <= MaxZavs; ++number)
        if (dice.below(MaxZavs) < pods) {
            scenario.pods.push_back(random_pod(dice, number));
            while (dice.chance(35)) scenario.pods.back().faults.push_back(random_fault(dice));
        }
    if (dice.chance(15)) {
        const double from = dice.below(3000);
        scenario.card_faults.push_back({from, from + dice.number(1, 120)});
    }
    if (dice.chance(40)) {
        sim::Fault fault = random_fault(dice);
        fault.rate = dice.number(1, 20) / 100000.0;
        fault.to_s = 1e9;
        scenario.chaos.push_back(fault);
    }
    return scenario;
}

bool has_resets(const sim::Scenario& scenario) {
    const auto resets = [](const std::vector<sim::Fault>& faults) {
        return std::any_of(faults.begin(), faults.end(), [](const sim::Fault& fault) {
            return fault.kind == sim::FaultKind::Reset;
        });
    };
    return resets(scenario.chaos) ||
           std::any_of(scenario.pods.begin(), scenario.pods.end(),
                       [&](const sim::PodSettings& pod) { return resets(pod.faults); });
}

}  // namespace

Cards::Cards(std::uint32_t seed, Clock& clock) {
    Dice dice(seed);
    const int first = dice.below(static_cast<int>(Addresses.size()));
    const int cards = dice.chance(40) ? 2 : 1;
    for (int card = 0; card < cards; ++card) {
        const auto index = static_cast<std::size_t>(first + card) % Addresses.size();
        add(random_scenario(dice, Addresses[index], static_cast<std::int16_t>(card)), clock);
    }
}

std::unique_ptr<Cards> Cards::full(std::uint32_t seed, Clock& clock) {
    Dice dice(seed);
    sim::Scenario scenario;
    scenario.seed = seed;
    scenario.card = sim::CardSettings{Addresses.front(), 0, "Soak network"};
    for (int number = 1; number <= MaxZavs; ++number)
        scenario.pods.push_back(random_pod(dice, number));
    std::unique_ptr<Cards> cards(new Cards);
    cards->add(std::move(scenario), clock);
    return cards;
}

void Cards::add(sim::Scenario scenario, Clock& clock) {
    resets_ = resets_ || has_resets(scenario);
    pods_ += static_cast<int>(scenario.pods.size());
    addresses_.push_back(scenario.card->address);
    networks_.push_back(std::make_unique<sim::Network>(std::move(scenario), clock));
}

const sim::Network* Cards::network(std::int16_t handle) const {
    return handle >= 0 && handle < static_cast<int>(networks_.size())
               ? networks_[static_cast<std::size_t>(handle)].get()
               : nullptr;
}

sim::Network* Cards::of(std::int16_t handle) {
    return const_cast<sim::Network*>(std::as_const(*this).network(handle));
}

std::int16_t Cards::Zav_Connect(std::int16_t address) {
    for (const auto& network : networks_)
        if (const auto handle = network->Zav_Connect(address); handle >= 0) return handle;
    return -1;
}

std::int16_t Cards::Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) {
    auto* network = of(handle);
    return network ? network->Zav_Init(present, handle) : std::int16_t{1};
}

void Cards::Zav_Disconnect(std::int16_t handle) {
    if (auto* network = of(handle)) network->Zav_Disconnect(handle);
}

std::int16_t Cards::Zav_Tx(std::int16_t pod, std::string_view command, std::int16_t handle) {
    auto* network = of(handle);
    return network ? network->Zav_Tx(pod, command, handle) : std::int16_t{1};
}

std::int16_t Cards::Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) {
    auto* network = of(handle);
    return network ? network->Zav_Test(pod, stream, handle) : std::int16_t{-1};
}

std::int16_t Cards::Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                               std::int16_t handle) {
    auto* network = of(handle);
    return network ? network->Zav_String(pod, stream, buffer, handle) : std::int16_t{1};
}

std::int16_t Cards::Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                                std::span<float> values, std::span<std::int16_t> codes,
                                std::int16_t handle) {
    auto* network = of(handle);
    return network ? network->Zav_Numeric(pod, stream, count, values, codes, handle)
                   : std::int16_t{1};
}

std::array<std::int16_t, 4> Cards::Zav_ValToByte(float value) {
    return networks_.front()->Zav_ValToByte(value);
}

void Cards::Zav_DLLVersion(std::span<char, 34> text) {
    networks_.front()->Zav_DLLVersion(text);
}

void Cards::Zav_PowerOff(std::int16_t handle) {
    if (auto* network = of(handle)) network->Zav_PowerOff(handle);
}

void Cards::Zav_DLLDelay(std::int16_t milliseconds) {
    networks_.front()->Zav_DLLDelay(milliseconds);
}

}  // namespace kavorix::soak
