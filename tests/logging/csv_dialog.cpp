#include "logging/csv_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/virtual_event_loop.h"
#include "support/dat_builder.h"
#include "support/memory_files.h"
#include "support/recording_failures.h"
#include "support/scripted_dialogs.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t Date = 20260105;
const std::string LogPath = "/logs/a.DAT";
const std::string CsvPath = "/logs/a.CSV";

class CsvDialogTest : public testing::Test {
  protected:
    CsvDialogTest() { dialog.Form_Load(); }

    void open(const std::string& log) {
        files.put(LogPath, log);
        dialogs.choose(LogPath);
        dialog.cmdOpen_Click();
    }
    void open(const DatBuilder& log) { open(log.bytes); }
    CsvDialogScreen& screen() { return dialog.screen; }

    // Numbers of the pods in a list.
    static std::vector<int> numbers(const ListBox& list) {
        std::vector<int> found;
        for (const ListEntry& entry : list.entries) found.push_back(entry.code);
        return found;
    }
    void show_pod(int number) {
        for (ListBox* list : {&screen().lstFile, &screen().lstConvert})
            for (int i = 0; i < static_cast<int>(list->entries.size()); ++i)
                if (list->entries[at(i)].code == number)
                    list == &screen().lstFile ? dialog.lstFile_Click(i)
                                              : dialog.lstConvert_Click(i);
    }
    void tick(int channel, bool checked) {
        if (channel <= ChannelBank) {
            screen().chkChanTop[at(channel - 1)].checked = checked;
            dialog.chkChanTop_Click(channel - 1);
        } else {
            screen().chkChanBot[at(channel - ChannelBank - 1)].checked = checked;
            dialog.chkChanBot_Click(channel - ChannelBank - 1);
        }
    }

    MemoryFiles files;
    VirtualEventLoop loop;
    ScriptedDialogs dialogs;
    RecordingFailures failures;
    std::vector<bool> progress_shown;
    std::function<void()> while_converting;
    CsvDialog dialog{{files, loop, dialogs, failures, [this](bool shown) {
                          progress_shown.push_back(shown);
                          if (shown && while_converting) loop.call_later(0, while_converting);
                      }}};
};

DatBuilder two_pods() {
    DatBuilder log;
    log.run(ScanLog, "Kiln & Co", Date,
            {{3, "7S", {{"Inlet", "V"}, {"A&B", "V"}}}, {12, "8S", {{"", ""}}}});
    return log.data(80000000, {3, 1.5F, 2, 12, 7}).data(80001000, {12, 8}).filler(5);
}

// `pods` pods of 32 channels.
DatBuilder wide(int pods) {
    DatBuilder log;
    std::vector<LoggedPod> all;
    for (std::int16_t pod = 1; pod <= pods; ++pod) all.push_back(logged_pod(pod, 32));
    return log.run(ScanLog, "", Date, all);
}

TEST_F(CsvDialogTest, IsEmptyWithoutALog) {
    EXPECT_EQ(screen().lblFile.caption, "");
    EXPECT_FALSE(screen().cmdConvert.enabled);
    EXPECT_FALSE(screen().cmdAdd.enabled);
    EXPECT_FALSE(screen().chkChanTop[0].visible);
    dialog.cmdConvert_Click();
    dialog.cmdAdd_Click();
    dialog.cmdSelectAll_Click();
    EXPECT_THAT(dialogs.boxes, IsEmpty());
}

TEST_F(CsvDialogTest, ShowsTheLogThatWasChosen) {
    open(two_pods());
    ASSERT_THAT(dialogs.requests, SizeIs(1));
    EXPECT_EQ(dialogs.requests[0].title, "Open ZAV Log File");
    EXPECT_EQ(dialogs.requests[0].filter, "Log files(*.DAT)|*.DAT");
    EXPECT_EQ(screen().lblFile.caption, LogPath);
    EXPECT_EQ(screen().lblKind.caption, "Scan log, 1 run, begun 2026-01-05: Kiln & Co");
    EXPECT_THAT(numbers(screen().lstConvert), ElementsAre(3, 12));
    EXPECT_THAT(numbers(screen().lstFile), IsEmpty());
    EXPECT_EQ(screen().lstConvert.entries[0].text, "ZAV 3  7S");
    EXPECT_EQ(screen().lblPod.caption, "Channels of ZAV 3  7S");
    EXPECT_EQ(screen().chkChanTop[0], (CheckBox{"1 Inlet", true, true, true}));
    EXPECT_EQ(screen().chkChanTop[1].caption, "2 A&&B");
    EXPECT_FALSE(screen().chkChanTop[2].visible);
    EXPECT_FALSE(screen().chkChanBot[0].visible);
    EXPECT_EQ(screen().lblCount.caption, "3 of at most 252 channels");
    EXPECT_TRUE(screen().cmdConvert.enabled);
}

