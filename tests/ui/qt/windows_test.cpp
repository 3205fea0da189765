#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "ui/qt/main/qt_windows.h"
#include "ui/qt/open_window.h"
#include "ui/streams/stream0_view.h"

namespace kavorix::test {
namespace {

class QtWindowsTest : public testing::Test {
  protected:
    QtWindowsTest() {
        add_pod(Pod::numbered(3), "7VJA 0F 1.00");
        add_pod(Pod::numbered(7), "8RJA 0F 1.00");
        run_time->Poll.ViewedZav = Pod::numbered(3);
    }

    void add_pod(Pod pod, std::string_view ident) {
        run_time->Link.ZavSelected.add(pod);
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
    QtWindows windows{mirrors, directory.filePath("windows.ini")};
};

TEST_F(QtWindowsTest, Stream0ShowsTheViewedPod) {
    windows.show_stream0(view);
    ASSERT_NE(open_window("frmStrm0"), nullptr);
    EXPECT_EQ(open_window("frmStrm0")->windowTitle(), "Stream 0");
    EXPECT_EQ(run_time->Poll.ViewOpen[ReadingStream], 1);
    EXPECT_EQ(find<QLabel>("lblNum").text(), "03");
    EXPECT_EQ(find<QComboBox>("cboView").count(), 2);
    EXPECT_EQ(find<QTableView>("grdStrm0").model()->rowCount(), 20);
}

TEST_F(QtWindowsTest, Stream0FollowsTheReadings) {
    windows.show_stream0(view);
    run_time->Status[2].Reading[4] = 1.5F;
    run_time->Poll.PollCount = 9;
    view.refresh();
    mirrors.refresh();
    EXPECT_EQ(cell(4, 1), "1.500000");
    EXPECT_EQ(find<QLabel>("lblUpdateNum").text(), "9");
}

TEST_F(QtWindowsTest, Stream0ControlsReachTheRules) {
    windows.show_stream0(view);
    QTest::keyClick(&find<QComboBox>("cboView"), Qt::Key_Down);
    EXPECT_EQ(run_time->Poll.ViewedZav, Pod::at_index(6));
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
        windows.show_stream0(view);
        EXPECT_EQ(run_time->Poll.ViewOpen[ReadingStream], 1);
        close(*open_window("frmStrm0"));
        EXPECT_EQ(open_window("frmStrm0"), nullptr);
        EXPECT_EQ(run_time->Poll.ViewOpen[ReadingStream], 0);
    }
}

TEST_F(QtWindowsTest, Stream0TakesTheSelectionOfTheMomentItIsAskedFor) {
    windows.show_stream0(view);
    run_time->Link.ZavSelected.remove(Pod::numbered(7));
    windows.show_stream0(view);
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
