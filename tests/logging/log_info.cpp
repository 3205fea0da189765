#include "logging/log_info.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "logging/log_contents.h"
#include "support/dat_builder.h"
#include "support/memory_files.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr std::int32_t Date = 20260105;
const std::string Path = "/logs/a.DAT";

LogInfo info_of(const std::string& log) {
    MemoryFiles files;
    files.put(Path, log);
    return read_log_info(*files.open(Path, OpenMode::Read));
}

LogContents contents_of(const std::string& log) {
    MemoryFiles files;
    files.put(Path, log);
    return read_log_contents(*files.open(Path, OpenMode::Read));
}

std::string finished(DatBuilder log, std::size_t begin) {
    log.filler((BlockSize - (log.bytes.size() - begin) % BlockSize) / EntrySize);
    return log.bytes;
}

TEST(LogContents, NamesThePodsOfAllRuns) {
    DatBuilder log;
    log.run(ScanLog, "one", Date, {logged_pod(7, 2), logged_pod(3, 1)});
    log.bytes = finished(log.data(1, {7, 1, 2}), log.bytes.size());
    log.run(ScanLog, "two", Date + 1, {{3, "8S", {{"a", ""}, {" b ", ""}}}, logged_pod(9, 0)});
    log.data(1, {3, 1, 2});
    const LogContents contents = contents_of(log.bytes);
    EXPECT_EQ(contents.Runs, 2);
    EXPECT_EQ(contents.Kind, ScanLog);
    EXPECT_EQ(contents.Comment, "one");
    EXPECT_EQ(contents.Date, Date);
    EXPECT_THAT(contents.Pods,
                ElementsAre(PodOnFile{7, "7R", 2, {"L1", "L2"}}, PodOnFile{3, "7R", 2, {"L1", "b"}},
                            PodOnFile{9, "7R", 0, {}}));
}

// Blocks are not read, so a header that stands elsewhere is found by reading the records.
TEST(LogContents, FindsRunsWhereverTheyBegin) {
    DatBuilder log;
    log.run(EventLog, "", Date, {logged_pod(1, 1)});
    for (int i = 0; i < 30000; ++i) log.data(1, {1, -1});
    log.run(EventLog, "", Date, {logged_pod(2, 1)});
    for (int i = 0; i < 30000; ++i) log.data(1, {2, -1});
    EXPECT_THAT(contents_of(log.bytes).Pods, SizeIs(2));
}

TEST(LogContents, AFileThatIsNoLogHasNoRuns) {
    for (const std::string& bytes :
         {std::string(), std::string("text"), std::string(1000, '\0'), std::string(100000, 'x')})
        EXPECT_EQ(contents_of(bytes).Runs, 0);
}

TEST(LogContents, ADamagedHeaderKeepsTheRunsBefore) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(1, 1)}).data(1, {1, 5});
    const std::size_t second = log.bytes.size();
    log.run(ScanLog, "", Date, {logged_pod(2, 1)});
    log.bytes[second + 4 + 2 + 2 + 4 + 4 + 2] = 77;  // the pod number
    const LogContents contents = contents_of(log.bytes);
    EXPECT_EQ(contents.Runs, 1);
    EXPECT_THAT(contents.Pods, SizeIs(1));
}

