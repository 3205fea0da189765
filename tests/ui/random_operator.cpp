// A seeded random operator works in the pod configuration dialog, on what is enabled and on what is
// not; after every action the configuration must be one that the station may hold, and the form
// must show it. KAVORIX_RANDOM_ACTIONS sets the number of actions per pod type, KAVORIX_RANDOM_SEED
// the seed.

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <random>
#include <set>

#include "base/numbers.h"
#include "base/text.h"
#include "model/channel_rules.h"
#include "pod_setup_rig.h"
#include "ui/pods/field_checks.h"

namespace kavorix::test {
namespace {

int from_environment(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text ? std::atoi(text) : otherwise;
}

// Slots of unused channels may differ in what nothing reads.
PodConfig comparable(PodConfig pod) {
    for (int slot = 0; slot < ChannelSlots; ++slot)
        if (pod.Channel[at(slot)].Mode == 0) {
            pod.SampleRate[at(slot)] = 0;
            pod.Timeout[at(slot)] = DefaultTimeout;
            pod.Channel[at(slot)].LowAlarm = {};
            pod.Channel[at(slot)].HighAlarm = {};
        }
    return pod;
}

class RandomOperator : public testing::TestWithParam<std::int16_t>, public PodSetupRig {
  protected:
    using Handler = void (PodSetup::*)();
    using Leave = bool (PodSetup::*)(std::string_view);

    std::mt19937 random_;
    std::deque<std::string> story_;
    std::int16_t home_ = GetParam();
    // The form shows a type that was just applied, not yet a channel that was chosen.
    bool applied_ = true;
    // The action may say "changed" without changing anything.
    bool may_mark_ = false;
    bool travelled_ = false;

    int below(int limit) {
        return static_cast<int>(random_() % static_cast<unsigned>(std::max(limit, 1)));
    }
    bool chance(int percent) { return below(100) < percent; }
    void tell(std::string what) {
        story_.push_back(std::move(what));
        if (story_.size() > 25) story_.pop_front();
    }
    std::string story() const {
        std::string text = "the last actions:";
        for (const std::string& action : story_) text += "\n  " + action;
        return text;
    }

    void SetUp() override {
        random_.seed(static_cast<unsigned>(from_environment("KAVORIX_RANDOM_SEED", 1996) + home_));
        open(home_);
        dialogs.at_box([this](const ShownBox& box) {
            expect_known(box.text);
            constexpr Answer Answers[] = {Answer::Yes, Answer::No, Answer::Cancel};
            const int buttons = box.flags & box::ButtonMask;
            if (buttons != box::Ok)
                dialogs.answer(Answers[below(buttons == box::YesNoCancel ? 3 : 2)]);
        });
        driver.recording = false;
        operate_dialogs();
    }

    // Random texts, most of them fit to be accepted.
    std::string word(int longest) {
        return std::string(at(below(longest + 1)), static_cast<char>('a' + below(26)));
    }
    std::string number() {
        constexpr const char* Special[] = {"", "x", "-1", "1E39", "0", "1,000", " 7 ", "300"};
        if (chance(20)) return Special[below(8)];
        return general(static_cast<float>(below(20001) - 10000) / 100.0F);
    }

    template <class Fields>
    void fill(Fields& fields) {
        for (TextField& field : fields)
            if (field.enabled && chance(40)) field.text = number();
    }

