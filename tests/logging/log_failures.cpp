// What is left when the disk fills up, files refuse or the program is killed in the middle of a
// write.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <string>

#include "logging/log_info.h"
#include "logging/log_tail.h"
#include "support/log_rig.h"
#include "support/memory_files.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string Path = "/logs/scan.DAT";
constexpr std::size_t Header = 228;  // bytes in front of the first block

struct Station {
    explicit Station(MemoryFiles& files) : rig(files) {
        rig.add_pod(3, "7S");
        rig.run_time.Log.ScanComment = "Kiln";
    }
    // Record number n holds n in every value.
    void write(int number) {
        rig.give(3, std::vector<float>(10, static_cast<float>(number)));
        rig.write(ScanLog);
    }
    LogRig rig;
};

// Runs until something fails; the number of records whose call had returned.
int write_until_failure(Station& station, int records) {
    int written = 0;
    try {
        station.rig.log.Start_Log_File(ScanLog);
        while (written < records) {
            station.write(written + 1);
            ++written;
        }
        station.rig.log.Stop_Log_File(ScanLog);
    } catch (const ProgramEnded&) {
    }
    return written;
}

// The numbers of the records in the file; -1 for one that is not whole.
std::vector<int> numbers(const LogRead& log) {
    std::vector<int> found;
    for (const RecordRead& record : log.records) {
        const float number = record.values.empty() ? -1 : record.values.back();
        std::vector<float> whole(11, number);
        whole[0] = 3;
        found.push_back(record.values == whole ? static_cast<int>(number) : -1);
    }
    return found;
}

std::vector<int> up_to(int count) {
    std::vector<int> all;
    for (int i = 1; i <= count; ++i) all.push_back(i);
    return all;
}

// Whatever offset the disk is full at: the failure is reported, the records before it can be read,
// and a later run is appended behind them.
void check_full_disk(std::size_t space) {
    SCOPED_TRACE(space);
    constexpr int Records = 3;
    MemoryFiles files;
    files.space = space;
    auto station = std::make_unique<Station>(files);
    const int written = write_until_failure(*station, Records);
    ASSERT_THAT(
        station->rig.failures.reports,
        ElementsAre(testing::AnyOf(
            "28 LOGFILE/Start_Log_File: Writing \"/logs/scan.DAT\": No space left on device",
            "28 LOGFILE/Write_Log_File: Writing \"/logs/scan.DAT\": No space left on "
            "device")));
    // The record that the disk was full at may be there, but then as a whole.
    std::vector<int> expected = numbers(read_log(files, Path));
    ASSERT_THAT(expected, testing::AnyOf(up_to(written), up_to(written + 1)));

    station.reset();  // the program has ended
    files.space.reset();
    Station later(files);
    ASSERT_EQ(write_until_failure(later, 1), 1);
    const LogRead read = read_log(files, Path);
    expected.push_back(1);
    ASSERT_EQ(numbers(read), expected);
    ASSERT_EQ(read.end, DatItem::End);
    ASSERT_EQ(read.pending, 0u);
}

TEST(FullDisk, AtEveryOffsetOfTheHeader) {
    for (std::size_t space = 0; space <= Header; ++space) check_full_disk(space);
}

TEST(FullDisk, AtEveryOffsetOfTheFirstBlock) {
    // Every offset around the record, then a stride that meets every alignment.
    for (std::size_t space = Header; space < Header + 200; ++space) check_full_disk(space);
    for (std::size_t space = Header + 200; space <= Header + BlockSize; space += 101)
        check_full_disk(space);
}

TEST(FullDisk, AtEveryOffsetOfARecordInsideABlock) {
    constexpr std::size_t Block = Header + BlockSize + 1;
    constexpr std::size_t Record = 14 * EntrySize + 1;
    for (std::size_t space = Block; space < Block + 2 * Record; ++space) check_full_disk(space);
}

TEST(Failures, AFileThatCannotBeOpenedIsReportedAtTheStart) {
    const struct {
        int reason;
        const char* report;
    } rows[] = {
        {ENOENT, "2 LOGFILE/Start_Log_File: Opening \"/logs/scan.DAT\": No such file or directory"},
        {EACCES, "13 LOGFILE/Start_Log_File: Opening \"/logs/scan.DAT\": Permission denied"},
        {EROFS, "30 LOGFILE/Start_Log_File: Opening \"/logs/scan.DAT\": Read-only file system"},
    };
    for (const auto& row : rows) {
        MemoryFiles files;
        files.refuse(Path, row.reason);
        Station station(files);
        EXPECT_THROW(station.rig.log.Start_Log_File(ScanLog), ProgramEnded);
        EXPECT_THAT(station.rig.failures.reports, ElementsAre(row.report));
    }
}

