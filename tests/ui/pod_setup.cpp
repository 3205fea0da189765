// Opening, pods, types, pod-level settings, accepting and closing.

#include "ui/pods/pod_setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pod_setup_rig.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::int16_t> AllTypes = {Type7R, Type7S, Type7T, Type7U,
                                            Type8R, Type8S, Type7V, Type7W};

class PodSetupTest : public testing::Test, public PodSetupRig {};

TEST_F(PodSetupTest, OpensForAPassedPodWithItsStoredType) {
    open(Type7W);
    EXPECT_EQ(form.cboZAVNo.index, 2);
    EXPECT_FALSE(form.cboZAVNo.enabled);
    EXPECT_TRUE(form.lblZAVNo.enabled);
    EXPECT_EQ(form.cboZAVNo.entries.size(), 50u);
    EXPECT_EQ(form.cboZAVNo.entries[6].text, "7");
    EXPECT_EQ(form.cboZAVType.index, 6) << "the seventh entry, not the type number";
    EXPECT_EQ(dialog.state().pod_passed, 1);
    EXPECT_FALSE(changed());
    EXPECT_FALSE(form.cmdUndo.enabled);
}

TEST_F(PodSetupTest, WithoutAPodTheOperatorChoosesOneAndStartsAtTheFirst) {
    station({{3, "7RJA 0F 1.00"}});
    dialog.Form_Load(PodSetup::NoPod);
    EXPECT_TRUE(form.cboZAVNo.enabled);
    EXPECT_EQ(form.cboZAVNo.index, 0);
    EXPECT_EQ(form.cboZAVType.code(), NoDevice);
    EXPECT_FALSE(form.cmdDefault.enabled);
    choose_pod(3);
    EXPECT_EQ(form.cboZAVType.code(), Type7R);
    EXPECT_EQ(form.cboChannel.entries.size(), 20u);
    EXPECT_FALSE(changed());
}

TEST_F(PodSetupTest, APodWithoutConfigurationOpensWithTheConnectedType) {
    station({{3, "7SJA 0F 1.00"}});
    config(3).TypeCode = NoDevice;
    config(3).NumChannels = 0;
    dialog.Form_Load(2);
    EXPECT_EQ(edited().TypeCode, Type7S);
    EXPECT_EQ(edited().NumChannels, 10);
    EXPECT_TRUE(changed());

    config(3).NumChannels = 10;
    dialog.Form_Load(2);
    EXPECT_EQ(edited().TypeCode, Type7S);
    EXPECT_FALSE(changed()) << "its channels were given already";

    dialog.Form_Load(3);
    EXPECT_EQ(form.cboZAVType.code(), NoDevice) << "nothing answers there";
}

TEST_F(PodSetupTest, NoDeviceOffersNothingButATypeAndTheEnd) {
    open(Type7V, 1);
    choose_type(NoDevice);
    form.each_setting([&](std::string_view name, const auto& control) {
        const bool usable = name == "cboZAVType" || name == "lblZAVType" || name == "lblZAVNo" ||
                            name == "cmdDefault";
        EXPECT_EQ(control.enabled, usable) << name;
    });
    EXPECT_THAT(form.cboChannel.entries, IsEmpty());
    EXPECT_THAT(form.cboChanMode.entries, IsEmpty());
    EXPECT_EQ(edited().TypeCode, NoDevice);
    EXPECT_EQ(channel(1).Mode, 0);
    EXPECT_EQ(form.cboScanPeriod.index, -1);
}

