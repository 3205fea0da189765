// The measures, from journals that are made up: times in minutes after a midnight.

#include <gtest/gtest.h>

#include "alarms/alarm_measures.h"
#include "alarms/desk_rig.h"

namespace kavorix::test {
namespace {

constexpr std::int64_t Midnight = 1'800'057'600'000;
constexpr AlarmState Unseen{AlarmLife::Unacknowledged, NotWithheld};
constexpr AlarmState Plain{};

std::int64_t at_minute(double minute) {
    return Midnight + static_cast<std::int64_t>(minute * 60'000);
}

AlarmRecord entry(double minute, const std::string& id, AlarmState before, AlarmState after) {
    AlarmRecord record;
    record.utc_ms = at_minute(minute);
    record.rule = rule(id);
    record.of_alarm = true;
    record.event = after.active() ? RecordEvent::Comes : RecordEvent::Goes;
    record.before = before;
    record.after = after;
    return record;
}

// Comes and goes within ten seconds.
void add_short(std::vector<AlarmRecord>& to, double minute, const std::string& id = "1/1/high") {
    to.push_back(entry(minute, id, Plain, Unseen));
    to.push_back(entry(minute + 1.0 / 6, id, Unseen, Plain));
}

AlarmMeasures of_a_day(const std::vector<AlarmRecord>& records) {
    return measure_alarms(records, Midnight, at_minute(1440));
}

TEST(AlarmMeasures, RatesCountWhatCalledForTheOperator) {
    std::vector<AlarmRecord> records;
    for (int hour = 0; hour < 24; ++hour)
        for (int alarm = 0; alarm < 6; ++alarm) add_short(records, hour * 60 + alarm * 10);
    const AlarmState shelved{AlarmLife::Unacknowledged, Shelved};
    const AlarmState seen{AlarmLife::Acknowledged, NotWithheld};
    records.push_back(entry(5, "1/2/high", {AlarmLife::Normal, Shelved}, shelved));
    records.push_back(entry(6, "1/2/high", shelved, Unseen));  // its shelf ended: this one counts
    records.push_back(entry(7, "1/2/high", Unseen, seen));
    records.push_back(entry(8, "1/2/high", seen, Unseen));  // and calling again
    records.push_back(entry(-1, "1/2/high", Plain, Unseen));
    records.push_back(entry(1440, "1/2/high", Plain, Unseen));
    const AlarmMeasures measures = of_a_day(records);
    EXPECT_EQ(measures.annunciated, 146u);
    EXPECT_DOUBLE_EQ(measures.per_day(), 146);
    EXPECT_DOUBLE_EQ(measures.per_hour(), 146.0 / 24);
    EXPECT_DOUBLE_EQ(measures.per_10_min(), 146.0 / 144);
    EXPECT_EQ(measures.by_severity[2], 146u);
    EXPECT_EQ(measures.most_in_an_hour, 8u);
    EXPECT_EQ(measures.most_in_10_min, 3u);
    ASSERT_EQ(measures.most_frequent.size(), 2u);
    EXPECT_EQ(measures.most_frequent[0].count, 144u);
    EXPECT_EQ(measures.hours_above_30 + measures.periods_above_10 + measures.time_in_flood, 0);
}

// More than ten in ten minutes begin it, fewer than five end it.
TEST(AlarmMeasures, AFloodHasItsBeginEndCountAndPeak) {
    std::vector<AlarmRecord> records;
    for (int i = 0; i < 10; ++i) add_short(records, 60 + i * 0.9);  // 60 .. 68.1: no flood
    EXPECT_TRUE(of_a_day(records).floods.empty());
    for (int i = 0; i < 4; ++i) add_short(records, 69 + i * 0.25);  // 69 .. 69.75: now it is one
    for (int i = 0; i < 3; ++i) add_short(records, 72 + i * 3);     // 72, 75, 78
    const AlarmMeasures measures = of_a_day(records);
    ASSERT_EQ(measures.floods.size(), 1u);
    const AlarmFlood& flood = measures.floods[0];
    EXPECT_EQ(flood.begin_utc_ms, at_minute(60));
    EXPECT_EQ(flood.count, 17u);
    EXPECT_EQ(flood.peak, 14u);
    // Left in the window: 69.5, 69.75 and the three; with 69.5 + 10 min it is four.
    EXPECT_EQ(flood.end_utc_ms, at_minute(79.5));
    EXPECT_DOUBLE_EQ(measures.time_in_flood, 19.5 / 1440);
    EXPECT_DOUBLE_EQ(measures.periods_above_10, 1.0 / 144);
    EXPECT_DOUBLE_EQ(measures.hours_above_30, 0);
}

TEST(AlarmMeasures, ChatteringIsThreeTimesWithinAMinute) {
    std::vector<AlarmRecord> records;
    for (const double minute : {10.0, 10.4, 10.8}) add_short(records, minute);              // 58 s
    for (const double minute : {20.0, 20.4, 20.9}) add_short(records, minute, "1/2/high");  // 64 s
    for (int i = 0; i < 7; ++i) add_short(records, 30 + i * 0.2, "1/3/high");
    const AlarmMeasures measures = of_a_day(records);
    ASSERT_EQ(measures.chattering.size(), 2u);
    EXPECT_EQ(measures.chattering[0].id, "1/3/high");
    EXPECT_EQ(measures.chattering[0].count, 2u);
    EXPECT_EQ(measures.chattering[1].id, "1/1/high");
    EXPECT_EQ(measures.chattering[1].count, 1u);
}

TEST(AlarmMeasures, StaleIsWhatStandsLongerThanADay) {
    std::vector<AlarmRecord> records = {
        entry(0, "1/1/high", Plain, Unseen),     entry(1441, "1/1/high", Unseen, Plain),
        entry(0, "1/2/high", Plain, Unseen),     entry(1440, "1/2/high", Unseen, Plain),
        entry(100, "1/3/high", Plain, Unseen),   entry(200, "1/3/high", Unseen, Unseen),
        entry(2000, "1/4/high", Unseen, Unseen),
    };
    records.back().since_utc_ms = at_minute(-10'000);  // carried from a file that is gone
    const AlarmMeasures measures = measure_alarms(records, Midnight, at_minute(3000));
    std::vector<std::string> found;
    for (const auto& of : measures.stale)
        found.push_back(of.id + " " + std::to_string((of.until_utc_ms - of.since_utc_ms) / 60'000));
    EXPECT_EQ(found,
              (std::vector<std::string>{"1/1/high 1441", "1/3/high 2900", "1/4/high 13000"}));
}

TEST(AlarmMeasures, WithoutASpanItIsThatOfTheEntries) {
    EXPECT_EQ(measure_alarms({}).annunciated, 0u);
    EXPECT_EQ(measure_alarms(std::vector{entry(0, "1/1/high", Plain, Unseen)}).annunciated, 1u);
    std::vector<AlarmRecord> records;
    for (int i = 0; i < 61; ++i) add_short(records, i * 2);
    const AlarmMeasures measures = measure_alarms(records);
    EXPECT_EQ(measures.from_utc_ms, Midnight);
    EXPECT_NEAR(measures.per_hour(), 61 / (120 + 1.0 / 6) * 60, 0.001);
    EXPECT_EQ(measures.most_in_an_hour, 30u);
    for (int i = 0; i < 10; ++i) add_short(records, i * 2 + 0.5);
    EXPECT_DOUBLE_EQ(measure_alarms(records).hours_above_30, 1.0 / 3);
}

}  // namespace
}  // namespace kavorix::test
