// Sending commands to pods, and what a failure of the link does to a pod.

#include "link/command_link.h"

#include <gtest/gtest.h>

#include "support/facts.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::pods_with;
using test::ShownBox;
using Boxes = std::vector<ShownBox>;
using Pods = std::vector<int>;

const ShownBox UnclosedQuote{"IEEE Error in command string", 64, "KAVORIX"};

// Pods 1, 5 and 50 of a station whose poll timer does not run yet.
struct Network : test::Rig {
    Network() { station({{1, "7RJA 0F 1.00"}, {5, "7VJA 0F 1.00"}, {50, "8SFN 0F 1.00"}}); }

    // The pods that got all of the text.
    Pods send_to(const Pods& pods, const std::string& text) {
        PodSet targets;
        for (const int pod : pods) targets.add(Pod::numbered(pod));
        return pods_with(link.send(text, targets));
    }
    std::string facts() const { return test::facts(run_time); }
    void fail(int pod) {
        errors.RxTxErr(Pod::numbered(pod), LinkFault::Receive, AfterFault::Removed);
    }
    // The operator clears the error of a pod.
    void clear(int pod) { ++run_time.Link.Interruptions[Pod::numbered(pod)]; }
    const std::string& message() const { return run_time.Reports.Message.Text; }
};

struct CommandLinkTest : testing::Test, Network {
    LinkState& state = run_time.Link;
};

TEST(Tokens, AreSentOneAfterTheOtherWithTheirDelays) {
    struct Row {
        const char* text;
        Lines sent;  // to pod 5, with the virtual time of each
        long long end_ms;
        Boxes told = {};
    };
    const Row rows[] = {
        {"TR;", {"0 Tx 5 TR"}, 10},
        {"HA;TR;", {"0 Tx 5 HA", "3000 Tx 5 TR"}, 3010},
        {"RE;SE;CO;", {"0 Tx 5 RE", "500 Tx 5 SE", "510 Tx 5 CO"}, 520},
        {"HAL;REX;TRA;", {"0 Tx 5 HAL", "10 Tx 5 REX", "20 Tx 5 TRA"}, 30},
        {"ha;", {"0 Tx 5 ha"}, 10},
        {"", {}, 0},
        {";;", {}, 0},
        {";TR;;", {"0 Tx 5 TR"}, 10},
        {"TR;HA", {"0 Tx 5 TR"}, 10},
        // Blanks go before the next character is appended, so only one at the very end stays.
        {"  A B ;", {"0 Tx 5 AB "}, 10},
        {" ;", {"0 Tx 5  "}, 10},
        {"SP'2.5';", {"0 Tx 5 SP@ <00><00>"}, 10},
        {"SP'-2.5';", {"0 Tx 5 SP<C0> <00><00>"}, 10},
        {"CH1'1'MO'2'X;", {"0 Tx 5 CH1?<80><00><00>MO@<00><00><00>X"}, 10},
        {"SP'rubbish';", {"0 Tx 5 SP<00><00><00><00>"}, 10},
        {"SP'2.5V';", {"0 Tx 5 SP@ <00><00>"}, 10},
        {"'';", {"0 Tx 5 <00><00><00><00>"}, 10},
        {"AB';';TR;", {"0 Tx 5 AB<00><00><00><00>", "10 Tx 5 TR"}, 20},
        // 1.0000038 ends in the byte of a blank, which goes when more is appended.
        {"A'1.0000038'B;", {"0 Tx 5 A?<80><00>B"}, 10},
        {"A'1.0000038';", {"0 Tx 5 A?<80><00> "}, 10},
        {"TR;HL'1.5", {"0 Tx 5 TR"}, 10, {UnclosedQuote}},
        {"HL'1.5;TR;HA;", {}, 0, {UnclosedQuote}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        Network network;
        EXPECT_EQ(network.send_to({5}, row.text), Pods{5});
        EXPECT_EQ(network.driver.timed("Tx"), row.sent);
        EXPECT_EQ(network.loop.elapsed_ms(), row.end_ms);
        EXPECT_EQ(network.dialogs.boxes, row.told);
        EXPECT_EQ(network.dialogs.beeps, static_cast<int>(row.told.size()));
        EXPECT_EQ(network.message(), "");
        EXPECT_TRUE(network.tmrPoll->running());
    }
}

TEST(ScanStates, FollowTheTokens) {
    struct Row {
        Pods continuous;   // pods configured for continuous scan
        const char* text;  // sent to pods 1 and 50
        const char* scan;
        long long end_ms;
    };
    const Row rows[] = {
        {{1}, "TR;", "scanning: 1; continuous!", 1000},
        {{50}, "TR;", "scanning: 50; continuous!", 1000},
        {{1, 50}, "TR;", "scanning: 1 50; continuous!", 1000},
        {{}, "TR;", "", 10},
        {{1, 50}, "", "commanded: 1 50", 0},
        {{1, 5}, "SE;", "commanded: 1", 10},
        {{1, 50}, "TR;HA;", "", 4000},
        {{1, 50}, "TR;RE;", "", 1500},
        // A second trigger finds no pod that waits for one.
        {{1}, "TR;TR;", "scanning: 1; continuous!", 1010},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text + std::to_string(row.continuous.size()));
        Network network;
        for (const int pod : row.continuous) network.config(pod).ContScan = 1;
        network.send_to({1, 50}, row.text);
        EXPECT_EQ(network.facts(),
                  "polled: 1 5 50" + (*row.scan ? "; " : std::string()) + row.scan);
        EXPECT_EQ(network.loop.elapsed_ms(), row.end_ms);
    }
}