TEST_F(PodSetupTest, EveryTypeOffersItsChannelsAndTakesTheDefaultsWithoutChannels) {
    open(Type8S, 1);
    for (const std::int16_t type : AllTypes) {
        if (type == Type8S) continue;
        choose_type(type);
        EXPECT_EQ(form.cboChannel.entries.size(), at(channel_count(type))) << type;
        EXPECT_EQ(edited().NumChannels, channel_count(type));
        for (int number = 1; number <= 32; ++number) EXPECT_EQ(channel(number).Mode, 0) << number;
        EXPECT_TRUE(form.chkArm.checked && edited().Arm == 1) << "applying a type arms";
        EXPECT_EQ(form.chkCalOn.enabled, is_analog_type(type)) << type;
        EXPECT_EQ(form.chkCalOn.checked, is_analog_type(type)) << type;
        EXPECT_EQ(form.fmeAnalogZAVs.enabled, is_analog_type(type)) << type;
        EXPECT_FALSE(form.fmeDigitalZAVs.enabled) << type;
        EXPECT_EQ(form.cmdGroup.enabled, is_universal_type(type)) << type;
        EXPECT_TRUE(changed());
    }
    choose_type(Type8S);
    EXPECT_TRUE(form.chkHWWatch.enabled && form.chkSWWatch.enabled);
    EXPECT_FALSE(form.cboSampleRate.enabled || form.cboTimeout.enabled);
}

TEST_F(PodSetupTest, AnotherTypeThanTheConnectedOneIsWarnedOfAndStands) {
    open(Type7R);
    choose_type(Type8R);
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{
                    "Warning. ZAV number 03 has an ZAV of type 7R Solid State 3 Pole connected.",
                    box::Information, "KAVORIX"}));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_EQ(edited().TypeCode, Type8R);
    choose_type(Type7R);
    EXPECT_THAT(dialogs.boxes, IsEmpty()) << "the connected type";
}

TEST_F(PodSetupTest, NoWarningWhereNothingAnswers) {
    station({{3, "7RJA 0F 1.00"}});
    dialog.Form_Load(PodSetup::NoPod);
    choose_type(Type8R);
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    EXPECT_EQ(edited().TypeCode, Type8R);
}

TEST_F(PodSetupTest, SetUpGivesEveryChannelTheModeOfItsType) {
    for (const std::int16_t type : AllTypes) {
        open(type);
        edited().Arm = 0;
        tick(form.chkSetup, &PodSetup::chkSetup_Click);
        EXPECT_EQ(edited().Setup, 1);
        EXPECT_TRUE(form.chkSetup.checked && form.chkArm.checked && edited().Arm == 1);
        for (int number = 1; number <= channel_count(type); ++number)
            EXPECT_EQ(channel(number).Mode,
                      !is_analog_type(type) || (is_universal_type(type) && number > 18) ? 70 : 10)
                << type << "/" << number;
        EXPECT_EQ(form.cboChanMode.index, 1);
        EXPECT_TRUE(changed());
    }
}

TEST_F(PodSetupTest, SetUpClearedOnlyClearsItsFlag) {
    open(Type7R, 1);
    edited().Setup = 1;
    tick(form.chkSetup, &PodSetup::chkSetup_Click, false);
    EXPECT_EQ(edited().Setup, 0);
    EXPECT_EQ(channel(7).Mode, 10);
    EXPECT_TRUE(changed());
}

TEST_F(PodSetupTest, BoxesStoreTheirFlagAndMarkTheChangeOnce) {
    open(Type7V, 1);
    choose_channel(2);
    choose_channel(1);
    choose_mode(33);
    struct Row {
        CheckBox& box;
        void (PodSetup::*click)();
        std::int16_t& flag;
    };
    PodConfig& pod = edited();
    const std::vector<Row> rows = {{form.chkArm, &PodSetup::chkArm_Click, pod.Arm},
                                   {form.chkCalOn, &PodSetup::chkCalOn_Click, pod.CalOn},
                                   {form.chkDegF, &PodSetup::chkDegF_Click, pod.DegF},
                                   {form.chkOpenTC, &PodSetup::chkOpenTC_Click, pod.OpenTC},
                                   {form.chkContScan, &PodSetup::chkContScan_Click, pod.ContScan}};
    for (const Row& row : rows) {
        const bool before = row.flag == 1;
        ASSERT_TRUE(row.box.enabled);
        tick(row.box, row.click, !before);
        EXPECT_EQ(row.flag, before ? 0 : 1) << row.box.caption;
        row.box.enabled = false;
        tick(row.box, row.click, before);
        EXPECT_EQ(row.flag, before ? 0 : 1) << row.box.caption << ": disabled, does nothing";
        row.box.enabled = true;
    }
    EXPECT_EQ(pod.Arm, 1) << "continuous scan ticks Arm";
    EXPECT_TRUE(form.chkArm.checked);
}

