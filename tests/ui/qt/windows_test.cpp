#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "ui/qt/open_window.h"
#include "ui/qt/qt_windows.h"

namespace kavorix::test {
namespace {

class QtWindowsTest : public testing::Test {
  protected:
    QtWindowsTest() {
        add_pod(2, "7VJA 0F 1.00");
        add_pod(6, "8RJA 0F 1.00");
        run_time->Poll.ViewedZav = 2;
    }

    void add_pod(std::size_t pod, std::string_view ident) {
        run_time->Link.ZavSelected[pod] = 1;
        PodStatus& status = run_time->Status[pod];
        std::copy(ident.begin(), ident.end(), status.Ident.begin());
        status.Channels = status.ChannelCount = 20;
        status.StreamSeen[ReadingStream] = 1;
    }

    template <class Widget>
    Widget& find(const char* name) {
        return *open_window("frmStrm0")->findChild<Widget*>(name);
    }
    QString cell(int row, int column) {
        return find<QTableView>("grdStrm0").model()->index(row, column).data().toString();
    }

    QTemporaryDir directory;
    QtEventLoop loop;
    Mirrors mirrors{loop};
    std::unique_ptr<RunTime> run_time = std::make_unique<RunTime>();
    std::unique_ptr<Configuration> configuration = std::make_unique<Configuration>();
    Stream0View view{*run_time, *configuration};
    QtWindows windows{mirrors, view, directory.filePath("windows.ini")};
};

TEST_F(QtWindowsTest, Stream0ShowsTheViewedPod) {
    windows.show_stream0();
    ASSERT_NE(open_window("frmStrm0"), nullptr);
    EXPECT_EQ(open_window("frmStrm0")->windowTitle(), "Stream 0");
    EXPECT_EQ(run_time->Poll.ViewOpen[ReadingStream], 1);
    EXPECT_EQ(find<QLabel>("lblNum").text(), "03");
    EXPECT_EQ(find<QComboBox>("cboView").count(), 2);
    EXPECT_EQ(find<QTableView>("grdStrm0").model()->rowCount(), 20);
}

TEST_F(QtWindowsTest, Stream0FollowsTheReadings) {
    windows.show_stream0();
    run_time->Status[2].Reading[4] = 1.5F;
    run_time->Poll.PollCount = 9;
    view.refresh();
    mirrors.refresh();
    EXPECT_EQ(cell(4, 1), "1.500000");
    EXPECT_EQ(find<QLabel>("lblUpdateNum").text(), "9");
}

TEST_F(QtWindowsTest, Stream0ControlsReachTheRules) {
    windows.show_stream0();
    QTest::keyClick(&find<QComboBox>("cboView"), Qt::Key_Down);
    EXPECT_EQ(run_time->Poll.ViewedZav, 6);
    find<QPushButton>("cmdMax").click();
    EXPECT_EQ(run_time->Status[6].PeakMax[0], NoPeakMax);
    find<QPushButton>("cmdMin").click();
    EXPECT_EQ(run_time->Status[6].PeakMin[0], NoPeakMin);
    find<QPushButton>("cmdToggle").click();
    mirrors.refresh();
    EXPECT_TRUE(view.multi_view());
    EXPECT_EQ(find<QPushButton>("cmdToggle").text(), "&Single View <--");
    EXPECT_EQ(find<QTableView>("grdStrm0").model()->rowCount(), 40);
}

TEST_F(QtWindowsTest, Stream0IsUnloadedHoweverItIsClosed) {
    const std::function<void(QWidget&)> ways[] = {
        [&](QWidget&) { find<QPushButton>("cmdExit").click(); },
        [](QWidget& window) { window.close(); },
        [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); }};
    for (const auto& close : ways) {
        windows.show_stream0();
        EXPECT_EQ(run_time->Poll.ViewOpen[ReadingStream], 1);
        close(*open_window("frmStrm0"));
        EXPECT_EQ(open_window("frmStrm0"), nullptr);
        EXPECT_EQ(run_time->Poll.ViewOpen[ReadingStream], 0);
    }
}

TEST_F(QtWindowsTest, Stream0TakesTheSelectionOfTheMomentItIsAskedFor) {
    windows.show_stream0();
    run_time->Link.ZavSelected[6] = 0;
    windows.show_stream0();
    EXPECT_EQ(find<QComboBox>("cboView").count(), 1);
}

TEST_F(QtWindowsTest, AboutBoxShowsTheVersionsUntilItIsClosed) {
    QStringList shown;
    loop.call_later(0, [&] {
        QWidget* const box = open_window("frmAbout");
        ASSERT_NE(box, nullptr);
        shown << box->windowTitle();
        for (const char* name : {"lblProgram", "lblModel", "lblVersion", "lblDLLVers"})
            shown << box->findChild<QLabel*>(name)->text();
        box->findChild<QPushButton*>("cmdOK")->click();
    });
    windows.show_about(
        {"About KAVORIX", "KAVORIX", "Model 7260", "Version  0.1.0", "Simulated 1.0"});
    EXPECT_EQ(shown, (QStringList{"About KAVORIX", "KAVORIX", "Model 7260", "Version  0.1.0",
                                  "Simulated 1.0"}));
}

}  // namespace
}  // namespace kavorix::test
