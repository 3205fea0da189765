// What a channel and its mode offer and allow in the pod configuration dialog.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pod_setup_rig.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ChannelTest : public testing::Test, public PodSetupRig {
  protected:
    std::vector<int> offered(const ListBox& list) const { return codes(list); }

    // The buttons and groups that are enabled, in the order of the form.
    std::string usable() const {
        struct Row {
            const char* name;
            bool enabled;
        };
        std::string names;
        for (const Row& row :
             {Row{"Mx_c", form.cmdMx_c.enabled}, Row{"PostLin", form.cmdPostLin.enabled},
              Row{"Coeff", form.cmdCoeff.enabled}, Row{"Alarm", form.cmdAlarm.enabled},
              Row{"Group", form.cmdGroup.enabled}, Row{"analog", form.fmeAnalogZAVs.enabled},
              Row{"thermo", form.fmeThermoZAVs.enabled},
              Row{"digital", form.fmeDigitalZAVs.enabled}, Row{"strain", form.fmeStrain.enabled}})
            if (row.enabled) names += (names.empty() ? "" : " ") + std::string(row.name);
        return names;
    }
};

struct Offer {
    std::int16_t type;
    int channel;
    int mode;
    const char* usable;
};

TEST_F(ChannelTest, ModeAndTypeDecideWhatCanBeUsed) {
    const std::vector<Offer> offers = {
        {Type7R, 5, 10, "Mx_c analog"},
        {Type7R, 5, 33, "analog thermo"},
        {Type7T, 5, 50, "Mx_c analog"},
        {Type7U, 5, 38, "analog thermo"},
        {Type7R, 5, 0, "analog"},
        {Type7S, 5, 40, "Mx_c analog"},
        {Type7S, 5, 60, "Mx_c analog strain"},
        {Type7S, 5, 67, "Mx_c analog strain"},
        {Type8R, 5, 76, "Mx_c digital"},
        {Type8R, 5, 92, "Mx_c digital"},
        {Type8R, 5, 0, ""},
        {Type8S, 5, 76, "Mx_c digital"},
        {Type8S, 5, 0, "digital"},
        {Type7V, 5, 10, "Mx_c PostLin Alarm Group analog"},
        {Type7V, 5, 33, "Mx_c PostLin Alarm Group analog thermo"},
        {Type7V, 5, 39, "Mx_c PostLin Coeff Alarm Group analog thermo"},
        {Type7W, 4, 30, "Mx_c PostLin Coeff Alarm Group analog thermo"},
        {Type7W, 4, 70, "Group analog digital"},
        {Type7W, 4, 0, "Group"},
        {Type7V, 19, 70, "Group digital"},
        {Type7V, 20, 90, "Mx_c Group digital"},
        {Type7V, 20, 0, "Group"},
    };
    for (const Offer& offer : offers) {
        open(offer.type);
        choose_channel(offer.channel);
        if (offer.mode != 0) choose_mode(offer.mode);
        EXPECT_EQ(usable(), offer.usable)
            << pod_type(offer.type).code << "/" << offer.channel << " mode " << offer.mode;
    }
}

TEST_F(ChannelTest, WatchdogsBelongToSwitchAndUniversalPods) {
    open(Type8R, 1);
    EXPECT_TRUE(form.cboSampleRate.enabled && form.cboTimeout.enabled);
    EXPECT_FALSE(form.chkHWWatch.enabled || form.chkSWWatch.enabled);
    open(Type7V, 1);
    choose_channel(20);
    EXPECT_TRUE(form.chkHWWatch.enabled && form.chkSWWatch.enabled);
    EXPECT_EQ(form.cboTimeout.entries.size(), 7u);
    choose_type(Type8R);
    EXPECT_EQ(form.cboTimeout.entries.size(), 5u);
    choose_type(Type7W);
    EXPECT_THAT(codes(form.cboTimeout), ElementsAre(6, 0, 1, 2, 3, 4, 5));
}

