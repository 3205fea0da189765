#include "sim/network.h"

#include <algorithm>
#include <utility>

namespace kavorix::sim {

namespace {

constexpr std::int16_t Done = 0;
constexpr std::int16_t LinkError = 1;
constexpr std::int16_t NothingYet = 2;
constexpr std::int16_t NoAnswer = -1;

}  // namespace

Network::Network(Scenario scenario, EventLoop& loop)
    : scenario_(std::move(scenario)), loop_(loop), clock_(loop) {
    const RandomSource random(scenario_.seed);
    for (const PodSettings& pod : scenario_.pods)
        pods_.at(static_cast<std::size_t>(pod.number - 1)) = std::make_unique<Pod>(
            pod, clock_, random.child(static_cast<std::uint64_t>(pod.number)));
}

Network::~Network() = default;

const HeldSettings* Network::held(int pod) const {
    if (pod < 1 || pod > MaxZavs) return nullptr;
    const auto& found = pods_.at(static_cast<std::size_t>(pod - 1));
    return found ? &found->held() : nullptr;
}

bool Network::card_open(std::int16_t handle) const {
    return scenario_.card && connections_ > 0 && handle == scenario_.card->handle;
}

bool Network::suffers(const Pod& pod, FaultKind kind) {
    const double now_s = seconds(clock_.now_ms());
    const auto& faults = pod.settings().faults;
    return std::any_of(faults.begin(), faults.end(), [&](const Fault& fault) {
        return fault.kind == kind && now_s >= fault.from_s && now_s < fault.to_s;
    });
}

Pod* Network::reach(std::int16_t pod, std::int16_t handle) {
    if (!card_open(handle) || !powered_ || pod < 1 || pod > MaxZavs) return nullptr;
    Pod* found = pods_.at(static_cast<std::size_t>(pod - 1)).get();
    return found != nullptr && !suffers(*found, FaultKind::Dead) ? found : nullptr;
}

std::int16_t Network::Zav_Connect(std::int16_t address) {
    if (!scenario_.card || address != scenario_.card->address) return NoAnswer;
    ++connections_;
    return scenario_.card->handle;
}

std::int16_t Network::Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) {
    if (!card_open(handle)) return LinkError;
    if (!std::exchange(powered_, true))
        for (const auto& pod : pods_)
            if (pod) pod->reset();
    for (std::size_t i = 0; i < present.size(); ++i) {
        const bool answers = reach(static_cast<std::int16_t>(i + 1), handle) != nullptr;
        present[i] = present[i] == 1 && answers ? 1 : 0;
    }
    return Done;
}

void Network::Zav_Disconnect(std::int16_t handle) {
    if (card_open(handle)) --connections_;
}

std::int16_t Network::Zav_Tx(std::int16_t pod, std::string_view command, std::int16_t handle) {
    Pod* found = reach(pod, handle);
    if (found == nullptr || suffers(*found, FaultKind::TransmitError)) return LinkError;
    found->command(command, !suffers(*found, FaultKind::NoStatus));
    return Done;
}

std::int16_t Network::Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) {
    Pod* found = reach(pod, handle);
    if (found == nullptr || suffers(*found, FaultKind::ReceiveError)) return NoAnswer;
    return found->waiting(stream) ? 1 : 0;
}

std::int16_t Network::Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                                 std::int16_t handle) {
    Pod* found = reach(pod, handle);
    if (found == nullptr || suffers(*found, FaultKind::ReceiveError)) return LinkError;
    bool taken = false;
    if (stream == ReadingStream) taken = found->take_scan({}, {});
    if (stream == RequestStream) taken = found->take_answer().has_value();
    if (stream == EventStream) taken = found->take_events(buffer);
    if (stream == TextStream) taken = found->take_text(buffer);
    return taken ? Done : NothingYet;
}

std::int16_t Network::Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                                  std::span<float> values, std::span<std::int16_t> codes,
                                  std::int16_t handle) {
    Pod* found = reach(pod, handle);
    if (found == nullptr || suffers(*found, FaultKind::ReceiveError)) return LinkError;
    if (stream == ReadingStream && found->take_scan(values, codes)) {
        count = static_cast<std::int16_t>(found->channels());
        return Done;
    }
    if (stream != RequestStream) return NothingYet;
    const auto answer = found->take_answer();
    if (!answer) return NothingYet;
    std::copy_n(answer->values.begin(), std::min(answer->values.size(), values.size()),
                values.begin());
    if (!codes.empty()) codes.front() = answer->code;
    count = static_cast<std::int16_t>(answer->values.size());
    return Done;
}

std::array<std::int16_t, 4> Network::Zav_ValToByte(float value) {
    const auto bytes = bytes_of(value);
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

void Network::Zav_DLLVersion(std::span<char, 34> text) {
    const std::string version = scenario_.card ? scenario_.card->version : CardSettings().version;
    std::copy_n(version.begin(), std::min(version.size(), text.size()), text.begin());
}

void Network::Zav_PowerOff(std::int16_t handle) {
    if (card_open(handle)) powered_ = false;
}

void Network::Zav_DLLDelay(std::int16_t milliseconds) {
    loop_.block(milliseconds);
}

}  // namespace kavorix::sim