    void operate_dialogs() {
        windows.copy_channel = [this](CopyChannel& d) {
            for (CheckBox& box : d.screen.chkChannel) box.checked = box.enabled && chance(15);
            if (chance(5)) d.cmdSelectAll_Click();
            if (chance(80)) d.cmdOK_Click();
            if (d.changed()) applied_ = false;  // the channel is shown anew
        };
        windows.unit_conversion = [this](UnitConversion& d) {
            d.screen.txtMValue.text = number();
            d.screen.txtCValue.text = number();
            d.PostLinOp_Click(below(3));
            if (chance(80)) d.cmdOK_Click();
        };
        windows.post_linearisation = [this](PostLinearisation& d) {
            fill(d.screen.txtCoeff);
            fill(d.screen.txtbCoeff);
            if (chance(80)) d.cmdOK_Click();
        };
        windows.user_thermocouple = [this](UserThermocouple& d) {
            fill(d.screen.txtCoeff);
            fill(d.screen.txtbCoeff);
            if (chance(80)) d.cmdOK_Click();
        };
        windows.alarm_limits = [this](AlarmLimits& d) {
            for (int row : {HighRow, LowRow}) {
                d.screen.chkEnableAlarm[at(row)].checked = chance(60);
                d.chkEnableAlarm_Click(row);
                d.screen.txtAlarmLimit[at(row)].text = number();
                d.screen.txtHisteresisLimit[at(row)].text = number();
            }
            d.cmdOK_Click();
        };
        windows.alarm_groups = [this](AlarmGroups& d) {
            for (int i = 0; i < 6; ++i) {
                using Click = void (AlarmGroups::*)();
                constexpr Click Clicks[] = {
                    &AlarmGroups::optchan19_Click,   &AlarmGroups::optchan20_Click,
                    &AlarmGroups::optAss_Click,      &AlarmGroups::optDis_Click,
                    &AlarmGroups::optOff_Click,      &AlarmGroups::cmdSelectAll_Click,
                    &AlarmGroups::cmdClearAll_Click, &AlarmGroups::optAss_Click};
                (d.*Clicks[below(8)])();
                const auto channel = at(below(AlarmGroupChannels));
                if (d.screen.chkHi[channel].enabled) d.screen.chkHi[channel].checked = chance(50);
                if (d.screen.chkLow[channel].enabled) d.screen.chkLow[channel].checked = chance(50);
            }
            if (chance(80)) d.cmdOK_Click();
        };
        driver.at_call([this](const DriverCall&) {
            auto& waiting = driver.pod(3).waiting[RequestStream];
            if (waiting.empty() && chance(30))
                waiting.push_back(single(static_cast<float>(below(100)), 0.5F));
        });
    }

    struct Choice {
        const char* name;
        ListBox PodSetupScreen::*list;
        Handler handler;
    };
    struct Tick {
        const char* name;
        CheckBox PodSetupScreen::*box;
        Handler handler;
    };
    struct Typed {
        const char* name;
        TextField PodSetupScreen::*field;
        Leave leave;
        bool text;
    };
    struct Press {
        const char* name;
        Button PodSetupScreen::*button;
        Handler handler;
    };

    void choose() {
        static constexpr Choice Choices[] = {
            {"cboChannel", &PodSetupScreen::cboChannel, &PodSetup::cboChannel_Click},
            {"cboChannel", &PodSetupScreen::cboChannel, &PodSetup::cboChannel_Click},
            {"cboChanMode", &PodSetupScreen::cboChanMode, &PodSetup::cboChanMode_Click},
            {"cboChanMode", &PodSetupScreen::cboChanMode, &PodSetup::cboChanMode_Click},
            {"cboRange", &PodSetupScreen::cboRange, &PodSetup::cboRange_Click},
            {"cboScanPeriod", &PodSetupScreen::cboScanPeriod, &PodSetup::cboScanPeriod_Click},
            {"cboIntegration", &PodSetupScreen::cboIntegration, &PodSetup::cboIntegration_Click},
            {"cboSampleRate", &PodSetupScreen::cboSampleRate, &PodSetup::cboSampleRate_Click},
            {"cboTimeout", &PodSetupScreen::cboTimeout, &PodSetup::cboTimeout_Click}};
        const Choice& choice = Choices[below(9)];
        ListBox& list = form.*choice.list;
        if (list.entries.empty()) return;
        const int before = list.index;
        const int entry = below(static_cast<int>(list.entries.size()));
        if (list.enabled) list.index = entry;
        tell(std::string(choice.name) + " " + list.entries[at(entry)].text +
             (list.enabled ? "" : " (disabled)"));
        if (list.enabled && choice.list != &PodSetupScreen::cboRange && entry != before &&
            (choice.list == &PodSetupScreen::cboChannel ||
             choice.list == &PodSetupScreen::cboChanMode))
            applied_ = false;
        // A six-pole mode that the operator takes back at once counts as a change.
        may_mark_ = choice.list == &PodSetupScreen::cboChanMode;
        (dialog.*choice.handler)();
    }

