#include <gtest/gtest.h>

#include "support/ui_rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::LogHeader;
using test::pods_with;
using test::scan;
using test::UiRig;
using Boxes = std::vector<test::ShownBox>;
using Pods = std::vector<int>;

const test::ShownBox Cleared{
    "You will need to re-transmit the configuration to the ZAV(s) which had errors.", 64,
    "Clear ZAV Errors"};
const test::ShownBox Sure{"Are you sure you wish to Exit KAVORIX", 33, "KAVORIX"};
constexpr const char* ReceiveError = " ERROR! - Receive Error (ZAV:05  Interface:C800)\r\n";

// Pods 3, 5 and 8, of which 3 and 5 are selected, while the poll timer runs.
class DuringWaits : public testing::Test, protected UiRig {
  protected:
    DuringWaits() {
        station({{3, "8SFN 0F 1.00"}, {5, "8SFN 0F 1.00"}, {8, "8SFN 0F 1.00"}});
        for (const int pod : {3, 5, 8}) config(pod).NumChannels = 1;  // SP and CH1MO000
        click({3, 5});
        start_polling();
    }
    LinkState& state() { return run_time.Link; }
    Pods selection() { return pods_with(state().ZavSelected); }
    Picture picture(int pod) const { return screen.img_ZAV[at(pod - 1)].picture; }
    void at_ms(int ms, std::function<void()> action) { loop.call_later(ms, std::move(action)); }
    void fail(int pod) { driver.pod(pod).test.fill(std::int16_t{-1}); }
    void heal(int pod) { driver.pod(pod).test.fill(std::nullopt); }
};

TEST_F(DuringWaits, APodThatFailsInTheHaltDelayLeavesTheRestOfItAlone) {
    state().ScanState[2] = state().ScanState[4] = 2;
    state().Triggered.fill(1);
    at_ms(1000, [&] { fail(5); });
    at_ms(1500, [&] {
        EXPECT_EQ(selection(), (Pods{3}));
        EXPECT_EQ(picture(5), Picture::img1ZAV_E);
        EXPECT_EQ(screen.pnlErr.caption, "Rx ERROR");
        EXPECT_FALSE(screen.cmdHalt.enabled);
    });
    operations.cmdHalt_Click();
    EXPECT_EQ(loop.elapsed_ms(), 3000);
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 HA", "0 Tx 5 HA"}));
    EXPECT_EQ(log_text(), LogHeader + ReceiveError);
    EXPECT_EQ(state().PollTable.NumInPoll, 2);
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(state().Triggered[2] + state().Triggered[4], 0);
    EXPECT_TRUE(screen.cmdHalt.enabled);
    EXPECT_EQ(run_time.Poll.PollCount, 2);  // polling went on
}

TEST_F(DuringWaits, ClearInTheHaltDelayPutsTheFailedPodBack) {
    at_ms(1000, [&] { fail(5); });
    at_ms(2000, [&] {
        heal(5);
        operations.cmdClear_Click();
    });
    operations.cmdHalt_Click();
    EXPECT_EQ(loop.elapsed_ms(), 3000);
    EXPECT_EQ(dialogs.boxes, (Boxes{Cleared}));
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{3, 5, 8}));
    EXPECT_EQ(selection(), (Pods{3}));
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(picture(5), Picture::img1ZAV);
    EXPECT_EQ(state().SessionErrorCount, 1);
}

TEST_F(DuringWaits, CommandsThatSendAreNotTakenInsideATransmission) {
    at_ms(500, [&] {
        operations.cmdTrig_Click();
        operations.cmdHalt_Click();
        operations.cmdTransmit_Click();
        operations.run(Command::EventCaptureOn);
        operations.run(Command::DefaultContScan);
        operations.run(Command::Delete);
    });
    operations.cmdHalt_Click();
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 HA", "0 Tx 5 HA"}));
    EXPECT_EQ(dialogs.boxes, Boxes{});
    EXPECT_EQ(loop.elapsed_ms(), 3000);
}

TEST_F(DuringWaits, AStatusReplyThatCameInTimeCountsAlthoughAHaltHeldUpItsReading) {
    driver.pod(5).ident = "8SFN 0F 9.99";
    driver.pod(5).reply_ms = 400;
    at_ms(100, [&] { operations.cmdHalt_Click(); });
    discovery.GetStatus(1);
    EXPECT_EQ(loop.elapsed_ms(), 3100);  // longer than the 1000 ms that two replies may take
    EXPECT_EQ(run_time.Status[4].ident(), "8SFN 0F 9.99");
    EXPECT_EQ(state().SessionErrorCount, 0);
    EXPECT_EQ(selection(), (Pods{3, 5}));
}

TEST_F(DuringWaits, ExitDeclinedInADelayGoesOnWithTheTransmission) {
    at_ms(1000, [&] {
        dialogs.answer(Answer::Cancel);
        operations.unload_request();
    });
    operations.cmdHalt_Click();
    EXPECT_EQ(dialogs.boxes, (Boxes{Sure}));
    EXPECT_EQ(loop.elapsed_ms(), 3000);
    EXPECT_TRUE(tmrPoll->running());
}