TEST(LogInfo, TellsOfEveryRun) {
    DatBuilder log;
    log.run(ScanLog, "Kiln", Date,
            {{3, "7S", {{"Inlet         ", "degC "}, {"", ""}, {"", "mV"}}}, logged_pod(5, 0)});
    const std::size_t begin = log.bytes.size();
    for (int second = 0; second < 30; ++second)
        if (second < 10 || second > 20)
            log.data(static_cast<float>(80000000 + second * 1000), {3, 1, 2, 3});
    log.bytes = finished(log, begin);
    log.run(EventLog, "", 20251231, {logged_pod(1, 1)});
    log.data(235959008, {1, 1, 10101, 1, 1, 10101, 1, 1}).data(8, {1, -1, 2, 0, 10101, 1, 1});
    EXPECT_EQ(log_info_text(info_of(log.bytes)),
              "2 runs, " + std::to_string(log.bytes.size()) +
                  " bytes\n"
                  "Run 1, scan log, begun 2026-01-05, at byte 0: Kiln\n"
                  "  pod 3, type 7S, 3 channels\n"
                  "    1 Inlet [degC]\n"
                  "    3 [mV]\n"
                  "  pod 5, type 7R, 0 channels\n"
                  "  19 records from 2026-01-05 08:00:00.000 to 2026-01-05 08:00:29.000, usually "
                  "every 1 s\n"
                  "  1 gap\n"
                  "    from 2026-01-05 08:00:09.000 to 2026-01-05 08:00:21.000\n"
                  "Run 2, event log, begun 2025-12-31, at byte 65618\n"
                  "  pod 1, type 7R, 1 channel\n"
                  "    1 L1 [V]\n"
                  "  2 records with 3 events from 2025-12-31 23:59:59.008 to 2026-01-01 "
                  "00:00:00.008\n");
}

TEST(LogInfo, ListsTheFirstGapsAndCountsThemAll) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {});
    for (int second = 0; second < 500; ++second) {
        const int day_time = second % 60 * 1000 + second / 60 * 100000;
        if (second < 120 || second % 10 < 5) log.data(static_cast<float>(day_time), {});
    }
    const RunInfo run = info_of(log.bytes).Runs.at(0);
    EXPECT_EQ(run.UsualInterval_ms, 1000);
    EXPECT_EQ(run.GapCount, 37u);
    ASSERT_THAT(run.Gaps, SizeIs(20));
    EXPECT_EQ(run.Gaps[0], (LogGap{{2026, 1, 5, 0, 2, 4, 0}, {2026, 1, 5, 0, 2, 10, 0}}));
}

TEST(LogInfo, TellsOfDamageAndOfAKilledRun) {
    DatBuilder cut;
    cut.run(ScanLog, "", Date, {logged_pod(1, 1)}).data(1, {1, 5});
    const std::string place = std::to_string(cut.bytes.size());
    cut.data(2, {1, 5});
    EXPECT_THAT(log_info_text(info_of(cut.bytes.substr(0, cut.bytes.size() - 3))),
                testing::EndsWith("  1 record from 2026-01-05 00:00:00.001 to 2026-01-05 "
                                  "00:00:00.001\n"
                                  "Damage: the file ends inside the record at byte " +
                                  place + "; 17 bytes passed over.\n"));
    DatBuilder damaged;
    damaged.run(ScanLog, "", Date, {}).singles({DataMarker, 1, 1E9F});
    EXPECT_THAT(log_info_text(info_of(damaged.bytes)),
                testing::EndsWith("Damage: what stands at byte 18 is no record; 12 bytes passed "
                                  "over.\n"));
    EXPECT_TRUE(info_of(damaged.bytes).damaged());
    DatBuilder killed;
    killed.run(ScanLog, "", Date, {}).data(1, {}).singles({UnfinishedMarker, 2, 1, 3}).filler(9);
    EXPECT_THAT(log_info_text(info_of(killed.bytes)),
                testing::EndsWith("A run was ended while a record was being written; that record "
                                  "does not count.\n"));
    EXPECT_FALSE(info_of(killed.bytes).damaged());
}

TEST(LogInfo, ADateThatIsNoneHasNoTimes) {
    DatBuilder log;
    log.run(ScanLog, "", 20261399, {}).data(1, {}).data(0, {});
    const RunInfo run = info_of(log.bytes).Runs.at(0);
    EXPECT_EQ(run.Records, 2u);
    EXPECT_EQ(run.First, std::nullopt);
}

}  // namespace
}  // namespace kavorix::test
