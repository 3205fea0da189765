// Pods and cards that fail on demand.

#include <set>

#include "sim/bench_network.h"

namespace kavorix::test {
namespace {

TEST(PodFault, StrikesFromItsBeginUntilBeforeItsEnd) {
    const auto lasting = [](const std::string& kind) {
        return "7V; fault " + kind + " from_s=10 to_s=20";
    };
    // The status is asked for before, during and after the fault; what becomes of that during it.
    const auto around = [](const std::string& sent, const std::string& waiting,
                           const std::string& found) {
        return "send ST? sent | wait 100 ms | waiting 3? yes | text? 7VJA 0F 1.00 | wait 9900 ms | "
               "send ST? " +
               sent + " | wait 100 ms | waiting 3? " + waiting + " | text? nothing | connect?" +
               found + " | wait 9899 ms | send ST? " + sent +
               " | wait 1 ms | send ST? sent | wait 100 ms | waiting 3? yes | "
               "text? 7VJA 0F 1.00";
    };
    expect_told({
        {"dead", lasting("dead"), around("not sent", "error", "")},
        {"commands do not get through", lasting("transmit_error"), around("not sent", "no", " 5")},
        {"answers do not", lasting("receive_error"), around("sent", "error", " 5")},
        {"the status alone does not", lasting("no_status"), around("sent", "no", " 5")},
        {"answers show later", "7V; fault slow_answer delay_ms=700",
         "send ST | wait 704 ms | waiting 3? no | text? nothing | wait 1 ms | waiting 3? yes | "
         "text? 7VJA 0F 1.00 | send TR | wait 1079 ms | waiting 0? no | wait 1 ms | waiting 0? "
         "yes"},
        {"texts break off", "7V; fault half_text", "send ST | wait 5 ms | text? 7VJA 0~~~~~~"},
        {"a reset comes once, in the midst of a scan", "7V; fault reset from_s=1.2",
         "wait 1150 ms | send TR | wait 2 s | waiting 0? no | send TR | wait 1 s | waiting 0? yes"},
    });
}

TEST(PodFault, AReadFailsWithAReceiveError) {
    BenchNetwork bench(pod(5, "7V; fault receive_error"));
    std::array<float, 32> values{};
    std::array<std::int16_t, 32> codes{};
    std::array<char, 12> buffer{};
    std::int16_t count = 20;
    EXPECT_EQ(bench.network.Zav_Numeric(5, 0, count, values, codes, bench.handle), 1);
    EXPECT_EQ(bench.network.Zav_String(5, 3, buffer, bench.handle), 1);
}

TEST(PodFault, GarbageIsAnything) {
    std::array<float, 32> values{};
    std::array<std::int16_t, 32> codes{};
    std::array<char, 12> buffer{};
    std::int16_t count = 32;
    BenchNetwork status(pod(5, "7V; fault garbage_status"));
    std::set<std::int16_t> seen;
    for (int i = 0; i < 2000; ++i)
        seen.merge(std::set<std::int16_t>{
            status.send(5, "TR"), status.network.Zav_Test(5, 0, status.handle),
            status.network.Zav_String(5, 3, buffer, status.handle),
            status.network.Zav_Numeric(5, 0, count, values, codes, status.handle)});
    EXPECT_GT(seen.size(), 1000u);
    for (std::int16_t known = -1; known <= 2; ++known) EXPECT_FALSE(seen.contains(known));

    BenchNetwork counts(pod(5, "7V; fault garbage_counts"));
    std::set<std::int16_t> other;
    for (int i = 0; i < 50; ++i) {
        counts.play(5, "send TR | wait 1 s");
        ASSERT_EQ(counts.network.Zav_Numeric(5, 0, count, values, codes, counts.handle), 0);
        other.insert(count);
        EXPECT_EQ(codes[0], 0) << "the values themselves are right";
    }
    EXPECT_LT(*other.begin(), 0);
    EXPECT_GT(*other.rbegin(), 1000);

    BenchNetwork numbers(pod(5, "7V; fault garbage_values"));
    const ScanRecord scan = numbers.triggered_scan(5);
    EXPECT_GT(std::set(scan.codes.begin(), scan.codes.end()).size(), 15u);
    EXPECT_GT(std::set(scan.values.begin(), scan.values.end()).size(), 15u);

    BenchNetwork texts(pod(5, "7V; fault garbage_text"));
    texts.play(5, "send ST | wait 5 ms");
    const std::string text = texts.text(5, TextStream, 30).value();
    EXPECT_GT(std::set(text.begin(), text.end()).size(), 20u);
}

// How many of 5000 commands to a pod are lost.
int lost(BenchNetwork& bench, std::int16_t pod) {
    int count = 0;
    for (int i = 0; i < 5000; ++i) count += bench.send(pod, "HA");
    return count;
}

TEST(Chaos, StrikesThatShareOfTheCallsOfEveryPodWithinItsSpan) {
    BenchNetwork bench(pod(1, "7V; fault transmit_error rate=0.2") + pod(50, "7R"),
                       "[card]\n[chaos]\ntransmit_error=0.5\nfrom_s=10\nto_s=20\n");
    EXPECT_NEAR(lost(bench, 1), 1000, 120);
    EXPECT_EQ(lost(bench, 50), 0);
    bench.loop.advance(10000);
    EXPECT_NEAR(lost(bench, 1), 3000, 150) << "0.2 and half of the rest";
    EXPECT_NEAR(lost(bench, 50), 2500, 150);
    bench.loop.advance(10000);
    EXPECT_EQ(lost(bench, 50), 0);
}

TEST(CardFault, ACardCanDisappearAndComeBack) {
    BenchNetwork bench(pod(5, "7V"), "[card]\n[[card.fault]]\nfrom_s=5\nto_s=9\n");
    const std::string scene =
        "wait 4999 ms | send TR? sent | waiting 0? no | wait 1 ms | send TR? not sent | waiting 0? "
        "error";
    EXPECT_EQ(bench.play(5, scene), scene);
    EXPECT_LT(bench.network.Zav_Connect(-14336), 0);
    EXPECT_NE(bench.network.Zav_Init(bench.present, bench.handle), 0);
    // The scan of before is still there.
    const std::string back =
        "wait 3999 ms | send TR? not sent | waiting 0? error | wait 1 ms | waiting 0? yes | send "
        "TR? sent";
    EXPECT_EQ(bench.play(5, back), back);
}

}  // namespace
}  // namespace kavorix::test
