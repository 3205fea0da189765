#include <gtest/gtest.h>

#include <vector>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::pods_with;
using test::Rig;

constexpr long long Hour_ms = 3600 * 1000;

std::vector<int> all_pods_but(std::vector<int> missing) {
    std::vector<int> pods;
    for (int pod = 1; pod <= MaxZavs; ++pod)
        if (std::find(missing.begin(), missing.end(), pod) == missing.end()) pods.push_back(pod);
    return pods;
}

// Fifty pods scan continuously for a day, each bringing 20 readings a second. Pod 7 stops answering
// after six hours, pod 21 fails a read after twelve, pod 33 after eighteen.
class DayOfPolling : public testing::Test, protected Rig {
  protected:
    DayOfPolling() {
        std::vector<PodAt> pods;
        for (int pod = 1; pod <= MaxZavs; ++pod) pods.push_back({pod, "7RJA 0F 1.00"});
        station(pods);
        driver.recording = false;
        consumers.counting = true;
        run_time.Log.ScanLogging = 1;
        run_time.Log.ScanLogInterval = 10'000;
        for (int pod = 1; pod <= MaxZavs; ++pod) config(pod).ContScan = 1;
        select(all_pods_but({}));
        send("TR;");
        trigger(all_pods_but({}));
        // The transmission took 1000 ms, of which polling was not yet running.
        start_ms = loop.elapsed_ms();
        for (int pod = 1; pod <= MaxZavs; ++pod)
            driver.pod(pod).feed[0] =
                test::Feed{1000, test::scan(std::vector<float>(20, 1.5F)), start_ms + 1000};
        loop.call_later(6 * Hour_ms, [this] { driver.pod(7).test.fill(std::int16_t{-1}); });
        loop.call_later(12 * Hour_ms, [this] { driver.pod(21).feed[0]->reply.status = 1; });
        loop.call_later(18 * Hour_ms, [this] { driver.pod(33).test[3] = std::int16_t{-1}; });
    }
    long long start_ms = 0;
};

TEST_F(DayOfPolling, CountsEveryPollAndLosesOnlyThePodsThatFail) {
    EXPECT_EQ(run_time.Link.ContScanning, 1);
    loop.run_for(24 * Hour_ms);

    // The first tick starts the count, so the last boundary of the day is still to come.
    EXPECT_EQ(run_time.Poll.PollCount, 24 * 3600 - 1);
    EXPECT_EQ(screen.pnlPollCnt.caption, "86399");
    EXPECT_EQ(screen.pnlBars.caption, "10% |");
    EXPECT_EQ(tmrPoll->interval_ms(), 100);
    EXPECT_EQ(consumers.scan_records, 24 * 360);

    EXPECT_EQ(pods_with(run_time.Link.PollTable.InPollTable), all_pods_but({7, 21, 33}));
    EXPECT_EQ(run_time.Link.PollTable.NumInPoll, 47);
    EXPECT_EQ(pods_with(run_time.Link.ZavSelected), all_pods_but({7, 21, 33}));
    EXPECT_EQ(run_time.Link.NumSelected, 47);
    EXPECT_EQ(pods_with(run_time.Link.Triggered), all_pods_but({7, 21, 33}));
    for (int pod = 1; pod <= MaxZavs; ++pod)
        EXPECT_EQ(run_time.Link.ScanState[at(pod - 1)], polled(pod) ? 2 : 0) << pod;
    EXPECT_EQ(run_time.Link.SessionErrorCount, 3);
    EXPECT_EQ(log_text(), test::LogHeader +
                              " ERROR! - Receive Error (ZAV:07  Interface:C800)\r\n"
                              " ERROR! - Receive Error (ZAV:21  Interface:C800)\r\n"
                              " ERROR! - Receive Error (ZAV:33  Interface:C800)\r\n");

    // Every record of a pod in the table was read, and no pod is asked after its failure.
    const long long day = 24 * 3600;
    const long long lost = 18 * 3600 + 12 * 3600 + 6 * 3600;
    EXPECT_NEAR(static_cast<double>(driver.reads - 50), static_cast<double>(50 * day - lost), 5);
    const long long ticks = day * 10;
    EXPECT_NEAR(static_cast<double>(driver.tests),
                static_cast<double>((50 * ticks - lost * 10) * 4), 2000);
}

}  // namespace
}  // namespace kavorix
