#include "ui/qt/main_window.h"

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
#include <stdexcept>

#include "base/text.h"
#include "base/trap.h"
#include "ui/qt/interface_icon.h"
#include "ui/qt/pod_display.h"
#include "ui/qt/status_panel.h"

namespace kavorix::test {
namespace {

using Calls = std::vector<std::string>;

class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() {
        fill_menu_captions(screen);
        for (int i = 0; i < 25; ++i) {
            screen.picZAVNum1[static_cast<std::size_t>(i)] = two_digits(i + 1);
            screen.picZAVNum2[static_cast<std::size_t>(i)] = two_digits(i + 26);
        }
        show_pod(2, Picture::img1ZAV);
        show_pod(27, Picture::imgZAV_D);
        screen.img_4A = {Picture::img14A, true, "Interface card at C800"};
        open();
    }

    void show_pod(std::size_t pod, Picture picture) {
        screen.img_ZAV[pod] = {picture, true, "ZAV " + two_digits(static_cast<int>(pod) + 1)};
        screen.lblZAVType[pod] = {"7V", Colour::Black, Colour::White};
    }

    void open() {
        window = std::make_unique<QtMainWindow>(screen, handlers(), mirrors,
                                                directory.filePath("windows.ini"));
        window->show();
        QApplication::setActiveWindow(window.get());
    }

