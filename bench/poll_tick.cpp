// One tick of the poll timer on a full network: fifty pods of 32 channels with data on all four
// streams (32 readings, one answer to a request, 28 events and a text each), alone and together
// with the stream-0 view of all 1600 channels, whose visible rows get their texts at every tick.
//
// The baseline is a bare loop that does no more than copy, scale and compare the same readings.
// Times are medians of single ticks; `ratio` is the tick's to the baseline's of the same run, and
// `allocations` are those of a tick after the first hundred.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <random>
#include <vector>

#include "support/counted_memory.h"
#include "support/rig.h"
#include "ui/streams/stream0_view.h"

namespace {

using namespace kavorix;
using test::allocations;
using Clock = std::chrono::steady_clock;

constexpr int VisibleRows = 60;  // of a view that fills a screen
constexpr int WarmUpTicks = 100;

// Readings that differ from tick to tick as measured ones do.
class Readings {
  public:
    Readings() {
        std::mt19937 random(7);
        std::normal_distribution<float> step(0, 0.01F);
        float value = 2;
        for (float& reading : walk_) reading = value += step(random);
    }
    const float* of(int tick, int pod) const {
        return walk_.data() + static_cast<std::size_t>(tick % Ticks) * MaxChannels +
               static_cast<std::size_t>(pod);
    }

  private:
    static constexpr int Ticks = 512;
    std::array<float, (Ticks + 1) * MaxChannels + MaxZavs> walk_{};
};

// A driver that costs next to nothing itself and has data on every stream at every tick.
class LeanDriver : public Driver {
  public:
    void next_tick() {
        ++tick_;
        answered_.fill(false);
    }

    std::int16_t Zav_Connect(std::int16_t) override { return 0; }
    std::int16_t Zav_Init(std::span<std::int16_t, MaxZavs>, std::int16_t) override { return 0; }
    void Zav_Disconnect(std::int16_t) override {}
    std::int16_t Zav_Tx(std::int16_t, std::string_view, std::int16_t) override { return 0; }
    std::int16_t Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t) override {
        return stream != RequestStream || !answered_[at(pod - 1)] ? 1 : 0;
    }
    std::int16_t Zav_String(std::int16_t, std::int16_t stream, std::span<char> buffer,
                            std::int16_t) override {
        if (stream == EventStream)
            std::memset(buffer.data(), 0x93, buffer.size());
        else
            std::memcpy(buffer.data(), "LO07xAyzBrst", std::min<std::size_t>(buffer.size(), 12));
        return 0;
    }
    std::int16_t Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                             std::span<float> values, std::span<std::int16_t> codes,
                             std::int16_t) override {
        std::memcpy(values.data(), readings_.of(tick_, pod), values.size_bytes());
        std::memset(codes.data(), 0, codes.size_bytes());
        count = static_cast<std::int16_t>(values.size());
        if (stream == RequestStream) answered_[at(pod - 1)] = true;
        return 0;
    }
    std::array<std::int16_t, 4> Zav_ValToByte(float) override { return {}; }
    void Zav_DLLVersion(std::span<char, 34>) override {}
    void Zav_PowerOff(std::int16_t) override {}
    void Zav_DLLDelay(std::int16_t) override {}

  private:
    int tick_ = 0;
    std::array<bool, MaxZavs> answered_{};
    Readings readings_;
};

// A started station of fifty pods, triggered, polled with the lean driver.
class Network {
  public:
    Network() {
        std::vector<test::Rig::PodAt> pods;
        for (int pod = 1; pod <= MaxZavs; ++pod) pods.push_back({pod, "7RJA 0F 1.00"});
        rig_.station(pods);
        rig_.run_time.Link.ZavSelected = rig_.run_time.Link.Triggered = PodSet::all();
        rig_.configuration.Interface.PollRate = 100;  // every tick is a poll boundary
        rig_.tmrPoll->start(100);
    }