TEST(Failures, AWriteThatFailsIsReportedAndWhatWasLoggedStays) {
    MemoryFiles files;
    Station station(files);
    station.rig.log.Start_Log_File(ScanLog);
    station.write(1);
    files.write_failure = EROFS;
    EXPECT_THROW(station.write(2), ProgramEnded);
    EXPECT_THAT(station.rig.failures.reports,
                ElementsAre("30 LOGFILE/Write_Log_File: Writing \"/logs/scan.DAT\": Read-only file "
                            "system"));
    EXPECT_EQ(station.rig.run_time.Log.LogBusy, 0);
    EXPECT_EQ(numbers(read_log(files, Path)), up_to(1));
}

TEST(Failures, AFailureWhileStoppingIsReported) {
    MemoryFiles files;
    Station station(files);
    station.rig.log.Start_Log_File(ScanLog);
    files.write_failure = EIO;
    EXPECT_THROW(station.rig.log.Stop_Log_File(ScanLog), ProgramEnded);
    EXPECT_THAT(station.rig.failures.reports,
                ElementsAre(StartsWith("5 LOGFILE/Write_Log_File: ")));
}

// A disk that failed is told, once at the latest when the log stops, and noted beside the log.
TEST(Failures, ASyncThatFailsIsToldAndNotedHoweverTheDiskGoesOn) {
    MemoryFiles files;
    Station station(files);
    station.rig.log.Start_Log_File(ScanLog);
    station.write(1);
    files.sync_failure = EIO;
    EXPECT_THROW(
        {
            while (true) station.write(2);
        },
        ProgramEnded);
    files.sync_failure.reset();
    EXPECT_THROW(station.rig.log.Stop_Log_File(ScanLog), ProgramEnded);
    EXPECT_THAT(station.rig.failures.reports,
                ElementsAre(StartsWith("5 LOGFILE/Write_Log_File: Syncing \""),
                            StartsWith("5 LOGFILE/Stop_Log_File: Syncing \"")));
    const LogInfo info = read_log_info(*files.open(Path, OpenMode::Read),
                                       files.open(Path + ".sum", OpenMode::Read).get());
    EXPECT_THAT(info.Check.text(), testing::HasSubstr("The disk failed while run 1 was written"));
    EXPECT_TRUE(info.damaged());
}

TEST(Failures, AFileThatWasDeletedIsReportedAtTheNextRecord) {
    MemoryFiles files;
    Station station(files);
    station.rig.log.Start_Log_File(ScanLog);
    station.write(1);
    files.remove(Path);
    EXPECT_THROW(station.write(2), ProgramEnded);
    EXPECT_THAT(station.rig.failures.reports,
                ElementsAre("2 LOGFILE/Write_Log_File: Writing \"/logs/scan.DAT\": No such file or "
                            "directory"));
}

// A finished file of two runs, of 1 and 1200 records: the second one has two blocks.
std::string finished_file() {
    MemoryFiles files;
    Station first(files);
    write_until_failure(first, 1);
    Station second(files);
    write_until_failure(second, 1200);
    return files.content(Path);
}

// A copy of a log that was cut off somewhere, as after a loss of power: a new run begins behind
// what is whole and takes nothing of it away.
TEST(RepairLogEnd, AfterAFileCutAnywhereANewRunCanBeRead) {
    const std::string whole = finished_file();
    for (std::size_t length = 0; length <= whole.size(); length += length < 2 * Header ? 1 : 499) {
        SCOPED_TRACE(length);
        MemoryFiles files;
        files.put(Path, whole.substr(0, length));
        const std::vector<int> before = numbers(read_log(files, Path));
        Station station(files);
        write_until_failure(station, 1);
        ASSERT_THAT(station.rig.failures.reports, IsEmpty());
        const LogRead read = read_log(files, Path);
        std::vector<int> expected = before;
        expected.push_back(1);
        ASSERT_EQ(numbers(read), expected);
        ASSERT_EQ(read.end, DatItem::End);
        ASSERT_EQ(files.content(Path).substr(0, std::min(length, Header)),
                  whole.substr(0, std::min(length, Header)));
    }
}

