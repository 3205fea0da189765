#include "sim/network.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kavorix::sim {

namespace {

constexpr std::int16_t Done = 0;
constexpr std::int16_t LinkError = 1;
constexpr std::int16_t NothingYet = 2;
constexpr std::int16_t NoAnswer = -1;

constexpr std::uint64_t FaultChance = 77;

}  // namespace

Network::Node::Node(const PodSettings& settings, const std::vector<Fault>& chaos, SimClock& clock,
                    const RandomSource& random)
    : pod(settings, clock, random), faults(settings.faults, chaos, random.child(FaultChance)) {}

Network::Network(Scenario scenario, Clock& host)
    : scenario_(std::move(scenario)), host_(host), clock_(host) {
    const RandomSource random(scenario_.seed);
    for (const PodSettings& pod : scenario_.pods)
        nodes_.at(static_cast<std::size_t>(pod.number - 1)) = std::make_unique<Node>(
            pod, scenario_.chaos, clock_, random.child(static_cast<std::uint64_t>(pod.number)));
}

Network::~Network() = default;

const HeldSettings* Network::held(int pod) const {
    if (pod < 1 || pod > MaxZavs) return nullptr;
    const auto& node = nodes_.at(static_cast<std::size_t>(pod - 1));
    return node ? &node->pod.held() : nullptr;
}

bool Network::card_present() {
    const double now_s = seconds(clock_.now_ms());
    const auto& faults = scenario_.card_faults;
    return scenario_.card && std::none_of(faults.begin(), faults.end(), [&](const CardFault& f) {
               return now_s >= f.from_s && now_s < f.to_s;
           });
}

bool Network::card_open(std::int16_t handle) {
    return connections_ > 0 && card_present() && handle == scenario_.card->handle;
}

bool Network::suffers(Node& node, FaultKind kind) {
    return node.faults.strikes(kind, clock_.now_ms()) != nullptr;
}

Network::Node* Network::reach(std::int16_t pod, std::int16_t handle) {
    if (!card_open(handle) || !powered_ || pod < 1 || pod > MaxZavs) return nullptr;
    Node* node = nodes_.at(static_cast<std::size_t>(pod - 1)).get();
    if (node == nullptr || suffers(*node, FaultKind::Dead)) return nullptr;
    if (suffers(*node, FaultKind::Reset)) node->pod.reset();
    return node;
}

std::int16_t Network::Zav_Connect(std::int16_t address) {
    if (!card_present() || address != scenario_.card->address) return NoAnswer;
    ++connections_;
    return scenario_.card->handle;
}

std::int16_t Network::Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) {
    if (!card_open(handle)) return LinkError;
    if (!std::exchange(powered_, true))
        for (const auto& node : nodes_)
            if (node) node->pod.reset();
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
    Node* node = reach(pod, handle);
    if (node == nullptr || suffers(*node, FaultKind::TransmitError)) return LinkError;
    node->pod.command(command, !suffers(*node, FaultKind::NoStatus));
    return suffers(*node, FaultKind::GarbageStatus) ? garbage_status(*node) : Done;
}

std::int16_t Network::Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) {
    Node* node = reach(pod, handle);
    if (node == nullptr || suffers(*node, FaultKind::ReceiveError)) return NoAnswer;
    if (suffers(*node, FaultKind::GarbageStatus)) return garbage_status(*node);
    return waiting(*node, stream) ? 1 : 0;
}

std::int16_t Network::Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                                 std::int16_t handle) {
    Node* node = reach(pod, handle);
    if (node == nullptr || suffers(*node, FaultKind::ReceiveError)) return LinkError;
    if (suffers(*node, FaultKind::GarbageStatus)) return garbage_status(*node);
    if (!waiting(*node, stream)) return NothingYet;
    auto text = take_text(*node, stream, buffer.size());
    if (!text) return NothingYet;
    spoil(*node, *text, buffer.size());
    std::copy_n(text->begin(), std::min(text->size(), buffer.size()), buffer.begin());
    return Done;
}

std::int16_t Network::Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                                  std::span<float> values, std::span<std::int16_t> codes,
                                  std::int16_t handle) {
    Node* node = reach(pod, handle);
    if (node == nullptr || suffers(*node, FaultKind::ReceiveError)) return LinkError;
    if (suffers(*node, FaultKind::GarbageStatus)) return garbage_status(*node);
    const Results results{count, values, codes};
    if (!waiting(*node, stream) || !take_results(*node, stream, results)) return NothingYet;
    spoil(*node, results);
    return Done;
}

bool Network::waiting(Node& node, std::int16_t stream) {
    const Fault* slow = node.faults.strikes(FaultKind::SlowAnswer, clock_.now_ms());
    return node.pod.waiting(stream, slow != nullptr ? slow->delay_ms : 0);
}

// A text read takes whatever the stream holds; numbers it drops.
std::optional<std::string> Network::take_text(Node& node, std::int16_t stream, std::size_t size) {
    if (stream == EventStream) return node.pod.take_events(size);
    if (stream == TextStream) return node.pod.take_text();
    const bool taken = stream == ReadingStream ? node.pod.take_scan().has_value()
                                               : node.pod.take_answer().has_value();
    return taken ? std::optional<std::string>("") : std::nullopt;
}

bool Network::take_results(Node& node, std::int16_t stream, const Results& results) {
    if (stream == ReadingStream) {
        const auto scan = node.pod.take_scan();
        if (!scan) return false;
        const auto channels = static_cast<std::size_t>(node.pod.channels());
        for (std::size_t i = 0; i < std::min(channels, results.values.size()); ++i)
            results.values[i] = scan->at(i).value;
        for (std::size_t i = 0; i < std::min(channels, results.codes.size()); ++i)
            results.codes[i] = scan->at(i).code;
        results.count = static_cast<std::int16_t>(channels);
        return true;
    }
    if (stream != RequestStream) return false;
    const auto answer = node.pod.take_answer();
    if (!answer) return false;
    std::copy_n(answer->values.begin(), std::min(answer->values.size(), results.values.size()),
                results.values.begin());
    if (!results.codes.empty()) results.codes.front() = answer->code;
    results.count = static_cast<std::int16_t>(answer->values.size());
    return true;
}

// Any number but those that mean something.
std::int16_t Network::garbage_status(Node& node) {
    const auto bits = static_cast<std::uint16_t>(node.faults.draw());
    const auto status = static_cast<std::int16_t>(bits);
    return status >= NoAnswer && status <= NothingYet ? std::int16_t{1234} : status;
}

void Network::spoil(Node& node, std::string& text, std::size_t room) {
    if (suffers(node, FaultKind::HalfText)) text.resize(text.size() / 2);
    if (!suffers(node, FaultKind::GarbageText)) return;
    text.resize(room);
    for (char& c : text) c = static_cast<char>(node.faults.draw());
}

void Network::spoil(Node& node, const Results& results) {
    if (suffers(node, FaultKind::GarbageValues)) {
        for (float& value : results.values)
            value = std::bit_cast<float>(static_cast<std::uint32_t>(node.faults.draw()));
        for (std::int16_t& code : results.codes)
            code = static_cast<std::int16_t>(static_cast<std::uint16_t>(node.faults.draw()));
    }
    if (suffers(node, FaultKind::GarbageCounts))
        results.count = static_cast<std::int16_t>(static_cast<std::uint16_t>(node.faults.draw()));
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
    host_.block(milliseconds);
}

}  // namespace kavorix::sim
