#include "ui/qt/main/main_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPaintEvent>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

#include "support/ui_rig.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/status_panel.h"
#include "ui/qt/main/interface_icon.h"
#include "ui/qt/main/pod_display.h"

namespace kavorix::test {
namespace {

using Calls = std::vector<std::string>;

// The window over the rules of a station with pods 3 and 28; commands are noted, not carried out.
class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() {
        rig.station({{3, "7VJA 0F 1.00"}, {28, "7VJA 0F 1.00"}});
        for (const CommandRow& row : command_rows())
            rig.main_window.on(row.id, [this, id = row.id] {
                calls.push_back("command " + std::to_string(static_cast<int>(id)));
                if (id == Command::Trigger && on_trigger) on_trigger();
            });
        rig.click({28});
        open();
    }

    void open() {
        window = std::make_unique<QtMainWindow>(
            rig.main_window, [this](const std::string& path) { calls.push_back("open " + path); },
            mirrors, directory.filePath("windows.ini"));
        window->show();
        QApplication::setActiveWindow(window.get());
    }

    static std::string call(Command command) {
        return "command " + std::to_string(static_cast<int>(command));
    }
    static Calls all_buttons() {
        Calls all;
        for (const ButtonRow& row : buttons()) all.push_back(call(row.id));
        return all;
    }
    std::vector<int> selected() const { return pods_with(rig.run_time.Link.ZavSelected); }
    PodStatus& status(int pod) { return rig.status(pod); }

    template <class Widget>
    Widget& find(const QString& name) {
        return *window->findChild<Widget*>(name);
    }
    PodDisplay& pods() { return find<PodDisplay>("podDisplay"); }
    void click_pod(int pod) {
        QTest::mouseClick(&pods(), Qt::LeftButton, {},
                          pods().geometry_now().tile(pod).center().toPoint());
    }

