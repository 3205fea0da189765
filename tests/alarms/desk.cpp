// The alarms of a station, scene by scene: readings in, transitions out.

#include <gtest/gtest.h>

#include <cmath>

#include "alarms/desk_rig.h"

namespace kavorix::test {
namespace {

using Told = std::vector<std::string>;
using Ids = std::vector<std::string>;
constexpr std::int16_t Overload = 128 + 1;
constexpr std::int16_t Pending = 128 + 13;

std::vector<AlarmRule> all_kinds() {
    const auto hysteresis = [](AlarmRule& of) { of.hysteresis = 1; };
    return {rule("4/1/high-high", 20, hysteresis),
            rule("4/1/high", 10, hysteresis),
            rule("4/1/low", 0, hysteresis),
            rule("4/1/low-low", -10, hysteresis),
            rule("4/2/rate", 2),
            rule("4/3/digital", 0),
            rule("4/1/invalid"),
            rule("4/lost"),
            rule("4/stale", 30),
            rule("journal-unwritable")};
}

TEST(AlarmDesk, EveryKindComesAndGoesAtItsLimit) {
    struct Row {
        std::vector<float> values;
        std::int16_t code;
        Told told;
    };
    // Channel 1 has limits with a hysteresis of 1, channel 2 changes at most 2 a second, channel 3
    // has to be on; a scan a second.
    const std::vector<Row> rows = {
        {{10, 0, 1}, 0, {}},
        {{10.5F, 2, 1}, 0, {"4/1/high comes unacknowledged"}},
        {{20.5F, 4.5F, 1},
         0,
         {"4/1/high-high comes unacknowledged", "4/2/rate comes unacknowledged"}},
        {{19, 6.5F, 1}, 0, {}},
        {{18.9F, 7, 1}, 0, {"4/1/high-high goes returned", "4/2/rate goes returned"}},
        {{9, 7, 0}, 0, {"4/3/digital comes unacknowledged"}},
        {{8.9F, 7, 1}, 0, {"4/1/high goes returned", "4/3/digital goes returned"}},
        {{-0.1F, 7, 1}, 0, {"4/1/low comes unacknowledged"}},
        {{-10.1F, 7, 1}, 0, {"4/1/low-low comes unacknowledged"}},
        {{1.1F, 7, 1}, 0, {"4/1/low goes returned", "4/1/low-low goes returned"}},
        {{0, 7, 1}, Overload, {"4/1/invalid comes unacknowledged"}},
        {{0, 7, 1}, 0, {"4/1/invalid goes returned"}},
        {{NAN, 7, 1}, 0, {"4/1/invalid comes unacknowledged"}},
        {{-5, 7, 1}, Pending, {}},  // no reading at all
        {{-5, 7, 1}, 0, {"4/1/low comes unacknowledged", "4/1/invalid goes returned"}},
    };
    DeskRig rig(all_kinds());
    for (const Row& row : rows) {
        rig.scan(4, row.values, {row.code});
        EXPECT_EQ(rig.take_told(), row.told) << row.values[0];
    }
}

// An error of the reading, a silent pod: the condition stays as it was, and the delay begins anew.
TEST(AlarmDesk, WhatIsNotReadKeepsItsCondition) {
    const auto delayed = [](AlarmRule& of) { of.on_delay_s = 3; };
    DeskRig rig({rule("4/1/high", 10), rule("4/2/high", 10, delayed), rule("4/1/invalid"),
                 rule("4/2/invalid"), rule("4/lost")});
    const auto begins_anew = [&rig] {
        for (int second = 0; second < 3; ++second) {
            EXPECT_EQ(rig.state("4/2/high"), "normal");
            rig.scan(4, {11, 11});
        }
    };
    rig.scan(4, {11, 11});
    rig.scan(4, {11, 11});
    rig.scan(4, {0, 0}, {Overload, Overload});
    rig.scan(4, {0, 11}, {Pending, 0});
    EXPECT_EQ(rig.state("4/1/high"), "unacknowledged");
    EXPECT_EQ(rig.state("4/1/invalid"), "unacknowledged");
    EXPECT_EQ(rig.state("4/2/invalid"), "returned");
    EXPECT_TRUE(rig.desk->unknown(*rig.desk->find("4/1/high")));
    EXPECT_EQ(rig.desk->value_now(*rig.desk->find("4/1/high")), 11);
    rig.scan(4, {11, 11});
    rig.desk->pod_lost(3, rig.now);
    EXPECT_TRUE(rig.desk->unknown(*rig.desk->find("4/2/high")));
    rig.desk->pod_back(3, rig.now);
    rig.scan(4, {11, 11});
    begins_anew();
    EXPECT_EQ(rig.state("4/2/high"), "unacknowledged");
}

// The clock of the day is set back and forth all the time; only ticks count. The tick count wraps.
TEST(AlarmDesk, DelaysAndShelvesRunOnTicksWhateverTheClockDoes) {
    const auto delays = [](AlarmRule& of) {
        of.on_delay_s = 5;
        of.off_delay_s = 10;
    };
    DeskRig rig({rule("1/1/high", 1, delays), rule("1/2/high", 1)});
    rig.now.tick_ms = 0xFFFFF000U;
    rig.start();
    int second = 0;
    const auto scans_until = [&](float value, const std::string& state) {
        for (int scans = 1; scans < 100; ++scans) {
            rig.now.utc_ms += (++second % 2 == 0 ? 1 : -1) * 86'400'000LL;
            rig.scan(1, {value, 0});
            if (rig.state("1/1/high") == state) return scans;
        }
        return 0;
    };
    EXPECT_EQ(scans_until(2, "unacknowledged"), 6);  // five seconds after the first
    rig.scan(1, {0, 0});
    rig.scan(1, {1, 0});  // a break: neither above nor below
    EXPECT_EQ(scans_until(0, "returned"), 11);
    rig.now.tick_ms += 5000;  // without a tick before the operator's hand
    rig.desk->shelve("1/2/high", rig.now.utc_ms + 60'000, rig.ann, rig.now);
    rig.now.utc_ms += 3'600'000;
    rig.pass(59'000);
    EXPECT_EQ(rig.state("1/2/high"), "normal+shelved");
    EXPECT_EQ(rig.desk->shelf_left_ms(*rig.desk->find("1/2/high")), 1000);
    rig.now.utc_ms -= 7'200'000;
    rig.pass(1'000);
    EXPECT_EQ(rig.state("1/2/high"), "normal");
}

TEST(AlarmDesk, FiftyLostPodsAreFiftyAlarms) {
    std::vector<AlarmRule> rules;
    for (int pod = 1; pod <= 50; ++pod) {
        rules.push_back(rule(std::to_string(pod) + "/lost"));
        for (int channel = 1; channel <= 32; ++channel) {
            rules.push_back(rule(std::to_string(pod) + "/" + std::to_string(channel) + "/high", 1));
            rules.push_back(
                rule(std::to_string(pod) + "/" + std::to_string(channel) + "/stale", 5));
        }
    }
    DeskRig rig(rules);
    const auto scan_all = [&rig] {
        const std::vector<std::int16_t> codes(32);
        for (int pod = 1; pod <= 50; ++pod)
            rig.desk->reading(pod - 1, std::vector<float>(32, pod == 7 ? 2.0F : 0.0F), codes,
                              rig.now);
    };
    scan_all();
    rig.take_told();
    for (int pod = 0; pod < 50; ++pod) rig.desk->pod_lost(pod, rig.now);
    EXPECT_EQ(rig.desk->list(AlarmList::Active).size(), 50u);
    for (int second = 0; second < 60; ++second) rig.pass(1000);
    EXPECT_EQ(rig.desk->list(AlarmList::Active).size(), 50u);
    EXPECT_EQ(rig.desk->list(AlarmList::Suppressed).size(), 50u * 64);

    // Back again: what is still so calls again, though it was acknowledged; the rest is quiet.
    rig.take_told();
    for (int pod = 0; pod < 50; ++pod) rig.desk->pod_back(pod, rig.now);
    EXPECT_EQ(rig.desk->list(AlarmList::Suppressed).size(), 50u * 64);  // until it has a reading
    scan_all();
    EXPECT_EQ(rig.desk->list(AlarmList::Suppressed).size(), 0u);
    std::size_t still = 0;
    for (const Alarm* alarm : rig.desk->list(AlarmList::Active))
        still += alarm->state.life == AlarmLife::Unacknowledged ? 1 : 0;
    EXPECT_EQ(still, 32u);
}

// A pod that was lost for a moment only: with a delay nobody hears of it.
TEST(AlarmDesk, AShortLossIsSuppressedByItsDelayAndSuppressesNothing) {
    DeskRig rig({rule("4/1/high", 1), rule("4/lost", 0, [](AlarmRule& of) { of.on_delay_s = 5; })});
    rig.scan(4, {2});
    rig.desk->pod_lost(3, rig.now);
    rig.pass(3000);
    rig.desk->pod_back(3, rig.now);
    rig.scan(4, {2});
    EXPECT_EQ(rig.take_told(), Told{"4/1/high comes unacknowledged"});
    rig.desk->pod_lost(3, rig.now);
    rig.pass(5000);
    EXPECT_EQ(rig.take_told(), (Told{"4/lost comes unacknowledged",
                                     "4/1/high suppressed unacknowledged+suppressed"}));
    rig.desk->pod_back(3, rig.now);
    EXPECT_EQ(rig.take_told(), Told{"4/lost goes returned"});
    rig.desk->pod_idle(3, rig.now);  // nothing more is to come from it
    EXPECT_EQ(rig.take_told(), Told{"4/1/high unsuppressed unacknowledged"});
}

// What nobody has seen yet is not wiped out by a pod that falls silent for a while.
TEST(AlarmDesk, AReturnedAlarmOutlivesTheLossOfItsPod) {
    DeskRig rig({rule("4/1/high", 1), rule("4/stale", 5), rule("4/lost")});
    rig.scan(4, {2});
    rig.scan(4, {0});
    rig.pass(6000);
    rig.scan(4, {0});
    rig.take_told();
    rig.desk->pod_lost(3, rig.now);
    EXPECT_EQ(rig.ids(AlarmList::Active), (Ids{"4/lost", "4/stale", "4/1/high"}));
    rig.pass(6000);  // stale comes again, beneath
    EXPECT_EQ(rig.ids(AlarmList::Active), (Ids{"4/lost", "4/1/high"}));
    rig.scan(4, {0});
    EXPECT_EQ(rig.state("4/1/high"), "returned");
    EXPECT_EQ(rig.state("4/stale"), "normal");
}

TEST(AlarmDesk, StaleReadingsUntilNoneAreExpected) {
    DeskRig rig({rule("4/stale", 5), rule("4/1/stale", 8)});
    rig.pass(60'000);  // nothing was read yet
    rig.scan(4, {1});
    rig.pass(5'000);
    EXPECT_EQ(rig.take_told(), Told{});
    rig.pass(3'001);
    EXPECT_EQ(rig.take_told(),
              (Told{"4/stale comes unacknowledged", "4/1/stale comes unacknowledged"}));
    rig.desk->pod_idle(3, rig.now);
    rig.pass(100);
    EXPECT_EQ(rig.take_told(), (Told{"4/stale goes returned", "4/1/stale goes returned"}));
}

// A limit is passed at night, twice, the second time with a failure beside it; the operator comes
// in the morning.
TEST(AlarmDesk, ANightAndTheMorningAfter) {
    DeskRig rig({rule("1/1/high", 80, [](AlarmRule& of) { of.severity = 2; }),
                 rule("1/2/high", 5, [](AlarmRule& of) { of.latch = true, of.severity = 4; }),
                 rule("1/3/low", 1, [](AlarmRule& of) { of.severity = 2; }), rule("1/lost")});
    rig.scan(1, {20, 1, 3});
    rig.scan(1, {81, 6, 3});
    EXPECT_EQ(rig.desk->horn(), 4);
    rig.desk->silence(rig.ann, rig.now);
    EXPECT_EQ(rig.desk->horn(), 0);
    rig.scan(1, {79, 1, 3});
    EXPECT_EQ(rig.desk->horn(), 0);
    rig.pass(3'600'000);
    rig.scan(1, {79, 1, 0});
    EXPECT_EQ(rig.desk->horn(), 2);  // a new one sounds again
    EXPECT_EQ(rig.ids(AlarmList::Active), (Ids{"1/2/high", "1/3/low", "1/1/high"}));

    // The page has one more that is not there; the others are acknowledged all the same.
    EXPECT_FALSE(
        rig.desk->acknowledge_page({"1/2/high", "1/9/low", "1/3/low", "1/1/high"}, rig.ann, rig.now)
            .done);
    EXPECT_EQ(rig.desk->horn(), 0);
    EXPECT_EQ(rig.state("1/1/high"), "normal");
    EXPECT_EQ(rig.state("1/2/high"), "latched-acknowledged");
    EXPECT_EQ(rig.state("1/3/low"), "acknowledged");
    EXPECT_TRUE(rig.desk->reset("1/2/high", rig.ann, rig.now).done);
    EXPECT_EQ(rig.ids(AlarmList::Active), Ids{"1/3/low"});
    rig.scan(1, {79, 1, 3});
    EXPECT_EQ(rig.ids(AlarmList::Active), Ids{});
    EXPECT_EQ(rig.records.back().value, 3);
    EXPECT_EQ(rig.records.back().occurrence, rig.records[rig.records.size() - 4].occurrence);
}

TEST(AlarmDesk, ShelvingEndsByTimeByHandOrWithItsOccurrence) {
    DeskRig rig({rule("1/1/high", 1), rule("1/2/high", 1), rule("1/3/high", 1)});
    rig.scan(1, {2, 2, 0});
    rig.desk->acknowledge("1/1/high", rig.ann, rig.now);
    EXPECT_EQ(rig.desk->horn(), 2);
    rig.desk->shelve("1/1/high", rig.now.utc_ms + 10'000, rig.ann, rig.now);
    rig.desk->shelve("1/2/high", OneShotShelf, rig.ann, rig.now);
    rig.desk->shelve("1/3/high", OneShotShelf, rig.ann, rig.now);
    EXPECT_EQ(rig.desk->horn(), 0);
    EXPECT_EQ(rig.desk->list(AlarmList::Shelved).size(), 3u);
    rig.take_told();
    rig.pass(10'000);
    EXPECT_EQ(rig.take_told(), Told{"1/1/high shelf-ended unacknowledged"});
    EXPECT_EQ(rig.desk->horn(), 2);
    rig.scan(1, {2, 0, 2});
    EXPECT_EQ(rig.take_told(), (Told{"1/2/high goes normal+shelved", "1/2/high shelf-ended normal",
                                     "1/3/high comes unacknowledged+shelved"}));
    rig.desk->unshelve("1/3/high", rig.ann, rig.now);
    EXPECT_EQ(rig.take_told(), Told{"1/3/high unshelved unacknowledged"});
}

TEST(AlarmDesk, RefusesWhatMakesNoSense) {
    DeskRig rig({rule("1/1/high", 1)});
    const std::int64_t soon = rig.now.utc_ms + 60'000;
    const OperatorNote silent{"Ann", ""};
    const auto& now = rig.now;
    const std::vector<std::pair<AlarmAnswer, std::string>> cases = {
        {rig.desk->acknowledge("9/1/high", rig.ann, now), "there is no alarm \"9/1/high\""},
        {rig.desk->acknowledge("1/1/high", rig.ann, now), "there is nothing to acknowledge"},
        {rig.desk->shelve("1/1/high", soon, silent, now), "shelving needs a reason"},
        {rig.desk->shelve("1/1/high", now.utc_ms, rig.ann, now),
         "an alarm is shelved until a moment within the next 7 days"},
        {rig.desk->shelve("1/1/high", now.utc_ms + LongestShelf_ms + 1, rig.ann, now),
         "an alarm is shelved until a moment within the next 7 days"},
        {rig.desk->unshelve("1/1/high", rig.ann, now), "it is not shelved"},
        {rig.desk->take_out("1/1/high", silent, now),
         "taking an alarm out of service needs a reason"},
        {rig.desk->put_back("1/1/high", rig.ann, now), "it is not out of service"},
    };
    for (const auto& [answer, reason] : cases) {
        EXPECT_FALSE(answer.done);
        EXPECT_EQ(answer.reason, reason);
    }
    EXPECT_EQ(rig.take_told(), Told{});
    rig.desk->take_out("1/1/high", rig.ann, now);
    EXPECT_EQ(rig.desk->acknowledge("1/1/high", rig.ann, now).reason,
              "it is shelved, suppressed or out of service");
}

TEST(AlarmDesk, AcknowledgedTooLongAgoCallsAgain) {
    DeskRig rig({rule("1/1/high", 1, [](AlarmRule& of) { of.realarm_s = 600; })});
    rig.scan(1, {2});
    rig.desk->acknowledge("1/1/high", rig.ann, rig.now);
    rig.take_told();
    rig.pass(599'999);
    EXPECT_EQ(rig.take_told(), Told{});
    rig.pass(1);
    EXPECT_EQ(rig.take_told(), Told{"1/1/high re-alarmed unacknowledged"});
}

TEST(AlarmDesk, AChangedOrRemovedRuleEndsItsAlarm) {
    DeskRig rig({rule("1/1/high", 1), rule("1/2/high", 1), rule("1/3/high", 1)});
    rig.scan(1, {5, 5, 5});
    rig.take_told();
    rig.rules = {rule("1/1/high", 1, [](AlarmRule& of) { of.text = "Hot"; }), rule("1/2/high", 4)};
    rig.desk->set_rules(rig.rules, rig.now);
    EXPECT_EQ(rig.take_told(),
              (Told{"1/2/high rule-changed normal", "1/3/high rule-removed normal"}));
    EXPECT_EQ(rig.desk->find("1/1/high")->rule.text, "Hot");
    rig.scan(1, {5, 5, 5});
    EXPECT_EQ(rig.take_told(), Told{"1/2/high comes unacknowledged"});
}

TEST(AlarmDesk, TheStationsOwnFailures) {
    DeskRig rig({rule("log-failing"), rule("disk-filling")});
    rig.desk->station(AlarmKind::DiskFilling, true, rig.now);
    rig.desk->station(AlarmKind::DiskFilling, true, rig.now);
    rig.desk->station(AlarmKind::LogFailing, false, rig.now);
    rig.desk->station(AlarmKind::DiskFilling, false, rig.now);
    EXPECT_EQ(rig.take_told(),
              (Told{"disk-filling comes unacknowledged", "disk-filling goes returned"}));
}

}  // namespace
}  // namespace kavorix::test
