// The configurations on their way to the pods, and what each pod was last sent.

#include "config/transmission.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::pods_with;
using Boxes = std::vector<test::ShownBox>;
using Pods = std::vector<int>;

const PodSet OneFiveFifty{Pod::numbered(1), Pod::numbered(5), Pod::numbered(50)};

test::ShownBox mismatch(const std::string& number) {
    return {"ZAV type does not match the configuration ZAV type for ZAV number " + number +
                ".\n\nConfiguration for this ZAV will not be transmitted.",
            box::Exclamation, "KAVORIX"};
}

// Pods 1 (7U), 5 (8S) and 50 (7U) of one channel each, which takes 20 ms to send.
struct TransmissionTest : testing::Test, test::Rig {
    TransmissionTest() {
        station({{1, "7UJA 0F 1.00"}, {5, "8SFN 0F 1.00"}, {50, "7UJA 0F 1.00"}});
        for (const int pod : {1, 5, 50}) config(pod).NumChannels = 1;
    }
    SentConfigurations sent{configuration.ZavConfig};
    Transmission transmission{
        {configuration, run_time.Status, run_time.Link, link, dialogs, failures, sent}};

    Pods transmit(const PodSet& pods) { return pods_with(transmission.transmit_config(pods)); }
    void fail(int pod) {
        errors.RxTxErr(Pod::numbered(pod), LinkFault::Receive, AfterFault::Removed);
    }
};

TEST_F(TransmissionTest, EveryPodGetsItsOwnStringOneAfterTheOther) {
    config(50).ScanPeriod = 2;
    select({1});
    driver.at_call([&](const test::DriverCall&) { EXPECT_EQ(run_time.Link.Sending, 2); });
    EXPECT_EQ(transmit(OneFiveFifty), (Pods{1, 5, 50}));
    EXPECT_EQ(driver.timed("Tx"),
              (Lines{"0 Tx 1 SP<00><00><00><00>", "10 Tx 1 CH1MO000", "20 Tx 5 SP<00><00><00><00>",
                     "30 Tx 5 CH1MO000", "40 Tx 50 SP@<00><00><00>", "50 Tx 50 CH1MO000"}));
    EXPECT_EQ(pods_with(run_time.Link.ZavSelected), Pods{1});
    EXPECT_EQ(run_time.Link.Sending, 0);
}

TEST_F(TransmissionTest, AnotherTypeConnectedIsToldAndSkipped) {
    config(5).TypeCode = Type8R;
    EXPECT_EQ(transmit(OneFiveFifty), (Pods{1, 50}));
    EXPECT_EQ(driver.recorded("Tx 5 "), Lines{});
    EXPECT_EQ(dialogs.boxes, Boxes{mismatch("05")});
}

TEST_F(TransmissionTest, AnUnconnectedPodPassesTheCheckWithoutATypeAlone) {
    EXPECT_EQ(transmission.load_config(Pod::numbered(20)), "SP'0';");
    EXPECT_EQ(dialogs.boxes, Boxes{});
    config(20).TypeCode = Type7U;
    EXPECT_EQ(transmission.load_config(Pod::numbered(20)), "");
    EXPECT_EQ(dialogs.boxes, Boxes{mismatch("20")});
}

TEST_F(TransmissionTest, APodThatFailsOrIsClearedBeforeItsTurnGetsNothing) {
    loop.call_later(5, [&] { fail(5); });
    loop.call_later(6, [&] { ++run_time.Link.Interruptions[Pod::numbered(50)]; });
    EXPECT_EQ(transmit(OneFiveFifty), Pods{1});
    EXPECT_EQ(driver.recorded("Tx").size(), 2u);
}

TEST_F(TransmissionTest, APodThatFailsInItsTurnGetsNoMoreAndTheOthersGoOn) {
    loop.call_later(25, [&] { fail(5); });
    EXPECT_EQ(transmit(OneFiveFifty), (Pods{1, 50}));
    EXPECT_EQ(driver.recorded("Tx 5 "), Lines{"Tx 5 SP<00><00><00><00>"});
}

TEST_F(TransmissionTest, ItsPodsStandWhateverIsSelectedMeanwhile) {
    run_time.Link.ZavSelected = {Pod::numbered(1), Pod::numbered(50)};
    loop.call_later(5, [&] { run_time.Link.ZavSelected = {Pod::numbered(5)}; });
    EXPECT_EQ(transmit(run_time.Link.ZavSelected), (Pods{1, 50}));
    EXPECT_EQ(pods_with(run_time.Link.ZavSelected), Pods{5});
}

TEST_F(TransmissionTest, ASecondOneInsideTheFirstDoesNothing) {
    loop.call_later(5, [&] { EXPECT_EQ(transmit(OneFiveFifty), Pods{}); });
    EXPECT_EQ(transmit({Pod::numbered(1)}), Pods{1});
    EXPECT_EQ(driver.recorded("Tx").size(), 2u);
    EXPECT_EQ(transmit({Pod::numbered(5)}), Pods{5});
}

TEST_F(TransmissionTest, WhatAPodWasSentDiffersFromWhatIsConfiguredSince) {
    const Pod five = Pod::numbered(5);
    EXPECT_FALSE(sent.differs(five)) << "nothing is known of it";
    transmit({five});
    config(5).Channel[0].Label = "Oven";
    EXPECT_FALSE(sent.differs(five)) << "labels are not sent";
    config(5).ScanPeriod = 2;
    EXPECT_TRUE(sent.differs(five));
    driver.pod(5).tx_status = 1;
    EXPECT_EQ(transmit({five}), Pods{});
    EXPECT_TRUE(sent.differs(five)) << "it did not come through";
    driver.pod(5).tx_status = 0;
    transmit({five});
    EXPECT_FALSE(sent.differs(five));
    sent.forget(five);
    EXPECT_TRUE(sent.differs(five));
    config(5).TypeCode = NoDevice;
    EXPECT_FALSE(sent.differs(five)) << "nothing would be sent";
}

TEST_F(TransmissionTest, AnUnexpectedFailureIsReportedUnderItsTraceName) {
    config(5).TypeCode = Type8R;
    dialogs.at_box([&](const test::ShownBox&) {
        dialogs.at_box(nullptr);
        throw std::runtime_error("no display");
    });
    EXPECT_THROW(transmission.load_config(Pod::numbered(5)), ProgramEnded);
    EXPECT_EQ(dialogs.boxes.back().text,
              "A serious error has occurred in KAVORIX at confact/load_config\n\n"
              "Error code : 0, no display\n\r\nKAVORIX will stop");
}

}  // namespace
}  // namespace kavorix
