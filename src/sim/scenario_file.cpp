#include "sim/scenario_file.h"

#include <cmath>
#include <limits>

#include "sim/pod_types.h"
#include "sim/table_reader.h"

namespace kavorix::sim {

namespace {

constexpr double Endless = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();
constexpr double Tiny = 1e-6;

constexpr Bounds AnyNumber = {-Largest, Largest, "a number"};
constexpr Bounds PositiveTime = {Tiny, 1e9, "a time in seconds, above 0"};
constexpr Bounds AnyTime = {0.0, 1e9, "a time in seconds, 0 or more"};
constexpr Bounds PartOfOne = {0.0, 1.0, "a number from 0 to 1"};

template <class Kind>
struct Named {
    std::string_view name;
    Kind kind;
};

constexpr std::array<Named<SignalKind>, 10> SignalNames = {{
    {"constant", SignalKind::Constant},
    {"sine", SignalKind::Sine},
    {"ramp", SignalKind::Ramp},
    {"square", SignalKind::Square},
    {"pattern", SignalKind::Pattern},
    {"noise", SignalKind::Noise},
    {"random_walk", SignalKind::RandomWalk},
    {"counter", SignalKind::Counter},
    {"open", SignalKind::Open},
    {"absent", SignalKind::Absent},
}};

constexpr std::array<Named<FaultKind>, 4> FaultNames = {{
    {"dead", FaultKind::Dead},
    {"transmit_error", FaultKind::TransmitError},
    {"receive_error", FaultKind::ReceiveError},
    {"no_status", FaultKind::NoStatus},
}};

// "C800": the 16-bit value as the driver takes it.
std::optional<std::int16_t> card_address(std::string_view text) {
    if (text.size() != 4) return std::nullopt;
    unsigned value = 0;
    for (const char c : text) {
        const auto digit = std::string_view("0123456789ABCDEF").find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        value = value * 16 + static_cast<unsigned>(digit);
    }
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
}

CardSettings read_card(const toml::table& table, ScenarioErrors& errors) {
    TableReader reader(table, "card", errors);
    CardSettings card;
    std::string address;
    if (reader.text("address", address, 0, 255)) {
        if (const auto value = card_address(address))
            card.address = *value;
        else
            reader.fail("address", "must be four hexadecimal digits in capitals, such as \"C800\"");
    }
    reader.whole("handle", card.handle, {0, 32767, "a whole number from 0 to 32767"});
    reader.text("version", card.version, 0, 34);
    reader.finish();
    return card;
}

// One [[pod.channel]]: the same settings for one channel or several.
class ChannelGroup {
  public:
    ChannelGroup(const toml::table& table, PodFamily family, ScenarioErrors& errors)
        : reader_(table, "pod.channel", errors), family_(family) {}

    // Stores its settings; `taken` marks the channels that were described before.
    void read(PodSettings& pod, std::array<bool, MostChannels>& taken) {
        const auto [first, last] = read_numbers();
        ChannelSettings settings;
        read_signal(settings.signal, first);
        const bool has_mode =
            reader_.whole("default_mode", default_mode_, {0, 99, "a mode code from 0 to 99"});
        double phase_step = 0.0;
        double offset_step = 0.0;
        reader_.number("phase_step", phase_step, AnyNumber);
        reader_.number("offset_step", offset_step, AnyNumber);
        reader_.finish();
        for (int channel = first; channel >= 1 && channel <= last; ++channel) {
            const auto index = static_cast<std::size_t>(channel - 1);
            if (taken[index])
                reader_.fail("number", "names channel " + std::to_string(channel) + " again");
            taken[index] = true;
            if (has_mode) set_default_mode(settings, channel);
            pod.channels[index] = settings;
            settings.signal.offset += offset_step;
            settings.signal.phase += phase_step;
            settings.signal.phase -= std::floor(settings.signal.phase);
        }
    }

  private:
    struct Span {
        int first = 0;  // 0: not to be had
        int last = 0;
    };
    Span read_numbers() {
        const int most = channels_of(family_);
        const std::string expected = "a channel number from 1 to " + std::to_string(most);
        const Bounds bounds = {1, static_cast<double>(most), expected};
        Span span;
        if (!reader_.require("number")) return span;
        reader_.whole("number", span.first, bounds);
        span.last = span.first;
        if (reader_.whole("last", span.last, bounds) && span.last < span.first)
            reader_.fail("last", "must not be below \"pod.channel.number\"");
        return span;
    }

