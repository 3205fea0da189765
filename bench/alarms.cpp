// One tick of the alarms on a full network: fifty pods of 32 channels with a scan each, every
// channel with its four limits, "invalid" beside them and "lost" for each pod: 6,400 limits and
// 1,650 others. In `quiet` nothing comes or goes; in `busy` 64 limits of one pod do at every tick,
// with their entries in a journal in memory.
//
// The baseline is a bare loop that compares the same readings with the same limits. `p99_us` is of
// single ticks, `ratio` the median tick's to the baseline's of the same run.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <vector>

#include "alarms/alarm_desk.h"
#include "support/counted_memory.h"
#include "support/memory_files.h"

namespace {

using namespace kavorix;
using test::allocations;
using Clock = std::chrono::steady_clock;

constexpr std::array Kinds = {AlarmKind::HighHigh, AlarmKind::High, AlarmKind::Low,
                              AlarmKind::LowLow};
constexpr std::array<float, 4> Limits = {4, 3, -3, -4};

AlarmRule rule_of(int pod, int channel, AlarmKind kind, float limit) {
    AlarmRule rule;
    rule.pod = pod;
    rule.channel = channel;
    rule.kind = kind;
    rule.limit = limit;
    rule.hysteresis = limit == 0 ? 0 : 0.1;
    return rule;
}

std::vector<AlarmRule> all_rules() {
    std::vector<AlarmRule> rules;
    for (int pod = 1; pod <= MaxZavs; ++pod) {
        for (int channel = 1; channel <= MaxChannels; ++channel) {
            for (std::size_t i = 0; i < Kinds.size(); ++i)
                rules.push_back(rule_of(pod, channel, Kinds[i], Limits[i]));
            rules.push_back(rule_of(pod, channel, AlarmKind::Invalid, 0));
        }
        rules.push_back(rule_of(pod, 0, AlarmKind::Lost, 0));
    }
    return rules;
}

// Readings between the inner limits that differ from tick to tick.
class Readings {
  public:
    Readings() {
        std::mt19937 random(7);
        std::uniform_real_distribution<float> value(-2.9F, 2.9F);
        for (float& reading : values_) reading = value(random);
    }
    std::span<const float> of(int tick, int pod) const {
        return {values_.data() + static_cast<std::size_t>((tick * 7 + pod * 13) % Spread),
                MaxChannels};
    }

  private:
    static constexpr int Spread = 512;
    std::array<float, Spread + MaxChannels> values_{};
};

const std::array<std::int16_t, MaxChannels> Valid{};

class Desk {
  public:
    explicit Desk(bool busy) : busy_(busy) {
        files_.keep_log = false;
        desk_.set_rules(all_rules(), now_);
    }
    double tick() {
        ++tick_;
        now_.tick_ms += 100;
        now_.utc_ms += 100;
        const float beyond = tick_ % 2 == 0 ? 5.0F : 0.0F;
        std::array<float, MaxChannels> jumping{};
        jumping.fill(beyond);
        const auto start = Clock::now();
        desk_.tick(now_);
        for (int pod = 0; pod < MaxZavs; ++pod)
            desk_.reading(pod, busy_ && pod == 0 ? jumping : readings_.of(tick_, pod), Valid, now_);
        return std::chrono::duration<double>(Clock::now() - start).count();
    }
    std::size_t active() const { return desk_.list(AlarmList::Active).size(); }

  private:
    bool busy_;
    int tick_ = 0;
    AlarmMoment now_{0, 1'800'000'000'000, 0};
    test::MemoryFiles files_;
    AlarmDesk desk_{files_, {"", 4 * 1024 * 1024, 2}, now_};
    Readings readings_;
};

// Each reading against its four limits, which of them it is beyond kept as it comes.
double bare_tick(const Readings& readings, int tick, std::vector<float>& limits,
                 std::vector<char>& beyond) {
    const auto start = Clock::now();
    std::size_t limit = 0;
    for (int pod = 0; pod < MaxZavs; ++pod)
        for (const float value : readings.of(tick, pod))
            for (std::size_t i = 0; i < Kinds.size(); ++i, ++limit)
                beyond[limit] = i < 2 ? value > limits[limit] : value < limits[limit];
    benchmark::ClobberMemory();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double percentile(std::vector<double>& values, double share) {
    const auto at = values.begin() +
                    static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

double bare_median() {
    const Readings readings;
    std::vector<float> limits;
    for (int channel = 0; channel < MaxZavs * MaxChannels; ++channel)
        limits.insert(limits.end(), Limits.begin(), Limits.end());
    std::vector<char> beyond(limits.size());
    benchmark::DoNotOptimize(limits.data());
    benchmark::DoNotOptimize(beyond.data());
    std::vector<double> times;
    for (int i = 0; i < 5000; ++i) times.push_back(bare_tick(readings, i, limits, beyond));
    return percentile(times, 0.5);
}

void measure(benchmark::State& state, bool busy) {
    const double bare = bare_median();
    Desk desk(busy);
    for (int i = 0; i < 100; ++i) desk.tick();
    std::vector<double> times;
    times.reserve(1'000'000);
    std::size_t in_ticks = 0;
    for (auto _ : state) {
        const std::size_t before = allocations;
        const double seconds = desk.tick();
        in_ticks += allocations - before;
        state.SetIterationTime(seconds);
        if (times.size() < times.capacity()) times.push_back(seconds);
    }
    if ((desk.active() != 0) != busy) state.SkipWithError("the alarms did not do their work");
    const double median = percentile(times, 0.5);
    state.counters["median_us"] = median * 1E6;
    state.counters["p99_us"] = percentile(times, 0.99) * 1E6;
    state.counters["bare_us"] = bare * 1E6;
    state.counters["ratio"] = median / bare;
    state.counters["allocations"] =
        static_cast<double>(in_ticks) / static_cast<double>(state.iterations());
}

void quiet(benchmark::State& state) {
    measure(state, false);
}
void busy(benchmark::State& state) {
    measure(state, true);
}

BENCHMARK(quiet)->UseManualTime();
BENCHMARK(busy)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