    void tick_box() {
        static constexpr Tick Ticks[] = {
            {"chkArm", &PodSetupScreen::chkArm, &PodSetup::chkArm_Click},
            {"chkCalOn", &PodSetupScreen::chkCalOn, &PodSetup::chkCalOn_Click},
            {"chkContScan", &PodSetupScreen::chkContScan, &PodSetup::chkContScan_Click},
            {"chkDegF", &PodSetupScreen::chkDegF, &PodSetup::chkDegF_Click},
            {"chkOpenTC", &PodSetupScreen::chkOpenTC, &PodSetup::chkOpenTC_Click},
            {"chkHWWatch", &PodSetupScreen::chkHWWatch, &PodSetup::chkHWWatch_Click},
            {"chkSWWatch", &PodSetupScreen::chkSWWatch, &PodSetup::chkSWWatch_Click}};
        const Tick& tick = Ticks[below(7)];
        CheckBox& box = form.*tick.box;
        if (box.enabled) box.checked = !box.checked;
        tell(std::string(tick.name) + (box.checked ? " ticked" : " cleared"));
        (dialog.*tick.handler)();
    }

    void type_text() {
        static constexpr Typed Fields[] = {
            {"txtLabel", &PodSetupScreen::txtLabel, &PodSetup::txtLabel_LostFocus, true},
            {"txtUnit", &PodSetupScreen::txtUnit, &PodSetup::txtUnit_LostFocus, true},
            {"txtExtTemp", &PodSetupScreen::txtExtTemp, &PodSetup::txtExtTemp_LostFocus, false},
            {"txtSWWatchTime", &PodSetupScreen::txtSWWatchTime, &PodSetup::txtSWWatchTime_LostFocus,
             false},
            {"txtGaugeFactor", &PodSetupScreen::txtGaugeFactor, &PodSetup::txtGaugeFactor_LostFocus,
             false},
            {"txtOffset", &PodSetupScreen::txtOffset, &PodSetup::txtOffset_LostFocus, false},
            {"txtInitialVolt", &PodSetupScreen::txtInitialVolt, &PodSetup::txtInitialVolt_LostFocus,
             false}};
        const Typed& typed = Fields[below(7)];
        TextField& field = form.*typed.field;
        if (!field.enabled) return;
        const std::string before = field.text;
        field.text = typed.text ? word(18) : number();
        tell(std::string(typed.name) + " \"" + field.text + "\"");
        if (!(dialog.*typed.leave)("cmdOK")) settle(field, typed, before);
    }
    // The focus has returned: the operator enters something that the field takes.
    void settle(TextField& field, const Typed& typed, const std::string& before) {
        field.text = before.empty() ? "20" : before;
        if ((dialog.*typed.leave)("cmdOK")) return;
        field.text = "20";
        EXPECT_TRUE((dialog.*typed.leave)("cmdOK")) << typed.name;
    }

    void press() {
        static constexpr Press Presses[] = {
            {"cmdCopyChan", &PodSetupScreen::cmdCopyChan, &PodSetup::cmdCopyChan_Click},
            {"cmdViewChans", &PodSetupScreen::cmdViewChans, &PodSetup::cmdViewChans_Click},
            {"cmdMx_c", &PodSetupScreen::cmdMx_c, &PodSetup::cmdMx_c_Click},
            {"cmdPostLin", &PodSetupScreen::cmdPostLin, &PodSetup::cmdPostLin_Click},
            {"cmdCoeff", &PodSetupScreen::cmdCoeff, &PodSetup::cmdCoeff_Click},
            {"cmdAlarm", &PodSetupScreen::cmdAlarm, &PodSetup::cmdAlarm_Click},
            {"cmdGroup", &PodSetupScreen::cmdGroup, &PodSetup::cmdGroup_Click},
            {"cmdInitialise", &PodSetupScreen::cmdInitialise, &PodSetup::cmdInitialise_Click}};
        const Press& press = Presses[below(8)];
        tell(std::string(press.name) + ((form.*press.button).enabled ? "" : " (disabled)"));
        may_mark_ = press.button == &PodSetupScreen::cmdCopyChan;
        (dialog.*press.handler)();
    }