TEST_F(ChannelTest, TheModeListFollowsTheChannelOfAUniversalPod) {
    open(Type7V, 1);
    choose_channel(2);
    EXPECT_THAT(offered(form.cboChanMode),
                ElementsAre(0, 10, 22, 31, 32, 33, 34, 35, 36, 37, 38, 39, 30, 50, 70));
    EXPECT_EQ(form.cboChanMode.code(), 10);
    choose_channel(17);
    EXPECT_EQ(form.cboChanMode.entries.size(), 21u);
    choose_channel(20);
    EXPECT_THAT(offered(form.cboChanMode), ElementsAre(0, 70, 74, 75, 80, 90, 91));
    EXPECT_EQ(dialog.state().mode_list_digital, 1);
    choose_channel(18);
    EXPECT_EQ(form.cboChanMode.entries.size(), 15u);
    EXPECT_EQ(dialog.state().mode_list_digital, 0);
}

TEST_F(ChannelTest, SwitchOutputComesAndGoesWithChannel29) {
    open(Type8S, 1);
    EXPECT_THAT(offered(form.cboChanMode), ElementsAre(0, 70, 76));
    choose_channel(29);
    EXPECT_THAT(offered(form.cboChanMode), ElementsAre(0, 70, 76, 80));
    EXPECT_EQ(form.cboChanMode.entries[3].text, "Switch Output");
    choose_channel(32);
    EXPECT_EQ(form.cboChanMode.entries.size(), 4u);
    choose_channel(28);
    EXPECT_EQ(form.cboChanMode.entries.size(), 3u);
    choose_channel(29);
    EXPECT_EQ(form.cboChanMode.entries.size(), 4u);
}

TEST_F(ChannelTest, AnEvenChannelKeepsAModeThatItCannotHaveUntilOneIsChosen) {
    open(Type7V, 1);
    channel(4).Mode = 41;
    choose_channel(4);
    EXPECT_EQ(form.cboChanMode.index, -1);
    EXPECT_EQ(channel(4).Mode, 41);
    EXPECT_EQ(dialog.state().current_mode, 41);
    choose_channel(6);
    EXPECT_EQ(form.cboChanMode.entries[at(form.cboChanMode.index)].text, "Volts DC");
}

TEST_F(ChannelTest, AModeThatTheChannelDoesNotHaveShowsAndStoresSkip) {
    open(Type8S, 1);
    channel(5).Mode = 80;
    channel(5).Label = "Pump";
    choose_channel(5);
    EXPECT_EQ(form.cboChanMode.index, 0);
    EXPECT_EQ(channel(5).Mode, 0);
    EXPECT_EQ(channel(5).Label, "");
}

TEST_F(ChannelTest, ANewModeStartsAtRangeZeroAndKeepsTheNames) {
    open(Type7R, 1);
    channel(2).Range = 4;
    channel(2).Label = " Flow ";
    channel(2).Unit = " l/s";
    choose_channel(2);
    EXPECT_EQ(form.cboRange.code(), 4);
    EXPECT_EQ(form.txtLabel.text, "Flow");
    EXPECT_EQ(form.txtUnit.text, "l/s");
    EXPECT_FALSE(changed()) << "looking is no change";
    choose_mode(50);
    EXPECT_EQ(channel(2).Range, 0);
    EXPECT_EQ(channel(2).Label, " Flow ");
    EXPECT_TRUE(changed());
}

TEST_F(ChannelTest, SkipClearsTheChannel) {
    open(Type7S);
    set_channel(4, 61);
    ChannelConfig& c = channel(4);
    c = {61, 2, "Bridge", "V", 2.0F, 3.0F, 1, {1, 0, 0}, {1, 0, 0}};
    edited().Strain[3] = {2.1F, 0.5F, 0.25F};
    edited().SampleRate[3] = 2;
    edited().Timeout[3] = 1;
    choose_mode(0);
    EXPECT_EQ(c, ChannelConfig{});
    EXPECT_EQ(edited().Strain[3], StrainSettings{});
    EXPECT_EQ(edited().SampleRate[3], 0);
    EXPECT_EQ(edited().Timeout[3], 6);
    EXPECT_FALSE(form.cboRange.enabled || form.txtLabel.enabled || form.txtUnit.enabled);
    EXPECT_THAT(form.cboRange.entries, IsEmpty());
}

