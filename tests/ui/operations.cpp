#include "ui/operations.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/ui_rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::pods_with;
using test::UiRig;
using Boxes = std::vector<test::ShownBox>;
using Pods = std::vector<int>;

// Pods 3 (7R), 5 (8S) and 8 (7V); nothing selected.
class OperationsTest : public testing::Test, protected UiRig {
  protected:
    OperationsTest() {
        operations.on(Command::InterfaceCard, [] {});
        operations.on(Command::ZavSetup, [] {});
        station({{3, "7RJA 0F 1.00"}, {5, "8SFN 0F 1.00"}, {8, "7VJA 0F 1.00"}});
    }
    LinkState& state() { return run_time.Link; }
    Pods selection() { return pods_with(state().ZavSelected); }
    Picture picture(int pod) const { return screen.img_ZAV[at(pod - 1)].picture; }
    std::string enabled_buttons() const {
        std::string names;
        const auto add = [&](const Button& button, const char* name) {
            if (button.enabled) names += names.empty() ? name : std::string(" ") + name;
        };
        add(screen.cmdTrig, "Trig");
        add(screen.cmdHalt, "Halt");
        add(screen.cmdTransmit, "Transmit");
        add(screen.cmdConfig, "Config");
        add(screen.cmdDefault, "Default");
        add(screen.cmdSelectAll, "SelectAll");
        add(screen.cmdClear, "Clear");
        return names;
    }
};

TEST_F(OperationsTest, TriggerSendsAndAwaitsResultsOfThePodsItReached) {
    click({3, 8});
    driver.pod(8).tx_status = 1;
    std::string while_sending;
    driver.at_call([&](const test::DriverCall&) { while_sending = enabled_buttons(); });
    operations.cmdTrig_Click();
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 TR", "0 Tx 8 TR"}));
    EXPECT_EQ(pods_with(state().Triggered), (Pods{3}));
    EXPECT_EQ(while_sending, "Default SelectAll Clear");
    EXPECT_EQ(enabled_buttons(), "Trig Halt Transmit Config Default SelectAll Clear");
}

TEST_F(OperationsTest, ATriggerToAPodInContinuousModeEndsTheConfiguration) {
    click({3});
    config(3).ContScan = 1;
    operations.run(Command::Trigger);
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 CO", "0 Tx 3 TR"}));
    EXPECT_EQ(screen.pnlContScan.caption, "CONT SCAN");
    EXPECT_EQ(enabled_buttons(), "Trig Halt Default SelectAll Clear");
    EXPECT_FALSE(screen.mnuConfigItem[0].enabled);
    EXPECT_TRUE(screen.mnuConfigItem[13].enabled);
}

TEST_F(OperationsTest, HaltEndsTheReadingAndGivesTheConfigurationBack) {
    click({3});
    config(3).ContScan = 1;
    operations.cmdTrig_Click();
    driver.calls.clear();
    config(3).ContScan = 0;
    operations.cmdHalt_Click();
    EXPECT_EQ(driver.timed("Tx"), (Lines{"1000 Tx 3 HA"}));
    EXPECT_EQ(loop.elapsed_ms(), 4000);
    EXPECT_EQ(pods_with(state().Triggered), Pods{});
    EXPECT_EQ(screen.pnlContScan.caption, "");
    EXPECT_EQ(enabled_buttons(), "Trig Halt Transmit Config Default SelectAll Clear");
    EXPECT_TRUE(screen.mnuConfigItem[0].enabled);
}

TEST_F(OperationsTest, HaltWhileALogRunsLeavesTheConfigurationOff) {
    for (int log = 0; log < 2; ++log) {
        UiRig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.click({3});
        rig.config(3).ContScan = 1;
        rig.operations.cmdTrig_Click();
        (log == 0 ? rig.run_time.Log.ScanLogging : rig.run_time.Log.EventLogging) = 1;
        rig.operations.cmdHalt_Click();
        EXPECT_EQ(rig.run_time.Link.ContScanning, 0);
        EXPECT_FALSE(rig.screen.cmdTransmit.enabled);
        EXPECT_FALSE(rig.screen.mnuConfigItem[3].enabled);
    }
}