TEST_F(CommandLinkTest, ContinuousPodsGetTheirPreambleWhoseStatusIsNotLookedAt) {
    for (const int pod : {1, 5, 50}) config(pod).ContScan = 1;
    driver.pod(1).tx_status = 1;
    EXPECT_EQ(send_to({1, 50}, ""), (Pods{1, 50}));
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 1 CO", "0 Tx 50 CO"}));
    EXPECT_EQ(facts(), "polled: 1 5 50; commanded: 1 50");
    EXPECT_TRUE(tmrPoll->running());
}

TEST_F(CommandLinkTest, EveryTokenGoesToAllPodsInAscendingOrder) {
    EXPECT_EQ(send_to({50, 1, 5}, "EV1;SE;"), (Pods{1, 5, 50}));
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 1 EV1", "0 Tx 5 EV1", "0 Tx 50 EV1", "10 Tx 1 SE",
                                         "10 Tx 5 SE", "10 Tx 50 SE"}));
}

TEST_F(CommandLinkTest, WithoutPodsTheDelaysAreStillWaited) {
    EXPECT_EQ(send_to({}, "HA;RE;TR;"), Pods{});
    EXPECT_EQ(driver.recorded("Tx"), Lines{});
    EXPECT_EQ(loop.elapsed_ms(), 30);
}