    void reference() {
        const bool external = chance(50);
        if (!form.optExtTemp.enabled) return;
        tell(external ? "optExtTemp" : "optAmbTemp");
        if (!external) return dialog.optAmbTemp_Click();
        dialog.optExtTemp_Click();
        form.txtExtTemp.text = "20";
        EXPECT_TRUE(dialog.txtExtTemp_LostFocus("cmdOK"));
    }

    void set_up() {
        if (!form.chkSetup.enabled) return;
        form.chkSetup.checked = !form.chkSetup.checked;
        tell("chkSetup");
        if (form.chkSetup.checked) applied_ = true;
        dialog.chkSetup_Click();
    }

    void change_type() {
        const auto type = chance(50) ? home_ : pod_types()[at(below(9))].type;
        tell("type " + std::to_string(type));
        if (type == edited().TypeCode) return;
        may_mark_ = applied_ = true;
        choose_type(type);
    }

    void start_anew() {
        tell("cmdDefault");
        may_mark_ = applied_ = true;
        dialog.cmdDefault_Click();
    }

    void travel() {
        const bool back = chance(70);
        if (!(back ? form.cmdUndo.enabled : form.cmdRedo.enabled)) return;
        tell(back ? "undo" : "redo");
        travelled_ = true;
        const PodConfig before = edited();
        if (back)
            dialog.cmdUndo_Click();
        else
            dialog.cmdRedo_Click();
        applied_ = false;
        // The way there and back again.
        const PodConfig after = edited();
        const bool changed_after = changed();
        if (back)
            dialog.cmdRedo_Click();
        else
            dialog.cmdUndo_Click();
        EXPECT_EQ(edited(), before);
        if (back)
            dialog.cmdUndo_Click();
        else
            dialog.cmdRedo_Click();
        EXPECT_EQ(edited(), after);
        EXPECT_EQ(changed(), changed_after);
    }

    // Ends the dialog in one of its ways and opens it again.
    void end() {
        const PodConfig live = config(3);
        const PodConfig copy = edited();
        const bool was_changed = changed();
        configuration.ConfigChanged = 0;
        if (chance(50)) {
            tell("OK");
            dialog.cmdOK_Click();
            EXPECT_EQ(config(3), was_changed ? copy : live);
            EXPECT_EQ(configuration.ConfigChanged, was_changed ? 1 : 0);
        } else {
            tell("closed");
            dialog.unload_request();
            EXPECT_TRUE(config(3) == live || (was_changed && config(3) == copy));
            EXPECT_EQ(configuration.ConfigChanged, 0);
            if (config(3) == live && !dialog.closed() && was_changed) return;  // it stays open
        }
        dialog.Form_Load(2);
        applied_ = true;
        EXPECT_EQ(changed(), config(3).TypeCode == NoDevice) << "it gets the connected type";
        EXPECT_FALSE(form.cmdUndo.enabled || form.cmdRedo.enabled);
        if (edited().TypeCode != home_) choose_type(home_);
    }

    void act() {
        may_mark_ = travelled_ = false;
        const int kind = below(1000);
        if (kind < 450) return choose();
        if (kind < 570) return tick_box();
        if (kind < 720) return type_text();
        if (kind < 880) return press();
        if (kind < 910) return reference();
        if (kind < 960) return travel();
        if (kind < 975) return set_up();
        if (kind < 980) return change_type();
        if (kind < 985) return start_anew();
        if (kind < 995 || edited().TypeCode == home_) return;
        change_type();
    }

