#include "logging/log_setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "support/memory_files.h"
#include "support/recording_failures.h"
#include "support/scripted_dialogs.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> interval_texts(std::int16_t poll_rate_ms) {
    std::vector<std::string> texts;
    for (const ListEntry& entry : log_intervals(poll_rate_ms)) texts.push_back(entry.text);
    return texts;
}

class LogSetupTest : public testing::Test {
  protected:
    LogSetup open(std::int16_t kind) {
        LogSetup dialog(
            {run_time->Log, run_time->Status, run_time->Link, interface, files, dialogs, failures},
            kind);
        dialog.Form_Load();
        return dialog;
    }

    std::unique_ptr<RunTime> run_time = std::make_unique<RunTime>();
    InterfaceSettings interface;
    MemoryFiles files;
    ScriptedDialogs dialogs;
    RecordingFailures failures;
};

TEST(LogIntervals, AreTheMultiplesOfThePollRate) {
    EXPECT_THAT(interval_texts(1500), ElementsAre("Poll Rate", "15 sec", "30 sec", "1 min", "5 min",
                                                  "15 min", "30 min", "1 hr"));
    EXPECT_THAT(interval_texts(1000),
                ElementsAre("Poll Rate", "1 sec", "2 sec", "5 sec", "10 sec", "15 sec", "30 sec",
                            "1 min", "5 min", "15 min", "30 min", "1 hr"));
    EXPECT_THAT(interval_texts(7000), ElementsAre("Poll Rate"));
    EXPECT_THAT(interval_texts(0), ElementsAre("Poll Rate"));
    const auto entries = log_intervals(10000);
    EXPECT_EQ(entries.front(), (ListEntry{"Poll Rate", 0}));
    EXPECT_EQ(entries[1], (ListEntry{"10 sec", 10000}));
    EXPECT_EQ(entries.back(), (ListEntry{"1 hr", 3600000}));
}

TEST_F(LogSetupTest, ShowsWhatIsSetUp) {
    run_time->Log.ScanFileName = "/logs/a.DAT";
    run_time->Log.ScanComment = "Kiln";
    run_time->Log.ScanIntervalChoice = 5000;
    const LogSetup scans = open(ScanLog);
    EXPECT_EQ(scans.screen.caption, "Scan Log File");
    EXPECT_EQ(scans.screen.lblFileName.caption, "Data File : /logs/a.DAT");
    EXPECT_EQ(scans.screen.txtFileComment.text, "Kiln");
    EXPECT_EQ(scans.screen.cboInterval.code(), 5000);
    EXPECT_TRUE(scans.screen.cboInterval.visible);

    const LogSetup events = open(EventLog);
    EXPECT_EQ(events.screen.caption, "Event Log File");
    EXPECT_EQ(events.screen.lblFileName.caption, "Data File : ");
    EXPECT_EQ(events.screen.txtFileComment.text, "");
    EXPECT_FALSE(events.screen.cboInterval.visible);
}

TEST_F(LogSetupTest, AnIntervalThatThePollRateDoesNotAllowBecomesThePollRate) {
    run_time->Log.ScanIntervalChoice = 5000;
    interface.PollRate = 2000;
    EXPECT_EQ(open(ScanLog).screen.cboInterval.index, 0);
}

TEST_F(LogSetupTest, TheFileIsAskedFor) {
    run_time->Log.ScanFileName = "/logs/a.DAT";
    LogSetup dialog = open(ScanLog);
    dialogs.choose("/logs/b.dat");
    dialog.cmdFile_Click();
    EXPECT_EQ(dialog.screen.lblFileName.caption, "Data File : /logs/b.dat");
    EXPECT_EQ(run_time->Log.ScanFileName, "/logs/a.DAT");
    ASSERT_EQ(dialogs.requests.size(), 1u);
    const FileRequest& request = dialogs.requests[0];
    EXPECT_EQ(request.title, "Log File");
    EXPECT_EQ(request.filter, "Log files(*.DAT)|*.DAT");
    EXPECT_EQ(request.default_extension, "DAT");
    EXPECT_EQ(request.directory, "/logs");
    EXPECT_EQ(request.name, "a.DAT");
    EXPECT_TRUE(request.existing_welcome);
    dialogs.choose(std::nullopt);
    dialog.cmdFile_Click();
    EXPECT_EQ(dialog.screen.lblFileName.caption, "Data File : /logs/b.dat");
    EXPECT_THAT(dialogs.boxes, IsEmpty());
}