TEST_F(OperationsTest, TransmitSendsEveryPodItsOwnConfiguration) {
    click({5, 8});
    config(5).NumChannels = 1;
    config(8).TypeCode = Type7W;
    operations.cmdTransmit_Click();
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 5 SP<00><00><00><00>", "10 Tx 5 CH1MO000"}));
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"ZAV type does not match the configuration ZAV type for ZAV number 08.\n\n"
                      "Configuration for this ZAV will not be transmitted.",
                      48, "KAVORIX"}}));
    EXPECT_EQ(selection(), (Pods{5, 8}));
    EXPECT_EQ(state().NumSelected, 2);
}

struct ConfigRow {
    Pods pods;
    bool interface;
    const char* opened;
    Boxes boxes;
};

TEST_F(OperationsTest, ConfigOpensWhatIsSelected) {
    const ConfigRow rows[] = {
        {{}, true, "interface", {}},
        {{3}, true, "interface", {}},
        {{3}, false, "pod", {}},
        {{}, false, "", {{"Select either Interface or ZAV Icon for Configuration", 48, "KAVORIX"}}},
        {{3, 5}, false, "", {{"More than 1 ZAV Icon Selected for Configuration", 48, "KAVORIX"}}},
    };
    for (const ConfigRow& row : rows) {
        UiRig rig;
        std::string opened;
        rig.operations.on(Command::InterfaceCard, [&] { opened = "interface"; });
        rig.operations.on(Command::ZavSetup, [&] { opened = "pod"; });
        rig.station({{3, "7RJA 0F 1.00"}, {5, "8SFN 0F 1.00"}});
        rig.click(row.pods);
        if (row.interface) rig.operations.img_4A_Click();
        rig.operations.cmdConfig_Click();
        EXPECT_EQ(opened, row.opened);
        EXPECT_EQ(rig.dialogs.boxes, row.boxes);
    }
}

TEST_F(OperationsTest, TheScreenIsDefaultOrExpanded) {
    const auto shown = [&] {
        return std::string(screen.expanded ? "expanded " : "default ") +
               (screen.mnuOptionsItem[0].checked ? "D" : "-") +
               (screen.mnuOptionsItem[1].checked ? "E" : "-");
    };
    EXPECT_EQ(shown(), "default D-");
    operations.run(Command::ExpandScreen);
    EXPECT_EQ(shown(), "expanded -E");
    operations.run(Command::ExpandScreen);
    EXPECT_EQ(shown(), "expanded -E");
    operations.cmdDefault_Click();
    EXPECT_EQ(shown(), "default D-");
    operations.cmdDefault_Click();
    operations.run(Command::DefaultScreen);
    EXPECT_EQ(shown(), "default D-");
}

TEST_F(OperationsTest, SelectAllIsAToggleOfItsOwn) {
    operations.cmdSelectAll_Click();
    EXPECT_EQ(selection(), (Pods{3, 5, 8}));
    EXPECT_EQ(state().NumSelected, 3);
    EXPECT_EQ(state().AllSelected, 1);
    EXPECT_EQ(picture(8), Picture::imgZAV);
    click({5, 8});  // one stays
    operations.cmdSelectAll_Click();
    EXPECT_EQ(selection(), Pods{});
    EXPECT_EQ(state().NumSelected, 0);
    EXPECT_EQ(state().AllSelected, 0);
    EXPECT_EQ(picture(3), Picture::img1ZAV);
}

TEST_F(OperationsTest, SelectAllLeavesPodsThatWereRemovedAlone) {
    link.RxTxErr(4, 1, 1);
    operations.cmdSelectAll_Click();
    EXPECT_EQ(selection(), (Pods{3, 8}));
    EXPECT_EQ(state().NumSelected, 2);
    EXPECT_EQ(picture(5), Picture::img1ZAV_E);
}

