// The alarm limit and the alarm group dialog.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pod_setup_rig.h"
#include "support/recording_failures.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AlarmTest : public testing::Test {
  protected:
    PodConfig pod;
    ScriptedDialogs dialogs;
    RecordingFailures failures;

    void SetUp() override { default_ZAV_config(pod, Type7V, 1); }
    AlarmLimits limits() { return {pod, 4, dialogs, failures}; }
    AlarmGroups groups() { return {pod, dialogs, failures}; }
    ChannelConfig& channel() { return pod.Channel[4]; }

    static void enter(AlarmLimits& dialog, int row, std::string limit, std::string hysteresis) {
        dialog.screen.chkEnableAlarm[at(row)].checked = true;
        dialog.chkEnableAlarm_Click(row);
        dialog.screen.txtAlarmLimit[at(row)].text = std::move(limit);
        dialog.screen.txtHisteresisLimit[at(row)].text = std::move(hysteresis);
    }
    static void disable(AlarmLimits& dialog, int row) {
        dialog.screen.chkEnableAlarm[at(row)].checked = false;
        dialog.chkEnableAlarm_Click(row);
    }
};

TEST_F(AlarmTest, LimitsOpenWithEnabledAlarmsOnly) {
    channel().HighAlarm = {1, 12.5F, 0.1F};
    channel().LowAlarm = {0, 3, 4};
    const AlarmLimits dialog = limits();
    EXPECT_EQ(dialog.screen.lblChannel.caption, "Channel Number: 5");
    EXPECT_TRUE(dialog.screen.chkEnableAlarm[0].checked);
    EXPECT_EQ(dialog.screen.txtAlarmLimit[0].text, "12.5");
    EXPECT_EQ(dialog.screen.txtHisteresisLimit[0].text, "0.1");
    EXPECT_TRUE(dialog.screen.txtAlarmLimit[0].enabled);
    EXPECT_FALSE(dialog.screen.chkEnableAlarm[1].checked);
    EXPECT_EQ(dialog.screen.txtAlarmLimit[1].text, "");
    EXPECT_FALSE(dialog.screen.txtHisteresisLimit[1].enabled ||
                 dialog.screen.lblAlarmLimit[1].enabled);
}

TEST_F(AlarmTest, FieldsAreCheckedWhenLeft) {
    AlarmLimits dialog = limits();
    const char* NoLimit = "Alarm Limit must be a number";
    const char* NoHysteresis = "Hysteresis Limit must be a positive number";
    struct Row {
        const char* text;
        bool limit;
        bool hysteresis;
    };
    for (const Row& row :
         {Row{"", true, true}, Row{" ", true, true}, Row{"1.5", true, true}, Row{"0", true, true},
          Row{"-0.1", true, false}, Row{"x", false, false}, Row{"1E300", false, false}}) {
        dialog.screen.txtAlarmLimit[1].text = row.text;
        EXPECT_EQ(dialog.txtAlarmLimit_LostFocus(1, "cmdOK"), row.limit) << row.text;
        EXPECT_EQ(dialogs.take_boxes(),
                  row.limit ? std::vector<ShownBox>{} : std::vector{refusal(NoLimit)});
        dialog.screen.txtHisteresisLimit[0].text = row.text;
        EXPECT_EQ(dialog.txtHisteresisLimit_LostFocus(0, "cmdOK"), row.hysteresis) << row.text;
        EXPECT_EQ(dialogs.take_boxes(),
                  row.hysteresis ? std::vector<ShownBox>{} : std::vector{refusal(NoHysteresis)});
        EXPECT_TRUE(dialog.txtAlarmLimit_LostFocus(1, "cmdCancel"));
        EXPECT_TRUE(dialog.txtHisteresisLimit_LostFocus(0, "cmdCancel"));
    }
}

TEST_F(AlarmTest, AnEnabledAlarmNeedsBothValues) {
    struct Row {
        int row;
        const char* limit;
        const char* hysteresis;
        const char* message;
        const char* focus;
    };
    for (const Row& row :
         {Row{HighRow, " ", "1", "Hight Alarm limit Rrequired if alarm is enabled",
              "txtAlarmLimit_0"},
          Row{HighRow, "1", "", "High Alarm Histeresis Limit required if alarm is enabled",
              "txtHisteresisLimit_0"},
          Row{LowRow, "", "", "Low Alarm limit Rrequired if alarm is enabled", "txtAlarmLimit_1"},
          Row{LowRow, "2", " ", "Low Alarm Histeresis Limit required if alarm is enabled",
              "txtHisteresisLimit_1"}}) {
        AlarmLimits dialog = limits();
        enter(dialog, row.row, row.limit, row.hysteresis);
        dialog.cmdOK_Click();
        EXPECT_THAT(dialogs.take_boxes(), ElementsAre(refusal(row.message)));
        EXPECT_EQ(dialog.screen.focus, row.focus);
        EXPECT_FALSE(dialog.closed() || dialog.changed());
    }
    EXPECT_EQ(dialogs.beeps, 4);
}