TEST_F(CommandLinkTest, ProgressIsToldWhileSendingAndGoneAfterwards) {
    Lines seen;
    driver.at_call([&](const test::DriverCall&) {
        EXPECT_TRUE(link.transmitting());
        EXPECT_EQ(state.Sending, 1);
        EXPECT_EQ(dialogs.pointer, Pointer::Busy);
        EXPECT_EQ(run_time.Reports.Message.Severity, Severity::Progress);
        seen.push_back(message());
    });
    send_to({5}, "TR;");
    EXPECT_EQ(seen, Lines{" Transmitting Command String"});
    EXPECT_EQ(message(), "");
    EXPECT_FALSE(link.transmitting());
    EXPECT_EQ(state.Sending, 0);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

TEST_F(CommandLinkTest, APodThatFailsIsRemovedAndTheOthersGetTheRest) {
    select({1, 5});
    driver.pod(1).tx_status = 1;
    EXPECT_EQ(send_to({1, 5}, "RE;IN3;"), Pods{5});
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 1 RE", "0 Tx 5 RE", "500 Tx 5 IN3"}));
    EXPECT_EQ(facts(),
              "polled: 5 50; selected: 5; removed: 1; in error: 1; "
              "message: ERROR! - Transmit Error (ZAV:01); fault: transmit; errors: 1");
}

TEST_F(CommandLinkTest, AnyOtherTransmitStatusCountsAsSent) {
    for (const int status : {2, -1, 32767, -32768}) {
        driver.pod(5).tx_status = static_cast<std::int16_t>(status);
        EXPECT_EQ(send_to({5}, "HA;"), Pods{5}) << status;
    }
    EXPECT_EQ(loop.elapsed_ms(), 4 * 3000);
}

TEST_F(CommandLinkTest, TheTargetsStandWhateverTheOperatorSelectsMeanwhile) {
    select({1, 5});
    loop.call_later(100, [&] { state.ZavSelected = {Pod::numbered(5), Pod::numbered(50)}; });
    state.CommandString = "RE;SE;";
    loop.call_later(200, [&] { state.CommandString = "HA;"; });
    EXPECT_EQ(pods_with(link.TXString()), (Pods{1, 5}));
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 1 RE", "0 Tx 5 RE", "500 Tx 1 SE", "500 Tx 5 SE"}));
    EXPECT_EQ(pods_with(state.ZavSelected), (Pods{5, 50}));
}

TEST_F(CommandLinkTest, APodThatFailsOrIsClearedMeanwhileGetsNothingMore) {
    loop.call_later(100, [&] { fail(1); });
    loop.call_later(200, [&] { clear(1); });  // it has missed nothing yet, but is out
    loop.call_later(300, [&] { clear(5); });
    EXPECT_EQ(send_to({1, 5, 50}, "RE;SE;CO;"), Pods{50});
    EXPECT_EQ(driver.timed("Tx"),
              (Lines{"0 Tx 1 RE", "0 Tx 5 RE", "0 Tx 50 RE", "500 Tx 50 SE", "510 Tx 50 CO"}));
}

TEST_F(CommandLinkTest, APodThatIsClearedInTheLastDelayIsNotReached) {
    loop.call_later(5, [&] { clear(5); });
    EXPECT_EQ(send_to({5, 50}, "SE;"), Pods{50});
}

TEST_F(CommandLinkTest, ASecondTransmissionInsideTheFirstIsRefused) {
    loop.call_later(1000, [&] {
        EXPECT_EQ(send_to({1, 5}, "TR;"), Pods{});
        EXPECT_EQ(message(), " Transmission in Progress - Command not Sent");
        EXPECT_EQ(dialogs.beeps, 1);
        EXPECT_EQ(state.CommandString, "HA;SE;");
    });
    EXPECT_EQ(send_to({5}, "HA;SE;"), Pods{5});
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 5 HA", "3000 Tx 5 SE"}));
    EXPECT_EQ(message(), "");
}

TEST_F(CommandLinkTest, RequestsAreBookedPerPodAndForTheFirst) {
    driver.pod(1).tx_status = 1;  // is sent nothing, so it is not the first
    state.StreamRequests[Pod::numbered(5)] = "ME1;";
    state.FirstPodInputRequests = "IN9;";
    send_to({1, 5, 50}, "ME5;IN3;EV1;IN4;");
    EXPECT_EQ(state.StreamRequests[Pod::numbered(1)], "");
    EXPECT_EQ(state.StreamRequests[Pod::numbered(5)], "ME1;ME5;IN3;IN4;");
    EXPECT_EQ(state.StreamRequests[Pod::numbered(50)], "ME5;IN3;IN4;");
    EXPECT_EQ(state.FirstPodInputRequests, "IN3;IN4;");
    EXPECT_EQ(state.RequestCount, 6);

    send_to({5}, "EV0;");
    EXPECT_EQ(state.RequestCount, 6);
    send_to({5}, "IN8;");
    EXPECT_EQ(state.FirstPodInputRequests, "IN8;");
    EXPECT_EQ(state.RequestCount, 1);
}

TEST_F(CommandLinkTest, TheFirstRequestForgetsOlderAnswersAndMarksItsChannelsPending) {
    status(5).SingleNew.fill(true);
    status(1).SinglePending.fill(true);
    state.RequestKinds[Pod::numbered(1)] = "01";
    send_to({5}, "EV1;");
    EXPECT_EQ(state.RequestKinds[Pod::numbered(1)], "01");
    EXPECT_TRUE(status(5).SingleNew[31]);
    send_to({5}, "ME05;IN32;ME0;ME33;");
    ChannelFlags requested{};
    requested[4] = requested[31] = true;
    EXPECT_EQ(status(5).SinglePending, requested);
    EXPECT_EQ(status(5).SingleNew, ChannelFlags{});
    EXPECT_EQ(status(1).SinglePending, ChannelFlags{});
    EXPECT_EQ(state.RequestKinds[Pod::numbered(1)], "");
}

TEST_F(CommandLinkTest, TheFirstTransmissionStartsThePollTimerTheNextLeavesItAlone) {
    run_time.Poll.PollStarted = true;
    send_to({5}, "TR;");
    EXPECT_FALSE(run_time.Poll.PollStarted);
    EXPECT_EQ(tmrPoll->interval_ms(), 100);
    run_time.Poll.PollStarted = true;
    tmrPoll->start(77);
    send_to({5}, "TR;");
    EXPECT_TRUE(run_time.Poll.PollStarted);
    EXPECT_EQ(tmrPoll->interval_ms(), 77);
}

TEST_F(CommandLinkTest, AnUnexpectedFailureIsReportedUnderItsTraceName) {
    driver.pod(5).tx_status = 1;
    files.space = 0;  // the error log cannot be written
    EXPECT_THROW(send_to({5}, "TR;"), ProgramEnded);
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"A serious error has occurred in KAVORIX at TX/TXString\n\nError code : 28, "
                      "Writing \"/station/ERR_LOG.TXT\": No space left on device\n\r\n"
                      "KAVORIX will stop",
                      16, "KAVORIX"}}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_FALSE(link.transmitting());
    EXPECT_EQ(state.Sending, 0);
}