TEST_F(OperationsTest, AClickTogglesAPodOfThePollTable) {
    click({3});
    EXPECT_EQ(selection(), (Pods{3}));
    EXPECT_EQ(picture(3), Picture::imgZAV);
    EXPECT_TRUE(screen.cmdTrig.enabled);
    click({5, 3});
    EXPECT_EQ(selection(), (Pods{5}));
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(picture(3), Picture::img1ZAV);
    click({4, 50});  // nothing there
    EXPECT_EQ(selection(), (Pods{5}));
    EXPECT_EQ(state().NumSelected, 1);
    click({5});
    EXPECT_FALSE(screen.cmdTrig.enabled);
}

TEST_F(OperationsTest, TheInterfaceIconTogglesItsPicture) {
    operations.img_4A_Click();
    EXPECT_EQ(state().InterfaceSelected, 1);
    EXPECT_EQ(screen.img_4A.picture, Picture::img4A);
    EXPECT_EQ(enabled_buttons(), "Transmit Config Default SelectAll Clear");
    operations.img_4A_Click();
    EXPECT_EQ(screen.img_4A.picture, Picture::img14A);
    screen.img_4A.visible = false;
    operations.img_4A_Click();
    EXPECT_EQ(state().InterfaceSelected, 0);
}

struct IconRow {
    int state;
    int selected;
    int unselected;
};

TEST_F(OperationsTest, IconReverseKeepsWhatElseTheIconSays) {
    const IconRow rows[] = {
        {Resting, SelectedResting, Resting},
        {SelectedResting, SelectedResting, Resting},
        {DataArrived, SelectedDataArrived, DataArrived},
        {SelectedDataArrived, SelectedDataArrived, DataArrived},
        {Removed, Removed, Removed},
        {LoggingResting, SelectedLoggingResting, LoggingResting},
        {SelectedLoggingResting, SelectedLoggingResting, LoggingResting},
        {LoggingDataArrived, SelectedLoggingDataArrived, LoggingDataArrived},
        {SelectedLoggingDataArrived, SelectedLoggingDataArrived, LoggingDataArrived},
    };
    for (const IconRow& row : rows)
        for (const bool selected : {false, true}) {
            status(3).IconState = static_cast<std::int16_t>(row.state);
            state().ZavSelected[2] = selected;
            operations.IconReverse(2);
            const int expected = selected ? row.selected : row.unselected;
            EXPECT_EQ(status(3).IconState, expected);
            EXPECT_EQ(picture(3), picture_of(static_cast<std::int16_t>(expected)));
        }
}

TEST_F(OperationsTest, ClearPutsFailedPodsBack) {
    click({3, 8});
    driver.pod(3).tx_status = 1;
    operations.cmdTrig_Click();
    driver.pod(3).tx_status = 0;
    driver.calls.clear();
    dialogs.take_boxes();
    ASSERT_EQ(picture(3), Picture::img1ZAV_E);
    operations.cmdClear_Click();
    EXPECT_EQ(driver.recorded(),
              (Lines{"String 3/0 10", "String 3/1 10", "String 3/2 10", "String 3/3 10"}));
    EXPECT_EQ(screen.lblMsg.caption, "");
    EXPECT_EQ(screen.pnlErr.caption, "");
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"You will need to re-transmit the configuration to the ZAV(s) which had "
                      "errors.",
                      64, "Clear ZAV Errors"}}));
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{3, 5, 8}));
    EXPECT_EQ(state().PollTable.NumInPoll, 3);
    EXPECT_EQ(status(3).ErrorFlag, 0);
    EXPECT_EQ(status(3).IconState, Resting);
    EXPECT_EQ(picture(3), Picture::img1ZAV);
    EXPECT_EQ(selection(), (Pods{8}));
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(state().SessionErrorCount, 1);
}

TEST_F(OperationsTest, ClearCoversAPodThatNeverAnsweredAndWasSelected) {
    status(5).ErrorFlag = 1;  // of start-up: still in the poll table
    click({5});
    operations.cmdClear_Click();
    EXPECT_EQ(status(5).ErrorFlag, 0);
    EXPECT_EQ(selection(), Pods{});
    EXPECT_EQ(state().NumSelected, 0);
    EXPECT_EQ(state().PollTable.NumInPoll, 3);
}

