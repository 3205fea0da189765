#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPrintDialog>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QWheelEvent>
#include <cmath>
#include <set>

#include "graphs/station_graph.h"
#include "platform/virtual_event_loop.h"
#include "support/memory_files.h"
#include "support/recording_failures.h"
#include "support/scripted_dialogs.h"
#include "ui/qt/graph/graph_canvas.h"
#include "ui/qt/graph/graph_setup_dialog.h"
#include "ui/qt/graph/qt_graph.h"
#include "ui/qt/kit/theme.h"

namespace kavorix::test {
namespace {

QWidget* open_window(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == name && window->isVisible()) return window;
    return nullptr;
}

// Hands over to the windows, which are made after the graph.
class LateWindow : public GraphWindow {
  public:
    GraphWindow* window = nullptr;
    void show_graph() override { window->show_graph(); }
    void close_graph() override { window->close_graph(); }
};

// Sixteen channels of pod 3, level lines one above the other unless a test feeds something else.
class QtGraphTest : public testing::Test {
  protected:
    QtGraphTest() {
        late.window = &windows;
        run_time->Link.ZavSelected.add(Pod::numbered(3));
        run_time->Status[2].Channels = 20;
        std::fill_n(run_time->Graph.TrendSelected[2].begin(), 16, true);
        run_time->Graph.Settings.GridLines = false;
        run_time->Graph.Settings.YMaximum = 16;
        run_time->Graph.Settings.YMinimum = -1;
    }
    ~QtGraphTest() override { apply_theme(*qApp, Theme::Light); }

    void view(int minutes = 1) {
        run_time->Graph.Settings.Hours = minutes / 60;
        run_time->Graph.Settings.Minutes = minutes % 60;
        graph.live.view_graph();
        window().resize(1200, 800);
    }
    void feed(int rows, const std::function<float(int row, int channel)>& value) {
        for (int row = 0; row < rows; ++row) {
            std::vector<float> values;
            for (int channel = 0; channel < 16; ++channel) values.push_back(value(row, channel));
            graph.live.WRUpdateData(values);
            time.advance(1000);
        }
        mirrors.refresh();
    }
    void feed_lines(int rows) {
        feed(rows, [](int row, int channel) { return gentle(row, channel); });
    }
    // A line that rises a little, so that its smoothed edge is somewhere full.
    static float gentle(int row, int channel) {
        return static_cast<float>(channel) + static_cast<float>(row % 60) * 0.004F;
    }

    QWidget& window() { return *open_window("frmGraph"); }
    GraphCanvas& canvas() { return *static_cast<GraphCanvas*>(window().findChild<QCustomPlot*>()); }
    template <class Widget>
    Widget& find(const char* name) {
        return *window().findChild<Widget*>(name);
    }
    // The colours within a part of the canvas as it is on the screen.
    std::set<QRgb> colours(const QRect& part) {
        for (int i = 0; i < 3; ++i) QApplication::processEvents();
        const QImage image = canvas().grab(part).toImage();
        std::set<QRgb> found;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) found.insert(image.pixel(x, y) & 0xFFFFFF);
        return found;
    }
    void expect_every_line(const QRect& part, const std::set<int>& but = {}) {
        const auto found = colours(part);
        for (int line = 0; line < 16; ++line)
            EXPECT_EQ(found.count(graph_colour(FirstLineColour + line, graph.page.ground())),
                      but.count(line) == 0 ? 1U : 0U)
                << "line " << line;
    }
    QPoint at_time(double time_s, double value) {
        const PlotFrame& frame = canvas().frame();
        return QPointF(frame.x_at(time_s), frame.y_at(value)).toPoint();
    }
    void wheel(const QPoint& place, int steps, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QWheelEvent event(place, canvas().mapToGlobal(place), {}, {0, steps * 120}, Qt::NoButton,
                          keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&canvas(), &event);
    }
    void drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::mousePress(&canvas(), Qt::LeftButton, keys, from);
        QMouseEvent move(QEvent::MouseMove, to, canvas().mapToGlobal(to), Qt::NoButton,
                         Qt::LeftButton, keys);
        QApplication::sendEvent(&canvas(), &move);
        QTest::mouseRelease(&canvas(), Qt::LeftButton, keys, to);
    }
    const TimeRange& shown_time() { return graph.controls.view().time; }

    QTemporaryDir directory;
    QtEventLoop loop;
    Mirrors mirrors{loop};
    VirtualEventLoop time;
    ScriptedDialogs dialogs;
    MemoryFiles files;
    RecordingFailures failures;
    LateWindow late;
    std::unique_ptr<RunTime> run_time = std::make_unique<RunTime>();
    std::unique_ptr<Configuration> configuration = std::make_unique<Configuration>();
    StationGraph graph{{*run_time, *configuration, time, dialogs, failures, late}};
    WindowMemory memory{directory.filePath("windows.ini")};
    QtGraph windows{{graph, mirrors, dialogs, files, memory}};
};