TEST_F(ChannelTest, SwitchingAlarmsOffTakesThemOutOfTheGroups) {
    for (const int mode : {0, 70}) {
        open(Type7V, 1);
        for (const int number : {5, 6}) channel(number).HighAlarm.Enabled = 1;
        channel(5).LowAlarm.Enabled = 1;
        edited().AlarmGroup[0] = {1, {}, {}};
        edited().AlarmGroup[0].High[4] = 1;
        edited().AlarmGroup[0].High[5] = 1;
        edited().AlarmGroup[1] = {0, {}, {}};
        edited().AlarmGroup[1].Low[4] = 1;
        set_channel(5, mode);
        EXPECT_EQ(channel(5).HighAlarm.Enabled + channel(5).LowAlarm.Enabled, 0);
        EXPECT_EQ(edited().AlarmGroup[0].High[4], 0);
        EXPECT_EQ(edited().AlarmGroup[0].High[5], 1);
        EXPECT_EQ(edited().AlarmGroup[0].OutputState, 1);
        EXPECT_EQ(edited().AlarmGroup[1].OutputState, GroupOff) << "no member is left";
    }
}

class SixPoleTest : public ChannelTest {
  protected:
    const ShownBox Question{
        "Setting this channel to 6 pole mode will overwrite the current settings for channel 4. "
        "Are you sure you wish to set channel 3 to 6 pole mode?",
        box::YesNo | box::Question, "6 Pole Setup"};
};

TEST_F(SixPoleTest, YesTakesTheNextChannel) {
    open(Type7V, 1);
    channel(4).Label = "Old";
    dialogs.answer(Answer::Yes);
    set_channel(3, 20);
    EXPECT_THAT(dialogs.take_boxes(), ElementsAre(Question));
    EXPECT_EQ(channel(3).Mode, 20);
    EXPECT_EQ(edited().SixPole[2], 1);
    EXPECT_EQ(channel(4), ChannelConfig{});
    choose_mode(43);
    EXPECT_THAT(dialogs.boxes, IsEmpty()) << "the next channel is not in use";
    EXPECT_EQ(edited().SixPole[2], 1);
}

TEST_F(SixPoleTest, NoLeavesTheChannelAtSkip) {
    open(Type7V, 1);
    dialogs.answer(Answer::No);
    set_channel(3, 20);
    EXPECT_EQ(channel(3).Mode, 0);
    EXPECT_EQ(form.cboChanMode.index, 0);
    EXPECT_EQ(edited().SixPole[2], 0);
    EXPECT_EQ(channel(4).Mode, 10);
    EXPECT_FALSE(form.txtLabel.enabled);
}

TEST_F(SixPoleTest, ThePairedChannelIsShownAsInUse) {
    open(Type7W);
    set_channel(3, 40);
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    form.txtLabel.text = "RTD";
    EXPECT_TRUE(dialog.txtLabel_LostFocus("cboChannel"));
    choose_channel(4);
    ASSERT_EQ(form.cboChanMode.entries.size(), 1u);
    EXPECT_EQ(form.cboChanMode.entries[0].text, "In Use (Channel 3 is 6 pole)");
    EXPECT_EQ(form.cboChanMode.index, 0);
    EXPECT_EQ(usable(), "Group");
    dialog.cboChanMode_Click();
    EXPECT_TRUE(dialog.txtLabel_LostFocus("cboChannel"));
    EXPECT_EQ(channel(4), ChannelConfig{}) << "nothing of channel 3 is stored here";
    choose_channel(3);
    EXPECT_EQ(form.txtLabel.text, "RTD");
    choose_mode(10);
    choose_channel(4);
    EXPECT_EQ(form.cboChanMode.entries.size(), 15u);
}

TEST_F(SixPoleTest, TypesOfThreePolesDoNotPair) {
    open(Type7S, 1);
    set_channel(3, 20);
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    EXPECT_EQ(channel(4).Mode, 10);
    EXPECT_EQ(edited().SixPole[2], 0);
}

TEST_F(SixPoleTest, PairsOfALoadedConfigurationAreKnownWhenTheDialogOpens) {
    open(Type7V);
    config(3).Channel[2].Mode = 42;
    config(3).Channel[4].Mode = 42;
    config(3).Channel[5].Mode = 10;
    dialog.Form_Load(2);
    choose_channel(4);
    EXPECT_EQ(form.cboChanMode.entries.size(), 1u);
    choose_channel(6);
    EXPECT_EQ(form.cboChanMode.code(), 10) << "a channel in use is left alone";
}