TEST_F(OperationsTest, ClearLeavesPodsWithoutErrorsAlone) {
    click({3});
    operations.cmdClear_Click();
    EXPECT_EQ(driver.recorded(), Lines{});
    EXPECT_EQ(selection(), (Pods{3}));
}

TEST_F(OperationsTest, TheTitleNamesTheFileAndItsChanges) {
    EXPECT_EQ(screen.caption, "KAVORIXER");
    const auto after = [&](const char* file, std::int16_t changed) {
        configuration.ConfigFileName = file;
        configuration.ConfigChanged = changed;
        operations.run(Command::ZavSetup);
        return screen.caption;
    };
    click({3});
    EXPECT_EQ(after("", 1), "KAVORIXER *");
    EXPECT_EQ(after("/plant/Kiln 4.CFG", 0), "KAVORIXER - Kiln 4.CFG");
    EXPECT_EQ(after("/plant/Kiln 4.CFG", 1), "KAVORIXER - Kiln 4.CFG *");
}

TEST_F(OperationsTest, PodsThatHaveSomethingToBeTransmittedAreMarked) {
    const auto marked = [&] {
        Pods pods;
        for (int pod = 1; pod <= MaxZavs; ++pod)
            if (screen.img_ZAV[at(pod - 1)].differs) pods.push_back(pod);
        return pods;
    };
    for (const int pod : {3, 5, 8}) sent.note(pod - 1);
    operations.on(Command::ZavSetup, [&] {
        config(3).ScanPeriod = config(8).ScanPeriod = 100;
        config(5).Channel[0].Label = "Oven";
    });
    click({3});
    EXPECT_EQ(marked(), Pods{});
    operations.run(Command::ZavSetup);
    EXPECT_EQ(marked(), (Pods{3, 8}));
    operations.run(Command::TransmitConfig);
    EXPECT_EQ(marked(), (Pods{8}));
    click({5, 8});
    driver.pod(5).tx_status = 1;
    dialogs.answer(Answer::Ok);
    operations.run(Command::DefaultContScan);
    EXPECT_EQ(marked(), (Pods{5})) << "5 could not be reached";
    operations.cmdClear_Click();
    EXPECT_EQ(marked(), (Pods{5}));
    status(8).ErrorFlag = 1;
    operations.cmdClear_Click();
    EXPECT_EQ(marked(), (Pods{5, 8})) << "what a failed pod holds is not known";
}

TEST_F(OperationsTest, AMenuOfAPodIsAboutTheSelectionOrThatPodAlone) {
    click({3, 5});
    operations.select_for_menu(4);
    EXPECT_EQ(selection(), (Pods{3, 5}));
    operations.select_for_menu(7);
    EXPECT_EQ(selection(), (Pods{8}));
    EXPECT_EQ(state().NumSelected, 1);
    EXPECT_EQ(picture(3), Picture::img1ZAV);
    EXPECT_EQ(picture(8), Picture::imgZAV);
    operations.select_for_menu(20);  // nothing there
    EXPECT_EQ(selection(), (Pods{8}));
}

TEST_F(OperationsTest, DeleteResetsTheSelectedPodsAfterAsking) {
    click({3, 8});
    for (const int pod : {3, 5, 8}) config(pod).Channel[0].Label = "Oven";
    config(8).ContScan = 1;
    dialogs.answer(Answer::Cancel);
    operations.run(Command::Delete);
    EXPECT_EQ(config(3).Channel[0].Label, "Oven");
    EXPECT_EQ(screen.lblMsg.caption, "");
    dialogs.answer(Answer::Ok);
    operations.run(Command::Delete);
    const test::ShownBox question{"Configurations for the Selected ZAV(s) will be Deleted", 33,
                                  "KAVORIX"};
    EXPECT_EQ(dialogs.boxes, (Boxes{question, question}));
    EXPECT_EQ(screen.lblMsg, (Label{" Configuration(s) Deleted", Colour::Blue}));
    EXPECT_EQ(config(3).Channel[0].Label + config(8).Channel[0].Label, "");
    EXPECT_EQ(config(8).ContScan, 0);
    EXPECT_EQ(config(8).TypeCode, Type7V);
    EXPECT_EQ(config(5).Channel[0].Label, "Oven");
    EXPECT_EQ(configuration.ConfigChanged, 0);
    EXPECT_EQ(driver.recorded(), Lines{});
}

