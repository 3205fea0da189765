// What the simulated network costs a station that polls it: one poll tick of 100 ms over 50 pods
// with all four streams asked and read, against a bare loop that only copies 50 times 32 values and
// codes. Idle pods, 50 switch pods, 50 universal pods on thermocouples, all scanning without a
// pause; and an hour that passes without a question.

#include <benchmark/benchmark.h>

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "platform/virtual_event_loop.h"
#include "sim/network.h"
#include "sim/scenario_file.h"

namespace {

using namespace kavorix;

constexpr const char* Thermocouples = R"(
[card]
[[pod]]
number = 1
last = 50
ident = "7VJA 0F 1.00"
[[pod.channel]]
number = 1
last = 18
signal = "random_walk"
amplitude = 50.0
offset = 400.0
[[pod.channel]]
number = 19
last = 20
signal = "square"
)";

constexpr const char* Switches = R"(
[card]
[[pod]]
number = 1
last = 50
ident = "8SFA 0F 1.00"
[[pod.channel]]
number = 1
last = 32
signal = "square"
period_s = 7.0
phase_step = 0.03
)";

// A network whose pods have taken the commands.
class Polled {
  public:
    Polled(const char* scenario, const std::vector<std::string>& commands)
        : network_(load(scenario), loop_) {
        handle_ = network_.Zav_Connect(-14336);
        std::array<std::int16_t, MaxZavs> present;
        present.fill(1);
        network_.Zav_Init(present, handle_);
        for (std::int16_t pod = 1; pod <= MaxZavs; ++pod)
            for (const std::string& command : commands) network_.Zav_Tx(pod, command, handle_);
    }

    void pass(long long ms) { loop_.advance(ms); }

    // Asks every stream of every pod and reads what is there; returns the number of reads.
    int poll() {
        int reads = 0;
        for (std::int16_t pod = 1; pod <= MaxZavs; ++pod)
            for (std::int16_t stream = 0; stream < StreamCount; ++stream) {
                if (network_.Zav_Test(pod, stream, handle_) != 1) continue;
                ++reads;
                std::int16_t count = MaxChannels;
                if (stream < EventStream)
                    network_.Zav_Numeric(pod, stream, count, values_, codes_, handle_);
                else
                    network_.Zav_String(pod, stream, text_, handle_);
            }
        benchmark::DoNotOptimize(values_);
        return reads;
    }

  private:
    static sim::Scenario load(const char* text) {
        auto loaded = sim::load_scenario(text, "bench");
        if (!loaded.scenario) throw std::runtime_error(loaded.errors.front());
        return std::move(*loaded.scenario);
    }

    VirtualEventLoop loop_;
    sim::Network network_;
    std::int16_t handle_ = 0;
    std::array<float, MaxChannels> values_{};
    std::array<std::int16_t, MaxChannels> codes_{};
    std::array<char, 112> text_{};
};

std::vector<std::string> thermocouple_commands() {
    std::vector<std::string> commands = {"FR5"};
    for (int channel = 1; channel <= 18; ++channel)
        commands.push_back("CH" + std::to_string(channel) + "MO330");
    commands.insert(commands.end(), {"CO", "TR"});
    return commands;
}

void ticks(benchmark::State& state, const char* scenario,
           const std::vector<std::string>& commands) {
    Polled polled(scenario, commands);
    long long reads = 0;
    for (auto _ : state) {
        polled.pass(100);
        reads += polled.poll();
    }
    state.counters["reads"] =
        benchmark::Counter(static_cast<double>(reads), benchmark::Counter::kAvgIterations);
}

void BareCopy(benchmark::State& state) {
    std::array<std::array<float, MaxChannels>, MaxZavs> from{};
    std::array<std::array<std::int16_t, MaxChannels>, MaxZavs> codes{};
    auto to = from;
    auto codes_to = codes;
    for (auto _ : state) {
        for (std::size_t pod = 0; pod < from.size(); ++pod) {
            to[pod] = from[pod];
            codes_to[pod] = codes[pod];
            benchmark::DoNotOptimize(to[pod]);
            benchmark::DoNotOptimize(codes_to[pod]);
        }
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BareCopy);

void TickOfIdlePods(benchmark::State& state) {
    ticks(state, Switches, {});
}
BENCHMARK(TickOfIdlePods);

void TickOfSwitchPods(benchmark::State& state) {
    ticks(state, Switches, {"CO", "TR"});
}
BENCHMARK(TickOfSwitchPods);

void TickOfThermocouplePods(benchmark::State& state) {
    ticks(state, Thermocouples, thermocouple_commands());
}
BENCHMARK(TickOfThermocouplePods);

void AnHourInOneStep(benchmark::State& state) {
    Polled polled(Thermocouples, thermocouple_commands());
    for (auto _ : state) {
        polled.pass(3600000);
        benchmark::DoNotOptimize(polled.poll());
    }
}
BENCHMARK(AnHourInOneStep);

}  // namespace

BENCHMARK_MAIN();
