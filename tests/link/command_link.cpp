#include "link/command_link.h"

#include <gtest/gtest.h>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::pods_with;
using test::Rig;
using test::ShownBox;
using Boxes = std::vector<ShownBox>;
using Pods = std::vector<int>;

// Pods 3 and 5 of a station, pod 3 selected.
class CommandLinkTest : public testing::Test, protected Rig {
  protected:
    CommandLinkTest() {
        station({{3, "7RJA 0F 1.00"}, {5, "7VJA 0F 1.00"}});
        select({3});
    }
    LinkState& state() { return run_time.Link; }
};

struct StringRow {
    const char* command_string;
    Lines sent;  // with the virtual time of each
    long long end_ms;
};

TEST_F(CommandLinkTest, TokensAreSentOneAfterTheOtherWithTheirDelays) {
    const StringRow rows[] = {
        {"TR;", {"0 Tx 3 TR"}, 10},
        {"HA;TR;", {"0 Tx 3 HA", "3000 Tx 3 TR"}, 3010},
        {"RE;SE;CO;", {"0 Tx 3 RE", "500 Tx 3 SE", "510 Tx 3 CO"}, 520},
        {"HAL;REX;TRA;", {"0 Tx 3 HAL", "10 Tx 3 REX", "20 Tx 3 TRA"}, 30},
        {"ha;", {"0 Tx 3 ha"}, 10},
        {"", {}, 0},
        {";;", {}, 0},
        {";TR;;", {"0 Tx 3 TR"}, 10},
        {"TR;HA", {"0 Tx 3 TR"}, 10},
        {"TR", {}, 0},
        // Blanks go before the next character is appended, so only one at the very end stays.
        {"  A B ;", {"0 Tx 3 AB "}, 10},
        {" ;", {"0 Tx 3  "}, 10},
        {"SP'2.5';", {"0 Tx 3 SP@ <00><00>"}, 10},
        {"SP'-2.5';", {"0 Tx 3 SP<C0> <00><00>"}, 10},
        {"CH1'1'MO'2'X;", {"0 Tx 3 CH1?<80><00><00>MO@<00><00><00>X"}, 10},
        {"SP'rubbish';", {"0 Tx 3 SP<00><00><00><00>"}, 10},
        {"SP'2.5V';", {"0 Tx 3 SP@ <00><00>"}, 10},
        {"'';", {"0 Tx 3 <00><00><00><00>"}, 10},
        {"AB';';TR;", {"0 Tx 3 AB<00><00><00><00>", "10 Tx 3 TR"}, 20},
        // 1.0000038 ends in the byte of a blank, which goes when more is appended.
        {"A'1.0000038'B;", {"0 Tx 3 A?<80><00>B"}, 10},
        {"A'1.0000038';", {"0 Tx 3 A?<80><00> "}, 10},
    };
    for (const StringRow& row : rows) {
        SCOPED_TRACE(row.command_string);
        Rig fresh;
        fresh.station({{3, "7RJA 0F 1.00"}});
        fresh.select({3});
        fresh.send(row.command_string);
        EXPECT_EQ(fresh.driver.timed("Tx"), row.sent);
        EXPECT_EQ(fresh.loop.elapsed_ms(), row.end_ms);
        EXPECT_EQ(fresh.dialogs.boxes, Boxes{});
        EXPECT_EQ(fresh.screen.lblMsg.caption, "");
        EXPECT_TRUE(fresh.tmrPoll->running());
    }
}

TEST_F(CommandLinkTest, AnUnclosedQuoteEndsTheStringWithAMessage) {
    send("TR;HL'1.5");
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 TR"}));
    EXPECT_EQ(dialogs.boxes, (Boxes{{"IEEE Error in command string", 64, "KAVORIX"}}));
    EXPECT_EQ(dialogs.beeps, 1);
}

TEST_F(CommandLinkTest, NothingBehindAnUnclosedQuoteIsSent) {
    send("HL'1.5;TR;HA;");
    EXPECT_EQ(driver.timed("Tx"), Lines{});
    EXPECT_EQ(dialogs.boxes, (Boxes{{"IEEE Error in command string", 64, "KAVORIX"}}));
    EXPECT_TRUE(tmrPoll->running());
}

TEST_F(CommandLinkTest, WithoutASelectionTheDelaysAreStillWaited) {
    select({});
    state().ZavSelected.fill(0);
    send("HA;RE;TR;");
    EXPECT_EQ(driver.timed("Tx"), Lines{});
    EXPECT_EQ(loop.elapsed_ms(), 30);
}