TEST_F(DuringWaits, ExitInADelayEndsTheProgramAtOnce) {
    at_ms(1000, [&] {
        dialogs.answer(Answer::Ok);
        operations.unload_request();
    });
    EXPECT_THROW(operations.cmdHalt_Click(), ProgramEnded);
    EXPECT_EQ(loop.elapsed_ms(), 1000);
    EXPECT_EQ(driver.recorded("Disconnect"), (Lines{"Disconnect 0"}));
    EXPECT_FALSE(files.has("/station/ERR_LOG.TXT"));
    loop.run_for(10'000);  // nothing of the transmission is left
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 HA", "0 Tx 5 HA"}));
}

TEST_F(DuringWaits, ExitIsRefusedWhileThePodStillScans) {
    state().ContScanning = state().ScanState[7] = 2;
    state().ContScanning = 1;
    at_ms(1000, [&] { operations.unload_request(); });
    operations.cmdHalt_Click();
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"Cannot Exit:   Continuous Scanning/Logging in Progress", 48, "KAVORIX"}}));
}

TEST_F(DuringWaits, APodSelectedInTheTriggerDelayIsNotTakenForTriggered) {
    config(3).ContScan = 1;
    at_ms(500, [&] { click({8}); });
    operations.cmdTrig_Click();
    EXPECT_EQ(loop.elapsed_ms(), 1000);
    EXPECT_EQ(selection(), (Pods{3, 5, 8}));
    EXPECT_EQ(pods_with(state().Triggered), (Pods{3, 5}));
}

TEST_F(DuringWaits, APodSelectedInTheHaltDelayGoesOnBeingRead) {
    state().Triggered.fill(1);
    at_ms(500, [&] { click({8}); });
    operations.cmdHalt_Click();
    EXPECT_EQ(state().Triggered[2] + state().Triggered[4], 0);
    EXPECT_EQ(state().Triggered[7], 1);
}

TEST_F(DuringWaits, TheSelectionStandsWhileConfigurationsAreSent) {
    at_ms(5, [&] {
        click({3, 8});
        EXPECT_EQ(
            screen.lblMsg,
            (Label{" Configuration is being Transmitted - Selection not Changed", Colour::Red}));
        operations.cmdSelectAll_Click();
        click({44});  // nothing is there, and nothing to say
    });
    operations.cmdTransmit_Click();
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 SP<00><00><00><00>", "10 Tx 3 CH1MO000",
                                         "20 Tx 5 SP<00><00><00><00>", "30 Tx 5 CH1MO000"}));
    EXPECT_EQ(selection(), (Pods{3, 5}));
    EXPECT_EQ(state().NumSelected, 2);
    EXPECT_EQ(state().AllSelected, 0);
    EXPECT_EQ(dialogs.beeps, 3);
    EXPECT_EQ(screen.lblMsg.caption, "");
    click({8});
    EXPECT_EQ(selection(), (Pods{3, 5, 8}));
}

TEST_F(DuringWaits, IconsShowTheSelectionAfterConfigurationsWereSent) {
    config(3).NumChannels = 32;  // long enough for poll ticks
    // Data of pod 5 comes while the selection names pod 3 alone.
    driver.pod(5).waiting[3] = {test::text("H")};
    run_time.Poll.Stream3AutoClear = 1;
    operations.cmdTransmit_Click();
    EXPECT_GT(loop.elapsed_ms(), 300);
    EXPECT_EQ(status(5).IconState, SelectedResting);
    EXPECT_EQ(picture(5), Picture::imgZAV);
    EXPECT_EQ(picture(3), Picture::imgZAV);
    EXPECT_EQ(picture(8), Picture::img1ZAV);
}

TEST_F(DuringWaits, APodThatFailsWhileAnotherGetsItsConfigurationStaysDeselected) {
    config(3).NumChannels = 32;
    at_ms(50, [&] { fail(5); });
    operations.cmdTransmit_Click();
    EXPECT_EQ(selection(), (Pods{3}));
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(picture(5), Picture::img1ZAV_E);
    EXPECT_EQ(log_text(), LogHeader + ReceiveError);
    EXPECT_EQ(driver.recorded("Tx 5"), Lines{});
}

TEST_F(DuringWaits, APodClearedWhileConfigurationsAreSentStaysDeselected) {
    config(3).NumChannels = 32;
    at_ms(50, [&] { fail(5); });
    at_ms(150, [&] {
        heal(5);
        operations.cmdClear_Click();
    });
    operations.cmdTransmit_Click();
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{3, 5, 8}));
    EXPECT_EQ(selection(), (Pods{3}));
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(picture(5), Picture::img1ZAV);
    EXPECT_EQ(driver.recorded("Tx 5"), Lines{});
}

TEST_F(DuringWaits, ExitWhileConfigurationsAreSentEndsTheProgram) {
    config(3).NumChannels = 32;
    configuration.ConfigChanged = 1;
    at_ms(50, [&] {
        dialogs.answer(Answer::No);
        dialogs.answer(Answer::Ok);
        operations.unload_request();
    });
    EXPECT_THROW(operations.cmdTransmit_Click(), ProgramEnded);
    EXPECT_EQ(driver.recorded("Tx 5"), Lines{});
}

TEST_F(DuringWaits, ReadingsAreTakenWhileAHaltIsWaitedFor) {
    state().Triggered.fill(1);
    driver.pod(3).waiting[0] = {scan({7.5F})};
    driver.pod(3).waiting[0][0].ready_ms = 2850;
    operations.cmdHalt_Click();
    EXPECT_EQ(status(3).Reading[0], 7.5F);
    driver.pod(3).waiting[0] = {scan({8.5F})};
    loop.run_for(1000);
    EXPECT_EQ(status(3).Reading[0], 7.5F);
}

}  // namespace
}  // namespace kavorix