TEST_F(SixPoleTest, SetUpEndsThePairs) {
    open(Type7V);
    set_channel(3, 20);
    tick(form.chkSetup, &PodSetup::chkSetup_Click);
    choose_channel(4);
    EXPECT_EQ(form.cboChanMode.code(), 10);
}

class FieldTest : public ChannelTest {
  protected:
    struct Row {
        const char* text;
        const char* message;  // empty: accepted
    };
    void check_all(TextField& field, bool (PodSetup::*leave)(std::string_view),
                   const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            const PodConfig before = edited();
            EXPECT_EQ(type(field, row.text, leave), *row.message == 0) << row.text;
            if (*row.message == 0) {
                EXPECT_THAT(dialogs.take_boxes(), IsEmpty()) << row.text;
            } else {
                EXPECT_THAT(dialogs.take_boxes(), ElementsAre(refusal(row.message))) << row.text;
                EXPECT_EQ(edited(), before) << "nothing is stored";
                EXPECT_EQ(std::exchange(dialogs.beeps, 0), 1);
            }
        }
    }
};

TEST_F(FieldTest, LabelAndUnit) {
    open(Type7R, 1);
    check_all(form.txtLabel, &PodSetup::txtLabel_LostFocus,
              {{"123456789012345", ""},
               {"1234567890123456", "Label too long: Max 15 characters"},
               {"   Pressure 12345 ", ""}});
    EXPECT_EQ(channel(1).Label, "Pressure 12345");
    EXPECT_EQ(form.txtLabel.text, "Pressure 12345");
    check_all(form.txtUnit, &PodSetup::txtUnit_LostFocus,
              {{"degrees", "Unit too long - Max 5 Characters"}, {" kg/m3  ", ""}});
    EXPECT_EQ(channel(1).Unit, "kg/m3");
}

TEST_F(FieldTest, ExternalTemperature) {
    open(Type7R, 1);
    choose_mode(33);
    dialog.optExtTemp_Click();
    EXPECT_EQ(form.focus, "txtExtTemp");
    EXPECT_EQ(form.txtExtTemp.text, "");
    EXPECT_TRUE(form.optExtTemp.selected && !form.optAmbTemp.selected);
    const char* NoNumber = "External temperature must be a numeric value.";
    check_all(form.txtExtTemp, &PodSetup::txtExtTemp_LostFocus,
              {{"", NoNumber},
               {"warm", NoNumber},
               {"-31", "External temperature too low. For Centigrade must be -30 or above."},
               {"-30", ""},
               {"80", ""},
               {"80.5", "External temperature too high. For Centigrade must be 80 or below."},
               {"12.6", ""}});
    EXPECT_EQ(edited().ExtTemp, 13.0F);
    EXPECT_EQ(form.txtExtTemp.text, "13");
    tick(form.chkDegF, &PodSetup::chkDegF_Click);
    check_all(form.txtExtTemp, &PodSetup::txtExtTemp_LostFocus,
              {{"-23", "External temperature too low. For Fahrenheit must be -22 or above."},
               {"-22", ""},
               {"178", "External temperature too high. For Fahrenheit must be 177 or below."},
               {"177", ""}});
    EXPECT_EQ(edited().ExtTemp, 177.0F);
}

TEST_F(FieldTest, ExternalTemperatureIsNotCheckedTowardsCancelOrTheAmbientOne) {
    open(Type7R, 1);
    choose_mode(33);
    dialog.optExtTemp_Click();
    EXPECT_TRUE(type(form.txtExtTemp, "x", &PodSetup::txtExtTemp_LostFocus, "cmdCancel"));
    EXPECT_TRUE(type(form.txtExtTemp, "x", &PodSetup::txtExtTemp_LostFocus, "optAmbTemp"));
    dialog.optAmbTemp_Click();
    EXPECT_EQ(edited().AmbTemp, 1);
    EXPECT_EQ(form.txtExtTemp.text, "");
    EXPECT_FALSE(form.txtExtTemp.enabled);
    EXPECT_THAT(dialogs.boxes, IsEmpty());
}

