#include "ui/qt/logs/logging_windows.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <set>

#include "platform/files.h"
#include "support/log_rig.h"
#include "support/recording_failures.h"
#include "support/sample_logs.h"
#include "support/scripted_dialogs.h"
#include "support/temporary_directory.h"
#include "ui/qt/logs/path_label.h"
#include "ui/qt/main/qt_windows.h"
#include "ui/qt/open_window.h"

namespace kavorix::test {
namespace {

class LoggingWindowsTest : public testing::Test {
  protected:
    template <class Widget>
    Widget& find(const char* form, const char* name) {
        return *open_window(form)->findChild<Widget*>(name);
    }
    void click(const char* form, const char* name) { find<QAbstractButton>(form, name).click(); }

    TemporaryDirectory directory;
    std::unique_ptr<Files> files = make_host_files();
    QtEventLoop loop;
    Mirrors mirrors{loop};
    ScriptedDialogs dialogs;
    RecordingFailures failures;
    std::unique_ptr<RunTime> run_time = std::make_unique<RunTime>();
    std::unique_ptr<Configuration> configuration = std::make_unique<Configuration>();
    QtWindows windows{mirrors, QString::fromStdString(directory / "windows.ini")};
};

class LogSetupWindow : public LoggingWindowsTest {
  protected:
    LogSetupWindow() {
        configuration->Interface.PollRate = 1500;
        run_time->Link.ZavSelected.add(Pod::numbered(5));
        run_time->Status[6].LogScan = true;
    }
    // Opens the window and runs `work` in it, refreshing between its parts by itself.
    void use(std::int16_t kind, const std::function<void()>& work) {
        LogSetup rules({run_time->Log, run_time->Status, run_time->Link, configuration->Interface,
                        *files, dialogs, failures},
                       kind);
        rules.Form_Load();
        loop.call_later(0, work);
        windows.show_log_setup(rules);
        EXPECT_EQ(open_window("frmLogFile"), nullptr);
    }
    void press(const char* name) {
        click("frmLogFile", name);
        mirrors.refresh();
    }
    QString file_label() { return find<QLabel>("frmLogFile", "lblFileName").text(); }
};

TEST_F(LogSetupWindow, SetsUpTheScanLogOfTheSelectedPods) {
    dialogs.choose(directory / "kiln.DAT");
    use(ScanLog, [&] {
        EXPECT_EQ(open_window("frmLogFile")->windowTitle(), "Scan Log File");
        EXPECT_EQ(file_label(), "Data File : ");
        press("cmdFile");
        EXPECT_EQ(file_label(), QString::fromStdString("Data File : " + directory / "kiln.DAT"));
        QTest::keyClicks(&find<QLineEdit>("frmLogFile", "txtFileComment"), "Kiln 4");
        auto& interval = find<QComboBox>("frmLogFile", "cboInterval");
        EXPECT_EQ(interval.currentText(), "Poll Rate");
        QTest::keyClick(&interval, Qt::Key_Down);
        EXPECT_EQ(interval.currentText(), "15 sec");
        press("cmdOK");
    });
    const LogState& log = run_time->Log;
    EXPECT_EQ(log.ScanFileName, directory / "kiln.DAT");
    EXPECT_EQ(log.ScanComment, "Kiln 4");
    EXPECT_EQ(log.ScanIntervalChoice, 15000);
    EXPECT_EQ(run_time->Status[4].LogScan, 1);
    EXPECT_EQ(run_time->Status[6].LogScan, 0);
    EXPECT_EQ(run_time->Status[4].LogEvents, 0);
}

TEST_F(LogSetupWindow, EventLogHasNoInterval) {
    run_time->Log.EventFileName = "/logs/events.DAT";
    use(EventLog, [&] {
        EXPECT_EQ(open_window("frmLogFile")->windowTitle(), "Event Log File");
        EXPECT_TRUE(find<QComboBox>("frmLogFile", "cboInterval").isHidden());
        EXPECT_TRUE(find<QLabel>("frmLogFile", "lblInterval").isHidden());
        press("cmdClear");
        EXPECT_EQ(file_label(), "Data File : ");
        press("cmdOK");
    });
    EXPECT_EQ(run_time->Log.EventFileName, "");
    EXPECT_EQ(run_time->Status[4].LogEvents, 1);
}

TEST_F(LogSetupWindow, LeavingItChangesNothing) {
    run_time->Log.ScanComment = "before";
    const std::function<void()> ways[] = {
        [&] { press("cmdCancel"); },
        [&] { QTest::keyClick(open_window("frmLogFile"), Qt::Key_Escape); },
        [&] { open_window("frmLogFile")->close(); }};
    for (const auto& leave : ways) {
        use(ScanLog, [&] {
            QTest::keyClicks(&find<QLineEdit>("frmLogFile", "txtFileComment"), " after");
            leave();
        });
        EXPECT_EQ(run_time->Log.ScanComment, "before");
        EXPECT_EQ(run_time->Status[4].LogScan, 0);
    }
}

class ConversionWindow : public LoggingWindowsTest {
  protected:
    void use(const std::function<void()>& work) {
        rules.Form_Load();
        loop.call_later(0, work);
        windows.show_csv_conversion(rules);
        EXPECT_EQ(open_window("frmCSVConv"), nullptr);
        EXPECT_EQ(open_window("frmCSVProg"), nullptr);
    }
    void press(const char* name) {
        click("frmCSVConv", name);
        mirrors.refresh();
    }
    template <class Widget>
    Widget& conv(const char* name) {
        return find<Widget>("frmCSVConv", name);
    }