TEST_F(CommandLinkTest, EveryTokenGoesToAllSelectedPodsInAscendingOrder) {
    select({5});
    send("EV1;SE;");
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 EV1", "0 Tx 5 EV1", "10 Tx 3 SE", "10 Tx 5 SE"}));
}

TEST_F(CommandLinkTest, ProgressIsShownWhileSendingAndGoneAfterwards) {
    Lines seen;
    driver.at_call([&](const test::DriverCall&) {
        seen.push_back(screen.lblMsg.caption + (dialogs.pointer == Pointer::Busy ? " busy" : ""));
        EXPECT_EQ(screen.lblMsg.fore, Colour::Blue);
    });
    send("TR;");
    EXPECT_EQ(seen, (Lines{" Transmitting Command String busy"}));
    EXPECT_EQ(screen.lblMsg, (Label{"", Colour::Blue}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

struct TriggerRow {
    Pods continuous;  // pods configured for continuous scan
    const char* command_string;
    std::int16_t state3;
    std::int16_t state5;
    long long end_ms;
    const char* panel;
};

TEST_F(CommandLinkTest, ScanStatesFollowTheTokens) {
    const TriggerRow rows[] = {
        {{3}, "TR;", 2, 0, 1000, "CONT SCAN"},
        {{5}, "TR;", 0, 2, 1000, "CONT SCAN"},
        {{3, 5}, "TR;", 2, 2, 1000, "CONT SCAN"},
        {{}, "TR;", 0, 0, 10, ""},
        {{3, 5}, "", 1, 1, 0, ""},
        {{3, 5}, "SE;", 1, 1, 10, ""},
        {{3, 5}, "TR;HA;", 0, 0, 4000, ""},
        {{3, 5}, "TR;RE;", 0, 0, 1500, ""},
        // A second trigger finds no pod in state 1.
        {{3}, "TR;TR;", 2, 0, 1010, "CONT SCAN"},
    };
    for (const TriggerRow& row : rows) {
        SCOPED_TRACE(row.command_string + std::to_string(row.continuous.size()));
        Rig fresh;
        fresh.station({{3, "7RJA 0F 1.00"}, {5, "7VJA 0F 1.00"}});
        fresh.select({3, 5});
        for (const int pod : row.continuous) fresh.config(pod).ContScan = 1;
        fresh.send(row.command_string);
        EXPECT_EQ(fresh.run_time.Link.ScanState[2], row.state3);
        EXPECT_EQ(fresh.run_time.Link.ScanState[4], row.state5);
        EXPECT_EQ(fresh.loop.elapsed_ms(), row.end_ms);
        EXPECT_EQ(fresh.screen.pnlContScan.caption, row.panel);
        const bool scanning = *row.panel != 0;
        EXPECT_EQ(fresh.run_time.Link.ContScanning, scanning ? 1 : 0);
        EXPECT_EQ(fresh.main_window.calls, scanning ? Lines{"ConfigItems 0"} : Lines{});
    }
}

TEST_F(CommandLinkTest, ContinuousPodsGetTheirPreambleWhoseStatusIsNotLookedAt) {
    config(3).ContScan = 1;
    config(5).ContScan = 1;  // not selected
    driver.pod(3).tx_status = 1;
    send("");
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 CO"}));
    EXPECT_EQ(state().ScanState[2], 1);
    EXPECT_EQ(state().ErrorCount, 0);
    EXPECT_EQ(loop.elapsed_ms(), 0);
    EXPECT_TRUE(tmrPoll->running());
}

TEST_F(CommandLinkTest, APodThatFailsIsRemovedAndTheOthersGetTheRest) {
    select({5});
    driver.pod(3).tx_status = 1;
    send("RE;SE;");
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 RE", "0 Tx 5 RE", "500 Tx 5 SE"}));
    EXPECT_EQ(screen.lblMsg, (Label{" ERROR! - Transmit Error (ZAV:03)", Colour::Red}));
    EXPECT_EQ(log_text(),
              test::LogHeader + " ERROR! - Transmit Error (ZAV:03  Interface:C800)\r\n");
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{5}));
    EXPECT_EQ(pods_with(state().ZavSelected), (Pods{5}));
    EXPECT_EQ(pods_with(link.reached()), (Pods{5}));
}

TEST_F(CommandLinkTest, AnyOtherTransmitStatusCountsAsSent) {
    for (const int status : {2, -1, 32767, -32768}) {
        driver.pod(3).tx_status = static_cast<std::int16_t>(status);
        send("HA;");
        EXPECT_EQ(state().ErrorCount, 0) << status;
    }
    EXPECT_EQ(loop.elapsed_ms(), 4 * 3000);
}

TEST_F(CommandLinkTest, RequestsAreBookedPerPodAndForTheFirst) {
    select({5});
    status(3).SingleNew.fill(1);
    status(50).SinglePending.fill(1);
    state().StreamRequests[2] = "ME1;";
    state().FirstPodInputRequests = "IN9;";
    send("ME5;IN3;EV1;IN4;");
    EXPECT_EQ(state().StreamRequests[2], "ME1;ME5;IN3;IN4;");
    EXPECT_EQ(state().StreamRequests[4], "ME5;IN3;IN4;");
    EXPECT_EQ(state().FirstPodInputRequests, "IN3;IN4;");
    EXPECT_EQ(state().RequestCount, 6);
    EXPECT_EQ(status(3).SingleNew, ChannelFlags{});
    EXPECT_EQ(status(50).SinglePending, ChannelFlags{});

    status(3).SingleNew.fill(1);
    send("EV0;");
    EXPECT_EQ(status(3).SingleNew[0], 1);
    send("IN8;");
    EXPECT_EQ(state().FirstPodInputRequests, "IN8;");
    EXPECT_EQ(state().RequestCount, 2);
}

TEST_F(CommandLinkTest, RequestedChannelsArePendingAndOlderAnswersForgotten) {
    select({5});
    driver.pod(5).tx_status = 1;
    run_time.Poll.RequestKinds[2] = "01";
    run_time.Poll.RequestKinds[49] = "0";
    send("EV1;");
    EXPECT_EQ(run_time.Poll.RequestKinds[2], "01");
    send("ME05;IN32;ME0;ME33;");
    ChannelFlags expected{};
    expected[4] = expected[31] = 1;
    EXPECT_EQ(status(3).SinglePending, expected);
    EXPECT_EQ(status(5).SinglePending, ChannelFlags{});  // did not get it
    EXPECT_EQ(run_time.Poll.RequestKinds[2], "");
    EXPECT_EQ(run_time.Poll.RequestKinds[49], "");
}

TEST_F(CommandLinkTest, ARequestThatWasNotSentIsNotBooked) {
    select({5});
    driver.pod(3).tx_status = 1;
    send("IN3;");
    EXPECT_EQ(state().StreamRequests[2], "");
    EXPECT_EQ(state().StreamRequests[4], "IN3;");
    EXPECT_EQ(state().FirstPodInputRequests, "IN3;");
    EXPECT_EQ(state().RequestCount, 1);
}

TEST_F(CommandLinkTest, TheFirstTransmissionStartsThePollTimerTheNextLeavesItAlone) {
    run_time.Poll.PollStarted = 1;
    send("TR;");
    EXPECT_EQ(run_time.Poll.PollStarted, 0);
    EXPECT_EQ(tmrPoll->interval_ms(), 100);
    loop.run_for(150);
    EXPECT_EQ(run_time.Poll.PollStarted, 1);
    tmrPoll->start(77);
    send("TR;");
    EXPECT_EQ(run_time.Poll.PollStarted, 1);
    EXPECT_EQ(tmrPoll->interval_ms(), 77);
}

TEST_F(CommandLinkTest, ASecondTransmissionInsideTheFirstIsRefused) {
    loop.call_later(1000, [&] {
        send("TR;");
        EXPECT_EQ(screen.lblMsg,
                  (Label{" Transmission in Progress - Command not Sent", Colour::Red}));
    });
    send("HA;SE;");
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 HA", "3000 Tx 3 SE"}));
    EXPECT_EQ(screen.lblMsg.caption, "");
    send("TR;");
    EXPECT_EQ(driver.timed("Tx 3 TR"), (Lines{"3010 Tx 3 TR"}));
}

TEST_F(CommandLinkTest, APodSelectedInTheMiddleGetsNoHalfString) {
    loop.call_later(100, [&] { select({5}); });
    send("RE;SE;CO;");
    EXPECT_EQ(driver.recorded("Tx 5"), Lines{});
    EXPECT_EQ(pods_with(link.reached()), (Pods{3}));
    EXPECT_EQ(pods_with(state().ZavSelected), (Pods{3, 5}));
}

TEST_F(CommandLinkTest, APodDeselectedInTheMiddleGetsNoFurtherTokenEvenWhenSelectedAgain) {
    select({5});
    loop.call_later(100, [&] { state().ZavSelected[4] = 0; });
    loop.call_later(600, [&] { state().ZavSelected[4] = 1; });
    send("RE;HA;SE;");
    EXPECT_EQ(driver.timed("Tx 5"), (Lines{"0 Tx 5 RE"}));
    EXPECT_EQ(pods_with(link.reached()), (Pods{3}));
}

struct FailureRow {
    std::int16_t kind;
    std::int16_t remove;
    const char* message;
    const char* log_line;
    const char* panel;
};

TEST_F(CommandLinkTest, ALinkFailureIsToldLoggedAndCounted) {
    const FailureRow rows[] = {
        {0, 1, " ERROR! - Transmit Error (ZAV:05)",
         " ERROR! - Transmit Error (ZAV:05  Interface:C800)\r\n", "Tx ERROR"},
        {1, 1, " ERROR! - Receive Error (ZAV:05)",
         " ERROR! - Receive Error (ZAV:05  Interface:C800)\r\n", "Rx ERROR"},
        {2, 1, "", "", ""},
        {0, 0, " ERROR! - Transmit Error (ZAV:05)",
         " ERROR! - Transmit Error (ZAV:05  Interface:C800)\r\n", "Tx ERROR"},
        {1, 0, " ERROR! - Receive Error (ZAV:05)",
         " ERROR! - Receive Error (ZAV:05  Interface:C800)\r\n", "Rx ERROR"},
        {1, 2, " ERROR! - Receive Error (ZAV:05)",
         " ERROR! - Receive Error (ZAV:05  Interface:C800)\r\n", "Rx ERROR"},
        {-1, 0, "", "", ""},
    };
    for (const FailureRow& row : rows) {
        SCOPED_TRACE(std::to_string(row.kind) + " " + std::to_string(row.remove));
        Rig fresh;
        fresh.station({{3, "7RJA 0F 1.00"}, {5, "7VJA 0F 1.00"}});
        fresh.select({3, 5});
        LinkState& after = fresh.run_time.Link;
        after.ScanState[4] = 2;
        after.ContScanning = 1;
        after.Triggered.fill(1);
        fresh.screen.pnlContScan.caption = "CONT SCAN";
        fresh.link.RxTxErr(4, row.kind, row.remove);

        const bool removed = row.remove == 1;
        EXPECT_EQ(fresh.screen.lblMsg.caption, row.message);
        EXPECT_EQ(fresh.dialogs.beeps, *row.message ? 1 : 0);
        EXPECT_EQ(fresh.log_text(), test::LogHeader + row.log_line);
        EXPECT_EQ(fresh.screen.pnlErr.caption, row.panel);
        EXPECT_EQ(after.ErrorCount, 1);
        EXPECT_EQ(after.SessionErrorCount, 1);
        EXPECT_EQ(fresh.status(5).ErrorFlag, 1);
        EXPECT_EQ(pods_with(after.ZavSelected), (Pods{3}));
        EXPECT_EQ(after.NumSelected, 1);
        EXPECT_EQ(after.Triggered[4], 0);
        EXPECT_EQ(after.Triggered[2], 1);
        EXPECT_EQ(after.PollTable.InPollTable[4], removed ? 0 : 1);
        EXPECT_EQ(after.PollTable.NumInPoll, removed ? 1 : 2);
        EXPECT_EQ(fresh.status(5).IconState, removed ? Removed : Resting);
        EXPECT_EQ(fresh.screen.img_ZAV[4].picture == Picture::img1ZAV_E, removed);
        EXPECT_EQ(after.ScanState[4], removed ? 0 : 2);
        EXPECT_EQ(after.ContScanning, removed ? 0 : 1);
        EXPECT_EQ(fresh.screen.pnlContScan.caption, removed ? "" : "CONT SCAN");
    }
}

TEST_F(CommandLinkTest, APodThatFailsTwiceLeavesThePollTableOnce) {
    link.RxTxErr(4, 1, 1);
    link.RxTxErr(4, 0, 1);
    EXPECT_EQ(state().PollTable.NumInPoll, 1);
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(state().SessionErrorCount, 2);
}

TEST_F(CommandLinkTest, AnotherPodThatScansKeepsThePanel) {
    state().ScanState[2] = 2;
    state().ScanState[4] = 2;
    screen.pnlContScan.caption = "CONT SCAN";
    link.RxTxErr(4, 1, 1);
    EXPECT_EQ(state().ContScanning, 1);
    EXPECT_EQ(screen.pnlContScan.caption, "CONT SCAN");
}

TEST_F(CommandLinkTest, AnUnexpectedFailureIsReportedUnderItsTraceName) {
    driver.pod(3).tx_status = 1;
    files.space = 0;  // the error log cannot be written
    EXPECT_THROW(send("TR;"), ProgramEnded);
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"A serious error has occurred in KAVORIX at TX/TXString\n\nError code : 28, "
                      "Writing \"/station/ERR_LOG.TXT\": No space left on device\n\r\n"
                      "KAVORIX will stop",
                      16, "KAVORIX"}}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_FALSE(link.transmitting());
}

}  // namespace
}  // namespace kavorix