TEST_F(PodSetupTest, ListsStoreCodesOrPositions) {
    open(Type7V, 1);
    form.cboScanPeriod.index = 7;
    dialog.cboScanPeriod_Click();
    EXPECT_EQ(edited().ScanPeriod, 2500);
    choose_channel(3);
    form.cboIntegration.index = 5;
    dialog.cboIntegration_Click();
    EXPECT_EQ(edited().Integration, 5);
    dialogs.answer(Answer::Yes);
    choose_mode(21);
    form.cboRange.index = 1;
    dialog.cboRange_Click();
    EXPECT_EQ(channel(3).Range, 3) << "2k5 Ohm";
    choose_channel(19);
    form.cboSampleRate.index = 4;
    dialog.cboSampleRate_Click();
    EXPECT_EQ(edited().SampleRate[18], 4);
    form.cboTimeout.index = 6;
    dialog.cboTimeout_Click();
    EXPECT_EQ(edited().Timeout[18], 5);
}

TEST_F(PodSetupTest, ChoosingWhatIsStoredChangesNothing) {
    open(Type7V, 1);
    choose_channel(19);
    dialog.cboScanPeriod_Click();
    dialog.cboRange_Click();
    dialog.cboChanMode_Click();
    dialog.cboSampleRate_Click();
    dialog.cboTimeout_Click();
    dialog.chkArm_Click();
    dialog.chkSetup_Click();
    dialog.cboZAVType_Click();
    dialog.cboZAVNo_Click();
    EXPECT_FALSE(changed());
    EXPECT_FALSE(form.cmdUndo.enabled);
}

// The fourth and the seventh character of the identification.
TEST_F(PodSetupTest, CapabilityLettersWithholdListsOfTheConnectedTypeOnly) {
    open(Type7R, 1, "J0 00");
    EXPECT_FALSE(form.cboScanPeriod.enabled || form.lblScanPeriod.enabled);
    EXPECT_EQ(form.cboScanPeriod.index, -1);
    EXPECT_FALSE(form.cboIntegration.enabled || form.lblIntegration.enabled);
    EXPECT_TRUE(form.chkDegF.enabled);
    choose_type(Type7T);
    EXPECT_TRUE(form.cboScanPeriod.enabled && form.cboIntegration.enabled);
    dialog.Form_Load(PodSetup::NoPod);
    choose_pod(3);
    EXPECT_TRUE(form.cboScanPeriod.enabled && form.cboIntegration.enabled) << "no pod was passed";
    EXPECT_EQ(form.cboScanPeriod.index, 0);
}

TEST_F(PodSetupTest, DefaultTakesTheConnectedTypeOrNone) {
    open(Type7R, 1);
    choose_type(Type8R);
    dialogs.take_boxes();
    form.cboScanPeriod.index = 3;
    dialog.cboScanPeriod_Click();
    dialog.cmdDefault_Click();
    EXPECT_EQ(edited().TypeCode, Type7R);
    EXPECT_EQ(form.cboZAVType.code(), Type7R);
    EXPECT_EQ(edited().ScanPeriod, 0);
    EXPECT_EQ(channel(1).Mode, 0);
    EXPECT_TRUE(changed());

    dialog.Form_Load(PodSetup::NoPod);
    choose_type(Type7R);
    dialog.cmdDefault_Click();
    EXPECT_EQ(edited().TypeCode, NoDevice) << "no pod answers at 1";
}