TEST_F(LogSetupTest, AFileThatCannotBeALogIsRefused) {
    run_time->Log.ScanFileName = "/logs/scan.DAT";
    run_time->Log.EventFileName = "/logs/event.DAT";
    const char* const no_log =
        "Selected file is not a Log file. Please select a file with an extension of .DAT";
    const struct {
        std::int16_t kind;
        const char* chosen;
        const char* objection;
    } rows[] = {
        {ScanLog, "/logs/a.CSV", no_log},
        {ScanLog, "/logs/aDAT", no_log},
        {EventLog, "DAT", no_log},
        {ScanLog, "/logs/event.DAT",
         "Selected file has also been specified for the Events file. Please select a different "
         "file."},
        {EventLog, "/logs/scan.DAT",
         "Selected file has also been specified for the Scans file. Please select a different "
         "file."},
        {ScanLog, "/logs/letter.DAT",
         "The file /logs/letter.DAT is no log: nothing can be added to it. Choose another file."},
    };
    files.put("/logs/letter.DAT", "Dear Sir, this is no log at all, whatever its name may say.");
    for (const auto& row : rows) {
        LogSetup dialog = open(row.kind);
        const std::string before = dialog.screen.lblFileName.caption;
        dialogs.choose(row.chosen);
        dialog.cmdFile_Click();
        EXPECT_THAT(dialogs.take_boxes(),
                    ElementsAre(ShownBox{row.objection, box::Ok | box::Exclamation, "KAVORIX"}));
        EXPECT_EQ(dialog.screen.lblFileName.caption, before);
    }
}

TEST_F(LogSetupTest, OkStoresTheSetUpAndMarksTheSelectedPods) {
    run_time->Link.ZavSelected.add(Pod::numbered(3));
    run_time->Status[0].LogScan = 1;
    run_time->Status[0].LogEvents = 1;
    LogSetup scans = open(ScanLog);
    dialogs.choose("/logs/scan.DAT");
    scans.cmdFile_Click();
    scans.screen.txtFileComment.text = "Night shift";
    scans.screen.cboInterval.select_code(60000);
    EXPECT_FALSE(scans.closed());
    scans.cmdOK_Click();
    EXPECT_TRUE(scans.closed());
    EXPECT_EQ(run_time->Log.ScanFileName, "/logs/scan.DAT");
    EXPECT_EQ(run_time->Log.ScanComment, "Night shift");
    EXPECT_EQ(run_time->Log.ScanIntervalChoice, 60000);
    EXPECT_EQ(run_time->Status[0].LogScan, 0);
    EXPECT_EQ(run_time->Status[2].LogScan, 1);
    EXPECT_EQ(run_time->Status[0].LogEvents, 1);
    EXPECT_EQ(run_time->Log.EventFileName, "");

    LogSetup events = open(EventLog);
    dialogs.choose("/logs/event.DAT");
    events.cmdFile_Click();
    events.cmdOK_Click();
    EXPECT_EQ(run_time->Log.EventFileName, "/logs/event.DAT");
    EXPECT_EQ(run_time->Log.ScanIntervalChoice, 60000);
    EXPECT_EQ(run_time->Status[0].LogEvents, 0);
    EXPECT_EQ(run_time->Status[2].LogEvents, 1);
}

TEST_F(LogSetupTest, ClearLeavesTheLogWithoutAFile) {
    run_time->Log.ScanFileName = "/logs/a.DAT";
    LogSetup dialog = open(ScanLog);
    dialog.cmdClear_Click();
    EXPECT_EQ(dialog.screen.lblFileName.caption, "Data File : ");
    EXPECT_EQ(run_time->Log.ScanFileName, "/logs/a.DAT");
    dialog.cmdOK_Click();
    EXPECT_EQ(run_time->Log.ScanFileName, "");
}

TEST_F(LogSetupTest, CancelChangesNothing) {
    run_time->Log.ScanFileName = "/logs/a.DAT";
    run_time->Status[0].LogScan = 1;
    LogSetup dialog = open(ScanLog);
    dialog.cmdClear_Click();
    dialog.screen.txtFileComment.text = "x";
    dialog.cmdCancel_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_EQ(run_time->Log.ScanFileName, "/logs/a.DAT");
    EXPECT_EQ(run_time->Log.ScanComment, "");
    EXPECT_EQ(run_time->Status[0].LogScan, 1);
}

}  // namespace
}  // namespace kavorix::test