TEST_F(FieldTest, AUnitThatForbidsTheTemperatureAsksForAnother) {
    open(Type7R, 1);
    choose_mode(33);
    edited().AmbTemp = 0;
    edited().DegF = 1;
    edited().ExtTemp = 150;
    choose_channel(2);
    choose_channel(1);
    EXPECT_EQ(form.txtExtTemp.text, "150");
    form.focus.clear();
    tick(form.chkDegF, &PodSetup::chkDegF_Click, false);
    EXPECT_EQ(form.focus, "txtExtTemp");
    EXPECT_FALSE(dialog.txtExtTemp_LostFocus("cmdOK"));
    EXPECT_THAT(
        dialogs.take_boxes(),
        ElementsAre(refusal("External temperature too high. For Centigrade must be 80 or below.")));
}

TEST_F(FieldTest, SoftwareWatchdogTime) {
    open(Type8S, 1);
    tick(form.chkSWWatch, &PodSetup::chkSWWatch_Click);
    const char* TooLow = "Software Watch-Dog Timeout value too low: Range = 1 or above";
    const char* TooHigh = "Software Watch-Dog Timeout value too high: Range = 255 or less";
    check_all(form.txtSWWatchTime, &PodSetup::txtSWWatchTime_LostFocus,
              {{"abc", "Software Watch-Dog Timeout must be a number"},
               {"", "Software Watch-Dog Timeout must be a number"},
               {"0", TooLow},
               {"0.4", TooLow},
               {"-5", TooLow},
               {"256", TooHigh},
               {"1E300", TooHigh},
               {"1", ""},
               {"255.4", ""}});
    EXPECT_EQ(edited().SWWatchTime, 255);
    EXPECT_EQ(form.txtSWWatchTime.text, "255");
}

TEST_F(FieldTest, StrainSettings) {
    open(Type7S);
    set_channel(3, 64);
    EXPECT_EQ(form.txtGaugeFactor.text, "00.000000");
    check_all(form.txtGaugeFactor, &PodSetup::txtGaugeFactor_LostFocus,
              {{" ", "Gauge Factor must be a entered"},
               {"two", "Gauge Factor must be a number"},
               {"1E39", "Gauge Factor must be a number"},
               {"2.12345678", ""}});
    EXPECT_EQ(edited().Strain[2].GaugeFactor, 2.123457F);
    EXPECT_EQ(form.txtGaugeFactor.text, "02.123457");
    check_all(form.txtOffset, &PodSetup::txtOffset_LostFocus,
              {{"", "Offset must be entered"}, {"-", "Offset must be a number"}, {"-1.5", ""}});
    EXPECT_EQ(form.txtOffset.text, "-01.500000");
    check_all(form.txtInitialVolt, &PodSetup::txtInitialVolt_LostFocus,
              {{"", "Initial Volt must be a entered"},
               {"1V", "Initial Volt must be a number"},
               {"123.25", ""}});
    EXPECT_EQ(edited().Strain[2], (StrainSettings{2.123457F, -1.5F, 123.25F}));
}

TEST_F(FieldTest, FieldsAreLeftWithoutAChangeWhenTheyShowWhatIsStored) {
    open(Type7S);
    set_channel(3, 64);
    edited().Strain[2] = {2.00000012F, 1.23E-7F, -0.0000004F};
    choose_channel(4);
    choose_channel(3);
    EXPECT_EQ(form.txtInitialVolt.text, "00.000000");
    const PodConfig before = edited();
    EXPECT_TRUE(dialog.txtGaugeFactor_LostFocus("cmdOK"));
    EXPECT_TRUE(dialog.txtOffset_LostFocus("cmdOK"));
    EXPECT_TRUE(dialog.txtInitialVolt_LostFocus("cmdOK"));
    EXPECT_TRUE(dialog.txtLabel_LostFocus("cmdOK"));
    EXPECT_EQ(edited(), before) << "decimals that are not shown stay";
}

TEST_F(FieldTest, DisabledFieldsAreNotChecked) {
    open(Type7R, 1);
    const PodConfig before = edited();
    for (auto leave : {&PodSetup::txtExtTemp_LostFocus, &PodSetup::txtSWWatchTime_LostFocus,
                       &PodSetup::txtGaugeFactor_LostFocus, &PodSetup::txtOffset_LostFocus,
                       &PodSetup::txtInitialVolt_LostFocus})
        EXPECT_TRUE((dialog.*leave)("cmdOK"));
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    EXPECT_EQ(edited(), before);
}

}  // namespace
}  // namespace kavorix::test