TEST_F(QtGraphTest, EveryLineAndLegendEntryHasItsColourInBothThemes) {
    for (const Theme theme : {Theme::Light, Theme::Dark}) {
        apply_theme(*qApp, theme);
        view();
        feed_lines(30);
        expect_every_line(canvas().frame().area);
        expect_every_line({0, 0, canvas().width(), canvas().height() / 5});
        EXPECT_TRUE(colours({0, 0, 4, 4})
                        .count(graph_ground(theme == Theme::Dark ? Ground::Dark : Ground::Light)));
        dialogs.answer(Answer::Ok);
        graph.live.unload_request();
    }
}

TEST_F(QtGraphTest, TheOpenGraphFollowsAChangeOfTheme) {
    view();
    feed_lines(30);
    apply_theme(*qApp, Theme::Dark);
    mirrors.refresh();
    EXPECT_EQ(graph.page.ground(), Ground::Dark);
    expect_every_line(canvas().frame().area);
}

TEST_F(QtGraphTest, DenseLinesHaveTheirColoursAndSpikes) {
    view(239);
    // A single row of channel 3 reaches above all other lines.
    feed(14400, [](int row, int channel) {
        return row == 7000 && channel == 3 ? 15.7F : gentle(row, channel);
    });
    expect_every_line(canvas().frame().area);
    const QRect above(at_time(60, 15.6), at_time(14300, 15.3));
    EXPECT_EQ(colours(above).count(graph_colour(FirstLineColour + 3, Ground::Light)), 1U);
    // It moves on with the rows.
    feed_lines(2000);
    EXPECT_EQ(colours(above).count(graph_colour(FirstLineColour + 3, Ground::Light)), 1U);
    feed_lines(6000);
    EXPECT_EQ(colours(above).count(graph_colour(FirstLineColour + 3, Ground::Light)), 0U);
}

TEST_F(QtGraphTest, BarsHaveTheirColours) {
    run_time->Graph.Settings.Type = BarGraph;
    view();
    feed(1, [](int, int channel) { return channel % 2 == 0 ? 20.0F : 8.0F; });
    expect_every_line(canvas().frame().area);
    EXPECT_FALSE(find<QPushButton>("chkFollow").isEnabled());
}

TEST_F(QtGraphTest, AreasStandAtTheirFractionsWhateverTheSize) {
    view();
    feed_lines(5);
    for (const QSize size : {QSize(1200, 800), QSize(700, 500)}) {
        window().resize(size);
        mirrors.refresh();
        QApplication::processEvents();
        const QRect& area = canvas().frame().area;
        EXPECT_NEAR(area.left(), 0.12 * canvas().width(), 1);
        EXPECT_NEAR(area.left() + area.width(), 0.96 * canvas().width(), 1);
        EXPECT_NEAR(area.top(), 0.27 * canvas().height(), 1);
        EXPECT_NEAR(area.top() + area.height(), 0.92 * canvas().height(), 1);
    }
}

