// What is left when the disk fills up, files refuse or the program is killed in the middle of a
// write.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <string>

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
    Station station(files);
    const int written = write_until_failure(station, Records);
    ASSERT_THAT(
        station.rig.failures.reports,
        ElementsAre(testing::AnyOf(
            "28 LOGFILE/Start_Log_File: Writing \"/logs/scan.DAT\": No space left on device",
            "28 LOGFILE/Write_Log_File: Writing \"/logs/scan.DAT\": No space left on "
            "device")));
    ASSERT_EQ(numbers(read_log(files, Path)), up_to(written));

    files.space.reset();
    Station later(files);
    ASSERT_EQ(write_until_failure(later, 1), 1);
    const LogRead read = read_log(files, Path);
    std::vector<int> expected = up_to(written);
    expected.push_back(1);
    ASSERT_EQ(numbers(read), expected);
    ASSERT_EQ(read.end, DatItem::End);
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

TEST(Failures, ASyncThatFailsWhileStoppingIsReported) {
    MemoryFiles files;
    Station station(files);
    station.rig.log.Start_Log_File(ScanLog);
    files.sync_failure = EIO;
    EXPECT_THROW(station.rig.log.Stop_Log_File(ScanLog), ProgramEnded);
    EXPECT_THAT(station.rig.failures.reports, ElementsAre(StartsWith("5 LOGFILE/")));
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
    EXPECT_EQ(repair_log_end(*files.open(Path, OpenMode::ReadWrite)), whole.size());
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
    EXPECT_EQ(repair_log_end(*file), whole.size());
    EXPECT_TRUE(files.content(Path) == whole);
}

TEST(RepairLogEnd, NothingIsTakenFromAFileThatIsNoLog) {
    const float numbers_of_another[] = {1.0F, 2.0F, 3.0F, 4.0F};
    std::string damaged = finished_file().substr(0, Header);
    damaged[15] = 'x';  // in the marker of the configuration, behind the comment
    const std::string rows[] = {
        "",
        "x",
        "text of another program",
        std::string(100, '\0'),
        std::string(bytes_of(numbers_of_another, 4)),
        damaged + "rest",
        std::string(bytes_of(numbers_of_another, 4)) + std::string(200000, 'x')};
    for (const std::string& content : rows) {
        MemoryFiles files;
        files.put(Path, content);
        EXPECT_EQ(repair_log_end(*files.open(Path, OpenMode::ReadWrite)), content.size());
        EXPECT_TRUE(files.content(Path) == content);
    }
}

}  // namespace
}  // namespace kavorix::test