TEST_F(CsvDialogTest, ThePreviewShowsTheFirstRows) {
    open(two_pods());
    const Grid& preview = screen().grdPreview;
    EXPECT_THAT(preview.headings,
                ElementsAre("DATE", "TIME", "MILLISECOND", "ZAV3/Ch1", "ZAV3/Ch2", "ZAV12/Ch1"));
    ASSERT_THAT(preview.rows, SizeIs(4));
    const auto texts = [&](std::size_t row) {
        std::vector<std::string> cells;
        for (const GridCell& cell : preview.rows[row]) cells.push_back(cell.text);
        return cells;
    };
    EXPECT_THAT(texts(0), ElementsAre("", "", "", "Inlet", "A&B", ""));
    EXPECT_THAT(texts(1), ElementsAre("", "", "", "V", "V", ""));
    EXPECT_THAT(texts(2), ElementsAre("05-01-26", "08:00:00", "000", "1.5", "2", "7"));
    EXPECT_THAT(texts(3), ElementsAre("05-01-26", "08:00:01", "000", "", "", "8"));
    tick(1, false);
    EXPECT_THAT(screen().grdPreview.headings,
                ElementsAre("DATE", "TIME", "MILLISECOND", "ZAV3/Ch2", "ZAV12/Ch1"));
}

TEST_F(CsvDialogTest, ThePreviewOfALongLogIsShort) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(1, 1)});
    for (int i = 0; i < 100000; ++i) log.data(static_cast<float>(i % 60) * 1000, {1, 5});
    open(log);
    EXPECT_THAT(screen().grdPreview.rows, SizeIs(22));
}

TEST_F(CsvDialogTest, AFileThatIsNoLogIsRefused) {
    open(two_pods());
    files.put("/logs/b.CSV", "x");
    files.put("/logs/b.DAT", "x");
    files.put("/logs/c.DAT", two_pods().bytes);
    files.refuse("/logs/c.DAT", EACCES);
    const struct {
        const char* path;
        const char* text;
    } rows[] = {
        {"/logs/b.CSV",
         "Selected file is not a Log file. Please select a file with an extension of .DAT"},
        {"/logs/b.DAT", "The file /logs/b.DAT does not begin as a log file does."},
        {"/logs/c.DAT", "The log file /logs/c.DAT cannot be read: Permission denied"},
    };
    for (const auto& row : rows) {
        dialogs.choose(row.path);
        dialog.cmdOpen_Click();
        EXPECT_THAT(dialogs.take_boxes(),
                    ElementsAre(ShownBox{row.text, box::Ok | box::Exclamation, "KAVORIX"}));
        EXPECT_EQ(screen().lblFile.caption, LogPath);
    }
}

TEST_F(CsvDialogTest, PodsMoveBetweenTheLists) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(9, 1), logged_pod(3, 2), logged_pod(5, 4)});
    open(log);
    show_pod(3);
    dialog.cmdRemove_Click();
    EXPECT_THAT(numbers(screen().lstFile), ElementsAre(3));
    EXPECT_THAT(numbers(screen().lstConvert), ElementsAre(9, 5));
    EXPECT_EQ(screen().lblCount.caption, "5 of at most 252 channels");
    dialog.cmdRemoveAll_Click();
    EXPECT_THAT(numbers(screen().lstFile), ElementsAre(9, 3, 5));
    EXPECT_FALSE(screen().cmdConvert.enabled);
    EXPECT_FALSE(screen().cmdRemove.enabled);
    EXPECT_THAT(screen().grdPreview.headings, IsEmpty());
    show_pod(5);
    dialog.cmdAdd_Click();
    EXPECT_THAT(numbers(screen().lstConvert), ElementsAre(5));
    dialog.cmdAddAll_Click();
    EXPECT_THAT(numbers(screen().lstConvert), ElementsAre(9, 3, 5));
}

