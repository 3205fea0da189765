// The journal: its lines, what is there again after a start, and what becomes of it on a bad disk.

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

#include "alarms/check_sum.h"
#include "alarms/desk_rig.h"
#include "support/faulty_files.h"

namespace kavorix::test {
namespace {

AlarmRecord full_record() {
    AlarmRecord record;
    record.number = 18446744073709551615U;
    record.utc_ms = 1'800'000'000'123;
    record.offset_min = -210;
    record.event = RecordEvent::Shelved;
    record.rule = rule("50/32/high-high", 0.1, [](AlarmRule& of) {
        of.hysteresis = 1e-30;
        of.on_delay_s = 1.5;
        of.off_delay_s = 86400;
        of.latch = true;
        of.severity = 4;
        of.label = "T\\1\tx\n";
        of.unit =
            "\xB0"
            "C";
    });
    record.of_alarm = true;
    record.before = {AlarmLife::Latched, NotWithheld};
    record.after = {AlarmLife::Latched, Shelved | OutOfService};
    record.value = -1.25;
    record.occurrence = 12;
    record.since_utc_ms = 1'799'999'999'999;
    record.shelf_utc_ms = 1'800'000'060'000;
    record.who = "Ann\tB\\";
    record.comment = "line\r\nline \\n";
    return record;
}

TEST(JournalLine, IsReadBackWithEveryField) {
    AlarmRecord one_shot = full_record();
    one_shot.shelf_utc_ms = OneShotShelf;
    one_shot.value = NAN;
    AlarmRecord start;
    start.number = 7;
    start.comment = "x";
    for (const AlarmRecord& record : {full_record(), one_shot, start}) {
        const std::string line = journal_line(record);
        const auto read = parse_journal_line(line);
        ASSERT_TRUE(read) << line;
        EXPECT_EQ(journal_line(*read), line);
        EXPECT_EQ(read->rule, record.rule);
        EXPECT_EQ(read->before, record.before);
        EXPECT_EQ(read->after, record.after);
        EXPECT_EQ(read->who + read->comment, record.who + record.comment);
        EXPECT_EQ(std::isnan(read->value) ? -9 : read->value,
                  std::isnan(record.value) ? -9 : -1.25F);
        EXPECT_EQ(read->shelf_utc_ms, record.shelf_utc_ms);
        EXPECT_EQ(read->since_utc_ms, record.since_utc_ms);
        EXPECT_EQ(std::count(line.begin(), line.end(), '\t'),
                  std::count(journal_heading().begin(), journal_heading().end(), '\t'));
    }
}

TEST(JournalLine, NoneThatWasCutOrChangedIsTaken) {
    const std::string line = journal_line(full_record());
    for (std::size_t i = 0; i < line.size(); ++i) {
        EXPECT_FALSE(parse_journal_line(line.substr(0, i)));
        for (int bit = 0; bit < 8; ++bit) {
            std::string changed = line;
            changed[i] = static_cast<char>(changed[i] ^ (1 << bit));
            EXPECT_FALSE(parse_journal_line(changed)) << i;
        }
    }
}

// Sums of well-known bytes, so that other programs can check a line.
TEST(JournalLine, HasTheCheckSumThatEveryoneKnows) {
    EXPECT_EQ(check_sum_text("123456789"), "CBF43926");
    EXPECT_EQ(check_sum_text(""), "00000000");
}

TEST(JournalTimes, AreWrittenAndReadWithTheirOffset) {
    EXPECT_EQ(utc_text(1'800'000'000'123), "2027-01-15T08:00:00.123Z");
    EXPECT_EQ(local_text(1'800'000'000'123, -210), "2027-01-15T04:30:00.123-03:30");
    const std::map<std::string, std::int64_t> times = {
        {"2027-01-15T08:00:00.123Z", 123},
        {"2027-01-15T04:30:00.123-03:30", 123},
        {"2027-01-15 09:00", 0},
        {"2027-01-15T09:00:10", 10'000},
        {"2027-01-15 09:00:10.500", 10'500},
        {"2027-01-16", 54'000'000},
    };
    for (const auto& [text, after] : times)
        EXPECT_EQ(parse_time(text, 60), 1'800'000'000'000 + after) << text;
    for (const char* wrong :
         {"", "2027", "2027-1-15", "2027-02-29", "2027-01-15 9:00", "2027-01-15 09",
          "2027-01-15 24:00", "2027-01-15 09:00x", "2027-01-15T09:00+1:00"})
        EXPECT_FALSE(parse_time(wrong, 60)) << wrong;
}

std::vector<AlarmRule> four_rules() {
    return {rule("1/1/high", 1), rule("1/2/high", 1, [](AlarmRule& of) { of.latch = true; }),
            rule("1/3/high", 1), rule("1/4/high", 1),
            rule("1/lost"),      rule("journal-unwritable")};
}

std::string states(const DeskRig& rig) {
    std::string all;
    for (const Alarm& alarm : rig.desk->alarms())
        all += alarm.id + " " + state_name(alarm.state) + "; ";
    return all;
}

TEST(AlarmJournal, AStartHasEverythingAgain) {
    DeskRig rig(four_rules());
    rig.scan(1, {2, 2, 2, 2});
    rig.desk->acknowledge("1/1/high", rig.ann, rig.now);
    rig.desk->shelve("1/3/high", rig.now.utc_ms + 100'000, {"Ann", "sensor on order"}, rig.now);
    rig.desk->take_out("1/4/high", rig.ann, rig.now);
    rig.scan(1, {2, 0, 2, 2});
    rig.desk->acknowledge("1/2/high", rig.ann, rig.now);
    const std::string before = states(rig);
    const std::int64_t since = rig.desk->find("1/1/high")->since_utc_ms;
    EXPECT_EQ(
        before,
        "1/1/high acknowledged; 1/2/high latched-acknowledged; 1/3/high unacknowledged+shelved; "
        "1/4/high unacknowledged+out-of-service; 1/lost normal; journal-unwritable normal; ");

    // Off for 50 s, twice; ticks count from anywhere.
    for (int start = 0; start < 2; ++start) {
        rig.now.utc_ms += 24'000;
        rig.now.tick_ms = 77;
        rig.take_told();
        rig.start();
        EXPECT_EQ(states(rig), before);
        EXPECT_EQ(rig.take_told(), std::vector<std::string>{});
    }
    EXPECT_EQ(rig.desk->find("1/1/high")->since_utc_ms, since);
    EXPECT_EQ(rig.desk->find("1/3/high")->comment, "sensor on order");
    EXPECT_EQ(rig.desk->shelf_left_ms(*rig.desk->find("1/3/high")), 51'000);
    rig.scan(1, {2, 0, 2, 0});
    EXPECT_EQ(rig.take_told(), std::vector<std::string>{"1/4/high goes normal+out-of-service"});

    // A clock set back meanwhile does not make the shelf longer.
    rig.now.utc_ms -= 86'400'000;
    rig.start();
    EXPECT_LE(rig.desk->shelf_left_ms(*rig.desk->find("1/3/high")), 51'000);
    // A limit changed meanwhile: another alarm.
    rig.rules[0].limit = 3;
    rig.start();
    EXPECT_EQ(rig.state("1/1/high"), "normal");
    // A rule that is gone while its pod has others ends; a pod without rules waits for its own.
    rig.rules = {};
    rig.start();
    rig.rules = {rule("1/lost"), rule("1/2/high", 1, [](AlarmRule& of) { of.latch = true; })};
    rig.start();
    EXPECT_EQ(rig.state("1/2/high"), "latched-acknowledged");
    rig.rules = four_rules();
    rig.start();
    EXPECT_EQ(rig.state("1/3/high"), "normal");
}

// At a start nothing is known yet: what was wrong stays so until a pod is heard of.
TEST(AlarmJournal, AStartJudgesNothingBeforeItIsTold) {
    DeskRig rig({rule("1/1/high", 1), rule("1/stale", 5), rule("1/lost"), rule("2/lost"),
                 rule("3/stale", 5), rule("journal-unwritable")});
    rig.scan(1, {2});
    rig.scan(3, {2});
    rig.pass(6000);
    for (const int pod : {0, 1}) rig.desk->pod_lost(pod, rig.now);
    rig.files.write_failure = ENOSPC;
    rig.desk->silence(rig.ann, rig.now);
    rig.files.write_failure.reset();
    rig.desk->acknowledge("journal-unwritable", rig.ann, rig.now);
    const std::string before = states(rig);
    rig.start();
    EXPECT_EQ(rig.desk->horn(), 3);
    for (int second = 0; second < 20; ++second) rig.pass(1000);
    EXPECT_EQ(states(rig), before);
    EXPECT_EQ(rig.state("1/stale"), "unacknowledged+suppressed");
    rig.desk->pod_back(1, rig.now);
    rig.scan(1, {2});
    EXPECT_EQ(rig.state("2/lost") + rig.state("1/lost"), "returnedreturned");
    EXPECT_EQ(rig.state("1/1/high") + " " + rig.state("1/stale"), "unacknowledged normal");
    EXPECT_EQ(rig.state("3/stale"), "unacknowledged");
    rig.desk->pod_idle(2, rig.now);
    rig.pass(100);
    EXPECT_EQ(rig.state("3/stale"), "returned");
}

TEST(AlarmJournal, NumbersRiseByOneOverStartsAndFiles) {
    DeskRig rig(four_rules(), 6000);
    for (int i = 0; i < 100; ++i) {
        rig.scan(1, {i % 2 == 0 ? 2.0F : 0.0F, 0, 0, 0});
        if (i % 30 == 29) rig.start();
    }
    rig.desk->stop(rig.now);
    const JournalContents contents = rig.journal();
    EXPECT_EQ(contents.damage, std::vector<std::string>{});
    std::vector<std::uint64_t> numbers;
    for (const AlarmRecord& record : contents.records) numbers.push_back(record.number);
    std::sort(numbers.begin(), numbers.end());
    for (std::size_t i = 1; i < numbers.size(); ++i) EXPECT_EQ(numbers[i], numbers[i - 1] + 1);
    EXPECT_EQ(contents.records.back().event, RecordEvent::Stop);
}

TEST(AlarmJournal, IsBoundedAndKeepsWhatStandsOnFilesThatAreGone) {
    DeskRig rig(four_rules(), 6000);
    rig.place.files = 3;
    rig.start();
    rig.scan(1, {2, 0, 0, 0});
    rig.desk->acknowledge("1/1/high", rig.ann, rig.now);
    for (int i = 0; i < 200; ++i) rig.scan(1, {2, 0, i % 2 == 0 ? 2.0F : 0.0F, 0});
    EXPECT_EQ(rig.files.paths().size(), 3u);
    for (const std::string& path : rig.files.paths())
        EXPECT_LE(rig.files.content(path).size(), 6600u);
    rig.start();
    EXPECT_EQ(rig.state("1/1/high"), "acknowledged");
    rig.files.remove("dir/ALARMS.LOG");  // someone tidied up while it runs
    rig.scan(1, {2, 0, 0, 2});
    rig.start();
    EXPECT_EQ(rig.state("1/1/high"), "acknowledged");
    EXPECT_EQ(rig.state("1/4/high"), "unacknowledged");
}

TEST(AlarmJournal, CutAnywhereItTellsATornLineFromDamage) {
    DeskRig rig(four_rules());
    rig.scan(1, {2, 0, 0, 0});
    const std::string path = rig.place.path(0);
    const std::string whole = rig.files.content(path);
    const auto lines = std::count(whole.begin(), whole.end(), '\n');
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        rig.files.put(path, whole.substr(0, cut));
        rig.start();
        const JournalContents contents = rig.journal();
        EXPECT_EQ(contents.damage, std::vector<std::string>{});
        EXPECT_LE(contents.torn, 1);
        const bool between = cut == 0 || whole[cut - 1] == '\n';
        EXPECT_EQ(rig.state("1/1/high"), cut >= whole.size() ? "unacknowledged" : "normal");
        EXPECT_TRUE(contents.torn == 0 || !between) << cut;
    }
    ASSERT_GT(lines, 3);
    rig.files.put(path, whole.substr(0, whole.size() - 3) + "?\nmore\n" +
                            whole.substr(whole.rfind('\n', whole.size() - 2) + 1));
    EXPECT_EQ(
        rig.journal().damage,
        (std::vector<std::string>{path + ":" + std::to_string(lines) + ": no whole entry",
                                  path + ":" + std::to_string(lines + 1) + ": no whole entry"}));
}

TEST(AlarmJournal, OnAFullDiskTheAlarmsGoOnAndThatIsOne) {
    DeskRig rig(four_rules());
    rig.scan(1, {2, 0, 0, 0});
    rig.take_told();
    rig.files.space = 40;  // torn in the middle of an entry
    rig.scan(1, {2, 2, 0, 0});
    EXPECT_EQ(rig.take_told(),
              (std::vector<std::string>{"1/2/high comes unacknowledged",
                                        "journal-unwritable comes unacknowledged"}));
    EXPECT_NE(rig.desk->journal_failure().find("No space left"), std::string::npos);
    rig.desk->acknowledge("1/1/high", rig.ann, rig.now);
    EXPECT_EQ(rig.state("1/1/high"), "acknowledged");
    rig.files.space.reset();
    rig.take_told();
    for (int second = 0; second < 20; ++second) rig.pass(1000);
    EXPECT_EQ(rig.take_told(), std::vector<std::string>{"journal-unwritable goes returned"});
    EXPECT_EQ(rig.desk->journal_failure(), "");

    // What was done meanwhile is on the file, and how much of it was not told in its place.
    const JournalContents contents = rig.journal();
    EXPECT_EQ(contents.damage, std::vector<std::string>{});
    EXPECT_EQ(contents.torn, 1);
    const auto gap = std::find_if(contents.records.begin(), contents.records.end(),
                                  [](const auto& of) { return of.event == RecordEvent::Gap; });
    ASSERT_NE(gap, contents.records.end());
    EXPECT_EQ(gap->comment, "3 entries not written");
    rig.start();
    EXPECT_EQ(rig.state("1/1/high"), "acknowledged");
    EXPECT_EQ(rig.state("1/2/high"), "unacknowledged");
    EXPECT_EQ(rig.state("journal-unwritable"), "returned");
}

// A kill before each of the operations on the files, half of a write done: all that was told of
// before is there again, and nothing that was not.
TEST(AlarmJournal, AKillAtEveryOperationLosesNothingThatWasTold) {
    int strikes = 0;
    for (int spared = 0;; ++spared) {
        DeskRig rig(four_rules(), 3000);
        FaultyFiles faulty(rig.files);
        faulty.short_writes = true;
        rig.place.files = 3;
        rig.start_on(faulty);
        faulty.fail_operation(spared, std::errc::io_error, true);
        // The last state that was told while the files were whole, and those told since.
        std::map<std::string, std::set<std::string>> possible;
        const auto settle = [&] {
            for (const AlarmRecord& record : std::exchange(rig.records, {})) {
                auto& states = possible.insert({alarm_id(record.rule), {"normal"}}).first->second;
                if (!faulty.struck()) states.clear();
                states.insert(state_name(record.after));
            }
        };
        for (int i = 0; i < 24 && !faulty.struck(); ++i) {
            rig.scan(1, {i % 3 == 0 ? 2.0F : 0.0F, i % 2 == 0 ? 2.0F : 0.0F, 2, 2});
            settle();
            rig.desk->acknowledge(i % 2 == 0 ? "1/2/high" : "1/1/high", rig.ann, rig.now);
            settle();
            if (i == 2) rig.desk->shelve("1/3/high", OneShotShelf, rig.ann, rig.now);
            if (i == 3) rig.desk->take_out("1/4/high", rig.ann, rig.now);
            settle();
        }
        const bool struck = faulty.struck();
        rig.desk.reset();
        rig.start();
        EXPECT_EQ(rig.journal().damage, std::vector<std::string>{});
        for (const auto& [id, states] : possible)
            EXPECT_TRUE(states.contains(rig.state(id))) << spared << ": " << id << rig.state(id);
        if (!struck) break;
        ++strikes;
    }
    EXPECT_GT(strikes, 80);
}

}  // namespace
}  // namespace kavorix::test