TEST_F(AlarmTest, TheHighLimitMustBeAboveTheLowOne) {
    for (const auto& [low, accepted] : {std::pair{"10", false}, {"10.5", false}, {"9.99", true}}) {
        AlarmLimits dialog = limits();
        enter(dialog, HighRow, "10", "0");
        enter(dialog, LowRow, low, "0");
        dialog.cmdOK_Click();
        EXPECT_EQ(dialog.closed(), accepted) << low;
        if (!accepted) {
            EXPECT_THAT(dialogs.take_boxes(),
                        ElementsAre(refusal("High Alarm must be greater than Low Alarm")));
        }
    }
    EXPECT_EQ(channel().LowAlarm, (AlarmLimit{1, 9.99F, 0}));
}

TEST_F(AlarmTest, EnablingChangingAndDisablingAnAlarm) {
    AlarmLimits enabling = limits();
    enter(enabling, HighRow, " 7.5 ", "0.25");
    enabling.cmdOK_Click();
    EXPECT_TRUE(enabling.closed() && enabling.changed());
    EXPECT_EQ(channel().HighAlarm, (AlarmLimit{1, 7.5F, 0.25F}));

    AlarmLimits same = limits();
    same.cmdOK_Click();
    EXPECT_TRUE(same.closed());
    EXPECT_FALSE(same.changed());

    AlarmLimits changing = limits();
    enter(changing, HighRow, "8", "0.25");
    changing.cmdOK_Click();
    EXPECT_TRUE(changing.changed());
    EXPECT_EQ(channel().HighAlarm.Limit, 8.0F);

    AlarmLimits disabling = limits();
    disable(disabling, HighRow);
    disabling.cmdOK_Click();
    EXPECT_TRUE(disabling.changed());
    EXPECT_EQ(channel().HighAlarm, (AlarmLimit{0, 8.0F, 0.25F})) << "the values stay";
}

TEST_F(AlarmTest, AValueWithManyDigitsIsNoChangeWhenItIsOnlyShown) {
    channel().HighAlarm = {1, 16777.217F, 1.0F / 3};
    AlarmLimits dialog = limits();
    dialog.cmdOK_Click();
    EXPECT_FALSE(dialog.changed());
    EXPECT_EQ(channel().HighAlarm.Hysteresis, 1.0F / 3);
}

TEST_F(AlarmTest, ADisabledAlarmLeavesBothGroups) {
    channel().HighAlarm = {1, 5, 0};
    channel().LowAlarm = {1, 1, 0};
    for (AlarmGroup& group : pod.AlarmGroup) {
        group.OutputState = 1;
        group.High[4] = 1;
    }
    pod.AlarmGroup[0].Low[4] = 1;
    AlarmLimits dialog = limits();
    disable(dialog, HighRow);
    dialog.cmdOK_Click();
    EXPECT_EQ(pod.AlarmGroup[0].High[4] + pod.AlarmGroup[1].High[4], 0);
    EXPECT_EQ(pod.AlarmGroup[0].Low[4], 1);
    EXPECT_EQ(pod.AlarmGroup[0].OutputState, 1);
    EXPECT_EQ(pod.AlarmGroup[1].OutputState, GroupOff) << "without members";
}

class AlarmGroupTest : public AlarmTest {
  protected:
    void SetUp() override {
        AlarmTest::SetUp();
        pod.Channel[2].HighAlarm.Enabled = 1;
        pod.Channel[2].LowAlarm.Enabled = 1;
        pod.Channel[6].HighAlarm.Enabled = 1;
    }
    static void tick(CheckBox& box) { box.checked = true; }
};

TEST_F(AlarmGroupTest, OpensWithChannel19AndTheEnabledAlarms) {
    pod.AlarmGroup[0].OutputState = 0;
    pod.AlarmGroup[0].High[6] = 1;
    const AlarmGroups dialog = groups();
    EXPECT_TRUE(dialog.screen.optchan19.selected && !dialog.screen.optchan20.selected);
    EXPECT_TRUE(dialog.screen.optDis.selected);
    EXPECT_FALSE(dialog.screen.optAss.selected || dialog.screen.optOff.selected);
    for (int i = 0; i < AlarmGroupChannels; ++i) {
        EXPECT_EQ(dialog.screen.chkHi[at(i)].enabled, i == 2 || i == 6);
        EXPECT_EQ(dialog.screen.chkLow[at(i)].enabled, i == 2);
        EXPECT_EQ(dialog.screen.frmChannel[at(i)].enabled, i == 2 || i == 6);
        EXPECT_EQ(dialog.screen.chkHi[at(i)].checked, i == 6);
        EXPECT_FALSE(dialog.screen.chkLow[at(i)].checked);
    }
}