TEST_F(CsvDialogTest, TheChannelsOfThePodShownAreTicked) {
    open(wide(2));
    show_pod(2);
    EXPECT_EQ(screen().lblPod.caption, "Channels of ZAV 2  7R");
    EXPECT_TRUE(screen().chkChanBot[15].visible);
    tick(32, false);
    tick(1, false);
    EXPECT_EQ(dialog.selection().ChannelSelected[1][31], 0);
    EXPECT_EQ(dialog.selection().ChannelSelected[1][0], 0);
    EXPECT_EQ(dialog.selection().ChannelSelected[0][0], 1);
    EXPECT_EQ(screen().lblCount.caption, "62 of at most 252 channels");
    dialog.cmdDeSelectAll_Click();
    EXPECT_EQ(screen().lblCount.caption, "32 of at most 252 channels");
    EXPECT_FALSE(screen().chkChanTop[5].checked);
    dialog.cmdSelectAll_Click();
    EXPECT_EQ(screen().lblCount.caption, "64 of at most 252 channels");
    EXPECT_TRUE(screen().chkChanTop[5].checked);
}

TEST_F(CsvDialogTest, The253rdChannelIsRefused) {
    open(wide(8));
    EXPECT_THAT(numbers(screen().lstConvert), IsEmpty());  // 256 are too many to begin with
    dialog.cmdAddAll_Click();
    const ShownBox pod_refused{"Maximum of 253 channels exceeded for the .CSV file.",
                               box::Ok | box::Exclamation, "KAVORIX"};
    EXPECT_THAT(dialogs.take_boxes(), ElementsAre(pod_refused));
    EXPECT_THAT(numbers(screen().lstFile), ElementsAre(8));
    EXPECT_EQ(screen().lblCount.caption, "224 of at most 252 channels");

    show_pod(8);
    for (int channel = 1; channel <= 4; ++channel) tick(channel, false);
    show_pod(8);
    dialog.cmdAdd_Click();
    EXPECT_EQ(screen().lblCount.caption, "252 of at most 252 channels");
    EXPECT_THAT(dialogs.take_boxes(), IsEmpty());
    tick(1, true);
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{"Maximum of 253 channels exceeded for .CSV file.",
                                     box::Ok | box::Exclamation, "KAVORIX"}));
    EXPECT_FALSE(screen().chkChanTop[0].checked);
    EXPECT_EQ(screen().lblCount.caption, "252 of at most 252 channels");
    dialog.cmdSelectAll_Click();
    EXPECT_THAT(dialogs.take_boxes(), SizeIs(1));
    EXPECT_EQ(screen().lblCount.caption, "252 of at most 252 channels");
}

TEST_F(CsvDialogTest, ConvertsBesideTheLog) {
    open(two_pods());
    dialog.cmdConvert_Click();
    EXPECT_THAT(files.content(CsvPath),
                testing::StartsWith("\"/logs/a.CSV\"\r\n\"Kiln & Co\"\r\n"));
    EXPECT_EQ(screen().lblStatus.caption, "2 rows written to /logs/a.CSV");
    EXPECT_THAT(progress_shown, ElementsAre(true, false));
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    EXPECT_EQ(dialogs.beeps, 0);
}

TEST_F(CsvDialogTest, AsksBeforeAFileIsReplaced) {
    open(two_pods());
    files.put(CsvPath, "old");
    dialogs.answer(Answer::Cancel);
    dialog.cmdConvert_Click();
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{"The file /logs/a.CSV exists.\n\nOverwrite?",
                                     box::OkCancel | box::Question, "KAVORIX"}));
    EXPECT_EQ(files.content(CsvPath), "old");
    EXPECT_THAT(progress_shown, IsEmpty());
    dialogs.answer(Answer::Ok);
    dialog.cmdConvert_Click();
    EXPECT_THAT(files.content(CsvPath), HasSubstr("ZAV12/Ch1"));
    EXPECT_THAT(files.log, testing::Contains("remove " + CsvPath));
}

TEST_F(CsvDialogTest, ACorruptLogLeavesNoText) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(3, 2)}).data(1, {3, 1, 2}).data(2, {3, 1}).filler(5);
    open(log);
    dialog.cmdConvert_Click();
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{"The log file /logs/a.DAT is corrupt. Conversion has stopped.",
                                     box::Ok | box::Stop, "KAVORIX"}));
    EXPECT_FALSE(files.has(CsvPath));
    EXPECT_THAT(progress_shown, ElementsAre(true, false));
}

TEST_F(CsvDialogTest, WhatIsDamagedIsNamedAndTheRowsBeforeItKept) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(3, 1)}).data(1, {3, 1});
    const std::string place = std::to_string(log.bytes.size());
    log.data(2, {3, 1});
    open(log.bytes.substr(0, log.bytes.size() - 1));
    dialog.cmdConvert_Click();
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{"The log file /logs/a.DAT ends inside the record at byte " +
                                         place + ". The rows before it have been kept.",
                                     box::Ok | box::Exclamation, "KAVORIX"}));
    EXPECT_EQ(screen().lblStatus.caption, "1 rows written to /logs/a.CSV");

    log.bytes.resize(log.bytes.size() - 5 * EntrySize);
    log.singles({DataMarker, -5, 0}).filler(3);
    files.remove(CsvPath);
    open(log);
    dialog.cmdConvert_Click();
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{"The log file /logs/a.DAT is damaged at byte " + place +
                                         ". The rows before it have been kept.",
                                     box::Ok | box::Exclamation, "KAVORIX"}));
}

