#include "ui/pods/copy_channel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pod_setup_rig.h"
#include "support/recording_failures.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const ShownBox NothingTicked =
    refusal("No Channel(s) Selected for Copying.\n\nSelect 1 or more Channels, or Cancel.");

class CopyChannelTest : public testing::Test {
  protected:
    PodConfig pod;
    ScriptedDialogs dialogs;
    RecordingFailures failures;

    void SetUp() override { of_type(Type7R); }

    void of_type(std::int16_t type) { default_ZAV_config(pod, type, 1); }
    CopyChannel from(int number) { return {pod, number - 1, dialogs, failures}; }

    // The numbers of the boxes that can be ticked, as ranges.
    static std::string offered(const CopyChannel& dialog) {
        std::string text;
        const auto& boxes = dialog.screen.chkChannel;
        for (std::size_t first = 0; first < boxes.size(); ++first) {
            if (!boxes[first].enabled) continue;
            std::size_t last = first;
            while (last + 1 < boxes.size() && boxes[last + 1].enabled) ++last;
            text += (text.empty() ? "" : " ") + boxes[first].caption;
            if (last > first) text += "-" + boxes[last].caption;
            first = last;
        }
        return text;
    }

    // Copies with the answer Yes.
    void copy(int source, const std::vector<int>& targets) {
        CopyChannel dialog = from(source);
        for (const int target : targets) dialog.screen.chkChannel[at(target - 1)].checked = true;
        dialogs.answer(Answer::Yes);
        dialog.cmdOK_Click();
        EXPECT_TRUE(dialog.closed() && dialog.changed());
        dialogs.take_boxes();
    }
};

TEST_F(CopyChannelTest, OffersTheChannelsThatTakeTheSettings) {
    struct Row {
        std::int16_t type;
        int source;
        std::int16_t mode;
        const char* offered;
    };
    for (const Row& row :
         {Row{Type7R, 3, 33, "1-2 4-20"}, Row{Type7S, 10, 60, "1-9"}, Row{Type8R, 1, 92, "2-20"},
          Row{Type8S, 1, 76, "2-32"}, Row{Type8S, 29, 80, "30-32"}, Row{Type7V, 5, 10, "1-4 6-18"},
          Row{Type7V, 19, 90, "20"}, Row{Type7W, 5, 20, "1 3 7 9 11 13 15 17"}}) {
        of_type(row.type);
        pod.Channel[at(row.source - 1)].Mode = row.mode;
        CopyChannel dialog = from(row.source);
        EXPECT_EQ(offered(dialog), row.offered) << row.type;
        EXPECT_EQ(dialog.screen.caption, "Copy Channel " + std::to_string(row.source) + " to:-");
        EXPECT_EQ(dialog.screen.chkChannel[at(pod.NumChannels - 1)].visible, true);
        EXPECT_TRUE(pod.NumChannels == 32 || !dialog.screen.chkChannel[31].visible);
    }
}

TEST_F(CopyChannelTest, ASixPoleSourceAndItsPartnerDisableMore) {
    of_type(Type7V);
    pod.SixPole[4] = 1;
    EXPECT_EQ(offered(from(5)), "1 3 7 9 11 13 15 17");
    EXPECT_EQ(offered(from(1)), "2-5 7-18") << "6 is half of what 5 measures";
}

TEST_F(CopyChannelTest, SelectAllTicksWhatIsOfferedOnly) {
    CopyChannel dialog = from(3);
    dialog.cmdSelectAll_Click();
    EXPECT_FALSE(dialog.screen.chkChannel[2].checked);
    EXPECT_TRUE(dialog.screen.chkChannel[19].checked);
    EXPECT_FALSE(dialog.screen.chkChannel[20].checked);
    dialog.cmdDeSelectAll_Click();
    dialog.cmdOK_Click();
    EXPECT_THAT(dialogs.boxes, ElementsAre(NothingTicked));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_FALSE(dialog.closed());
}

