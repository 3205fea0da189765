// Pods and cards that fail on demand.

#include <gtest/gtest.h>

#include <set>

#include "sim/bench_network.h"

namespace kavorix::test {
namespace {

std::string pod_with(const std::string& fault, const std::string& channels = "") {
    return "[card]\n[[pod]]\nnumber = 3\nident = \"7VJA 0F 1.00\"\n" + channels +
           "[[pod.fault]]\n" + fault + "\n";
}

std::string faulty(const std::string& kind) {
    return pod_with("kind = \"" + kind + "\"");
}

TEST(PodFaultTest, ASlowAnswerShowsLater) {
    BenchNetwork bench(pod_with("kind = \"slow_answer\"\ndelay_ms = 700"));
    bench.send(3, "ST");
    bench.loop.advance(704);
    EXPECT_FALSE(bench.waiting(3, TextStream));
    EXPECT_EQ(bench.text(3, TextStream), std::nullopt);
    bench.loop.advance(1);
    EXPECT_TRUE(bench.waiting(3, TextStream));
    EXPECT_EQ(bench.text(3, TextStream), "7VJA 0F 1.00");
    bench.send(3, "TR");
    bench.loop.advance(1000);
    EXPECT_FALSE(bench.waiting(3, ReadingStream));
    bench.loop.advance(1000);
    EXPECT_TRUE(bench.waiting(3, ReadingStream));
}

TEST(PodFaultTest, GarbageStatusIsNoneOfTheKnownValues) {
    BenchNetwork bench(faulty("garbage_status"));
    std::array<char, 12> buffer{};
    std::array<float, 32> values{};
    std::array<std::int16_t, 32> codes{};
    std::int16_t count = 32;
    std::set<std::int16_t> seen;
    for (int i = 0; i < 2000; ++i)
        for (const std::int16_t status :
             {bench.send(3, "TR"), bench.network.Zav_Test(3, 0, bench.handle),
              bench.network.Zav_String(3, 3, buffer, bench.handle),
              bench.network.Zav_Numeric(3, 0, count, values, codes, bench.handle)}) {
            EXPECT_TRUE(status < -1 || status > 2) << status;
            seen.insert(status);
        }
    EXPECT_GT(seen.size(), 1000u);
}

TEST(PodFaultTest, GarbageCountsCanBeAnyNumber) {
    BenchNetwork bench(faulty("garbage_counts"));
    bool negative = false;
    bool large = false;
    for (int i = 0; i < 50; ++i) {
        bench.send(3, "TR");
        bench.loop.advance(1000);
        std::array<float, 32> values{};
        std::array<std::int16_t, 32> codes{};
        std::int16_t count = 32;
        ASSERT_EQ(bench.network.Zav_Numeric(3, 0, count, values, codes, bench.handle), 0);
        negative = negative || count < 0;
        large = large || count > 1000;
        EXPECT_EQ(codes[0], 0) << "the values themselves are right";
    }
    EXPECT_TRUE(negative);
    EXPECT_TRUE(large);
}

TEST(PodFaultTest, GarbageValuesAreAnyNumbers) {
    BenchNetwork bench(faulty("garbage_values"));
    const ScanRecord first = bench.triggered_scan(3);
    EXPECT_EQ(first.values.size(), 20u);
    EXPECT_GT(std::set<std::int16_t>(first.codes.begin(), first.codes.end()).size(), 15u);
    bench.send(3, "ME01");
    bench.loop.advance(1000);
    EXPECT_NE(bench.answer(3)->code, 0);
}

TEST(PodFaultTest, TextsBreakOffOrAreAnyBytes) {
    BenchNetwork half(faulty("half_text"));
    half.send(3, "ST");
    half.loop.advance(10);
    EXPECT_EQ(half.text(3, TextStream), "7VJA 0~~~~~~");
    BenchNetwork garbage(faulty("garbage_text"));
    garbage.send(3, "ST");
    garbage.loop.advance(10);
    const std::string text = garbage.text(3, TextStream, 30).value();
    EXPECT_GT(std::set<char>(text.begin(), text.end()).size(), 20u);
}

TEST(PodFaultTest, AResetComesOnceInTheMidstOfAScan) {
    BenchNetwork bench(pod_with("kind = \"reset\"\nfrom_s = 1.2"));
    bench.send(3, "FR3");
    bench.loop.advance(1150);
    bench.send(3, "TR");
    bench.loop.advance(100);
    EXPECT_FALSE(bench.waiting(3, ReadingStream));
    EXPECT_EQ(bench.network.held(3)->integration, 0);
    bench.loop.advance(2000);
    EXPECT_FALSE(bench.waiting(3, ReadingStream)) << "the scan is gone";
    bench.send(3, "FR2");
    bench.loop.advance(2000);
    bench.waiting(3, ReadingStream);
    EXPECT_EQ(bench.network.held(3)->integration, 2) << "no second reset";
}

TEST(PodFaultTest, ARateStrikesThatShareOfTheCalls) {
    BenchNetwork bench(pod_with("kind = \"transmit_error\"\nrate = 0.2"));
    int errors = 0;
    for (int i = 0; i < 5000; ++i) errors += bench.send(3, "HA");
    EXPECT_NEAR(errors, 1000, 120);
}

TEST(ChaosTest, StrikesEveryPodWithinItsSpan) {
    BenchNetwork bench(
        "[card]\n[chaos]\ntransmit_error = 0.5\nfrom_s = 10.0\nto_s = 20.0\n"
        "[[pod]]\nnumber = 1\nident = \"7VJA 0F 1.00\"\n"
        "[[pod]]\nnumber = 2\nident = \"7RAA 0F 1.00\"\n");
    const auto errors = [&](std::int16_t pod) {
        int count = 0;
        for (int i = 0; i < 400; ++i) count += bench.send(pod, "HA");
        return count;
    };
    EXPECT_EQ(errors(1), 0);
    bench.loop.advance(15000);
    EXPECT_NEAR(errors(1), 200, 50);
    EXPECT_NEAR(errors(2), 200, 50);
    bench.loop.advance(5000);
    EXPECT_EQ(errors(1) + errors(2), 0);
}

TEST(CardFaultTest, ACardCanDisappearAndComeBack) {
    BenchNetwork bench(
        "[card]\n[[card.fault]]\nfrom_s = 5.0\nto_s = 9.0\n"
        "[[pod]]\nnumber = 3\nident = \"7VJA 0F 1.00\"\n");
    EXPECT_EQ(bench.send(3, "TR"), 0);
    bench.loop.advance(5000);
    EXPECT_EQ(bench.send(3, "TR"), 1);
    EXPECT_EQ(bench.network.Zav_Test(3, 0, bench.handle), -1);
    EXPECT_LT(bench.network.Zav_Connect(-14336), 0);
    EXPECT_NE(bench.network.Zav_Init(bench.present, bench.handle), 0);
    bench.loop.advance(4000);
    EXPECT_EQ(bench.send(3, "TR"), 0);
}

}  // namespace
}  // namespace kavorix::test