TEST(RepairLogEnd, AFinishedFileIsLeftAlone) {
    const std::string whole = finished_file();
    MemoryFiles files;
    files.put(Path, whole);
    EXPECT_EQ(repair_log_end(*files.open(Path, OpenMode::ReadWrite), Path), whole.size());
    EXPECT_TRUE(files.content(Path) == whole);
    EXPECT_THAT(files.log, IsEmpty());
}

TEST(RepairLogEnd, ARecordThatWasNotFinishedIsBlanked) {
    MemoryFiles files;
    files.put(Path, finished_file().substr(0, Header + BlockSize));
    const std::string whole = files.content(Path);
    const auto file = files.open(Path, OpenMode::ReadWrite);
    const float unfinished[] = {UnfinishedMarker, 1.0F, 5.0F, 3.0F, 1.0F};
    file->write_at(Header + 14 * EntrySize, bytes_of(unfinished, 5));
    EXPECT_EQ(repair_log_end(*file, Path), whole.size());
    EXPECT_TRUE(files.content(Path) == whole);
}

// What is no log, or damaged, takes no run, and loses nothing by the attempt.
TEST(RepairLogEnd, AFileThatIsNoLogOrDamagedIsRefused) {
    const float numbers_of_another[] = {1.0F, 2.0F, 3.0F, 4.0F};
    const std::string other(bytes_of(numbers_of_another, 4));
    const std::string whole = finished_file();
    const std::size_t second = Header + BlockSize;  // where the second run begins
    const auto turned = [&](std::size_t place, int bit) {
        std::string bytes = whole;
        bytes[place] = static_cast<char>(bytes[place] ^ (1 << bit));
        return bytes;
    };
    const std::string no_log = "is no log";
    const std::string damaged = "is damaged at byte ";
    const struct {
        std::string content;
        std::string complaint;
    } rows[] = {
        {"x", no_log},
        {"text of another program", no_log},
        {std::string(200000, '\0'), no_log},
        {other + std::string(200000, 'x'), damaged},
        {whole.substr(0, 15) + "x" + whole.substr(16), damaged},  // the configuration's marker
        {turned(Header + 2 * EntrySize + 2, 4), damaged + std::to_string(Header)},    // a count
        {turned(second + Header + 3, 7), damaged + std::to_string(second + Header)},  // 3.0: -3.0
        {turned(second + 26, 7), damaged + std::to_string(second + 12)},  // 138 channels
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.complaint);
        MemoryFiles files;
        files.put(Path, row.content);
        const auto obstacle = log_obstacle(files, Path);
        ASSERT_TRUE(obstacle);
        EXPECT_THAT(*obstacle, testing::HasSubstr(row.complaint));
        EXPECT_THROW(repair_log_end(*files.open(Path, OpenMode::ReadWrite), Path), LogRefused);
        EXPECT_TRUE(files.content(Path) == row.content);
    }
}

TEST(LogObstacle, NamesALogThatIsInUseAndAFolderThatCannotBeWritten) {
    MemoryFiles files;
    Station station(files);
    EXPECT_EQ(log_obstacle(files, Path), std::nullopt);
    station.rig.log.Start_Log_File(ScanLog);
    files.link(Path, "/elsewhere/same.DAT");
    for (const char* name : {"/logs/scan.DAT", "/elsewhere/same.DAT"})
        EXPECT_THAT(log_obstacle(files, name).value_or(""),
                    testing::HasSubstr(std::string(name) + "\" is used by this program"));
    station.rig.run_time.Log.EventFileName = "/elsewhere/same.DAT";
    EXPECT_THROW(station.rig.log.Start_Log_File(EventLog), ProgramEnded);
    station.rig.log.Stop_Log_File(ScanLog);
    EXPECT_EQ(log_obstacle(files, Path), std::nullopt);
    files.refuse("/read-only/a.DAT");
    EXPECT_THAT(log_obstacle(files, "/read-only/a.DAT").value_or(""),
                testing::HasSubstr("/read-only/a.DAT\": Permission denied"));
}

}  // namespace
}  // namespace kavorix::test