    MainWindowHandlers handlers() {
        const auto note = [this](const char* name) {
            return [this, name] { calls.emplace_back(name); };
        };
        const auto note_index = [this](const char* name) {
            return
                [this, name](int index) { calls.push_back(name + (' ' + std::to_string(index))); };
        };
        MainWindowHandlers all;
        all.run = [this](Command command) {
            calls.push_back("run " + std::to_string(static_cast<int>(command)));
        };
        all.cmdTrig_Click = [this] {
            calls.emplace_back("cmdTrig");
            if (on_trigger) on_trigger();
        };
        all.cmdHalt_Click = note("cmdHalt");
        all.cmdTransmit_Click = note("cmdTransmit");
        all.cmdConfig_Click = note("cmdConfig");
        all.cmdDefault_Click = note("cmdDefault");
        all.cmdSelectAll_Click = note("cmdSelectAll");
        all.cmdClear_Click = note("cmdClear");
        all.img_ZAV_Click = note_index("img_ZAV");
        all.select_for_menu = note_index("menu");
        all.open = [this](const std::string& path) { calls.push_back("open " + path); };
        all.img_4A_Click = note("img_4A");
        all.pnlErr_DblClick = note("pnlErr");
        all.pnlButton_DblClick = note_index("pnlButton");
        all.unload_request = note("unload_request");
        return all;
    }

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
    MainScreen screen;
    Calls calls;
    std::function<void()> on_trigger;
    std::unique_ptr<QtMainWindow> window;
};

TEST_F(MainWindowTest, ButtonsReachTheirHandlers) {
    Calls names;
    for (const char* name : {"cmdTrig", "cmdHalt", "cmdTransmit", "cmdConfig", "cmdDefault",
                             "cmdSelectAll", "cmdClear"}) {
        QTest::mouseClick(&find<QPushButton>(name), Qt::LeftButton);
        names.emplace_back(name);
    }
    EXPECT_EQ(calls, names);
}

TEST_F(MainWindowTest, AcceleratorsReachTheButtons) {
    const Calls all = {"cmdTrig",    "cmdTransmit",  "cmdConfig",
                       "cmdDefault", "cmdSelectAll", "cmdClear"};
    const Qt::Key keys[] = {Qt::Key_T, Qt::Key_R, Qt::Key_N, Qt::Key_D, Qt::Key_S, Qt::Key_E};
    for (std::size_t i = 0; i < all.size(); ++i) {
        QTest::keyClick(window.get(), keys[i], Qt::AltModifier);
        loop.wait_until([&] { return calls.size() > i; });  // the button is seen going down first
    }
    EXPECT_EQ(calls, all);
}

TEST_F(MainWindowTest, AcceleratorSharedWithAMenuIsTheButtonsWhileItCanBePressed) {
    for (int i = 0; i < 3; ++i) QTest::keyClick(window.get(), Qt::Key_H, Qt::AltModifier);
    EXPECT_EQ(calls, (Calls{"cmdHalt", "cmdHalt", "cmdHalt"}));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    screen.cmdHalt.enabled = false;
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
    screen.mnuConfigItem[3].enabled = true;
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
        screen.mnuConfigItem[3].enabled = enabled;
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
    EXPECT_EQ(calls, Calls{"menu 2"});
}

TEST_F(MainWindowTest, SaysOfAPodThatItHasSomethingToBeTransmitted) {
    screen.img_ZAV[2].differs = true;
    mirrors.refresh();
    EXPECT_EQ(pods().spoken_name(2), "ZAV 03, 7V, not selected, configuration not transmitted");
}

TEST_F(MainWindowTest, PodsAndInterfaceReachTheirHandlers) {
    click_pod(2);
    click_pod(27);
    click_pod(49);  // an empty position: the rules decide
    find<InterfaceIcon>("img_4A").click();
    EXPECT_EQ(calls, (Calls{"img_ZAV 2", "img_ZAV 27", "img_ZAV 49", "img_4A"}));
}

TEST_F(MainWindowTest, PressMovedOffThePodIsNoClick) {
    const PodGeometry geometry = pods().geometry_now();
    QTest::mousePress(&pods(), Qt::LeftButton, {}, geometry.tile(2).center().toPoint());
    QTest::mouseRelease(&pods(), Qt::LeftButton, {}, geometry.tile(3).center().toPoint());
    EXPECT_EQ(calls, Calls{});
}

TEST_F(MainWindowTest, PodsAreSelectedWithTheKeyboard) {
    pods().setFocus();
    for (const auto key :
         {Qt::Key_Right, Qt::Key_Right, Qt::Key_Space, Qt::Key_Down, Qt::Key_Space, Qt::Key_Home,
          Qt::Key_Space, Qt::Key_End, Qt::Key_Left, Qt::Key_Up, Qt::Key_Space})
        QTest::keyClick(&pods(), key);
    EXPECT_EQ(calls, (Calls{"img_ZAV 2", "img_ZAV 27", "img_ZAV 0", "img_ZAV 23"}));
}

TEST_F(MainWindowTest, PanelsAnswerDoubleClicks) {
    QTest::mouseDClick(&find<StatusPanel>("pnlErr"), Qt::LeftButton);
    QTest::mouseDClick(&find<StatusPanel>("pnlButton_3"), Qt::LeftButton);
    EXPECT_EQ(calls, (Calls{"pnlErr", "pnlButton 3"}));
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
    const std::function<void(std::span<const MenuEntry>)> click =
        [&](std::span<const MenuEntry> entries) {
            for (const MenuEntry& entry : entries) {
                click(entry.children);
                if (entry.command == Command::None) continue;
                calls.clear();
                QAction* const item = action(*window, std::string(entry.name).c_str());
                ASSERT_NE(item, nullptr) << entry.name;
                EXPECT_EQ(item->toolTip().toStdString(), entry.tool_tip);
                item->trigger();
                EXPECT_EQ(calls, Calls{"run " + std::to_string(static_cast<int>(entry.command))});
            }
        };
    click(menu_bar());
}

TEST_F(MainWindowTest, MenuFollowsTheRecordWhenItOpens) {
    screen.mnuOperateItem[4].enabled = false;
    screen.mnuTransmitRem.checked = true;
    screen.mnuLogging.enabled = false;
    emit find<QMenu>("mnuOperate").aboutToShow();
    EXPECT_FALSE(action(*window, "mnuOperateItem(4)")->isEnabled());
    EXPECT_TRUE(action(*window, "mnuTransmitRem")->isChecked());
    EXPECT_FALSE(find<QMenu>("mnuLogging").menuAction()->isEnabled());
}

TEST_F(MainWindowTest, ShowsWhatTheRecordSays) {
    screen.caption = "KAVORIXER - plant";
    screen.lblMsg = {" Configuration(s) Deleted", Colour::Blue};
    screen.pnlErr.caption = "Rx ERROR";
    screen.pnlPollCnt.caption = "17";
    screen.pnlBars = {"80% ||||||||", Colour::Yellow};
    screen.pnlButton[1].caption = "Stream 1";
    screen.cmdTrig.enabled = false;
    screen.img_4A.picture = Picture::img4A;
    show_pod(4, Picture::img1ZAV_E);
    mirrors.refresh();
    EXPECT_EQ(window->windowTitle(), "KAVORIXER - plant");
    EXPECT_EQ(find<StatusPanel>("lblMsg").text(), "Configuration(s) Deleted");
    EXPECT_EQ(find<StatusPanel>("pnlErr").accessibleName(), "Error: Rx ERROR");
    EXPECT_EQ(find<StatusPanel>("pnlPollCnt").text(), "17");
    EXPECT_EQ(find<StatusPanel>("pnlButton_1").text(), "Stream 1");
    EXPECT_FALSE(find<QPushButton>("cmdTrig").isEnabled());
    EXPECT_EQ(find<InterfaceIcon>("img_4A").accessibleName(), "Interface card at C800, selected");
    EXPECT_EQ(pods().spoken_name(4), "ZAV 05, 7V, in error");
}

TEST_F(MainWindowTest, WindowGrowsAndShrinksByTheIndicatorRows) {
    const int before = window->height();
    screen.expanded = true;
    mirrors.refresh();
    EXPECT_TRUE(pods().expanded());
    EXPECT_GT(window->height(), before + 100);
    EXPECT_LE(window->height(), 720);
    screen.expanded = false;
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
    screen.img_ZAV[2].picture = Picture::img1ZAV_D;
    mirrors.refresh();
    loop.process_events(20);
    const QRect tile = pods().geometry_now().tile(2).toAlignedRect();
    EXPECT_TRUE(watch.painted.intersects(tile));
    EXPECT_TRUE(tile.adjusted(-2, -2, 2, 2).contains(watch.painted.boundingRect()));
}

TEST_F(MainWindowTest, ClosingAsksAndTheWindowStays) {
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(calls, Calls{"unload_request"});
}

TEST_F(MainWindowTest, ClosingAsksInTheMiddleOfAHandlerThatWaits) {
    bool asked = false;
    on_trigger = [&] {
        loop.call_later(0, [&] {
            window->close();
            asked = true;
        });
        loop.wait_until([&] { return asked; });
        calls.emplace_back("sent");
    };
    loop.call_later(0, [&] { find<QPushButton>("cmdTrig").click(); });
    loop.wait_until([&] { return asked; });
    EXPECT_EQ(calls, (Calls{"cmdTrig", "unload_request", "sent"}));
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
    EXPECT_EQ(tip_at(27), "ZAV 28");
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
    QAccessibleInterface* const pod = list->child(27);
    EXPECT_EQ(pod->text(QAccessible::Name), "ZAV 28, 7V, selected, data arrived");
    EXPECT_TRUE(pod->state().selected);
    EXPECT_EQ(list->indexOfChild(pod), 27);
    EXPECT_EQ(list->childAt(pod->rect().center().x(), pod->rect().center().y()), pod);
    EXPECT_FALSE(list->child(2)->state().selected);
    EXPECT_TRUE(list->child(3)->state().disabled);
    pod->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(calls, Calls{"img_ZAV 27"});
}

}  // namespace
}  // namespace kavorix::test
