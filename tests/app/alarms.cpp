// kavorix alarms: checks of alarm files, and a journal as lists, history, measures and CSV.

#include <gtest/gtest.h>

#include <algorithm>

#include "alarms/alarm_desk.h"
#include "app/terminal_run.h"

namespace kavorix::test {
namespace {

constexpr const char* OnePod =
    "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-01-05 08:00:00\r\nAD0;-14336;\r\n"
    "IM03;7V;20;\r\nCH01MO100;'a';'b';{1;0}\r\n";

// A night on the journal of the program directory: at 22:00 UTC (23:00 here) a limit is passed, an
// hour later the value is back, in the morning Ann shelves another alarm.
void make_journal(const TerminalRun& run) {
    const auto files = make_host_files();
    AlarmMoment now{0, 1'800'050'400'000, 60};
    AlarmDesk desk(*files, {run.path(""), 4 << 20, 3}, now);
    std::vector<AlarmRule> rules(3);
    rules[0].pod = rules[1].pod = rules[2].pod = 4;
    rules[0].channel = 1;
    rules[0].limit = 80;
    rules[0].label =
        "Kiln, \xB0"
        "C";
    rules[0].unit =
        "\xB0"
        "C";
    rules[1].channel = 2;
    rules[1].severity = 4;
    rules[1].latch = true;
    rules[2].kind = AlarmKind::Lost;
    desk.set_rules(rules, now);
    const auto scan = [&](std::int64_t after_ms, std::vector<float> values) {
        now.utc_ms += after_ms;
        now.tick_ms += static_cast<std::uint32_t>(after_ms);
        desk.reading(3, values, std::vector<std::int16_t>(values.size()), now);
    };
    scan(1000, {81.5F, 0});
    scan(3'600'000, {79, 1});
    scan(32'000'000, {79, 1});
    desk.shelve("4/2/high", now.utc_ms + 3'600'000, {"Ann", "valve \"2\" stuck"}, now);
    desk.stop(now);
}

TEST(AlarmsCommand, ListHasWhatIsInAState) {
    const TerminalRun run;
    make_journal(run);
    const Outcome outcome = run({"alarms", "list"});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    EXPECT_EQ(outcome.out,
              "Severity  State                   Since                Alarm     Label     Value  "
              "Limit  Shelved until        Comment\n"
              "2         returned                2027-01-15 23:00:01  4/1/high  Kiln, °C  79 °C  "
              "80\n"
              "4         unacknowledged+shelved  2027-01-16 00:00:01  4/2/high            1      "
              "0      2027-01-16 09:53:21  valve \"2\" stuck\n");
    EXPECT_EQ(outcome.messages, "");
}

TEST(AlarmsCommand, HistoryIsWhatHappenedInASpan) {
    const TerminalRun run;
    make_journal(run);
    const auto lines = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"alarms", "history"});
        const std::string out = run(options).out;
        return std::count(out.begin(), out.end(), '\n');
    };
    EXPECT_EQ(lines({}), 1 + 6);
    EXPECT_EQ(lines({"--from", "2027-01-16"}), 1 + 4);  // here it is the 16th at 23:00 UTC
    EXPECT_EQ(lines({"--from", "2027-01-15 23:00:01", "--to", "2027-01-16T00:00:01"}), 1 + 1);
    EXPECT_EQ(lines({"--from", "2027-01-15T23:00:00Z"}), 1 + 4);
    EXPECT_EQ(lines({"--to", "2027-01-01"}), 0);
    EXPECT_EQ(
        run({"alarms", "history", "--from", "2027-01-16 01:00"}).out,
        "Time                 Event    Alarm     Label  Severity  State                   Value "
        " Who  Comment\n"
        "2027-01-16 08:53:21  shelved  4/2/high         4         unacknowledged+shelved  1     "
        " Ann  valve \"2\" stuck\n"
        "2027-01-16 08:53:21  stop\n");
}