TEST_F(AlarmGroupTest, OffClearsAndDisablesTheMembers) {
    AlarmGroups dialog = groups();
    dialog.optAss_Click();
    dialog.cmdSelectAll_Click();
    EXPECT_TRUE(dialog.screen.chkHi[2].checked && dialog.screen.chkLow[2].checked &&
                dialog.screen.chkHi[6].checked);
    EXPECT_FALSE(dialog.screen.chkLow[6].checked) << "its alarm is not enabled";
    dialog.optOff_Click();
    for (int i = 0; i < AlarmGroupChannels; ++i) {
        EXPECT_FALSE(dialog.screen.chkHi[at(i)].checked || dialog.screen.chkHi[at(i)].enabled);
        EXPECT_FALSE(dialog.screen.frmChannel[at(i)].enabled);
    }
    dialog.optDis_Click();
    EXPECT_TRUE(dialog.screen.chkHi[6].enabled);
    EXPECT_FALSE(dialog.screen.chkHi[6].checked);
}

TEST_F(AlarmGroupTest, OkStoresTheGroupShown) {
    AlarmGroups dialog = groups();
    dialog.optAss_Click();
    tick(dialog.screen.chkLow[2]);
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed() && dialog.changed());
    AlarmGroup expected{1, {}, {}};
    expected.Low[2] = 1;
    EXPECT_EQ(pod.AlarmGroup[0], expected);
    EXPECT_THAT(dialogs.boxes, IsEmpty());
}

TEST_F(AlarmGroupTest, AnEmptyGroupIsStoredAsOff) {
    pod.AlarmGroup[1].OutputState = 1;
    pod.AlarmGroup[1].High[2] = 1;
    AlarmGroups dialog = groups();
    dialog.optchan20_Click();
    dialog.cmdClearAll_Click();
    dialog.cmdOK_Click();
    EXPECT_THAT(
        dialogs.boxes,
        ElementsAre(ShownBox{"Alarm Group Channel 20 is empty.\nThe alarm group will be disabeld.",
                             box::Exclamation, "KAVORIX"}));
    EXPECT_EQ(pod.AlarmGroup[1], (AlarmGroup{GroupOff, {}, {}}));
    EXPECT_TRUE(dialog.changed());
}

TEST_F(AlarmGroupTest, TheOtherGroupIsAskedAbout) {
    for (const Answer answer : {Answer::Yes, Answer::No}) {
        SetUp();
        AlarmGroups dialog = groups();
        dialog.optDis_Click();
        tick(dialog.screen.chkHi[6]);
        dialog.optchan20_Click();
        dialog.optAss_Click();
        tick(dialog.screen.chkHi[2]);
        dialog.optchan19_Click();
        EXPECT_TRUE(dialog.screen.chkHi[6].checked && dialog.screen.optDis.selected);
        dialog.optchan20_Click();
        EXPECT_TRUE(dialog.screen.chkHi[2].checked && !dialog.screen.chkHi[6].checked);
        dialogs.answer(answer);
        dialog.cmdOK_Click();
        EXPECT_THAT(
            dialogs.take_boxes(),
            ElementsAre(ShownBox{"Alarm Group Channel 19 has also changed.\n\nKeep changes?",
                                 box::YesNo | box::Exclamation, "KAVORIX"}));
        EXPECT_EQ(pod.AlarmGroup[1].High[2], 1);
        EXPECT_EQ(pod.AlarmGroup[0].High[6], answer == Answer::Yes ? 1 : 0);
        EXPECT_EQ(pod.AlarmGroup[0].OutputState, answer == Answer::Yes ? 0 : GroupOff);
    }
}

TEST_F(AlarmGroupTest, WithoutAChangeOkOnlyCloses) {
    const PodConfig before = pod;
    AlarmGroups dialog = groups();
    dialog.optchan20_Click();
    dialog.optchan19_Click();
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_FALSE(dialog.changed());
    EXPECT_EQ(pod, before);
}

TEST_F(AlarmGroupTest, CancelKeepsWhatWasStored) {
    const PodConfig before = pod;
    AlarmGroups dialog = groups();
    dialog.optAss_Click();
    dialog.cmdSelectAll_Click();
    dialog.cmdCancel_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_EQ(pod, before);
}

class AlarmsInDialog : public testing::Test, public PodSetupRig {};

TEST_F(AlarmsInDialog, EditTheSelectedChannelAndPod) {
    open(Type7V, 1);
    choose_channel(5);
    windows.alarm_limits = [](AlarmLimits& d) {
        EXPECT_EQ(d.screen.lblChannel.caption, "Channel Number: 5");
        d.screen.chkEnableAlarm[0].checked = true;
        d.screen.txtAlarmLimit[0].text = "1";
        d.screen.txtHisteresisLimit[0].text = "0";
        d.cmdOK_Click();
    };
    dialog.cmdAlarm_Click();
    EXPECT_TRUE(changed());
    windows.alarm_groups = [](AlarmGroups& d) {
        d.optAss_Click();
        d.cmdSelectAll_Click();
        d.cmdOK_Click();
    };
    dialog.cmdGroup_Click();
    EXPECT_EQ(edited().AlarmGroup[0].High[4], 1);
    dialog.cmdUndo_Click();
    EXPECT_EQ(edited().AlarmGroup[0].OutputState, GroupOff);
    EXPECT_EQ(channel(5).HighAlarm.Enabled, 1);
}

}  // namespace
}  // namespace kavorix::test