    void expect_known(const std::string& text);
    void check_record();
    void check_channel(int slot);
    void check_groups();
    void check_lists();
    void check_fields();
    void check_offers();
};

void RandomOperator::expect_known(const std::string& text) {
    static const std::set<std::string> Whole = {
        "Label too long: Max 15 characters",
        "Unit too long - Max 5 Characters",
        "External temperature must be a numeric value.",
        "External temperature too low. For Fahrenheit must be -22 or above.",
        "External temperature too high. For Fahrenheit must be 177 or below.",
        "External temperature too low. For Centigrade must be -30 or above.",
        "External temperature too high. For Centigrade must be 80 or below.",
        "Software Watch-Dog Timeout must be a number",
        "Software Watch-Dog Timeout value too low: Range = 1 or above",
        "Software Watch-Dog Timeout value too high: Range = 255 or less",
        "Gauge Factor must be a entered",
        "Gauge Factor must be a number",
        "Offset must be entered",
        "Offset must be a number",
        "Initial Volt must be a entered",
        "Initial Volt must be a number",
        "No Channel(s) Selected for Copying.\n\nSelect 1 or more Channels, or Cancel.",
        "Value Entered for 'M' must be a Number",
        "Value Entered for 'C' must be a Number",
        "'C' Value Required if 'M' has been Specified",
        "'M' Value Required if 'C' has been Specified",
        "Coefficient must be a number",
        "Alarm Limit must be a number",
        "Hysteresis Limit must be a positive number",
        "Hight Alarm limit Rrequired if alarm is enabled",
        "Low Alarm limit Rrequired if alarm is enabled",
        "High Alarm Histeresis Limit required if alarm is enabled",
        "Low Alarm Histeresis Limit required if alarm is enabled",
        "High Alarm must be greater than Low Alarm",
        "Configuration changed.\n\nKeep changes?",
        "The ZAV connected is not of type '7S'.",
        "ZAV not responding. 'Initial volt' and 'offset' not set",
        "Receive Error from ZAV. 'Initial volt' and 'offset' not set"};
    static const std::vector<std::string> Beginnings = {
        "Warning. ZAV number 03 has an ZAV of type ", "Setting this channel to 6 pole mode will ",
        "Overwrite Selected Channel(s) with Channel Configuration ", "Alarm Group Channel 19 ",
        "Alarm Group Channel 20 "};
    const bool begins_so = std::any_of(Beginnings.begin(), Beginnings.end(), [&](const auto& b) {
        return text.compare(0, b.size(), b) == 0;
    });
    EXPECT_TRUE(Whole.count(text) == 1 || begins_so) << text;
}

void RandomOperator::check_record() {
    const PodConfig& pod = edited();
    ASSERT_EQ(pod.TypeCode, dialog.state().selected_type);
    ASSERT_EQ(pod.TypeCode, form.cboZAVType.code());
    ASSERT_EQ(pod.NumChannels, channel_count(pod.TypeCode));
    for (int slot = 0; slot < pod.NumChannels; ++slot) check_channel(slot);
    check_groups();
    EXPECT_TRUE(pod.SWWatchTime >= 1 && pod.SWWatchTime <= 255);
}

void RandomOperator::check_channel(int slot) {
    const PodConfig& pod = edited();
    const ChannelConfig& c = pod.Channel[at(slot)];
    const std::string number = "channel " + std::to_string(slot + 1);
    EXPECT_TRUE(is_legal_mode(c.Mode, pod.TypeCode, slot + 1)) << number << " mode " << c.Mode;
    EXPECT_TRUE(c.Range == 0 || is_legal_range(c.Range, c.Mode, pod.TypeCode, slot + 1)) << number;
    EXPECT_TRUE(c.Label.size() <= MaxLabel && c.Unit.size() <= MaxUnit) << number;
    EXPECT_TRUE(c.PostLin == 0 || pod.PostLinEquation[at(c.PostLin - 1)].Enabled == TableOn);
    const bool no_alarms = c.Mode == 0 || c.Mode == DigitalStatus;
    EXPECT_FALSE(no_alarms && (c.HighAlarm.Enabled == 1 || c.LowAlarm.Enabled == 1)) << number;
    if (c.HighAlarm.Enabled == 1 && c.LowAlarm.Enabled == 1) {
        EXPECT_GT(c.HighAlarm.Limit, c.LowAlarm.Limit) << number;
    }
    if (c.Mode == 0) {
        EXPECT_TRUE(c.Label.empty() && c.Unit.empty() && c.MValue == 1 && c.CValue == 0 &&
                    c.PostLin == 0 && c.Range == 0)
            << number;
    }
    const bool pairs = can_start_pair(pod, slot) && is_six_pole_mode(c.Mode);
    EXPECT_EQ(pod.SixPole[at(slot)], pairs ? 1 : 0) << number;
    if (pairs) {
        EXPECT_EQ(pod.Channel[at(slot + 1)].Mode, 0) << "beside " << number;
    }
}

void RandomOperator::check_groups() {
    for (int output = 0; output < 2; ++output) {
        const AlarmGroup& group = edited().AlarmGroup[at(output)];
        EXPECT_TRUE(group.OutputState >= 0 && group.OutputState <= 2);
        EXPECT_EQ(has_members(group), group.OutputState != GroupOff) << output;
        for (int i = 0; i < AlarmGroupChannels; ++i) {
            EXPECT_LE(group.High[at(i)], edited().Channel[at(i)].HighAlarm.Enabled) << i;
            EXPECT_LE(group.Low[at(i)], edited().Channel[at(i)].LowAlarm.Enabled) << i;
        }
    }
}

void RandomOperator::check_lists() {
    form.each([](std::string_view name, const auto& control) {
        if constexpr (std::is_same_v<std::decay_t<decltype(control)>, ListBox>) {
            EXPECT_LT(control.index, static_cast<int>(control.entries.size())) << name;
            EXPECT_TRUE(!control.enabled || control.index >= 0) << name;
        }
    });
    const PodConfig& pod = edited();
    if (pod.TypeCode == NoDevice) return;
    const auto slot = at(dialog.state().selected_channel);
    EXPECT_EQ(form.cboChannel.index, dialog.state().selected_channel);
    EXPECT_EQ(form.cboChanMode.code(), pod.Channel[slot].Mode);
    EXPECT_EQ(dialog.state().current_mode, pod.Channel[slot].Mode);
    EXPECT_EQ(form.cboRange.code(), pod.Channel[slot].Range);
    EXPECT_EQ(form.cboScanPeriod.code(), pod.ScanPeriod);
    EXPECT_EQ(form.cboIntegration.index, form.cboIntegration.enabled ? pod.Integration : -1);
    EXPECT_EQ(form.cboSampleRate.index, form.cboSampleRate.enabled ? pod.SampleRate[slot] : -1);
    EXPECT_EQ(form.cboTimeout.code(-1), form.cboTimeout.enabled ? pod.Timeout[slot] : -1);
    std::vector<int> offered;
    for (const Option& option : modes(pod.TypeCode, static_cast<int>(slot) + 1))
        offered.push_back(option.code);
    EXPECT_EQ(codes(form.cboChanMode),
              is_paired(pod, static_cast<int>(slot)) ? std::vector{0} : offered);
}

void RandomOperator::check_fields() {
    const PodConfig& pod = edited();
    const auto slot = at(dialog.state().selected_channel);
    const auto shows = [](const TextField& field, const std::string& text, const char* name) {
        EXPECT_EQ(field.text, field.enabled ? text : "") << name;
    };
    shows(form.txtLabel, pod.Channel[slot].Label, "label");
    shows(form.txtUnit, pod.Channel[slot].Unit, "unit");
    shows(form.txtExtTemp, general(pod.ExtTemp), "external temperature");
    shows(form.txtSWWatchTime, std::to_string(pod.SWWatchTime), "watchdog time");
    shows(form.txtGaugeFactor, six_decimals(pod.Strain[slot].GaugeFactor), "gauge factor");
    shows(form.txtOffset, six_decimals(pod.Strain[slot].Offset), "offset");
    shows(form.txtInitialVolt, six_decimals(pod.Strain[slot].InitialVolt), "initial volt");
    const auto ticked = [](const CheckBox& box, std::int16_t flag, const char* name) {
        EXPECT_EQ(box.checked, box.enabled && flag == 1) << name;
    };
    ticked(form.chkSetup, pod.Setup, "set-up");
    ticked(form.chkArm, pod.Arm, "arm");
    ticked(form.chkCalOn, pod.CalOn, "calibration");
    ticked(form.chkContScan, pod.ContScan, "continuous scan");
    ticked(form.chkDegF, pod.DegF, "Fahrenheit");
    ticked(form.chkOpenTC, pod.OpenTC, "open thermocouple");
    ticked(form.chkHWWatch, pod.HWWatch, "hardware watchdog");
    ticked(form.chkSWWatch, pod.SWWatch, "software watchdog");
}

void RandomOperator::check_offers() {
    const std::int16_t type = edited().TypeCode;
    const int number = dialog.state().selected_channel + 1;
    const std::int16_t mode = type == NoDevice ? std::int16_t{0} : channel(number).Mode;
    const bool universal = is_universal_type(type);
    const bool analog = universal && number <= 18 && mode != 0;
    const bool thermocouple = is_thermocouple_mode(mode);
    EXPECT_EQ(form.cmdAlarm.enabled, analog && mode != 70);
    EXPECT_EQ(form.cmdPostLin.enabled, analog && mode != 70);
    EXPECT_EQ(form.cmdGroup.enabled, universal);
    EXPECT_EQ(form.cmdCoeff.enabled, universal && (mode == 39 || mode == 30));
    EXPECT_EQ(form.cmdMx_c.enabled,
              mode != 0 && !(thermocouple && !universal) && !(universal && mode == 70));
    EXPECT_EQ(form.txtLabel.enabled, mode != 0);
    EXPECT_EQ(form.fmeThermoZAVs.enabled, thermocouple);
    EXPECT_EQ(form.fmeStrain.enabled, is_strain_mode(mode));
    EXPECT_EQ(form.chkHWWatch.enabled,
              type == Type8S || (universal && !applied_ && has_sampling(mode)));
    EXPECT_EQ(form.cboSampleRate.enabled,
              (type == Type8R && mode != 0) || (universal && !applied_ && has_sampling(mode)));
    EXPECT_EQ(form.cboIntegration.enabled,
              (type >= Type7R && type <= Type7U) || (universal && applied_) || analog);
}

TEST_P(RandomOperator, KeepsTheConfigurationConsistent) {
    const int actions = from_environment("KAVORIX_RANDOM_ACTIONS", 3000);
    PodConfigs before_all = configuration.ZavConfig;
    for (int i = 0; i < actions && !HasFailure(); ++i) {
        const PodConfig before = comparable(edited());
        const PodConfig live = config(3);
        const bool was_changed = changed();
        act();
        dialogs.take_boxes();
        EXPECT_EQ(config(3), live) << "live until accepted";
        if (comparable(edited()) != before) {
            EXPECT_TRUE(changed() || travelled_) << "a change that is not marked";
        } else if (!may_mark_ && !travelled_) {
            EXPECT_EQ(changed(), was_changed) << "marked without a change";
        }
        check_record();
        check_lists();
        check_fields();
        check_offers();
        if (chance(1)) end();
        if (HasFailure()) ADD_FAILURE() << "action " << i << ", " << story();
    }
    before_all[2] = configuration.ZavConfig[2];
    EXPECT_EQ(configuration.ZavConfig, before_all) << "another pod";
}

INSTANTIATE_TEST_SUITE_P(Types, RandomOperator,
                         testing::Values(Type7R, Type7S, Type7T, Type7U, Type8R, Type8S, Type7V,
                                         Type7W),
                         [](const auto& parameter) {
                             return "Type" + std::string(pod_type(parameter.param).code);
                         });

}  // namespace
}  // namespace kavorix::test