    void read_signal(Signal& signal, int channel) {
        if (is_digital_channel(family_, channel)) {  // logic levels 0 V and 5 V
            signal.amplitude = 2.5;
            signal.offset = 2.5;
        }
        if (reader_.require("signal"))
            if (const auto* kind = reader_.choice("signal", SignalNames)) signal.kind = kind->kind;
        reader_.number("amplitude", signal.amplitude, AnyNumber);
        reader_.number("offset", signal.offset, AnyNumber);
        reader_.number("period_s", signal.period_s, PositiveTime);
        reader_.number("phase", signal.phase, PartOfOne);
        reader_.number("duty", signal.duty, PartOfOne);
        reader_.number("step_s", signal.step_s, PositiveTime);
        if (reader_.numbers("edges_s", signal.edges_s)) check_edges(signal);
    }

    void check_edges(const Signal& signal) {
        double before = 0.0;
        for (const double edge : signal.edges_s) {
            if (edge <= before || edge >= signal.period_s) {
                reader_.fail("edges_s", "must rise, above 0 and below \"pod.channel.period_s\"");
                return;
            }
            before = edge;
        }
    }

    void set_default_mode(ChannelSettings& settings, int channel) {
        if (accepts_mode(family_, channel, default_mode_))
            settings.default_mode = default_mode_;
        else
            reader_.fail("default_mode",
                         "is not a mode of channel " + std::to_string(channel) + " of this pod");
    }

    TableReader reader_;
    PodFamily family_;
    std::int16_t default_mode_ = 0;
};

Fault read_fault(const toml::table& table, ScenarioErrors& errors) {
    TableReader reader(table, "pod.fault", errors);
    Fault fault;
    fault.to_s = Endless;
    if (reader.require("kind"))
        if (const auto* kind = reader.choice("kind", FaultNames)) fault.kind = kind->kind;
    reader.number("from_s", fault.from_s, AnyTime);
    if (reader.number("to_s", fault.to_s, AnyTime) && fault.to_s <= fault.from_s)
        reader.fail("to_s", "must be later than \"pod.fault.from_s\"");
    reader.finish();
    return fault;
}

PodText read_text(const toml::table& table, ScenarioErrors& errors) {
    TableReader reader(table, "pod.text", errors);
    PodText text;
    if (reader.require("text")) reader.text("text", text.text, 1, 255);
    reader.number("at_s", text.at_s, AnyTime);
    reader.number("every_s", text.every_s, PositiveTime);
    reader.finish();
    return text;
}

PodSettings read_pod(const toml::table& table, ScenarioErrors& errors) {
    TableReader reader(table, "pod", errors);
    PodSettings pod;
    if (reader.require("number"))
        reader.whole("number", pod.number, {1, 50, "a pod number from 1 to 50"});
    if (reader.require("ident")) reader.text("ident", pod.ident, IdentLength, IdentLength);
    reader.whole("answer_ms", pod.answer_ms, {0, 60000, "a whole number from 0 to 60000"});
    const PodFamily family = pod_family(std::string_view(pod.ident).substr(0, 2));
    std::array<bool, MostChannels> taken{};
    reader.tables("channel", [&](const toml::table& entry) {
        ChannelGroup(entry, family, errors).read(pod, taken);
    });
    reader.tables("fault", [&](const toml::table& entry) {
        pod.faults.push_back(read_fault(entry, errors));
    });
    reader.tables("text",
                  [&](const toml::table& entry) { pod.texts.push_back(read_text(entry, errors)); });
    reader.finish();
    return pod;
}

Scenario read_scenario(const toml::table& root, ScenarioErrors& errors) {
    TableReader reader(root, "", errors);
    Scenario scenario;
    reader.whole("seed", scenario.seed, {0, 9e15, "a whole number from 0 to 9000000000000000"});
    if (const toml::table* card = reader.table("card")) scenario.card = read_card(*card, errors);
    std::array<bool, 51> taken{};
    reader.tables("pod", [&](const toml::table& entry) {
        PodSettings pod = read_pod(entry, errors);
        const auto number = static_cast<std::size_t>(pod.number);
        if (taken[number] && entry.contains("number"))
            errors.add(entry.get("number")->source(),
                       "\"pod.number\" names pod " + std::to_string(number) + " again");
        taken[number] = true;
        scenario.pods.push_back(std::move(pod));
    });
    reader.finish();
    std::sort(scenario.pods.begin(), scenario.pods.end(),
              [](const PodSettings& a, const PodSettings& b) { return a.number < b.number; });
    return scenario;
}

}  // namespace

LoadedScenario load_scenario(std::string_view text, std::string_view file_name) {
    ScenarioErrors errors(file_name);
    LoadedScenario loaded;
    try {
        Scenario scenario = read_scenario(toml::parse(text, file_name), errors);
        if (errors.empty()) loaded.scenario = std::move(scenario);
    } catch (const toml::parse_error& error) {
        errors.add(error.source(), error.description());
    }
    loaded.errors = errors.texts();
    return loaded;
}

Scenario demo_scenario() {
    return load_scenario(demo_scenario_text(), "demo.toml").scenario.value();
}

}  // namespace kavorix::sim