TEST_F(OperationsTest, DefaultContScanSetsUpAndSendsAfterAsking) {
    const test::ShownBox question{"Selected ZAV(s) will be Set to:  'Default, Continuous Scan'", 33,
                                  "KAVORIX"};
    click({8});
    dialogs.answer(Answer::Cancel);
    operations.run(Command::DefaultContScan);
    EXPECT_EQ(config(8).ContScan, 0);
    EXPECT_EQ(driver.recorded(), Lines{});
    dialogs.answer(Answer::Ok);
    operations.run(Command::DefaultContScan);
    EXPECT_EQ(dialogs.boxes, (Boxes{question, question}));
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 8 CO", "0 Tx 8 RE", "500 Tx 8 SE", "510 Tx 8 CO"}));
    PodConfig expected;
    default_ZAV_config(expected, Type7V, 1);
    expected.ContScan = expected.Setup = 1;
    EXPECT_EQ(config(8), expected);
    EXPECT_EQ(config(3).ContScan, 0);
    EXPECT_EQ(configuration.ConfigChanged, 1);
}

TEST_F(OperationsTest, EventCaptureSendsItsCommand) {
    state().ZavSelected[1] = 0;
    status(3).Ident[0] = '8';  // an 8R pod
    click({3});
    operations.run(Command::EventCaptureOn);
    operations.run(Command::EventCaptureOff);
    EXPECT_EQ(driver.timed("Tx"), (Lines{"0 Tx 3 EV1", "10 Tx 3 EV0"}));
}

TEST_F(OperationsTest, StreamThreeAutoClearForgetsThePendingTexts) {
    for (const bool on : {true, false}) {
        for (const int pod : {3, 50}) {
            status(pod).StreamSeen.fill(1);
            screen.lblStrm3[at(pod - 1)].caption = "3";
        }
        operations.run(Command::Stream3AutoClear);
        EXPECT_EQ(run_time.Poll.Stream3AutoClear, on ? 1 : 0);
        EXPECT_EQ(screen.mnuOptionsItem[5].checked, on);
        for (const int pod : {3, 50}) {
            EXPECT_EQ(status(pod).StreamSeen, (std::array<std::int16_t, 4>{1, 1, 1, 0}));
            EXPECT_EQ(screen.lblStrm3[at(pod - 1)].caption, "-");
        }
    }
}

TEST_F(OperationsTest, TheReminderIsOnUntilItIsToggled) {
    EXPECT_TRUE(screen.mnuTransmitRem.checked);
    operations.run(Command::TransmitReminder);
    EXPECT_FALSE(screen.mnuTransmitRem.checked);
    operations.run(Command::TransmitReminder);
    EXPECT_TRUE(screen.mnuTransmitRem.checked);
}

TEST_F(OperationsTest, AboutNamesProgramModelAndDriver) {
    const std::pair<std::string, std::string> versions[] = {
        {"Scripted driver 1.0", "Scripted driver 1.0"},
        {"  padded  ", "padded"},
        {std::string("cut\0here", 8), "cut"},
        {std::string(50, 'x'), std::string(34, 'x')},
        {"", ""},
    };
    for (const auto& [written, shown] : versions) {
        UiRig rig;
        rig.driver.version = written;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.operations.run(Command::About);
        ASSERT_EQ(rig.windows.abouts.size(), 1u);
        const AboutBox& about = rig.windows.abouts[0];
        EXPECT_EQ(about.title, "About KAVORIX");
        EXPECT_EQ(about.program, "KAVORIX");
        EXPECT_NE(about.model.find("7260"), std::string::npos);
        EXPECT_EQ(about.version, "Version  1.2");
        EXPECT_EQ(about.lblDLLVers, shown);
    }
}

