#include "sim/scenario_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "sim/pod_types.h"
#include "toml/toml_reader.h"

namespace kavorix::sim {

namespace {

constexpr double Endless = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();
constexpr double Tiny = 1e-6;

constexpr TomlBounds AnyNumber = {-Largest, Largest, "a number"};
constexpr TomlBounds PositiveTime = {Tiny, 1e9, "a time in seconds, above 0"};
constexpr TomlBounds AnyTime = {0.0, 1e9, "a time in seconds, 0 or more"};
constexpr TomlBounds PartOfOne = {0.0, 1.0, "a number from 0 to 1"};

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

constexpr std::array<Named<SensorKind>, 15> SensorNames = {{
    {"auto", SensorKind::Auto},
    {"voltage", SensorKind::Voltage},
    {"current", SensorKind::Current},
    {"resistance", SensorKind::Resistance},
    {"rtd_100", SensorKind::Platinum100},
    {"rtd_10", SensorKind::Platinum10},
    {"thermocouple_e", SensorKind::ThermocoupleE},
    {"thermocouple_j", SensorKind::ThermocoupleJ},
    {"thermocouple_k", SensorKind::ThermocoupleK},
    {"thermocouple_r", SensorKind::ThermocoupleR},
    {"thermocouple_s", SensorKind::ThermocoupleS},
    {"thermocouple_t", SensorKind::ThermocoupleT},
    {"thermocouple_b", SensorKind::ThermocoupleB},
    {"thermocouple_n", SensorKind::ThermocoupleN},
    {"strain", SensorKind::Strain},
}};

constexpr std::array<Named<FaultKind>, 11> FaultNames = {{
    {"dead", FaultKind::Dead},
    {"transmit_error", FaultKind::TransmitError},
    {"receive_error", FaultKind::ReceiveError},
    {"no_status", FaultKind::NoStatus},
    {"slow_answer", FaultKind::SlowAnswer},
    {"garbage_status", FaultKind::GarbageStatus},
    {"garbage_counts", FaultKind::GarbageCounts},
    {"garbage_values", FaultKind::GarbageValues},
    {"garbage_text", FaultKind::GarbageText},
    {"half_text", FaultKind::HalfText},
    {"reset", FaultKind::Reset},
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

// One [[pod.channel]]: the same settings for one channel or several.
class ChannelGroup {
  public:
    ChannelGroup(const TomlTable& table, PodFamily family, TomlErrors& errors)
        : reader_(table, "pod.channel", errors), family_(family) {}

    // Stores its settings; `taken` marks the channels that were described before.
    void read(PodSettings& pod, std::array<bool, MostChannels>& taken) {
        const auto [first, last] = read_numbers();
        ChannelSettings settings;
        read_signal(settings.signal, first);
        read_sensor(settings);
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
        const TomlBounds bounds = {1, static_cast<double>(most), expected};
        Span span;
        if (reader_.require("number")) reader_.whole("number", span.first, bounds);
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

    void read_sensor(ChannelSettings& settings) {
        if (const auto* sensor = reader_.choice("sensor", SensorNames))
            settings.sensor = sensor->kind;
        reader_.number("lead_ohms", settings.lead_ohms,
                       {0.0, 1e6, "a resistance in ohms, 0 or more"});
        reader_.number("gauge_factor", settings.gauge_factor, AnyNumber);
        reader_.number("gauge_ohms", settings.gauge_ohms,
                       {1.0, 1e6, "a resistance in ohms, 1 or more"});
        reader_.number("imbalance_mv_v", settings.imbalance_mv_v, AnyNumber);
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

    TomlReader reader_;
    PodFamily family_;
    std::int16_t default_mode_ = 0;
};

// The span of a fault; without an end it lasts for good.
void read_span(TomlReader& reader, double& from_s, double& to_s, const std::string& path) {
    to_s = Endless;
    reader.number("from_s", from_s, AnyTime);
    if (reader.number("to_s", to_s, AnyTime) && to_s <= from_s)
        reader.fail("to_s", "must be later than \"" + path + ".from_s\"");
}

constexpr TomlBounds Delay = {1, 60000, "a whole number from 1 to 60000"};

Fault read_fault(const TomlTable& table, TomlErrors& errors) {
    TomlReader reader(table, "pod.fault", errors);
    Fault fault;
    if (reader.require("kind"))
        if (const auto* kind = reader.choice("kind", FaultNames)) fault.kind = kind->kind;
    read_span(reader, fault.from_s, fault.to_s, "pod.fault");
    double rate = 0.0;
    if (reader.number("rate", rate, PartOfOne)) fault.rate = rate;
    reader.whole("delay_ms", fault.delay_ms, Delay);
    reader.finish();
    return fault;
}

CardFault read_card_fault(const TomlTable& table, TomlErrors& errors) {
    TomlReader reader(table, "card.fault", errors);
    CardFault fault;
    read_span(reader, fault.from_s, fault.to_s, "card.fault");
    reader.finish();
    return fault;
}

CardSettings read_card(const TomlTable& table, TomlErrors& errors, std::vector<CardFault>& faults) {
    TomlReader reader(table, "card", errors);
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
    reader.tables(
        "fault", [&](const TomlTable& entry) { faults.push_back(read_card_fault(entry, errors)); });
    reader.finish();
    return card;
}

// [chaos]: a rate for each kind of fault.
std::vector<Fault> read_chaos(const TomlTable& table, TomlErrors& errors) {
    TomlReader reader(table, "chaos", errors);
    Fault common;
    read_span(reader, common.from_s, common.to_s, "chaos");
    reader.whole("delay_ms", common.delay_ms, Delay);
    std::vector<Fault> faults;
    for (const auto& [name, kind] : FaultNames) {
        Fault fault = common;
        fault.kind = kind;
        double rate = 0.0;
        if (!reader.number(name, rate, PartOfOne)) continue;
        fault.rate = rate;
        faults.push_back(fault);
    }
    reader.finish();
    return faults;
}

PodText read_text(const TomlTable& table, TomlErrors& errors) {
    TomlReader reader(table, "pod.text", errors);
    PodText text;
    if (reader.require("text")) reader.text("text", text.text, 1, 255);
    reader.number("at_s", text.at_s, AnyTime);
    reader.number("every_s", text.every_s, PositiveTime);
    reader.finish();
    return text;
}

void read_surroundings(TomlReader& reader, PodSettings& pod) {
    constexpr TomlBounds Celsius = {-273.0, 2000.0, "a temperature in degrees Celsius"};
    reader.number("ambient", pod.ambient, Celsius);
    reader.number("ambient_swing", pod.ambient_swing, AnyNumber);
    reader.number("ambient_period_s", pod.ambient_period_s, PositiveTime);
    double reference = 0.0;
    if (reader.number("reference", reference, Celsius)) pod.reference = reference;
    reader.number("noise", pod.noise, {0.0, 1e6, "a number, 0 or more"});
    reader.number("hum_v", pod.hum_v, {0.0, 1e3, "volts, 0 or more"});
    reader.number("mains_hz", pod.mains_hz, {1.0, 1000.0, "a frequency from 1 to 1000"});
}

// One [[pod]]: the same settings for one pod number or several.
void read_pods(const TomlTable& table, Scenario& scenario, std::array<bool, 51>& taken,
               TomlErrors& errors) {
    constexpr TomlBounds Numbers = {1, 50, "a pod number from 1 to 50"};
    TomlReader reader(table, "pod", errors);
    PodSettings pod;
    int first = 0;
    if (reader.require("number")) reader.whole("number", first, Numbers);
    int last = first;
    if (reader.whole("last", last, Numbers) && last < first)
        reader.fail("last", "must not be below \"pod.number\"");
    if (reader.require("ident")) reader.text("ident", pod.ident, IdentLength, IdentLength);
    reader.whole("answer_ms", pod.answer_ms, {0, 60000, "a whole number from 0 to 60000"});
    read_surroundings(reader, pod);
    const PodFamily family = pod_family(std::string_view(pod.ident).substr(0, 2));
    std::array<bool, MostChannels> wired{};
    reader.tables("channel", [&](const TomlTable& entry) {
        ChannelGroup(entry, family, errors).read(pod, wired);
    });
    reader.tables("fault",
                  [&](const TomlTable& entry) { pod.faults.push_back(read_fault(entry, errors)); });
    reader.tables("text",
                  [&](const TomlTable& entry) { pod.texts.push_back(read_text(entry, errors)); });
    reader.finish();
    for (pod.number = first; pod.number >= 1 && pod.number <= last; ++pod.number) {
        bool& number_taken = taken.at(static_cast<std::size_t>(pod.number));
        if (number_taken)
            reader.fail("number", "names pod " + std::to_string(pod.number) + " again");
        number_taken = true;
        scenario.pods.push_back(pod);
    }
}

Scenario read_scenario(const TomlTable& root, TomlErrors& errors) {
    TomlReader reader(root, "", errors);
    Scenario scenario;
    reader.whole("seed", scenario.seed, {0, 9e15, "a whole number from 0 to 9000000000000000"});
    if (const TomlTable* card = reader.table("card"))
        scenario.card = read_card(*card, errors, scenario.card_faults);
    if (const TomlTable* chaos = reader.table("chaos")) scenario.chaos = read_chaos(*chaos, errors);
    std::array<bool, 51> taken{};
    reader.tables("pod",
                  [&](const TomlTable& entry) { read_pods(entry, scenario, taken, errors); });
    reader.finish();
    std::sort(scenario.pods.begin(), scenario.pods.end(),
              [](const PodSettings& a, const PodSettings& b) { return a.number < b.number; });
    return scenario;
}

}  // namespace

LoadedScenario load_scenario(std::string_view text, std::string_view file_name) {
    TomlErrors errors(file_name);
    LoadedScenario loaded;
    if (const auto document = parse_toml(text, errors)) {
        Scenario scenario = read_scenario(*document, errors);
        if (errors.empty()) loaded.scenario = std::move(scenario);
    }
    loaded.errors = errors.texts();
    return loaded;
}

Scenario demo_scenario() {
    return load_scenario(demo_scenario_text(), "demo.toml").scenario.value();
}

}  // namespace kavorix::sim
