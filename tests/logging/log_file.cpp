#include "logging/log_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <string>

#include "support/log_rig.h"
#include "support/memory_files.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

const std::string ScanPath = "/logs/scan.DAT";
const std::string EventPath = "/logs/event.DAT";

class LogFileTest : public testing::Test {
  protected:
    const std::string& scan_file() { return files.content(ScanPath); }
    LogRead scans() { return read_log(files, ScanPath); }
    LogState& state() { return rig.run_time.Log; }

    MemoryFiles files;
    LogRig rig{files};
};

std::string hex(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        constexpr std::string_view Digits = "0123456789ABCDEF";
        const auto value = static_cast<unsigned char>(byte);
        text += Digits[value >> 4u];
        text += Digits[value & 15u];
    }
    return text;
}

TEST_F(LogFileTest, TheHeaderHasTheSpecifiedBytes) {
    rig.add_pod(3, "7S");
    for (int number = 1; number <= 10; ++number) rig.channel(3, number).Unit = "V";
    rig.channel(3, 1).Label = "Inlet";
    rig.channel(3, 10).Label = "fifteen letters and more";
    rig.channel(3, 10).Unit = "degree";
    state().ScanComment = "  Run 1 ";
    rig.log.Start_Log_File(ScanLog);

    std::string expected =
        "0000803F"
        "0000"
        "0500"
        "52756E2031"  // 1.0, scan, "Run 1"
        "00000040"
        "09253501"
        "0100"  // 2.0, 20260105, 1 pod
        "0300"
        "3753"
        "0A00";  // pod 3, "7S", 10 channels
    expected += hex("Inlet          V    ");
    for (int number = 2; number <= 9; ++number) expected += hex("               V    ");
    expected += hex("fifteen lettersdegre");
    EXPECT_EQ(hex(scan_file()), expected);
}

TEST_F(LogFileTest, TheChannelCountFollowsTheTypeAndTheKind) {
    const struct {
        const char* type;
        std::size_t scan;
        std::size_t event;
    } rows[] = {{"7R", 20, 32}, {"7S", 10, 32}, {"7T", 20, 32}, {"7U", 20, 32}, {"7V", 20, 32},
                {"7W", 20, 32}, {"8R", 20, 20}, {"8S", 32, 32}, {"NC", 20, 32}, {"7X", 20, 32}};
    int pod = 1;
    for (const auto& row : rows) rig.add_pod(pod++, row.type);
    rig.log.Start_Log_File(ScanLog);
    rig.log.Start_Log_File(EventLog);
    const auto scan_pods = read_log(files, ScanPath).runs.at(0).Pods;
    const auto event_pods = read_log(files, EventPath).runs.at(0).Pods;
    ASSERT_THAT(scan_pods, SizeIs(10));
    ASSERT_THAT(event_pods, SizeIs(10));
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(scan_pods[i].TypeCode, rows[i].type);
        EXPECT_EQ(scan_pods[i].Number, i + 1);
        EXPECT_THAT(scan_pods[i].Channels, SizeIs(rows[i].scan)) << rows[i].type;
        EXPECT_THAT(event_pods[i].Channels, SizeIs(rows[i].event)) << rows[i].type;
    }
    EXPECT_EQ(state().ScanPodCount, 10);
    EXPECT_EQ(state().EventPodCount, 10);
    EXPECT_EQ(state().ScanChannelTotal, 8 * 20 + 10 + 32);
    EXPECT_EQ(read_log(files, EventPath).runs.at(0).Kind, EventLog);
}

TEST_F(LogFileTest, OnlyMarkedPodsAreLogged) {
    rig.add_pod(2, "7R");
    rig.add_pod(4, "7R");
    rig.status(2).LogScan = 0;
    rig.status(4).LogEvents = 0;
    rig.log.Start_Log_File(ScanLog);
    rig.log.Start_Log_File(EventLog);
    EXPECT_THAT(read_log(files, ScanPath).runs.at(0).Pods,
                ElementsAre(Field(&LoggedPod::Number, 4)));
    EXPECT_THAT(read_log(files, EventPath).runs.at(0).Pods,
                ElementsAre(Field(&LoggedPod::Number, 2)));
}