TEST_F(PodSetupTest, SoftwareWatchdogShowsItsTimeOnlyWhileItIsOn) {
    open(Type8S, 1);
    EXPECT_FALSE(form.txtSWWatchTime.enabled);
    tick(form.chkHWWatch, &PodSetup::chkHWWatch_Click);
    tick(form.chkSWWatch, &PodSetup::chkSWWatch_Click);
    EXPECT_EQ(form.focus, "txtSWWatchTime");
    EXPECT_EQ(form.txtSWWatchTime.text, "1");
    EXPECT_TRUE(type(form.txtSWWatchTime, "42", &PodSetup::txtSWWatchTime_LostFocus));
    choose_channel(30);
    EXPECT_TRUE(form.chkHWWatch.checked && form.chkSWWatch.checked);
    EXPECT_EQ(form.txtSWWatchTime.text, "42");
    tick(form.chkSWWatch, &PodSetup::chkSWWatch_Click, false);
    EXPECT_EQ(form.txtSWWatchTime.text, "");
    EXPECT_FALSE(form.txtSWWatchTime.enabled);
    EXPECT_EQ(edited().HWWatch, 1);
    EXPECT_EQ(edited().SWWatch, 0);
    EXPECT_EQ(edited().SWWatchTime, 42);
}

class ClosingTest : public PodSetupTest {
  protected:
    static constexpr const char* Status =
        " Configuration Changed - must be Transmitted to take Effect";
    const ShownBox Question{"Configuration changed.\n\nKeep changes?",
                            box::YesNoCancel | box::Question, "KAVORIX"};
    const ShownBox Reminder{
        "The new configuration must now be transmitted to the ZAV by clicking the 'Transmit' "
        "button. To disable this reminder toggle 'Transmit Config Reminder' in the 'Options' menu.",
        box::Information, "Configuration Changed"};

    void change_scan_period() {
        form.cboScanPeriod.index = 1;
        dialog.cboScanPeriod_Click();
    }
};

TEST_F(ClosingTest, OkCopiesAllRecordsAndReminds) {
    open(Type7R);
    run_time.Options.TransmitReminder = true;
    windows.pod_setup = [&](PodSetup& d) {
        change_scan_period();
        EXPECT_EQ(config(3).ScanPeriod, 0) << "live until accepted";
        d.cmdOK_Click();
        EXPECT_TRUE(d.closed());
        EXPECT_THAT(dialogs.boxes, IsEmpty()) << "the reminder comes after the dialog";
    };
    dialog.run(2);
    EXPECT_EQ(config(3).ScanPeriod, 250);
    EXPECT_EQ(configuration.ConfigChanged, 1);
    EXPECT_EQ(accepted, 1);
    EXPECT_EQ(run_time.Reports.Message.Text, Status);
    EXPECT_EQ(run_time.Reports.Message.Severity, Severity::Progress);
    EXPECT_THAT(dialogs.take_boxes(), ElementsAre(Reminder));
}

TEST_F(ClosingTest, OkWithoutAChangeStoresNothingAndStillSpeaks) {
    open(Type7R);
    run_time.Options.TransmitReminder = false;
    windows.pod_setup = [](PodSetup& d) { d.cmdOK_Click(); };
    config(3).Arm = 0;
    dialog.run(2);
    EXPECT_EQ(config(3).Arm, 0) << "the arming of the working copy is no change";
    EXPECT_EQ(configuration.ConfigChanged, 0);
    EXPECT_EQ(accepted, 0);
    EXPECT_EQ(run_time.Reports.Message.Text, Status);
    EXPECT_THAT(dialogs.boxes, IsEmpty()) << "the reminder is switched off";
}

TEST_F(ClosingTest, OtherwiseItAsksOnlyAfterAChange) {
    open(Type7R);
    dialog.unload_request();
    EXPECT_TRUE(dialog.closed());
    EXPECT_EQ(run_time.Reports.Message.Text, "");
}

TEST_F(ClosingTest, TheAnswerDecides) {
    struct Row {
        Answer answer;
        bool closed;
        std::int16_t period;
    };
    for (const Row& row :
         {Row{Answer::Cancel, false, 0}, Row{Answer::No, true, 0}, Row{Answer::Yes, true, 250}}) {
        PodSetupRig other;
        other.open(Type7R);
        other.form.cboScanPeriod.index = 1;
        other.dialog.cboScanPeriod_Click();
        other.dialogs.answer(row.answer);
        other.dialog.unload_request();
        EXPECT_THAT(other.dialogs.boxes, ElementsAre(Question));
        EXPECT_EQ(other.dialog.closed(), row.closed);
        EXPECT_EQ(other.config(3).ScanPeriod, row.period);
        EXPECT_EQ(other.configuration.ConfigChanged, 0) << "not by this way";
    }
}