    QTemporaryDir directory;
    QtEventLoop loop;
    Mirrors mirrors{loop};
    UiRig rig;
    Calls calls;
    std::function<void()> on_trigger;
    std::unique_ptr<QtMainWindow> window;
};

TEST_F(MainWindowTest, ButtonsReachTheirCommandsByMouseAndByAccelerator) {
    for (const ButtonRow& row : buttons())
        QTest::mouseClick(&find<QPushButton>(to_qt(row.name)), Qt::LeftButton);
    EXPECT_EQ(calls, all_buttons());
    calls.clear();
    for (const Qt::Key key :
         {Qt::Key_T, Qt::Key_H, Qt::Key_R, Qt::Key_N, Qt::Key_D, Qt::Key_S, Qt::Key_E}) {
        const std::size_t before = calls.size();
        QTest::keyClick(window.get(), key, Qt::AltModifier);
        loop.wait_until([&] { return calls.size() > before; });  // it is seen going down first
    }
    EXPECT_EQ(calls, all_buttons());
}

TEST_F(MainWindowTest, AcceleratorSharedWithAMenuIsTheButtonsWhileItCanBePressed) {
    for (int i = 0; i < 3; ++i) QTest::keyClick(window.get(), Qt::Key_H, Qt::AltModifier);
    EXPECT_EQ(calls, Calls(3, call(Command::Halt)));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    rig.click({28});  // nothing is selected any more
    mirrors.refresh();
    QTest::keyClick(window.get(), Qt::Key_H, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(QApplication::activePopupWidget()->objectName(), "mnuHelp");
    QApplication::activePopupWidget()->close();
}

TEST_F(MainWindowTest, FilesThatWereUsedCanBeOpenedAgain) {
    const QString cfg = directory.filePath("kiln & oven.CFG");
    for (const QString& path : {directory.filePath("a.CFG"), cfg})
        QFile(path).open(QFile::WriteOnly);
    for (const char* name : {"gone.CFG", "kiln & oven.CFG", "a.CFG", "kiln & oven.CFG"})
        window->note_recent(directory.filePath(name).toStdString());
    open();  // remembered
    find<QMenu>("mnuConfig").aboutToShow();
    const QList<QAction*> actions = find<QMenu>("mnuRecent").actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->text(), "&1  kiln && oven.CFG");
    EXPECT_EQ(actions[1]->text(), "&2  a.CFG");
    EXPECT_TRUE(find<QMenu>("mnuRecent").isEnabled());
    actions[0]->trigger();
    loop.wait_until([&] { return !calls.empty(); });
    EXPECT_EQ(calls, Calls{"open " + cfg.toStdString()});
}

TEST_F(MainWindowTest, RecentFilesAreThereWheneverAFileCanBeOpened) {
    QFile(directory.filePath("a.CFG")).open(QFile::WriteOnly);
    window->note_recent(directory.filePath("a.CFG").toStdString());
    for (const bool enabled : {false, true}) {
        rig.run_time.Log.ScanLogging = !enabled;
        find<QMenu>("mnuConfig").aboutToShow();
        EXPECT_EQ(find<QMenu>("mnuRecent").menuAction()->isEnabled(), enabled);
    }
}

TEST_F(MainWindowTest, TakesConfigurationsAndLogsThatAreDropped) {
    const auto drop = [&](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QApplication::sendEvent(window.get(), &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &event);
        return true;
    };
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a.TXT")}));
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a.CFG"), QUrl::fromLocalFile("/b.CFG")}));
    EXPECT_FALSE(drop({QUrl("http://host/a.CFG")}));
    EXPECT_TRUE(drop({QUrl::fromLocalFile("/a.cfg")}));
    EXPECT_TRUE(drop({QUrl::fromLocalFile("/b.DAT")}));
    loop.wait_until([&] { return calls.size() == 2; });
    EXPECT_EQ(calls, (Calls{"open /a.cfg", "open /b.DAT"}));
}

TEST_F(MainWindowTest, APodHasAMenuOfItsOwn) {
    const QPoint place = pods().geometry_now().tile(2).center().toPoint();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, pods().mapToGlobal(place));
    QApplication::sendEvent(&pods(), &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QStringList items;
    for (const QAction* action : menu->actions()) items << action->text();
    menu->close();
    EXPECT_EQ(items.join(u'|').toStdString(),
              "&Trigger|&Halt||&ZAV Setup...|&Transmit Config|Default &Cont Scan||Stream &0...|"
              "Stream &1...|Stream &2...|Stream &3...|View &Status...");
    EXPECT_EQ(selected(), std::vector{3});
}

TEST_F(MainWindowTest, SaysOfAPodThatItHasSomethingToBeTransmitted) {
    rig.run_time.Link.NotTransmitted.add(Pod::numbered(3));
    mirrors.refresh();
    EXPECT_EQ(pods().spoken_name(2), "ZAV 03, 7V, not selected, configuration not transmitted");
}

TEST_F(MainWindowTest, PodsAndInterfaceAreSelectedByMouseAndKeyboard) {
    click_pod(2);
    click_pod(27);
    click_pod(49);  // an empty position
    find<InterfaceIcon>("img_4A").click();
    EXPECT_EQ(selected(), std::vector{3});
    EXPECT_TRUE(rig.run_time.Link.InterfaceSelected);
    // From the corner at pod 50: to pod 3 by way of the other strip, pod 28 below it.
    pods().setFocus();
    for (const auto key : {Qt::Key_Home, Qt::Key_Right, Qt::Key_Right, Qt::Key_Space, Qt::Key_Down,
                           Qt::Key_Space, Qt::Key_End, Qt::Key_Space})
        QTest::keyClick(&pods(), key);
    EXPECT_EQ(selected(), std::vector{28});
}

TEST_F(MainWindowTest, PressMovedOffThePodIsNoClick) {
    const PodGeometry geometry = pods().geometry_now();
    QTest::mousePress(&pods(), Qt::LeftButton, {}, geometry.tile(2).center().toPoint());
    QTest::mouseRelease(&pods(), Qt::LeftButton, {}, geometry.tile(3).center().toPoint());
    EXPECT_EQ(selected(), std::vector{28});
}

TEST_F(MainWindowTest, PanelsAnswerDoubleClicks) {
    rig.run_time.Reports.LastFault = Fault::Pod;
    QTest::mouseDClick(&find<StatusPanel>("pnlErr"), Qt::LeftButton);
    EXPECT_EQ(rig.run_time.Reports.LastFault, Fault::None);
    QTest::mouseDClick(&find<StatusPanel>("pnlButton_3"), Qt::LeftButton);
    EXPECT_EQ(calls, Calls{call(Command::ViewStream3)});
}

QAction* action(QWidget& window, const char* name) {
    return window.findChild<QAction*>(name);
}

TEST_F(MainWindowTest, MenuBarIsTheTable) {
    QStringList shown;
    for (const QAction* menu : window->menuBar()->actions()) shown << menu->text();
    EXPECT_EQ(shown, (QStringList{"&Config", "&Operate", "&View", "&Logging", "&Graph", "O&ptions",
                                  "&Utilities", "&Help"}));
    QStringList operate;
    for (const QAction* item : find<QMenu>("mnuOperate").actions())
        operate << (item->isSeparator() ? "-" : item->text());
    EXPECT_EQ(operate,
              (QStringList{"&Trigger", "&Halt", "-", "&Clear Event Counter...", "Event Capture O&N",
                           "Event Capture O&FF", "-", "T&x Command..."}));
}

TEST_F(MainWindowTest, EveryMenuItemRunsItsCommand) {
    LogState& log = rig.run_time.Log;
    for (const CommandRow& row : command_rows()) {
        if (row.name.empty()) continue;
        // In a state in which it can be used.
        const bool stops = row.id >= Command::StopScanLog && row.id <= Command::StopBothLogs;
        log.ScanLogging = log.EventLogging = stops;
        log.ScanFileName = log.EventFileName = "a.DAT";
        rig.run_time.Graph.GraphsSetUp = true;
        rig.run_time.Status[Pod::numbered(28)].Ident[0] = '8';
        rig.run_time.Status[Pod::numbered(28)].Ident[1] = 'R';
        mirrors.refresh();
        calls.clear();
        QAction* const item = action(*window, std::string(row.name).c_str());
        ASSERT_NE(item, nullptr) << row.name;
        EXPECT_EQ(item->toolTip().toStdString(), row.tip);
        item->trigger();
        EXPECT_EQ(calls, Calls{call(row.id)}) << row.name;
    }
}

TEST_F(MainWindowTest, MenuFollowsTheStationWhenItOpens) {
    rig.click({28, 3});
    rig.run_time.Options.TransmitReminder = false;
    rig.run_time.Link.OperationsEnabled = false;
    emit find<QMenu>("mnuOperate").aboutToShow();
    EXPECT_FALSE(action(*window, "mnuOperateItem(4)")->isEnabled());
    EXPECT_FALSE(action(*window, "mnuTransmitRem")->isChecked());
    EXPECT_FALSE(find<QMenu>("mnuLogging").menuAction()->isEnabled());
}

TEST_F(MainWindowTest, ShowsWhatIsKnown) {
    rig.configuration.ConfigFileName = "/plant/Kiln.CFG";
    rig.message_line.DispMsg(" Configuration(s) Deleted", Severity::Progress);
    rig.run_time.Reports.LastFault = Fault::Receive;
    rig.run_time.Poll.PollStarted = true;
    rig.run_time.Poll.PollCount = 17;
    rig.run_time.Link.InterfaceSelected = true;
    rig.click({28});
    status(3).Removed = true;
    mirrors.refresh();
    EXPECT_EQ(window->windowTitle(), "KAVORIXER - Kiln.CFG");
    EXPECT_EQ(find<StatusPanel>("lblMsg").text(), "Configuration(s) Deleted");
    EXPECT_EQ(find<StatusPanel>("pnlErr").accessibleName(), "Error: Rx ERROR");
    EXPECT_EQ(find<StatusPanel>("pnlPollCnt").text(), "17");
    EXPECT_EQ(find<StatusPanel>("pnlButton_1").text(), "Stream 1");
    EXPECT_FALSE(find<QPushButton>("cmdTrig").isEnabled());
    EXPECT_EQ(find<InterfaceIcon>("img_4A").accessibleName(), "Interface card at C800, selected");
    EXPECT_EQ(pods().spoken_name(2), "ZAV 03, 7V, in error");
}

TEST_F(MainWindowTest, WindowGrowsAndShrinksByTheIndicatorRows) {
    const int before = window->height();
    rig.run_time.Options.Expanded = true;
    mirrors.refresh();
    EXPECT_TRUE(pods().expanded());
    EXPECT_GT(window->height(), before + 100);
    EXPECT_LE(window->height(), 720);
    rig.run_time.Options.Expanded = false;
    mirrors.refresh();
    EXPECT_EQ(window->height(), before);
}

// Notes what is painted.
class PaintWatch : public QObject {
  public:
    QRegion painted;

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

TEST_F(MainWindowTest, OnlyThePodThatChangedIsPaintedAnew) {
    loop.process_events(20);
    PaintWatch watch;
    pods().installEventFilter(&watch);
    mirrors.refresh();
    loop.process_events(20);
    EXPECT_TRUE(watch.painted.isEmpty());
    status(3).DataArrived = true;
    mirrors.refresh();
    loop.process_events(20);
    const QRect tile = pods().geometry_now().tile(2).toAlignedRect();
    EXPECT_TRUE(watch.painted.intersects(tile));
    EXPECT_TRUE(tile.adjusted(-2, -2, 2, 2).contains(watch.painted.boundingRect()));
}

TEST_F(MainWindowTest, ClosingAsksAlsoWhileAHandlerWaits) {
    bool asked = false;
    on_trigger = [&] {
        loop.call_later(0, [&] {
            rig.dialogs.answer(Answer::Cancel);
            EXPECT_FALSE(window->close());
            asked = true;
        });
        loop.wait_until([&] { return asked; });
    };
    loop.call_later(0, [&] { find<QPushButton>("cmdTrig").click(); });
    loop.wait_until([&] { return asked; });
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(rig.dialogs.boxes.back().text, "Are you sure you wish to Exit KAVORIX");
}

TEST_F(MainWindowTest, EndOfTheProgramLeavesRunFromWithinAClick) {
    on_trigger = [] { throw ProgramEnded{3}; };
    loop.call_later(0, [&] { find<QPushButton>("cmdTrig").click(); });
    EXPECT_THROW(loop.run(), ProgramEnded);
}

TEST_F(MainWindowTest, SizeAndPlaceAreRemembered) {
    window->resize(1400, 700);
    window.reset();
    open();
    EXPECT_EQ(window->size(), QSize(1400, 700));
}

TEST_F(MainWindowTest, EveryControlHasANameAndATip) {
    for (const QWidget* widget : window->centralWidget()->findChildren<QWidget*>()) {
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        // The pods have tips of their own.
        EXPECT_TRUE(widget == &pods() || !widget->toolTip().isEmpty())
            << widget->objectName().toStdString();
    }
}

TEST_F(MainWindowTest, PodsHaveTips) {
    const auto tip_at = [&](int pod) {
        const QPoint place = pods().geometry_now().tile(pod).center().toPoint();
        QHelpEvent event(QEvent::ToolTip, place, pods().mapToGlobal(place));
        QApplication::sendEvent(&pods(), &event);
        return QToolTip::text();
    };
    EXPECT_EQ(tip_at(27), "ZAV 28\n7VJA 0F 1.00\n7V Universal ZAV");
    EXPECT_EQ(tip_at(30), "ZAV 31\nNo pod found here");
}

TEST_F(MainWindowTest, TabGoesThroughTheControlsInReadingOrder) {
    find<InterfaceIcon>("img_4A").setFocus();
    QStringList order;
    for (int i = 0; i < 9; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, (QStringList{"img_4A", "podDisplay", "cmdTrig", "cmdHalt", "cmdTransmit",
                                  "cmdConfig", "cmdDefault", "cmdSelectAll", "cmdClear"}));
}

TEST_F(MainWindowTest, ScreenReadersSeeThePods) {
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&pods());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), MaxZavs);
    status(28).DataArrived = true;
    mirrors.refresh();
    QAccessibleInterface* const pod = list->child(27);
    EXPECT_EQ(pod->text(QAccessible::Name), "ZAV 28, 7V, selected, data arrived");
    EXPECT_TRUE(pod->state().selected);
    EXPECT_EQ(list->indexOfChild(pod), 27);
    EXPECT_EQ(list->childAt(pod->rect().center().x(), pod->rect().center().y()), pod);
    EXPECT_FALSE(list->child(2)->state().selected);
    EXPECT_TRUE(list->child(3)->state().disabled);
    pod->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(selected(), std::vector<int>{});
}

}  // namespace
}  // namespace kavorix::test