TEST_F(LogFileTest, AScanRecordHoldsTheNewDataOfThePods) {
    for (const int pod : {2, 5, 9}) rig.add_pod(pod, "7S");
    rig.log.Start_Log_File(ScanLog);
    std::vector<float> values(10, 1.0F);
    values[0] = 1.5F;
    rig.give(2, values);
    values[0] = 0.1234567F;
    rig.give(9, values);
    rig.status(9).ResultCode[1] = 129;
    rig.write(ScanLog, 500);
    EXPECT_EQ(rig.status(2).StreamNew[ReadingStream], 0);
    EXPECT_EQ(rig.status(9).StreamNew[ReadingStream], 0);
    rig.write(ScanLog, 1000);

    EXPECT_THAT(
        scans().records,
        ElementsAre(RecordRead{80000496, {2,         1.5F,         1, 1, 1, 1, 1, 1, 1, 1, 1, 9,
                                          0.123457F, ErrorReading, 1, 1, 1, 1, 1, 1, 1, 1}},
                    RecordRead{80001504, {}}));  // 8:00:00.500 and 8:00:01.500 as singles
    EXPECT_EQ(state().LogBusy, 0);
}

TEST_F(LogFileTest, AnEventRecordHoldsTheEventsOfThePods) {
    rig.add_pod(1, "8R");
    rig.add_pod(7, "8S");
    rig.log.Start_Log_File(EventLog);
    rig.give_events(1, {{19, 5, 13, 45, 12, 7, 2, 1, 0}, {20, 5, 13, 45, 12, 8, 2, 0, 1}});
    rig.give_events(7, {});
    rig.write(EventLog);
    EXPECT_EQ(state().EventTotal, 2);
    EXPECT_EQ(rig.status(1).StreamNew[EventStream], 0);
    EXPECT_THAT(
        read_log(files, EventPath).records,
        ElementsAre(RecordRead{80001504, {1, 1, 51219, 134502, 701, 51220, 134502, 810, 7, -1}}));
}

// The writer as it is described: a block in memory that goes to the file when it is nearly full.
class BlockWriter {
  public:
    std::string file;

    void add(float time, const std::vector<float>& values, int promised) {
        if (index_ + promised + 3 >= 16380) flush();
        append(3.0F);
        append(time);
        append(static_cast<float>(values.size()));
        for (const float value : values) append(value);
    }
    void flush() {
        file.append(reinterpret_cast<const char*>(block_.data()), block_.size() * 4);
        block_.assign(16381, 0.0F);
        index_ = -1;
    }

  private:
    void append(float value) { block_[static_cast<std::size_t>(++index_)] = value; }

    std::vector<float> block_ = std::vector<float>(16381);
    int index_ = -1;
};

TEST_F(LogFileTest, TheFinishedFileIsTheOneOfABlockWriter) {
    std::vector<int> pods;
    for (int pod = 1; pod <= 50; pod += 3) pods.push_back(pod);
    for (const int pod : pods) rig.add_pod(pod, pod % 2 ? "7R" : "8S");
    rig.log.Start_Log_File(ScanLog);
    BlockWriter model;
    model.file = scan_file();
    std::mt19937 random(1);
    for (int record = 0; record < 300; ++record) {
        std::vector<float> expected;
        for (const int pod : pods) {
            if (random() % 4 == 0) continue;
            std::vector<float> values(pod % 2 ? 20 : 32);
            for (float& value : values) value = static_cast<float>(random() % 1000) / 8;
            rig.give(pod, values);
            expected.push_back(static_cast<float>(pod));
            expected.insert(expected.end(), values.begin(), values.end());
        }
        rig.write(ScanLog);
        model.add(scans().records.back().time, expected,
                  state().ScanPodCount + state().ScanChannelTotal);
    }
    rig.log.Stop_Log_File(ScanLog);
    model.flush();
    EXPECT_GT(scan_file().size(), 5 * BlockSize);
    EXPECT_TRUE(scan_file() == model.file);
}

TEST_F(LogFileTest, AnEventLogGoesIntoBlocksByTheEventsOfEachRecord) {
    rig.add_pod(1, "8R");
    rig.log.Start_Log_File(EventLog);
    BlockWriter model;
    model.file = files.content(EventPath);
    for (int record = 0; record < 1300; ++record) {
        std::vector<float> expected = {1, static_cast<float>(record % 3)};
        rig.give_events(1, {EventEntry{1}, EventEntry{2}, EventEntry{3}});
        rig.run_time.Poll.LastEvent[0] = static_cast<std::int16_t>(record % 3);
        for (int i = 0; i <= record % 3; ++i)
            expected.insert(expected.end(), {static_cast<float>(i + 1), 0.0F, 0.0F});
        rig.write(EventLog, 0);
        model.add(80000496, expected, 2 + 3 * (record % 3 + 1));
    }
    rig.log.Stop_Log_File(EventLog);
    model.flush();
    EXPECT_EQ(files.content(EventPath).size() - model.file.size() % BlockSize, BlockSize);
    EXPECT_TRUE(files.content(EventPath) == model.file);
}