TEST_F(CopyChannelTest, NoClosesWithoutCopying) {
    pod.Channel[2].Label = "Source";
    CopyChannel dialog = from(3);
    dialog.cmdSelectAll_Click();
    dialogs.answer(Answer::No);
    dialog.cmdOK_Click();
    EXPECT_THAT(dialogs.boxes,
                ElementsAre(ShownBox{"Overwrite Selected Channel(s) with Channel Configuration 03?",
                                     box::YesNo | box::Question, "KAVORIX"}));
    EXPECT_TRUE(dialog.closed());
    EXPECT_FALSE(dialog.changed());
    EXPECT_EQ(pod.Channel[0].Label, "");
}

TEST_F(CopyChannelTest, EachTypeCopiesItsOwnSettings) {
    for (const std::int16_t type : {Type7R, Type7S, Type8R, Type8S, Type7V}) {
        of_type(type);
        pod.Channel[1].Label = "Source";
        pod.Channel[1].HighAlarm = {1, 5, 1};
        pod.Strain[1].GaugeFactor = 2;
        pod.SampleRate[1] = 3;
        pod.Timeout[1] = 2;
        copy(2, {4});
        EXPECT_EQ(pod.Channel[3], pod.Channel[1]) << type;
        EXPECT_EQ(pod.Strain[3].GaugeFactor, type == Type7S ? 2.0F : 0.0F) << type;
        EXPECT_EQ(pod.SampleRate[3], type == Type8R ? 3 : 0) << type;
        EXPECT_EQ(pod.Timeout[3], type == Type8R ? 2 : 6) << type;
        EXPECT_EQ(pod.Channel[4].Label, "");
    }
}

TEST_F(CopyChannelTest, DigitalChannelsOfUniversalPodsTakeTheirGroupAlong) {
    of_type(Type7W);
    pod.Channel[18].Mode = 74;
    pod.SampleRate[18] = 2;
    pod.AlarmGroup[0].OutputState = 1;
    pod.AlarmGroup[0].High[7] = 1;
    copy(19, {20});
    EXPECT_EQ(pod.Channel[19].Mode, 74);
    EXPECT_EQ(pod.SampleRate[19], 2);
    EXPECT_EQ(pod.AlarmGroup[1], pod.AlarmGroup[0]);
}

TEST_F(CopyChannelTest, NothingGoesAcrossTheBorderOfUniversalPods) {
    of_type(Type7V);
    const PodConfig before = pod;
    pod.Channel[4].Label = "Source";
    copy(5, {19});
    EXPECT_EQ(pod.Channel[18], before.Channel[18]);
}

TEST_F(CopyChannelTest, ASixPoleChannelTakesTheNextOneOfItsTarget) {
    of_type(Type7V);
    pod.Channel[4].Mode = 40;
    pod.SixPole[4] = 1;
    copy(5, {7});
    EXPECT_EQ(pod.SixPole[6], 1);
    EXPECT_EQ(pod.Channel[7].Mode, 0);
    copy(1, {7});
    EXPECT_EQ(pod.SixPole[6], 0) << "no longer of six poles";
}

TEST_F(CopyChannelTest, ATargetWithoutItsAlarmLeavesTheGroups) {
    of_type(Type7V);
    pod.Channel[3].HighAlarm.Enabled = 1;
    pod.AlarmGroup[1].OutputState = 0;
    pod.AlarmGroup[1].High[3] = 1;
    copy(2, {4});
    EXPECT_EQ(pod.AlarmGroup[1].High[3], 0);
    EXPECT_EQ(pod.AlarmGroup[1].OutputState, GroupOff);
}

class CopyInDialog : public testing::Test, public PodSetupRig {};

TEST_F(CopyInDialog, MarksTheConfigurationChanged) {
    open(Type7R, 1);
    channel(1).Label = "Source";
    windows.copy_channel = [&](CopyChannel& d) {
        d.cmdSelectAll_Click();
        dialogs.answer(Answer::Yes);
        d.cmdOK_Click();
    };
    dialog.cmdCopyChan_Click();
    EXPECT_TRUE(changed());
    EXPECT_EQ(channel(20).Label, "Source");
    dialog.cmdUndo_Click();
    EXPECT_EQ(channel(20).Label, "");
}

TEST_F(CopyInDialog, CancelChangesNothing) {
    open(Type7R, 1);
    dialog.cmdCopyChan_Click();
    EXPECT_FALSE(changed());
    EXPECT_THAT(dialogs.boxes, IsEmpty());
}

}  // namespace
}  // namespace kavorix::test