TEST(LinkFailure, IsToldLoggedAndCountedAndTakesThePodOutOfWhatRuns) {
    constexpr auto Removed = AfterFault::Removed;
    constexpr auto Polled = AfterFault::Polled;
    struct Row {
        LinkFault kind;
        AfterFault after;
        const char* facts;
        const char* logged;
    };
    const Row rows[] = {
        {LinkFault::Transmit, Removed,
         "polled: 1 50; selected: 50; triggered: 50; removed: 5; in error: 5; message: ERROR! - "
         "Transmit Error (ZAV:05); fault: transmit; errors: 1",
         " ERROR! - Transmit Error (ZAV:05  Interface:C800)\r\n"},
        {LinkFault::Receive, Polled,
         "polled: 1 5 50; selected: 50; triggered: 50; scanning: 5; continuous!; in error: 5; "
         "message: ERROR! - Receive Error (ZAV:05); fault: receive; errors: 1",
         " ERROR! - Receive Error (ZAV:05  Interface:C800)\r\n"},
        {LinkFault::Other, Removed,
         "polled: 1 50; selected: 50; triggered: 50; removed: 5; in error: 5; errors: 1", ""},
    };
    for (const Row& row : rows) {
        Network network;
        network.select({5, 50});
        network.trigger({5, 50});
        network.run_time.Link.ScanState[Pod::numbered(5)] = ScanState::ContinuouslyScanning;
        network.run_time.Link.ContScanning = true;
        network.errors.RxTxErr(Pod::numbered(5), row.kind, row.after);
        EXPECT_EQ(network.facts(), row.facts);
        EXPECT_EQ(network.log_text(), test::LogHeader + row.logged);
        EXPECT_EQ(network.dialogs.beeps, *row.logged ? 1 : 0);
        EXPECT_EQ(network.run_time.Link.ErrorCount, 1);
    }
}

TEST_F(CommandLinkTest, AnotherPodThatScansIsNotedAfterAFailure) {
    state.ScanState[Pod::numbered(1)] = state.ScanState[Pod::numbered(50)] =
        ScanState::ContinuouslyScanning;
    fail(1);
    EXPECT_TRUE(state.ContScanning);
    fail(50);
    EXPECT_FALSE(state.ContScanning);
}

}  // namespace
}  // namespace kavorix