TEST_F(LogFileTest, EveryRecordIsInTheFileWhenTheCallReturns) {
    rig.add_pod(1, "8S");
    rig.log.Start_Log_File(ScanLog);
    const std::size_t header = scan_file().size();
    std::vector<float> values(32);
    for (std::size_t record = 1; record <= 1000; ++record) {
        values[0] = static_cast<float>(record);
        rig.give(1, values);
        rig.write(ScanLog);
        if (record % 97 && record > 3) continue;
        const LogRead read = scans();
        ASSERT_THAT(read.records, SizeIs(record));
        ASSERT_EQ(read.records.back().values[1], values[0]);
        ASSERT_EQ((scan_file().size() - header) % BlockSize, 0u);
    }
    const std::size_t running = scan_file().size();
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_EQ(scan_file().size(), running);
}

// A pod that answers with another number of channels never shifts the others.
TEST_F(LogFileTest, RecordsHoldTheChannelsOfTheHeaderAndOtherNumbersAreTold) {
    std::vector<std::string> notices;
    rig.log.on_notice([&](const std::string& text) { notices.push_back(text); });
    rig.add_pod(1, "7S");
    rig.add_pod(2, "8S");
    rig.log.Start_Log_File(ScanLog);
    const std::size_t answers[] = {10, 32, 32, 4, 10};
    for (std::size_t i = 0; i < 1000; ++i) {
        rig.give(1, std::vector<float>(answers[i * 5 / 1000], 1.0F));
        rig.give(2, std::vector<float>(32, 2.0F));
        rig.write(ScanLog);
    }
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_THAT(notices,
                ElementsAre("ZAV 1 answers with 32 channels, the scan log holds 10: the others are "
                            "not logged",
                            "ZAV 1 answers with 4 channels, the scan log holds 10: those missing "
                            "are logged as readings in error"));
    const LogRead read = scans();
    EXPECT_EQ(read.end, DatItem::End);
    ASSERT_THAT(read.records, SizeIs(1000));
    for (std::size_t i = 0; i < 1000; ++i) {
        std::vector<float> expected = {1};
        expected.resize(11, 1.0F);
        if (answers[i * 5 / 1000] == 4) std::fill_n(expected.begin() + 5, 6, ErrorReading);
        expected.push_back(2);
        expected.resize(44, 2.0F);
        ASSERT_EQ(read.records[i].values, expected) << i;
    }
}

TEST_F(LogFileTest, StoppingWritesABlockEvenWithoutARecord) {
    rig.add_pod(1, "7R");
    rig.log.Start_Log_File(ScanLog);
    const std::string header = scan_file();
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_TRUE(scan_file() == header + std::string(65524, '\0'));
    EXPECT_EQ(state().ScanLogging, 0);
    EXPECT_THAT(state().ScanBuffer, IsEmpty());
}

TEST_F(LogFileTest, ARunIsAppendedAndTheFirstOneUntouched) {
    rig.add_pod(1, "7R");
    rig.log.Start_Log_File(ScanLog);
    rig.give(1, std::vector<float>(20, 1.0F));
    rig.write(ScanLog);
    rig.log.Stop_Log_File(ScanLog);
    const std::string first = scan_file();
    rig.add_pod(2, "8S");
    rig.log.Start_Log_File(ScanLog);
    rig.give(2, {2});
    rig.write(ScanLog);
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_EQ(state().ScanChannelTotal, 52);
    EXPECT_EQ(scan_file().substr(0, first.size()), first);
    const LogRead read = scans();
    EXPECT_EQ(read.end, DatItem::End);
    ASSERT_THAT(read.runs, SizeIs(2));
    EXPECT_THAT(read.runs[1].Pods, SizeIs(2));
    ASSERT_THAT(read.records, SizeIs(2));
    EXPECT_THAT(read.records[1].values, SizeIs(33));
}

TEST_F(LogFileTest, NothingStartsWithoutAFileOrTwice) {
    state().ScanFileName.clear();
    rig.log.Start_Log_File(ScanLog);
    EXPECT_EQ(state().ScanLogging, 0);
    EXPECT_THAT(files.paths(), IsEmpty());
    state().ScanFileName = ScanPath;
    rig.log.Start_Log_File(ScanLog);
    const std::string header = scan_file();
    rig.log.Start_Log_File(ScanLog);
    EXPECT_EQ(scan_file(), header);
    EXPECT_EQ(state().ScanLogging, 1);
}

TEST_F(LogFileTest, NothingIsWrittenOrStoppedThatDoesNotRun) {
    rig.add_pod(1, "7R");
    rig.give(1, {1});
    rig.write(ScanLog);
    rig.log.Write_Log_File(ScanLog, 1, 0);
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_THAT(files.paths(), IsEmpty());
    EXPECT_EQ(rig.status(1).StreamNew[ReadingStream], 1);
}