    // Two scans of two pods, 7S with 10 channels and 7R with 20.
    void write_small_log() {
        LogRig rig(*files);
        rig.run_time.Log.ScanFileName = log_path;
        rig.run_time.Log.ScanComment = "Kiln 4";
        rig.add_pod(3, "7S");
        rig.add_pod(12, "7R");
        rig.channel(3, 2).Label = "Inlet";
        rig.channel(3, 2).Unit = "degC";
        rig.log.Start_Log_File(ScanLog);
        for (const float base : {1.5F, 2.5F}) {
            std::vector<float> values;
            for (int i = 0; i < 20; ++i) values.push_back(base + static_cast<float>(i));
            rig.give(12, values);
            values.resize(10);
            rig.give(3, values);
            rig.write(ScanLog);
        }
        rig.log.Stop_Log_File(ScanLog);
    }
    // Waits for the progress window to show more than nothing, then acts.
    void while_converting(std::function<void()> act) {
        loop.call_later(1, [this, act = std::move(act)] {
            if (!open_window("frmCSVProg") || rules.progress_window.percent() == 0)
                while_converting(act);
            else
                act();
        });
    }
    std::string csv_text() { return read_all(*files, directory / "log.CSV"); }

    const std::string log_path = directory / "log.DAT";
    CsvDialog rules{{*files, loop, dialogs, failures, [this](bool open) {
                         windows.show_csv_progress(rules.progress_window, open);
                     }}};
};

TEST_F(ConversionWindow, ConvertsWhatIsChosen) {
    write_small_log();
    dialogs.choose(log_path);
    use([&] {
        EXPECT_FALSE(conv<QPushButton>("cmdConvert").isEnabled());
        press("cmdOpen");
        EXPECT_EQ(conv<QListWidget>("lstConvert").count(), 2);
        QTest::mouseClick(conv<QListWidget>("lstConvert").viewport(), Qt::LeftButton, {},
                          {10, conv<QListWidget>("lstConvert").sizeHintForRow(0) * 3 / 2});
        mirrors.refresh();
        EXPECT_EQ(conv<QLabel>("lblPod").text(), "Channels of ZAV 12  7R");
        press("cmdRemove");
        EXPECT_EQ(conv<QListWidget>("lstFile").count(), 1);
        QTest::mouseClick(conv<QListWidget>("lstConvert").viewport(), Qt::LeftButton, {}, {10, 5});
        mirrors.refresh();
        EXPECT_TRUE(conv<QCheckBox>("chkChanBot_0").isHidden());
        EXPECT_EQ(conv<QCheckBox>("chkChanTop_1").text(), "2 Inlet");
        press("cmdDeSelectAll");
        EXPECT_FALSE(conv<QPushButton>("cmdConvert").isEnabled());
        press("chkChanTop_1");
        press("chkChanTop_9");
        EXPECT_EQ(conv<QLabel>("lblCount").text(), "2 of at most 252 channels");
        const auto& preview = *conv<QTableView>("grdPreview").model();
        EXPECT_EQ(preview.headerData(4, Qt::Horizontal).toString(), "ZAV3/Ch10");
        EXPECT_EQ(preview.index(3, 3).data().toString(), "3.5");
        press("cmdConvert");
        EXPECT_EQ(conv<QLabel>("lblStatus").text(),
                  QString::fromStdString("2 rows written to " + (directory / "log.CSV")));
        press("cmdClose");
    });
    EXPECT_EQ(csv_text(), '"' + (directory / "log.CSV") +
                              "\"\r\n\"Kiln 4\"\r\n"
                              "\"DATE\",\"TIME\",\"MILLISECOND\",\"ZAV3/Ch2\",\"ZAV3/Ch10\"\r\n"
                              ",,,\"Inlet\",\"\"\r\n,,,\"degC\",\"\"\r\n"
                              "\"05-01-26\",\"08:00:01\",504,2.5,10.5\r\n"
                              "\"05-01-26\",\"08:00:02\",496,3.5,11.5\r\n");
    EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ConversionWindow, DoubleClickMovesAPod) {
    write_small_log();
    dialogs.choose(log_path);
    use([&] {
        press("cmdOpen");
        QTest::mouseDClick(conv<QListWidget>("lstConvert").viewport(), Qt::LeftButton, {}, {10, 5});
        mirrors.refresh();
        EXPECT_EQ(conv<QListWidget>("lstFile").item(0)->text(), "ZAV 3  7S");
        QTest::mouseDClick(conv<QListWidget>("lstFile").viewport(), Qt::LeftButton, {}, {10, 5});
        mirrors.refresh();
        EXPECT_EQ(conv<QListWidget>("lstConvert").count(), 2);
        press("cmdClose");
    });
}

TEST_F(ConversionWindow, ProgressIsShownAndCancelStops) {
    write_sample_scans(*files, log_path, 12U << 20U);
    dialogs.choose(log_path);
    bool seen = false;
    use([&] {
        press("cmdOpen");
        while_converting([&] {
            mirrors.refresh();
            const auto& bar = find<QProgressBar>("frmCSVProg", "picProgress");
            EXPECT_EQ(bar.value(), rules.progress_window.percent());
            EXPECT_EQ(bar.text(), QString::number(bar.value()) + "%");
            EXPECT_FALSE(rules.closed());
            seen = true;
            click("frmCSVProg", "cmdCancel");
        });
        press("cmdConvert");
        EXPECT_TRUE(conv<QLabel>("lblStatus").text().endsWith(", then cancelled"));
        press("cmdClose");
    });
    EXPECT_TRUE(seen);
    EXPECT_LT(rules.progress_window.percent(), 100);
    EXPECT_TRUE(csv_text().ends_with("\r\n"));
}

TEST_F(ConversionWindow, ScreenFollowsWithoutHelpMeanwhile) {
    write_sample_scans(*files, log_path, 12U << 20U);
    dialogs.choose(log_path);
    std::set<QString> shown;
    const std::function<void()> look = [&] {
        if (!open_window("frmCSVProg")) return;
        shown.insert(find<QProgressBar>("frmCSVProg", "picProgress").text());
        loop.block(20);  // longer than a fast machine's conversion between two refreshes
        loop.call_later(0, look);
    };
    use([&] {
        press("cmdOpen");
        while_converting(look);
        press("cmdConvert");
        press("cmdClose");
    });
    EXPECT_GT(shown.size(), 1U) << "the percentage stood still";
}

TEST_F(ConversionWindow, ClosingAWindowStopsTheConversionFirst) {
    write_sample_scans(*files, log_path, 12U << 20U);
    const auto close_dialog = [&] { static_cast<QDialog*>(open_window("frmCSVConv"))->reject(); };
    const auto close_progress = [&] {
        QTest::keyClick(open_window("frmCSVProg"), Qt::Key_Escape);
        rules.cmdClose_Click();
    };
    for (const auto& close : std::vector<std::function<void()>>{close_dialog, close_progress}) {
        if (files->exists(directory / "log.CSV")) dialogs.answer(Answer::Ok);
        dialogs.choose(log_path);
        use([&] {
            press("cmdOpen");
            while_converting([&] {
                close();
                EXPECT_NE(open_window("frmCSVConv"), nullptr);
            });
            press("cmdConvert");
        });
        EXPECT_TRUE(rules.progress_window.cancelled());
        EXPECT_TRUE(rules.closed());
        EXPECT_TRUE(csv_text().ends_with("\r\n"));
    }
}

TEST(PathLabelTest, CutsTheMiddleOfWhatIsTooLong) {
    PathLabel label;
    label.setText("/data/operator/logs/of/the/kiln/in/hall/four/boiler.DAT");
    label.resize(200, 20);
    EXPECT_TRUE(label.shown_text().startsWith("/data"));
    EXPECT_TRUE(label.shown_text().endsWith(".DAT"));
    EXPECT_LE(label.fontMetrics().horizontalAdvance(label.shown_text()), 200);
    label.resize(2000, 20);
    EXPECT_EQ(label.shown_text(), label.text());
}

}  // namespace
}  // namespace kavorix::test