TEST_F(OperationsTest, PanelsReactToADoubleClick) {
    screen.pnlErr.caption = "Tx ERROR";
    operations.pnlErr_DblClick();
    EXPECT_EQ(screen.pnlErr.caption, "");
    click({3});
    operations.pnlButton_DblClick(0);
    EXPECT_EQ(windows.stream0_shown, 1);
    operations.pnlButton_DblClick(1);  // nothing shows it yet
    click({3});
    operations.pnlButton_DblClick(0);
    EXPECT_EQ(windows.stream0_shown, 1);
}

TEST_F(OperationsTest, TheWindowStaysUntilTheProgramEnds) {
    dialogs.answer(Answer::Cancel);
    EXPECT_NO_THROW(operations.unload_request());
    dialogs.answer(Answer::Cancel);
    EXPECT_NO_THROW(operations.run(Command::Exit));
    dialogs.answer(Answer::Ok);
    EXPECT_THROW(operations.unload_request(), ProgramEnded);
}

TEST_F(OperationsTest, ACommandThatIsNotAvailableDoesNothing) {
    for (int command = 0; command <= static_cast<int>(Command::About); ++command)
        operations.on(static_cast<Command>(command), [] { FAIL() << "it ran"; });
    operations.run(Command::Trigger);  // no pod selected
    operations.run(Command::Halt);
    operations.run(Command::ViewStream0);
    operations.run(Command::None);
}

TEST_F(OperationsTest, ALinkFailureTakesTheCommandsAway) {
    click({3});
    driver.pod(3).test[0] = std::int16_t{-1};
    start_polling();
    loop.run_for(100);
    EXPECT_EQ(enabled_buttons(), "Default SelectAll Clear");
    EXPECT_FALSE(screen.mnuView.enabled);
}

TEST_F(OperationsTest, ClearScreenAndStatusRefreshEmptyTheWindow) {
    tmrPoll->start(100);
    loop.run_for(1500);
    screen.pnlErr.caption = "Rx ERROR";
    screen.pnlContScan.caption = "CONT SCAN";
    operations.StatusRefresh();
    EXPECT_EQ(screen.pnlStatus.caption, "Card C800");
    for (const Label* panel :
         {&screen.pnlContScan, &screen.pnlErr, &screen.pnlPollCnt, &screen.pnlBars})
        EXPECT_EQ(panel->caption, "");
    screen.lblStrm2[2].caption = "2";
    operations.ClearScreen();
    EXPECT_FALSE(screen.img_ZAV[2].visible);
    EXPECT_FALSE(screen.lblZAVType[2].visible);
    EXPECT_EQ(screen.lblZAVType[2].caption, "");
    EXPECT_EQ(screen.lblStrm2[2].caption, "-");
}

struct TraceRow {
    Command command;
    const char* location;
};

TEST_F(OperationsTest, AFailureIsReportedUnderTheHandlersName) {
    const TraceRow rows[] = {
        {Command::OpenFile, "frmMain/mnuConfigItem_Click"},
        {Command::Exit, "frmMain/mnuConfigItem_Click"},
        {Command::Trigger, "frmMain/mnuOperateItem_Click"},
        {Command::ViewStream0, "frmMain/mnuViewItem_Click"},
        {Command::ViewStatus, "frmMain/mnuViewItem_Click"},
        {Command::SetupScanLog, "frmMain/mnuLoggingItem_Click"},
        {Command::GraphSetup, "frmMain/mnuTrendItem_Click"},
        {Command::ExpandScreen, "frmMain/mnuOptionsItem_Click"},
        {Command::ConvertLogFile, "frmMain/mnuUtilitiesItem_Click"},
        {Command::Guide, "frmMain/mnuGuide_Click"},
        {Command::Keys, "frmMain/mnuKeys_Click"},
        {Command::About, "frmMain/mnuAbout_Click"},
    };
    for (const TraceRow& row : rows) {
        UiRig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.click({3});
        rig.operations.on(row.command, [] { throw std::runtime_error("why"); });
        EXPECT_THROW(rig.operations.run(row.command), ProgramEnded);
        EXPECT_EQ(rig.dialogs.boxes.at(0).text,
                  std::string("A serious error has occurred in KAVORIX at ") + row.location +
                      "\n\nError code : 0, why\n\r\nKAVORIX will stop");
    }
}

}  // namespace
}  // namespace kavorix