TEST_F(CsvDialogTest, ADateThatIsNoneIsAskedAboutOnce) {
    DatBuilder log;
    log.run(ScanLog, "", 20260231, {logged_pod(3, 1)});
    log.data(3, {3, 1}).data(2, {3, 1}).data(1, {3, 1});
    open(log);
    const ShownBox question{
        "Conversion cannot process correctly past midnight because the file MSAFINX.DLL could not "
        "be found. Please insure this file is present in the windows/system directory. Do you wish "
        "to continue with incorrect dates in your CSV file?",
        box::YesNo | box::Stop, "Conversion Error"};
    dialogs.answer(Answer::Yes);
    dialog.cmdConvert_Click();
    EXPECT_THAT(dialogs.take_boxes(), ElementsAre(question));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_EQ(screen().lblStatus.caption, "3 rows written to /logs/a.CSV");

    dialogs.answer(Answer::Ok);
    dialogs.answer(Answer::No);
    dialog.cmdConvert_Click();
    EXPECT_EQ(screen().lblStatus.caption, "1 rows written to /logs/a.CSV, then cancelled");
}

TEST_F(CsvDialogTest, CancellingStopsAfterTheCurrentRecord) {
    open(two_pods());
    while_converting = [&] {
        EXPECT_EQ(dialog.progress_window.screen.caption, "Conversion in progress");
        dialog.progress_window.cmdCancel_Click();
    };
    dialog.cmdConvert_Click();
    EXPECT_EQ(screen().lblStatus.caption, "0 rows written to /logs/a.CSV, then cancelled");
    EXPECT_TRUE(files.has(CsvPath));
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    // The next conversion begins afresh.
    while_converting = nullptr;
    dialogs.answer(Answer::Ok);
    dialog.cmdConvert_Click();
    EXPECT_EQ(screen().lblStatus.caption, "2 rows written to /logs/a.CSV");
}

TEST_F(CsvDialogTest, TheProgressWindowShowsThePercentage) {
    open(two_pods());
    EXPECT_EQ(dialog.progress_window.screen.picProgress.caption, "");
    std::string first;
    while_converting = [&] { first = dialog.progress_window.screen.picProgress.caption; };
    dialog.cmdConvert_Click();
    EXPECT_EQ(first, "0%");
    EXPECT_EQ(dialog.progress_window.screen.picProgress.caption, "88%");
    EXPECT_EQ(dialog.progress_window.percent(), 88);
}

TEST_F(CsvDialogTest, NothingElseHappensWhileALogIsConverted) {
    open(two_pods());
    while_converting = [&] {
        dialog.cmdConvert_Click();
        dialog.cmdRemoveAll_Click();
        dialog.cmdOpen_Click();
        dialog.cmdClose_Click();
        EXPECT_FALSE(dialog.closed());
    };
    dialog.cmdConvert_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_THAT(numbers(screen().lstConvert), SizeIs(2));
    EXPECT_THAT(progress_shown, ElementsAre(true, false));
    EXPECT_THAT(screen().lblStatus.caption, testing::EndsWith(", then cancelled"));
}

TEST_F(CsvDialogTest, ADiskThatIsFullIsToldAndLeavesNothing) {
    open(two_pods());
    files.space = 100;
    dialog.cmdConvert_Click();
    EXPECT_THAT(dialogs.take_boxes(),
                ElementsAre(ShownBox{
                    "Conversion has stopped: Writing \"/logs/a.CSV\": No space left on device",
                    box::Ok | box::Exclamation, "KAVORIX"}));
    EXPECT_FALSE(files.has(CsvPath));
    EXPECT_THAT(progress_shown, ElementsAre(true, false));
    EXPECT_THAT(failures.reports, IsEmpty());
}

TEST(CsvFile, StandsBesideTheLog) {
    EXPECT_EQ(csv_path_of("/logs/a.DAT"), "/logs/a.CSV");
    EXPECT_EQ(csv_path_of("/logs/a.dat"), "/logs/a.CSV");
    EXPECT_EQ(csv_path_of("x"), "CSV");
}

}  // namespace
}  // namespace kavorix::test