TEST_F(LogFileTest, TheIntervalIsTheChoiceOrThePollRate) {
    rig.configuration.Interface.PollRate = 2500;
    rig.log.Start_Log_File(ScanLog);
    EXPECT_EQ(state().ScanLogInterval, 2500);
    rig.log.Stop_Log_File(ScanLog);
    state().ScanIntervalChoice = 30000;
    rig.log.Start_Log_File(ScanLog);
    EXPECT_EQ(state().ScanLogInterval, 30000);
}

TEST(ScanLogging, AddsARecordAtAPollBoundaryWhenItsIntervalHasPassed) {
    struct Row {
        int interval_ms;
        int poll_rate;
        std::vector<std::uint32_t> records_ms;  // of five seconds
    };
    const Row rows[] = {
        {1000, 1000, {1000, 2000, 3000, 4000, 5000}},
        {2000, 1000, {2000, 4000}},
        {2000, 1500, {3000}},
        // 100 ms less than the interval are enough.
        {2100, 1000, {2000, 4000}},
        {2101, 1000, {3000}},
        {1000, 3000, {3000}},
    };
    // The tick count from its start, over its wrap, and beyond what a signed number holds.
    for (const std::uint32_t begin : {0U, 0xFFFFFFFF - 2500U, 3'000'000'000U})
        for (const Row& row : rows) {
            MemoryFiles files;
            LogRig rig(files);
            rig.add_pod(1, "7R");
            rig.configuration.Interface.PollRate = static_cast<std::int16_t>(row.poll_rate);
            rig.run_time.Log.ScanIntervalChoice = row.interval_ms;
            rig.log.log_scans({begin + 500, 0});  // does not run yet
            rig.log.Start_Log_File(ScanLog);
            rig.run_time.Poll.LastScanLogTime = begin;
            std::vector<std::uint32_t> records_ms;
            for (int ms = row.poll_rate; ms <= 5000; ms += row.poll_rate) {
                const Moment now{begin + static_cast<std::uint32_t>(ms), 0};
                rig.log.log_scans(now);
                if (rig.run_time.Poll.LastScanLogTime == now.Ticks)
                    records_ms.push_back(now.Ticks - begin);
            }
            EXPECT_EQ(records_ms, row.records_ms) << row.interval_ms << "/" << row.poll_rate;
            rig.log.Stop_Log_File(ScanLog);
            EXPECT_EQ(read_log(files, ScanPath).records.size(), records_ms.size());
        }
}

TEST(ScanLogging, BeginsAtOnceOnAMachineThatHasRunForMonths) {
    MemoryFiles files;
    LogRig rig(files);
    rig.log.Start_Log_File(ScanLog);
    rig.log.log_scans({3'000'000'000U, 0});
    EXPECT_EQ(rig.run_time.Poll.LastScanLogTime, 3'000'000'000U);
}

TEST_F(LogFileTest, EventsAreTakenWhileTheirLogRunsAlone) {
    EXPECT_FALSE(rig.log.log_events({1000, 0}));
    rig.log.Start_Log_File(EventLog);
    EXPECT_TRUE(rig.log.log_events({2000, 0}));
    rig.log.Stop_Log_File(EventLog);
    EXPECT_THAT(read_log(files, EventPath).records, SizeIs(1));
}

TEST_F(LogFileTest, AStopWaitsForTheRecordThatIsBeingAdded) {
    rig.log.Start_Log_File(ScanLog);
    state().LogBusy = 1;
    bool still_logging = false;
    rig.loop.call_later(70, [&] {
        still_logging = state().ScanLogging == 1;
        state().LogBusy = 0;
    });
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_TRUE(still_logging);
    EXPECT_EQ(state().ScanLogging, 0);
    EXPECT_EQ(rig.loop.elapsed_ms(), 70);
}

TEST_F(LogFileTest, AFinishedLogIsSyncedAndClosed) {
    rig.add_pod(1, "7R");
    rig.log.Start_Log_File(ScanLog);
    rig.give(1, {1});
    rig.write(ScanLog);
    rig.log.Stop_Log_File(ScanLog);
    EXPECT_TRUE(files.synced(ScanPath) == scan_file());
    EXPECT_EQ(files.log.back(), "close " + ScanPath);
    EXPECT_EQ(read_field<float>(scan_file().data() + 18 + 6 + 400), DataMarker);
    EXPECT_THAT(files.log, testing::Contains("sync directory /logs"));
}

}  // namespace
}  // namespace kavorix::test
