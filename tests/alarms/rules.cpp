// Limits adopted from a configuration, alarm files with every mistake, and the order of limits.

#include <gtest/gtest.h>

#include <memory>

#include "alarms/desk_rig.h"
#include "alarms/rules_file.h"
#include "model/catalogue.h"

namespace kavorix::test {
namespace {

std::unique_ptr<PodConfigs> configs() {
    auto made = std::make_unique<PodConfigs>();
    for (PodConfig& pod : *made) default_ZAV_config(pod, NoDevice, 0);
    for (const int pod : {1, 5, 50})
        default_ZAV_config((*made)[static_cast<std::size_t>(pod - 1)], Type7V, 1);
    return made;
}

std::vector<std::string> ids(const std::vector<AlarmRule>& rules) {
    std::vector<std::string> all;
    for (const AlarmRule& of : rules) all.push_back(alarm_id(of));
    return all;
}

// What the pod compares is x; what the operator sees is M x + c. A limit that both reach at the
// same reading is the same limit.
TEST(AlarmRules, AdoptedLimitsAreThoseOfTheShownUnit) {
    struct Case {
        float m, c, high, low, hysteresis;
        double shown_high, shown_low, shown_hysteresis;
    };
    for (const Case& c : {Case{1, 0, 5, -5, 0.5, 5, -5, 0.5}, Case{2, 10, 5, -5, 0.5, 20, 0, 1},
                          Case{-2, 10, 5, -5, 0.5, 20, 0, 1}}) {
        const auto pods = configs();
        ChannelConfig& channel = (*pods)[4].Channel[2];
        channel.MValue = c.m;
        channel.CValue = c.c;
        channel.HighAlarm = {1, c.high, c.hysteresis};
        channel.LowAlarm = {1, c.low, c.hysteresis};
        const std::vector<AlarmRule> rules = adopted_rules(*pods);
        ASSERT_EQ(rules.size(), 2u);
        for (const AlarmRule& of : rules) {
            EXPECT_EQ(of.limit, of.kind == AlarmKind::High ? c.shown_high : c.shown_low);
            EXPECT_EQ(of.hysteresis, c.shown_hysteresis);
        }
        EXPECT_NE(rules[0].kind, rules[1].kind);
    }
}

TEST(AlarmRules, OnlyChannelsThatMeasureHaveAdoptedLimits) {
    const auto pods = configs();
    for (ChannelConfig& channel : (*pods)[0].Channel) channel.HighAlarm = {1, 1, 0};
    (*pods)[0].Channel[1].Mode = 0;
    (*pods)[0].Channel[2].Mode = DigitalStatus;
    (*pods)[0].Channel[3].MValue = 0;
    (*pods)[0].Channel[4].HighAlarm.Enabled = 0;
    (*pods)[1].Channel[0].HighAlarm = {1, 1, 0};  // of a pod that is not configured
    // 20 channels less the four; 19 and 20 are digital.
    EXPECT_EQ(adopted_rules(*pods).size(), 14u);
}

TEST(AlarmRules, AStationHasThoseOfTheFileFirstAndFailuresOfItsOwn) {
    const auto pods = configs();
    ChannelConfig& channel = (*pods)[4].Channel[0];
    channel.HighAlarm = {1, 1, 0};
    channel.Label = "Flow";
    channel.Unit = "l/s";
    const auto rules = station_rules(*pods, {rule("5/1/high", 9), rule("50/stale", 60)});
    EXPECT_EQ(ids(rules),
              (std::vector<std::string>{"5/1/high", "50/stale", "5/1/invalid", "5/lost", "50/lost",
                                        "log-failing", "disk-filling", "journal-unwritable"}));
    EXPECT_EQ(rules[0].limit, 9);
    EXPECT_EQ(rules[0].label + rules[2].unit, "Flowl/s");
}

const std::string Alarm = "[[alarm]]\npod = 4\nchannel = 1\nkind = \"high\"\nlimit = 2\n";

TEST(AlarmFile, EveryKey) {
    const LoadedRules loaded = parse_rules(
        Alarm +
            "hysteresis = 0.5\non_delay_s = 5\noff_delay_s = 1.5\nrealarm_s = 600\nlatch = "
            "true\nacknowledge_return = false\nseverity = 4\ntext = \"Kiln too hot\"\nguidance = "
            "\"Close the damper\"\n[[alarm]]\npod = 50\nkind = \"lost\"\n",
        "k.alarms.toml");
    ASSERT_EQ(loaded.errors, std::vector<std::string>{});
    AlarmRule wanted = rule("4/1/high", 2);
    wanted.hysteresis = 0.5;
    wanted.on_delay_s = 5;
    wanted.off_delay_s = 1.5;
    wanted.realarm_s = 600;
    wanted.latch = true;
    wanted.acknowledge_return = false;
    wanted.severity = 4;
    wanted.text = "Kiln too hot";
    wanted.guidance = "Close the damper";
    wanted.line = 1;
    AlarmRule lost = rule("50/lost");
    lost.line = 15;
    EXPECT_EQ(loaded.rules, (std::vector<AlarmRule>{wanted, lost}));

    // And back: what the writer makes is read as the same rules.
    MemoryFiles files;
    save_rules(files, "k.alarms.toml", loaded.rules);
    LoadedRules again = load_rules(files, "k.alarms.toml");
    EXPECT_EQ(again.errors, std::vector<std::string>{});
    ASSERT_EQ(again.rules.size(), 2u);
    again.rules[0].line = 1;
    again.rules[1].line = 15;
    EXPECT_EQ(again.rules, loaded.rules);
}

TEST(AlarmFile, MistakesHaveTheirPlaceAndReason) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"[[alarm]]\nchannel = 1\nkind = \"high\"\nlimit = 2", "1:1: \"alarm.pod\" is missing"},
        {"[[alarm]]\npod = 51\nkind = \"lost\"",
         "2:7: \"alarm.pod\" must be a pod number from 1 to 50"},
        {"[[alarm]]\npod = 4\nchannel = 33\nkind = \"invalid\"",
         "3:11: \"alarm.channel\" must be a channel number from 1 to 32"},
        {"[[alarm]]\npod = 4", "1:1: \"alarm.kind\" is missing"},
        {"[[alarm]]\npod = 4\nkind = \"hihg\"\nlimit = 1",
         "3:8: \"alarm.kind\" must be one of high-high, high, low, low-low, rate, invalid, stale, "
         "lost, digital; did you mean \"high\"?"},
        {"[[alarm]]\npod = 4\nkind = \"disk-filling\"",
         "3:8: \"alarm.kind\" must be one of high-high, high, low, low-low, rate, invalid, stale, "
         "lost, digital"},
        {"[[alarm]]\npod = 4\nkind = \"high\"\nlimit = 1", "1:1: \"alarm.channel\" is missing"},
        {"[[alarm]]\npod = 4\nchannel = 1\nkind = \"lost\"",
         "3:11: \"alarm.channel\" must be left out: \"lost\" is an alarm of the whole pod"},
        {"[[alarm]]\npod = 4\nchannel = 1\nkind = \"low\"", "1:1: \"alarm.limit\" is missing"},
        {"[[alarm]]\npod = 4\nchannel = 1\nkind = \"low\"\nlimit = nan",
         "5:9: \"alarm.limit\" must be a number"},
        {"[[alarm]]\npod = 4\nchannel = 1\nkind = \"rate\"\nlimit = 0",
         "5:9: \"alarm.limit\" must be a change per second, above 0"},
        {"[[alarm]]\npod = 4\nchannel = 1\nkind = \"rate\"\nlimit = 1\nhysteresis = 1",
         "6:14: \"alarm.hysteresis\" must be below \"alarm.limit\", or the alarm never goes"},
        {"[[alarm]]\npod = 4\nkind = \"stale\"\nlimit = 0",
         "4:9: \"alarm.limit\" must be a time in seconds, from 0.1 to 1000000"},
        {"[[alarm]]\npod = 4\nchannel = 1\nkind = \"digital\"\nlimit = 0.5",
         "5:9: \"alarm.limit\" must be a level, 0 or 1"},
        {"[[alarm]]\npod = 4\nkind = \"lost\"\nlimit = 1",
         "4:9: \"alarm.limit\" must be left out: \"lost\" has none"},
        {"[[alarm]]\npod = 4\nkind = \"stale\"\nlimit = 1\nhysteresis = 1",
         "5:14: \"alarm.hysteresis\" must be left out: \"stale\" has none"},
        {Alarm + "hysteresis = -0.1", "6:14: \"alarm.hysteresis\" must be a number, 0 or more"},
        {Alarm + "on_delay_s = 86401",
         "6:14: \"alarm.on_delay_s\" must be a time in seconds, from 0 to 86400"},
        {Alarm + "latch = 1", "6:9: \"alarm.latch\" must be true or false"},
        {Alarm + "severity = 5",
         "6:12: \"alarm.severity\" must be a severity from 1 (lowest) to 4 (highest)"},
        {Alarm + "text = \"" + std::string(81, 'x') + "\"",
         "6:8: \"alarm.text\" must be a text of 0 to 80 characters"},
        {Alarm + "limt = 3", "6:1: unknown key \"alarm.limt\"; did you mean \"limit\"?"},
        {Alarm + Alarm, "9:8: \"alarm.kind\" names the alarm \"4/1/high\" of line 1 again"},
        {"alarm = 3", "1:9: \"alarm\" must be written as [[alarm]]"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(parse_rules(text, "k.toml").errors, std::vector<std::string>{"k.toml:" + error})
            << text;
}

TEST(AlarmFile, IsCheckedAgainstTheConfiguration) {
    const auto pods = configs();
    (*pods)[0].Channel[5].Mode = 0;
    (*pods)[0].Channel[0].LowAlarm = {1, 3, 0};
    (*pods)[0].Channel[9].HighAlarm = (*pods)[0].Channel[9].LowAlarm = {1, 3, 0};
    std::vector<AlarmRule> rules = {
        rule("2/lost"),           rule("1/21/invalid"),    rule("1/6/high", 1),
        rule("1/2/digital", 1),   rule("1/19/digital", 1), rule("1/1/high", 3),
        rule("1/3/high-high", 1), rule("1/3/low-low", 0),  rule("1/3/low", 0)};
    for (std::size_t i = 0; i < rules.size(); ++i) rules[i].line = static_cast<int>(i + 1);
    std::vector<std::string> found;
    for (const RuleProblem& problem : check_rules(*pods, rules))
        found.push_back(std::to_string(problem.line) + " " + problem.message);
    EXPECT_EQ(found, (std::vector<std::string>{
                         "1 pod 2 is not configured", "2 pod 1 has 20 channels",
                         "3 channel 6 of pod 1 is not in use",
                         "4 channel 2 of pod 1 is no digital status channel",
                         "6 the limit of \"1/1/high\" must be above that of \"1/1/low\"",
                         "9 the limit of \"1/3/low\" must be above that of \"1/3/low-low\""}));
}

TEST(AlarmFile, StandsBesideItsConfiguration) {
    EXPECT_EQ(rules_path("a.b/kiln.CFG"), "a.b/kiln.alarms.toml");
    EXPECT_EQ(rules_path("a.b/kiln"), "a.b/kiln.alarms.toml");
}

}  // namespace
}  // namespace kavorix::test