    // The view shows its visible rows at every poll boundary.
    void open_view() {
        view_.load();
        view_.cmdToggle_Click();
        cycle_.boundary.always([this](const Moment&) { show_changed_rows(); });
    }
    Network& warm_up() {
        for (int i = 0; i < WarmUpTicks; ++i) tick();
        return *this;
    }
    // Its time in seconds.
    double tick() {
        rig_.loop.advance(100);
        driver_.next_tick();
        for (const Pod pod : all_pods()) {
            rig_.run_time.Link.StreamRequests[pod] = "ME5;";
            rig_.run_time.Link.RequestKinds[pod].clear();
        }
        const auto start = Clock::now();
        cycle_.tmrPoll_Timer();
        return std::chrono::duration<double>(Clock::now() - start).count();
    }
    void check(benchmark::State& state) const {
        const PollState& poll = rig_.run_time.Poll;
        if (poll.PollCount < WarmUpTicks ||
            poll.LastEvent[Pod::numbered(MaxZavs)] != EventTableSize - 1 ||
            rig_.run_time.Link.PollTable.NumInPoll() != MaxZavs)
            state.SkipWithError("the network did not do its work");
    }
    std::size_t text_bytes() const { return text_bytes_; }

  private:
    void show_changed_rows() {
        view_.refresh();
        const int columns = static_cast<int>(view_.headings().size());
        for (const int row : view_.take_changed_rows()) {
            if (row >= VisibleRows) continue;
            for (int column = 0; column < columns; ++column)
                text_bytes_ += view_.cell(row, column).text.size();
        }
    }

    test::Rig rig_;
    LeanDriver driver_;
    StreamDecoder decoder_{
        {driver_, rig_.dialogs, rig_.pod_errors, rig_.configuration, rig_.run_time}};
    Stream0View view_{rig_.run_time, rig_.configuration};
    PollCycle cycle_{{driver_, rig_.loop, *rig_.tmrPoll, rig_.errors, rig_.failures, decoder_,
                      rig_.configuration, rig_.run_time}};
    std::size_t text_bytes_ = 0;
};

double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Copying, scaling and comparing alone.
class BareLoop {
  public:
    double tick() {
        ++tick_;
        const auto start = Clock::now();
        for (int pod = 0; pod < MaxZavs; ++pod) {
            std::array<float, MaxChannels>& values = values_[at(pod)];
            std::memcpy(values.data(), readings_.of(tick_, pod), sizeof values);
            for (std::size_t channel = 0; channel < MaxChannels; ++channel) {
                const float value = values[channel] * m_[channel] + c_[channel];
                values[channel] = value;
                if (value > highest_[at(pod)][channel]) highest_[at(pod)][channel] = value;
                if (value < lowest_[at(pod)][channel]) lowest_[at(pod)][channel] = value;
            }
        }
        benchmark::ClobberMemory();
        return std::chrono::duration<double>(Clock::now() - start).count();
    }
    BareLoop() {
        m_.fill(1.0F);
        benchmark::DoNotOptimize(m_);
        benchmark::DoNotOptimize(c_);
    }

  private:
    using Values = std::array<std::array<float, MaxChannels>, MaxZavs>;
    int tick_ = 0;
    Readings readings_;
    Values values_{};
    Values highest_{};
    Values lowest_{};
    std::array<float, MaxChannels> m_{};
    std::array<float, MaxChannels> c_{};
};

double bare_median() {
    BareLoop loop;
    std::vector<double> times;
    for (int i = 0; i < 5000; ++i) times.push_back(loop.tick());
    return median(times);
}

void measure(benchmark::State& state, bool with_view) {
    const double bare = bare_median();
    Network network;
    if (with_view) network.open_view();
    network.warm_up();
    std::vector<double> times;
    times.reserve(1'000'000);
    const std::size_t text_before = network.text_bytes();
    std::size_t in_ticks = 0;
    for (auto _ : state) {
        const std::size_t before = allocations;
        const double seconds = network.tick();
        in_ticks += allocations - before;
        state.SetIterationTime(seconds);
        if (times.size() < times.capacity()) times.push_back(seconds);
    }
    network.check(state);
    const auto ticks = static_cast<double>(state.iterations());
    const double tick = median(times);
    state.counters["median_us"] = tick * 1E6;
    state.counters["bare_us"] = bare * 1E6;
    state.counters["ratio"] = tick / bare;
    state.counters["allocations"] = static_cast<double>(in_ticks) / ticks;
    state.counters["text_bytes"] = static_cast<double>(network.text_bytes() - text_before) / ticks;
}

void tick_without_view(benchmark::State& state) {
    measure(state, false);
}
void tick_with_view(benchmark::State& state) {
    measure(state, true);
}

BENCHMARK(tick_without_view)->UseManualTime();
BENCHMARK(tick_with_view)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