TEST_F(ClosingTest, TheCommandNeedsAtMostOneSelectedPod) {
    station({{3, "7RJA 0F 1.00"}, {5, "8SJA 0F 1.00"}});
    std::vector<int> opened;
    windows.pod_setup = [&](PodSetup& d) {
        opened.push_back(d.state().pod_passed == 1 ? d.state().selected_pod : PodSetup::NoPod);
    };
    setup_selected_pod(surroundings_of_dialog);
    select({5});
    setup_selected_pod(surroundings_of_dialog);
    EXPECT_THAT(opened, ElementsAre(PodSetup::NoPod, 4));
    select({3, 5});
    setup_selected_pod(surroundings_of_dialog);
    EXPECT_EQ(opened.size(), 2u);
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(refusal("More than 1 ZAV Icon Selected for Configuration")));
    EXPECT_EQ(dialogs.beeps, 1);
}

TEST_F(PodSetupTest, ChangesAreTakenBackAndMadeAgain) {
    open(Type7V, 1);
    const PodConfig start = edited();
    dialogs.answer(Answer::Yes);
    set_channel(3, 20);
    choose_mode(10);
    choose_type(Type8R);
    dialogs.take_boxes();
    const PodConfig end = edited();
    EXPECT_TRUE(form.cmdUndo.enabled);

    dialog.cmdUndo_Click();
    EXPECT_EQ(form.cboZAVType.code(), Type7V);
    EXPECT_EQ(form.cboChannel.index, 2);
    while (form.cmdUndo.enabled) dialog.cmdUndo_Click();
    EXPECT_EQ(edited(), start);
    EXPECT_FALSE(changed()) << "as it was when it opened";
    EXPECT_EQ(form.cboChanMode.code(), 10);

    while (form.cmdRedo.enabled) dialog.cmdRedo_Click();
    EXPECT_EQ(edited(), end);
    EXPECT_EQ(form.cboZAVType.code(), Type8R);
    EXPECT_TRUE(changed());
}

TEST_F(PodSetupTest, ANewChangeEndsTheWayForward) {
    open(Type7R, 1);
    set_channel(2, 33);
    dialog.cmdUndo_Click();
    EXPECT_TRUE(form.cmdRedo.enabled);
    choose_mode(34);
    EXPECT_FALSE(form.cmdRedo.enabled);
    EXPECT_EQ(channel(2).Mode, 34);
}

TEST_F(PodSetupTest, UndoReturnsToTheOtherPodThatWasChanged) {
    station({{3, "7RJA 0F 1.00"}, {5, "8SJA 0F 1.00"}});
    dialog.Form_Load(PodSetup::NoPod);
    choose_pod(3);
    set_channel(7, 50);
    choose_pod(5);
    set_channel(30, 80);
    dialog.cmdUndo_Click();
    EXPECT_EQ(configuration.ZavConfigCopy[4].Channel[29].Mode, 0);
    dialog.cmdUndo_Click();
    EXPECT_EQ(form.cboZAVNo.index, 2);
    EXPECT_EQ(configuration.ZavConfigCopy[2].Channel[6].Mode, 0);
    dialog.cmdRedo_Click();
    EXPECT_EQ(configuration.ZavConfigCopy[2].Channel[6].Mode, 50);
    dialog.cmdRedo_Click();
    EXPECT_EQ(configuration.ZavConfigCopy[4].Channel[29].Mode, 80);
}

TEST_F(PodSetupTest, AFailureInAHandlerEndsTheProgramUnderItsName) {
    open(Type7R, 1);
    windows.copy_channel = [](CopyChannel&) { throw std::runtime_error("no window"); };
    EXPECT_THROW(dialog.cmdCopyChan_Click(), ProgramEnded);
    EXPECT_THAT(log_text(), testing::HasSubstr("frmConfigZAV/cmdCopyChan_Click"));
}

}  // namespace
}  // namespace kavorix::test