TEST_F(QtGraphTest, AClickIntoTheLegendHidesALine) {
    view();
    feed_lines(30);
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, canvas().legend_entry_centre(5));
    expect_every_line(canvas().frame().area, {5});
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, canvas().legend_entry_centre(5));
    expect_every_line(canvas().frame().area);
}

TEST_F(QtGraphTest, TheWheelZoomsAroundThePointer) {
    view();
    feed_lines(100);
    wheel(at_time(70, 5), 2);
    EXPECT_NEAR(shown_time().length(), 60 * 0.64, 1e-6);
    EXPECT_NEAR(at_time(70, 5).x(), canvas().frame().x_at(70), 1.5);
    const ValueRange before = graph.controls.view().values;
    wheel(at_time(70, 5), 1, Qt::ControlModifier);
    EXPECT_NEAR(graph.controls.view().values.length(), before.length() * 0.8, 1e-6);
    wheel({10, canvas().frame().area.center().y()}, -1);
    EXPECT_NEAR(graph.controls.view().values.length(), before.length(), 1e-6);
}

TEST_F(QtGraphTest, DraggingPansAndFFollowsAgain) {
    view();
    feed_lines(200);
    wheel(at_time(150, 5), 3);
    const TimeRange before = shown_time();
    drag(at_time(150, 5), at_time(155, 5));
    mirrors.refresh();
    EXPECT_NEAR(shown_time().begin, before.begin - 5, 0.2);
    EXPECT_FALSE(find<QPushButton>("chkFollow").isChecked());
    QTest::keyClick(&canvas(), Qt::Key_F);
    mirrors.refresh();
    EXPECT_TRUE(find<QPushButton>("chkFollow").isChecked());
    EXPECT_EQ(shown_time().end, 199);
}

TEST_F(QtGraphTest, ShiftAndDraggingShowsAnArea) {
    view();
    feed_lines(100);
    drag(at_time(50, 12), at_time(70, 4), Qt::ShiftModifier);
    EXPECT_NEAR(shown_time().begin, 50, 0.2);
    EXPECT_NEAR(shown_time().end, 70, 0.2);
    EXPECT_NEAR(graph.controls.view().values.high, 12, 0.1);
    EXPECT_NEAR(graph.controls.view().values.low, 4, 0.1);
    QTest::mouseDClick(&canvas(), Qt::LeftButton, {}, at_time(60, 8));
    EXPECT_EQ(shown_time(), (TimeRange{39, 99}));
}

TEST_F(QtGraphTest, CursorsAreDraggedAndReadEveryChannel) {
    view();
    feed(60, [](int row, int channel) { return static_cast<float>(row == 30 ? 9 : channel); });
    find<QPushButton>("chkCursors").click();
    mirrors.refresh();
    auto& table = find<QTableView>("grdCursors");
    ASSERT_TRUE(table.isVisible());
    drag(at_time(graph.controls.cursors().time(Cursor::A), 3), at_time(30, 3));
    mirrors.refresh();
    EXPECT_EQ(graph.controls.cursors().time(Cursor::A), 30);
    EXPECT_EQ(table.model()->rowCount(), 17);
    EXPECT_EQ(table.model()->index(1, 1).data().toString(), "9");
    EXPECT_EQ(table.model()->index(4, 3).data().toString(), "-6");
    QTest::keyClick(&canvas(), Qt::Key_Right);
    EXPECT_EQ(graph.controls.cursors().time(Cursor::A), 31);
}

TEST_F(QtGraphTest, PauseHoldsThePicture) {
    view();
    feed_lines(30);
    find<QPushButton>("chkPause").click();
    feed_lines(100);
    EXPECT_EQ(find<QLabel>("lblStatus").text(), "Paused, 100 rows behind");
    EXPECT_EQ(shown_time(), (TimeRange{0, 60}));
    find<QPushButton>("chkPause").click();
    EXPECT_EQ(shown_time(), (TimeRange{69, 129}));
}