TEST(AlarmsCommand, CsvHasEveryFieldQuotedWhereItNeedsTo) {
    const TerminalRun run;
    make_journal(run);
    const std::string out = run({"alarms", "history", "--csv", "--from", "2027-01-16 01:00"}).out;
    EXPECT_EQ(out.substr(0, 29), "number,utc,local,event,alarm,");
    EXPECT_NE(
        out.find("shelved,4/2/high,4,2,,high,4,unacknowledged,unacknowledged+shelved,1,,0,0,0,"
                 "0,1,4,2027-01-15T23:00:01.000Z,2027-01-16T08:53:21.000Z,Ann,\"valve "
                 "\"\"2\"\" stuck\"\n"),
        std::string::npos)
        << out;
    EXPECT_NE(run({"alarms", "history", "--csv"}).out.find(",\"Kiln, °C\","), std::string::npos);
}

TEST(AlarmsCommand, MeasuresAreOfTheSpan) {
    const TerminalRun run;
    make_journal(run);
    const std::string out =
        run({"alarms", "history", "--measures", "--from", "2027-01-15", "--to", "2027-01-17"}).out;
    for (const char* line :
         {"From                                 2027-01-15 00:00:00\n",
          "Alarms                               2\n", "Alarms a day                         1.0\n",
          "Severity 4                           1\n",
          "\nMost frequent\n1  4/1/high  Kiln, °C\n1  4/2/high\n"})
        EXPECT_NE(out.find(line), std::string::npos) << line << out;
}

TEST(AlarmsCommand, DamageIsNamedAndTheRestShown) {
    const TerminalRun run;
    make_journal(run);
    std::string text = run.read("ALARMS.LOG");
    text[text.find("4/1/high")] = '5';
    run.file("ALARMS.LOG", text);
    const Outcome outcome = run({"alarms", "history"});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.messages, run.path("ALARMS.LOG") + ":4: no whole entry\n");
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1 + 5);
}

TEST(AlarmsCommand, WithoutAJournalOrAMomentItSaysSo) {
    const TerminalRun run;
    Outcome outcome = run({"alarms", "list"});
    EXPECT_EQ(outcome.exit_code, ExitUsage);
    EXPECT_NE(outcome.messages.find("There is no alarm journal in "), std::string::npos);
    make_journal(run);
    outcome = run({"alarms", "history", "--to", "noon"});
    EXPECT_EQ(outcome.exit_code, ExitUsage);
    EXPECT_EQ(outcome.messages,
              "\"noon\" is no moment such as 2026-11-23 or \"2026-11-23 22:00\"\n");
    EXPECT_EQ(run({"alarms"}).exit_code, ExitUsage);
    EXPECT_EQ(run({"alarms", "history", "--csv", "--measures"}).exit_code, ExitUsage);
}

TEST(AlarmsCommand, CheckNamesFileLineAndReason) {
    const TerminalRun run;
    const std::string rule = "[[alarm]]\npod = 3\nchannel = 1\nkind = \"high\"\nlimit = 2\n";
    const std::string good = run.file("good.alarms.toml", rule);
    const std::string bad = run.file("bad.alarms.toml", rule + "severity = 9\n");
    const std::string away =
        run.file("away.alarms.toml", rule + "[[alarm]]\npod = 9\nkind = \"lost\"\n");
    EXPECT_EQ(run({"alarms", "check", good}).exit_code, ExitDone);
    Outcome outcome = run({"alarms", "check", bad});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(
        outcome.out,
        bad + ":6:12: \"alarm.severity\" must be a severity from 1 (lowest) to 4 (highest)\n");
    outcome = run({"alarms", "check", run.path("none.alarms.toml")});
    EXPECT_EQ(outcome.exit_code, ExitUsage);

    const std::string config = run.file("one.CFG", OnePod);
    EXPECT_EQ(run({"alarms", "check", good, "--config", config}).exit_code, ExitDone);
    outcome = run({"alarms", "check", away, "--config", config});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.out, away + ":6: pod 9 is not configured\n");
}

}  // namespace
}  // namespace kavorix::test
