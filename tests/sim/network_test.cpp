#include "sim/network.h"

#include "sim/bench_network.h"

namespace kavorix::test {
namespace {

const std::string OneVolt = "7V; noise=0; 1 at 1";

TEST(Card, AnswersAtItsAddressWithItsHandleAndVersion) {
    BenchNetwork bench(pod(5, "7V"), "[card]\naddress=\"D000\"\nhandle=4\nversion=\"V 2\"\n");
    EXPECT_LT(bench.handle, 0) << "asked at C800";
    EXPECT_EQ(bench.found().size(), 50 * 3 - 10) << "nobody was asked";
    EXPECT_EQ(bench.network.Zav_Connect(static_cast<std::int16_t>(0xD000)), 4);
    std::array<char, 34> version;
    version.fill('~');
    bench.network.Zav_DLLVersion(version);
    EXPECT_EQ(std::string(version.begin(), version.end()), "V 2" + std::string(31, '~'));
    EXPECT_LT(BenchNetwork(pod(5, "7V"), "").handle, 0) << "a station without a card";
}

TEST(Card, StartUpFindsThePodsThatAreThereAndAskedFor) {
    BenchNetwork bench(pod(1, "7V") + pod(5, "7R") + pod(50, "8S"));
    EXPECT_EQ(bench.found(), "1 5 50");
    bench.present.fill(0);
    bench.present[49] = 1;
    EXPECT_NE(bench.network.Zav_Init(bench.present, 7), 0) << "another's handle";
    EXPECT_EQ(bench.network.Zav_Init(bench.present, bench.handle), 0);
    EXPECT_EQ(bench.found(), "50");
}

TEST(Card, NothingAnswersWithoutConnectionPowerPodOrRightHandle) {
    BenchNetwork bench(pod(1, OneVolt) + pod(50, OneVolt));
    const auto reached = [&] {
        std::string pods;
        for (const std::int16_t pod : std::initializer_list<std::int16_t>{0, 1, 5, 50, 51})
            if (bench.send(pod, "TR") == 0 && bench.network.Zav_Test(pod, 0, bench.handle) == 0)
                pods += std::to_string(pod) + " ";
        return pods;
    };
    EXPECT_EQ(bench.network.Zav_Tx(1, "TR", 5), 1);
    EXPECT_EQ(bench.network.Zav_Test(1, 0, 5), -1);
    EXPECT_EQ(reached(), "1 50 ");
    bench.send(50, "FR3");
    bench.network.Zav_PowerOff(bench.handle);
    EXPECT_EQ(reached(), "");
    bench.connect();
    EXPECT_EQ(reached(), "1 50 ");
    EXPECT_EQ(bench.network.held(50)->integration, 0) << "as after power-up";
    bench.network.Zav_Disconnect(bench.handle);
    EXPECT_EQ(reached(), "1 50 ") << "two connections were open";
    bench.network.Zav_Disconnect(bench.handle);
    EXPECT_EQ(reached(), "");
    for (const int pod : {0, 5, 51}) EXPECT_EQ(bench.network.held(pod), nullptr);
}

TEST(Card, DelayLetsTimePassWithoutEvents) {
    BenchNetwork bench(pod(5, OneVolt));
    bool ran = false;
    bench.loop.call_later(50, [&] { ran = true; });
    bench.network.Zav_DLLDelay(100);
    EXPECT_EQ(bench.loop.elapsed_ms(), 100);
    EXPECT_FALSE(ran);
}

// 7V: 18 analog channels, each an integration time and 1 ms, and two digital ones of 1 ms; 7T takes
// 4 ms more than the integration for each of 20.
TEST(Pod, AnswersInItsTime) {
    expect_told({
        {"a status reply comes once, after 5 ms", OneVolt,
         "send RE;ST | wait 4 ms | waiting 3? no | text? nothing | wait 1 ms | waiting 3? yes | "
         "text? 7VJA 0F 1.00 | text? nothing"},
        {"after the time that the scenario says", "7V; answer_ms=40",
         "send ST | wait 39 ms | waiting 3? no | wait 1 ms | waiting 3? yes"},
        {"and leaves the rest of a buffer alone", OneVolt,
         "send ST | wait 5 ms | text 14? 7VJA 0F 1.00~~"},
        {"it comes before texts that were not read", OneVolt,
         "send QQ | send ST | wait 5 ms | text? 7VJA 0F 1.00 | text? nothing"},
        {"a trigger gives one scan", OneVolt,
         "send TR | wait 379 ms | waiting 0? no | wait 1 ms | scan 1 2 20? 1 0 1 | wait 9 s | "
         "waiting 0? no"},
        {"a halt takes it away", OneVolt,
         "send TR | wait 100 ms | send HA | wait 1 s | scan? nothing"},
        {"a pod that scans goes on until it is halted", OneVolt,
         "send SP'2000';CO | wait 5 s | waiting 0? no | send TR | scans in 20 s? 10 | send HA | "
         "wait 5 s | waiting 0? no | send TR | scans in 9 s? 1"},
        {"a trigger on the way changes nothing", OneVolt,
         "send SP'1000';CO;TR | wait 300 ms | send TR | wait 80 ms | waiting 0? yes"},
        {"integration 0 without a period", OneVolt, "send FR0;CO;TR | scans in 10 s? 26"},
        {"1", OneVolt, "send FR1;CO;TR | scans in 10 s? 31"},
        {"2", OneVolt, "send FR2;CO;TR | scans in 10 s? 90"},
        {"3", OneVolt, "send FR3;CO;TR | scans in 10 s? 104"},
        {"4", OneVolt, "send FR4;CO;TR | scans in 10 s? 232"},
        {"5", OneVolt, "send FR5;CO;TR | scans in 10 s? 256"},
        {"relays are slower", "7T", "send FR0;CO;TR | scans in 10 s? 20"},
        {"a long silence leaves the last scan", "7V; noise=0; 1 counter period_s=1 amplitude=1e-4",
         "send SP'1000';CO;TR | wait 86400500 ms | scan 1? 8.64 | scan? nothing"},
        {"what comes later does not change a finished scan", OneVolt,
         "send TR | wait 1 s | send CH1MO000 | scan 1? 1"},
        {"a reset drops everything", OneVolt,
         "send TR;ME01;QQ | send RE | wait 10 s | waiting 0? no | answers? nothing | text? "
         "nothing"},
        {"channels that give no value", OneVolt + "; 2 absent; 3 at -11",
         "send CH1MO101;CH4MO000;CH5MO900;CH6MO105;TR | wait 1 s | scan 1 2 3 4 5 6 7? error1:0.02 "
         "error9 error1:-10 error127 error7 error7 0"},
        {"requests are measured and answered one after the other", OneVolt + "; 2 at 2",
         "send ME02 | send ME1 | wait 25 ms | answers? nothing | wait 1 ms | answers? 2 | wait 20 "
         "ms | answers? nothing | wait 1 ms | answers? 1"},
        {"also those that cannot be carried out", OneVolt,
         "send ME33;MEX;ME1;IN1 | wait 1 s | answers? error9 error9 1 error7"},
        {"texts of the scenario", "7V; text text=H at_s=3; text text=C12 at_s=1 every_s=2",
         "texts in 8 s? 1:C12 3:H 3:C12 5:C12 7:C12"},
    });
    for (const auto& [type, channels] :
         {std::pair{"7R", 20U}, {"7S", 10U}, {"7W", 20U}, {"8R", 20U}, {"8S", 32U}}) {
        const auto codes = BenchNetwork(pod(50, type)).triggered_scan(50).codes;
        EXPECT_EQ(codes, std::vector<std::int16_t>(channels, 0)) << type;
    }
    EXPECT_EQ(BenchNetwork(pod(1, "9Z")).triggered_scan(1).codes,
              std::vector<std::int16_t>(20, 255));
}

TEST(Pod, ATextReadOfNumbersDropsThem) {
    for (const auto& [stream, left] :
         {std::pair<std::int16_t, std::string>{0, "scan 1? nothing | answers? 1"},
          {1, "scan 1? 1 | answers? nothing"}}) {
        BenchNetwork bench(pod(5, OneVolt));
        bench.play(5, "send TR;ME1 | wait 1 s");
        EXPECT_EQ(bench.text(5, stream), std::string(12, '~'));
        EXPECT_EQ(bench.play(5, left), left);
    }
}

// The clock stood at 08:00 on 5 January; the input is low during the first second of every two.
TEST(Events, AreCapturedWhileThatIsOn) {
    const std::string square = "8R; 3 square period_s=2 phase=0.5";
    expect_told({
        {"the level, then the edges", square,
         "send CH3MO762 | wait 500 ms | waiting 2? no | send EV1 | wait 1600 ms | waiting 2? yes | "
         "events 20? 01050800 43005000 A3010000 83020000 00000000 | waiting 2? no | send EV0 | "
         "wait 5 s | waiting 2? no"},
        {"range 0: falling ones, a filler making up the pair", square,
         "send CH3MO760;EV1 | events 8? 01050800 43000000 | wait 4500 ms | events 24? 01050800 "
         "83020000 83040000 FFFFFFFF 00000000 7E7E7E7E"},
        {"range 1: rising ones, a time base for every minute", square,
         "send CH3MO761 | wait 57500 ms | send EV1 | wait 4 s | events 28? 01050800 23575000 "
         "A3590000 01050801 A3010000 FFFFFFFF 00000000"},
        {"8S counts channels from 0; what does not fit follows", "8S; 32 square period_s=0.1",
         "send CH32MO762;EV1 | wait 99 ms | events 8? 01050800 3F000000 | events 12? 01050800 "
         "9F000500 00000000 | events 12? nothing"},
        {"a buffer too small takes one event away", square,
         "send CH3MO762;EV1 | events 7? 00000000 7E7E7E | waiting 2? no"},
    });
    BenchNetwork fast(pod(1, "8R; 1 square period_s=0.002"));
    fast.play(1, "send CH1MO762;EV1 | wait 9 s");
    std::size_t events = 0;
    while (const auto read = fast.text(1, EventStream, 112))
        for (std::size_t i = 0; i < 112 && (*read)[i] != 0; i += 4)
            if (((*read)[i] & '\xE0') != 0 && (*read)[i] != '\xFF') ++events;
    EXPECT_EQ(events, 512u) << "a pod keeps no more";
}

// A square wave of 50 Hz, high for 5 ms of its 20.
TEST(Digital, CountsTimesAndLevels) {
    expect_told({
        {"all modes", "8R; 1-20 square period_s=0.02 duty=0.25",
         "wait 10007 ms | send "
         "CH1MO700;CH2MO740;CH3MO742;CH4MO751;CH5MO902;CH6MO911;CH7MO920;CH8MO921;CH9MO801;"
         "CH10MO800 | wait 1 s | send TR | wait 2 s | scan 1 2 3 4 5 6 7 8 9 10? 0 50 100 50 50 "
         "0.02 0.015 0.005 1 0 | send CL2;TR | wait 3 s | scan 2 3 4? 0 300 100"},
        {"an input that stands still times out", "8R; 1 constant",
         "send CH1MO910;CH1TI0;TR | wait 230 ms | scan 1? error14"},
        {"after 2 s by default", "8R; 1 constant",
         "send CH1MO920;TR | wait 2 s | waiting 0? no | wait 30 ms | scan 1? error14"},
    });
}

// A minute of operation as one text.
std::string transcript(std::uint64_t seed) {
    sim::Scenario scenario = sim::demo_scenario();
    scenario.seed = seed;
    BenchNetwork bench(scenario);
    std::string seen;
    for (int tick = -1; tick < 600; ++tick)
        for (const sim::PodSettings& settings : scenario.pods) {
            const auto number = static_cast<std::int16_t>(settings.number);
            if (tick < 0) bench.send(number, "EV1;CO;TR");
            if (const auto record = bench.scan(number))
                for (const float value : record->values) seen += general(value) + " ";
            seen += bench.text(number, EventStream, 112).value_or("");
            seen += bench.text(number, TextStream).value_or("");
            bench.loop.advance(8);
        }
    return seen;
}

TEST(Demonstration, RepeatsExactlyFromTheSameSeed) {
    const std::string first = transcript(5);
    EXPECT_GT(first.size(), 100000u);
    EXPECT_TRUE(transcript(5) == first);
    EXPECT_FALSE(transcript(6) == first);
}

TEST(Demonstration, EveryPodGivesLiveReadingsAfterAResetAndATrigger) {
    BenchNetwork bench(sim::demo_scenario());
    for (const sim::PodSettings& settings : sim::demo_scenario().pods) {
        const auto number = static_cast<std::int16_t>(settings.number);
        bench.send(number, "RE;ST");
        const ScanRecord first = bench.triggered_scan(number);
        bench.loop.advance(2700);
        EXPECT_EQ(first.codes, std::vector<std::int16_t>(first.codes.size(), 0)) << number;
        EXPECT_NE(first.values, bench.triggered_scan(number).values) << number;
    }
}

}  // namespace
}  // namespace kavorix::test