TEST_F(QtGraphTest, TheExportWritesEveryFormat) {
    view();
    feed_lines(10);
    struct Case {
        const char* path;
        const char* beginning;
    };
    for (const Case& c :
         {Case{"/graph.png", "\x89PNG"}, Case{"/graph.svg", "<?xml"}, Case{"/graph.PDF", "%PDF"},
          Case{"/graph.csv", "Time (s),Date,Clock,ZAV03"}}) {
        dialogs.choose(c.path);
        find<QPushButton>("cmdExport").click();
        EXPECT_EQ(files.content(c.path).substr(0, std::strlen(c.beginning)), c.beginning);
    }
    EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(QtGraphTest, APictureOfADarkScreenIsOnWhitePaper) {
    apply_theme(*qApp, Theme::Dark);
    view();
    feed_lines(30);
    dialogs.choose("/graph.png");
    find<QPushButton>("cmdExport").click();
    QImage picture;
    const std::string& bytes = files.content("/graph.png");
    ASSERT_TRUE(picture.loadFromData(reinterpret_cast<const uchar*>(bytes.data()),
                                     static_cast<int>(bytes.size())));
    EXPECT_EQ(picture.size(), canvas().size() * 2);
    EXPECT_EQ(picture.pixelColor(2, 2), Qt::white);
    EXPECT_EQ(graph.page.ground(), Ground::Dark);
    expect_every_line(canvas().frame().area);
}

TEST_F(QtGraphTest, PrintsThePageThroughTheSystemsDialog) {
    const QString paper = directory.filePath("page.pdf");
    view();
    feed_lines(60);
    loop.call_later(0, [&] {
        auto* const dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QLineEdit*>("filename")->setText(paper);
        dialog->accept();
    });
    find<QPushButton>("cmdPrint").click();
    QFile file(paper);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QByteArray page = file.readAll();
    EXPECT_TRUE(page.startsWith("%PDF"));
    EXPECT_GT(page.size(), 5000) << "lines as vectors";
    EXPECT_EQ(dialogs.boxes.size(), 0U);
}

TEST_F(QtGraphTest, AnExportThatFailsIsTold) {
    view();
    feed_lines(2);
    dialogs.choose("/graph.bmp");
    find<QPushButton>("cmdExport").click();
    EXPECT_EQ(
        dialogs.take_boxes(),
        (std::vector<ShownBox>{{"A graph is saved as .png, .svg, .pdf or .csv.", 48, "KAVORIX"}}));
}

TEST_F(QtGraphTest, CopyPutsPictureAndValuesOnTheClipboard) {
    view();
    feed_lines(2);
    find<QPushButton>("cmdCopy").click();
    const QMimeData* const data = QApplication::clipboard()->mimeData();
    EXPECT_TRUE(data->hasImage());
    EXPECT_TRUE(data->text().startsWith("Time (s),Date,Clock,ZAV03 Chan01,"));
}

TEST_F(QtGraphTest, HoweverATrendIsClosedItAsksFirst) {
    const std::function<void()> ways[] = {[&] { find<QPushButton>("cmdExit").click(); },
                                          [&] { window().close(); },
                                          [&] { QTest::keyClick(&window(), Qt::Key_Escape); }};
    for (const auto& close : ways) {
        view();
        dialogs.answer(Answer::Cancel);
        close();
        ASSERT_NE(open_window("frmGraph"), nullptr);
        EXPECT_EQ(run_time->Graph.TrendRunning, 1);
        dialogs.answer(Answer::Ok);
        close();
        EXPECT_EQ(open_window("frmGraph"), nullptr);
        EXPECT_EQ(run_time->Graph.TrendRunning, 0);
    }
    EXPECT_EQ(dialogs.boxes.size(), 6U);
}

TEST_F(QtGraphTest, ASecondGraphStartsEmpty) {
    view(239);
    feed_lines(5000);
    dialogs.answer(Answer::Ok);
    window().close();
    view(239);
    feed(100, [](int, int) { return -5.0F; });
    for (const QRgb colour : colours(canvas().frame().area))
        EXPECT_NE(colour, graph_colour(FirstLineColour + 9, Ground::Light));
}

// Runs `steps` while the set-up dialog is open, then closes it.
class SetupDialogTest : public QtGraphTest {
  protected:
    void with_dialog(const std::function<void(QWidget&)>& steps) {
        graph.setup.Form_Load();
        loop.call_later(0, [&] {
            QWidget* const dialog = open_window("frmQCSetup");
            ASSERT_NE(dialog, nullptr);
            steps(*dialog);
            if (QWidget* const still = open_window("frmQCSetup"))
                static_cast<QDialog*>(still)->reject();
        });
        show_graph_setup_dialog(graph.setup, mirrors, nullptr);
    }
    template <class Widget>
    static Widget& in(QWidget& dialog, const char* name) {
        return *dialog.findChild<Widget*>(name);
    }
};

TEST_F(SetupDialogTest, ShowsAndTakesTheSettings) {
    with_dialog([&](QWidget& dialog) {
        EXPECT_TRUE(in<QCheckBox>(dialog, "chkChan_15").isChecked());
        EXPECT_FALSE(in<QCheckBox>(dialog, "chkChan_16").isChecked());
        EXPECT_TRUE(in<QCheckBox>(dialog, "chkChan_20").isHidden());
        EXPECT_EQ(in<QGroupBox>(dialog, "frmChan").title(),
                  "Channels on the graph, 16 at most: 16");
        in<QCheckBox>(dialog, "chkChan_0").click();
        in<QLineEdit>(dialog, "txtTitle").setText("Kiln");
        in<QAbstractSpinBox>(dialog, "spinMinutes").stepBy(-2);
        mirrors.refresh();
        EXPECT_EQ(in<QGroupBox>(dialog, "frmChan").title(),
                  "Channels on the graph, 16 at most: 15");
        EXPECT_EQ(in<QLineEdit>(dialog, "txtMinutes").text(), "59");
        in<QPushButton>(dialog, "cmdOK").click();
        EXPECT_EQ(open_window("frmQCSetup"), nullptr);
    });
    EXPECT_EQ(run_time->Graph.Settings.Title, "Kiln");
    EXPECT_EQ(run_time->Graph.Settings.Minutes, 59);
    EXPECT_EQ(run_time->Graph.TrendSelected[2][0], 0);
    EXPECT_EQ(run_time->Graph.GraphsSetUp, 1);
}

TEST_F(SetupDialogTest, StaysOpenWhenTheSettingsAreRefused) {
    with_dialog([&](QWidget& dialog) {
        in<QLineEdit>(dialog, "txtPosVal").setText("-1");
        in<QPushButton>(dialog, "cmdOK").click();
        EXPECT_NE(open_window("frmQCSetup"), nullptr);
    });
    ASSERT_EQ(dialogs.boxes.size(), 1U);
    EXPECT_EQ(dialogs.boxes[0].text, "Y Axis Range ERROR:  + Val must be GREATER than - Val");
    EXPECT_EQ(run_time->Graph.Settings.YMaximum, 16);
}

TEST_F(SetupDialogTest, BarsNeedNoTime) {
    with_dialog([&](QWidget& dialog) {
        in<QAbstractButton>(dialog, "optBar").click();
        mirrors.refresh();
        EXPECT_FALSE(in<QLineEdit>(dialog, "txtHours").isEnabled());
        EXPECT_FALSE(in<QCheckBox>(dialog, "chkGridLines").isEnabled());
        EXPECT_EQ(in<QLineEdit>(dialog, "txtTitle").text(), "Bar Graph");
    });
}

}  // namespace
}  // namespace kavorix::test
