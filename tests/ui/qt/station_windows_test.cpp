// The windows around the interface card and the streams: what the toolkit can break between the
// operator's hands and the rules.

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "support/ui_rig.h"
#include "ui/card/interface_settings.h"
#include "ui/card/status_view.h"
#include "ui/card/tx_command.h"
#include "ui/qt/main/qt_windows.h"
#include "ui/qt/open_window.h"
#include "ui/streams/stream0_view.h"
#include "ui/streams/stream1_view.h"
#include "ui/streams/stream2_view.h"
#include "ui/streams/stream3_view.h"

namespace kavorix::test {
namespace {

class NoMemory : public SystemInfo {
    std::uint64_t available_memory() const override { return 0; }
};

class StationWindows : public testing::Test, public UiRig {
  protected:
    StationWindows() {
        station({{3, "7SAA 0F 1.00"}, {8, "8RCA 0F 1.00"}});
        click({3, 8});
    }

    // Shows a modal form and runs `work` in it; returns when the form is closed.
    template <class Rules>
    void use(const char* name, void (QtWindows::*show)(Rules&), Rules& rules,
             const std::function<void()>& work) {
        qt.call_later(0, [&] {
            enter(name);
            work();
        });
        (shown.*show)(rules);
        EXPECT_EQ(open_window(name), nullptr);
    }
    void enter(const char* name) {
        form = open_window(name);
        ASSERT_NE(form, nullptr) << name;
        QApplication::setActiveWindow(form);
    }
    template <class Widget>
    Widget& find(const char* name) {
        return *form->findChild<Widget*>(name);
    }
    // A key for the widget that has the focus.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* const focused = form->focusWidget();
        QTest::keyClick(focused ? focused : form, key, modifiers);
        // An accelerator lets the button be seen going down before it clicks it.
        const auto buttons = form->findChildren<QAbstractButton*>();
        qt.wait_until([&] {
            return std::none_of(buttons.begin(), buttons.end(),
                                [](const QAbstractButton* button) { return button->isDown(); });
        });
        mirrors.refresh();
    }

    void open_streams() {
        shown.show_stream0(stream0);
        shown.show_stream1(stream1);
        shown.show_stream2(stream2);
        shown.show_stream3(stream3);
    }
    QString cell(const char* grid, int row, int column) {
        return find<QTableView>(grid).model()->index(row, column).data().toString();
    }

    QTemporaryDir directory;
    QtEventLoop qt;
    Mirrors mirrors{qt};
    Stream0View stream0{run_time, configuration, choose_channels()};
    Stream1View stream1{
        {commands, loop, message_line, failures, configuration, run_time, choose_channels()}};
    Stream2View stream2{run_time, loop};
    Stream3View stream3{run_time};
    QtWindows shown{mirrors, directory.filePath("windows.ini")};
    CommandHistory history;
    NoMemory memory;
    QWidget* form = nullptr;
};

TEST_F(StationWindows, InterfaceSettingsAreMadeWithTheKeyboard) {
    InterfaceSettingsDialog dialog(
        {discovery, dialogs, message_line, failures, configuration, run_time, {}});
    dialog.Form_Load();
    use("frmConfigAdap", &QtWindows::show_interface_settings, dialog, [&] {
        EXPECT_EQ(find<QComboBox>("cboBaseAddr").currentText(), "C800");
        EXPECT_EQ(find<QComboBox>("cboUserPollRate").currentText(), "1000");
        press(Qt::Key_R, Qt::AltModifier);
        EXPECT_EQ(form->focusWidget(), &find<QComboBox>("cboUserPollRate"));
        press(Qt::Key_Up);
        press(Qt::Key_P, Qt::AltModifier);
        press(Qt::Key_Return);
    });
    EXPECT_EQ(configuration.Interface.PollRate, 750);
    EXPECT_EQ(configuration.Interface.PowerOn, 1);
}

TEST_F(StationWindows, InterfaceSettingsStayOpenWhenNoCardAnswers) {
    InterfaceSettingsDialog dialog(
        {discovery, dialogs, message_line, failures, configuration, run_time, {}});
    dialog.Form_Load();
    use("frmConfigAdap", &QtWindows::show_interface_settings, dialog, [&] {
        find<QComboBox>("cboBaseAddr").setCurrentText("CA00");
        press(Qt::Key_Return);
        EXPECT_EQ(open_window("frmConfigAdap"), form);
        EXPECT_EQ(find<QComboBox>("cboBaseAddr").currentText(), "CA00");
        EXPECT_TRUE(find<QPushButton>("cmdOK").isEnabled());
        press(Qt::Key_Escape);
    });
    EXPECT_EQ(configuration.Interface.CardAddress, C800);
    EXPECT_EQ(dialogs.take_boxes().size(), 1U);
}

TEST_F(StationWindows, TypedCommandIsUpperCaseAndGoesOutWithEnter) {
    TxCommandDialog dialog({commands, link, history, dialogs, failures, [](std::string_view) {}});
    use("frmTxCmd", &QtWindows::show_tx_command, dialog, [&] {
        auto& field = find<QLineEdit>("txtTxCmd");
        EXPECT_EQ(form->focusWidget(), &field);
        press(Qt::Key_Return);
        EXPECT_EQ(dialogs.take_boxes().size(), 1U) << "nothing was typed";
        QTest::keyClicks(&field, "e;tr");
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Right}) press(key);
        QTest::keyClicks(&field, "n");  // the cursor stays where it is
        EXPECT_EQ(field.text(), "EN;TR");
        EXPECT_EQ(field.cursorPosition(), 2);
        press(Qt::Key_Return);
        EXPECT_EQ(field.text(), "");
        EXPECT_EQ(form->focusWidget(), &field);
        QTest::keyClicks(&field, "h");
        press(Qt::Key_Up);
        EXPECT_EQ(field.text(), "EN;TR");
        press(Qt::Key_Down);
        EXPECT_EQ(field.text(), "H");
        press(Qt::Key_Escape);
    });
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 EN", "Tx 8 EN", "Tx 3 TR", "Tx 8 TR"}));
}

TEST_F(StationWindows, ChannelsAreChosenByMouseAndKeyboard) {
    ChannelChoice choice;
    choice.sets = {{"03 - 7S", 10, {}}, {"08 - 8R", 20, {}}};
    SelectChannelsDialog dialog(choice, dialogs, failures);
    use("frmSelChan", &QtWindows::show_select_channels, dialog, [&] {
        EXPECT_TRUE(find<QCheckBox>("chkChan_19").isVisible());
        EXPECT_FALSE(find<QCheckBox>("chkChan_20").isVisible());
        EXPECT_FALSE(find<QPushButton>("cmdOK").isEnabled());
        press(Qt::Key_A, Qt::AltModifier);
        QTest::keyClick(&find<QComboBox>("cboZav"), Qt::Key_Down);  // to pod 3 alone
        mirrors.refresh();
        EXPECT_FALSE(find<QCheckBox>("chkChan_10").isVisible());
        press(Qt::Key_N, Qt::AltModifier);
        QTest::mouseClick(&find<QCheckBox>("chkChan_4"), Qt::LeftButton, {}, QPoint(8, 8));
        mirrors.refresh();
        press(Qt::Key_Return);
    });
    ChannelFlags fifth{};
    fifth[4] = 1;
    EXPECT_TRUE(dialog.accepted());
    EXPECT_EQ(dialog.sets()[0].chosen, fifth);
    EXPECT_EQ(std::count(dialog.sets()[1].chosen.begin(), dialog.sets()[1].chosen.end(), 1), 20);
}

TEST_F(StationWindows, StatusLinesStandUnderTheirHeader) {
    StatusView view({discovery, message_line, failures, memory, configuration, run_time, {}});
    view.Form_Load();
    use("frmViewStat", &QtWindows::show_status, view, [&] {
        const auto& header = find<QLabel>("lblZAVHead");
        const auto& lines = find<QPlainTextEdit>("txtZAVStat");
        const QString text = lines.toPlainText();
        EXPECT_EQ(text.count('\n'), 1);
        const QPoint head = header.mapTo(form, header.contentsRect().topLeft());
        const QPoint body = lines.viewport()->mapTo(form, lines.cursorRect().topLeft());
        EXPECT_NEAR(head.x() + header.indent(), body.x(), 1);
        for (const QString& part : {QString(40, 'x'), QString(StatusHeader.size(), ' ')})
            EXPECT_EQ(header.fontMetrics().horizontalAdvance(part),
                      lines.fontMetrics().horizontalAdvance(part));
        EXPECT_GE(lines.viewport()->width(), header.sizeHint().width() - header.indent());
        EXPECT_FALSE(find<QPlainTextEdit>("txtAdapStat").isVisible());
        press(Qt::Key_Escape);
    });
}

TEST_F(StationWindows, StatusWithoutASelectionShrinks) {
    click({3, 8});
    StatusView view({discovery, message_line, failures, memory, configuration, run_time, {}});
    view.Form_Load();
    use("frmViewStat", &QtWindows::show_status, view, [&] {
        EXPECT_LT(form->height(), 120);
        EXPECT_FALSE(find<QPlainTextEdit>("txtZAVStat").isVisible());
        press(Qt::Key_Return);
    });
}

TEST_F(StationWindows, EscapeAndTheCloseButtonLeaveNoTrace) {
    const InterfaceSettings before = configuration.Interface;
    const std::function<void()> ways[] = {[&] { press(Qt::Key_Escape); }, [&] { form->close(); }};
    for (const auto& leave : ways) {
        InterfaceSettingsDialog settings(
            {discovery, dialogs, message_line, failures, configuration, run_time, {}});
        settings.Form_Load();
        use("frmConfigAdap", &QtWindows::show_interface_settings, settings, [&] {
            find<QCheckBox>("chkPower").click();
            find<QComboBox>("cboUserPollRate").setCurrentIndex(0);
            find<QComboBox>("cboBaseAddr").setCurrentIndex(1);
            leave();
        });
        TxCommandDialog command({commands, link, history, dialogs, failures, {}});
        use("frmTxCmd", &QtWindows::show_tx_command, command, [&] {
            QTest::keyClicks(&find<QLineEdit>("txtTxCmd"), "tr");
            leave();
        });
        SelectChannelsDialog channels({"", "", {{"", 10, {}}}, {}}, dialogs, failures);
        use("frmSelChan", &QtWindows::show_select_channels, channels, [&] {
            find<QCheckBox>("chkChan_0").click();
            leave();
        });
        EXPECT_FALSE(channels.accepted());
    }
    EXPECT_EQ(configuration.Interface, before);
    EXPECT_EQ(driver.recorded("Tx"), Lines{});
    EXPECT_EQ(history.older(""), "");
}

TEST_F(StationWindows, StreamViewsAreClosedByEscapeAndByTheirButton) {
    const std::pair<const char*, const char*> views[] = {{"frmStrm0", "cmdExit"},
                                                         {"frmStrm1", "cmdOK"},
                                                         {"frmStrm2", "cmdOK"},
                                                         {"frmStrm3", "cmdOK"}};
    for (const bool by_key : {true, false}) {
        open_streams();
        EXPECT_EQ(run_time.Poll.ViewOpen, (StreamFlags{1, 1, 1, 1}));
        for (const auto& [name, button] : views) {
            enter(name);
            if (by_key)
                press(Qt::Key_Escape);
            else
                QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton);
            EXPECT_EQ(open_window(name), nullptr);
        }
        EXPECT_EQ(run_time.Poll.ViewOpen, (StreamFlags{}));
    }
}

TEST_F(StationWindows, Stream0TogglesAndResetsByAccelerators) {
    shown.show_stream0(stream0);
    enter("frmStrm0");
    status(3).PeakMax[0] = status(3).PeakMin[0] = 1;
    press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(status(3).PeakMax[0], NoPeakMax);
    press(Qt::Key_N, Qt::AltModifier);
    EXPECT_EQ(status(3).PeakMin[0], NoPeakMin);
    EXPECT_EQ(cell("grdStrm0", 9, 0), "10");
    press(Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(cell("grdStrm0", 10, 0), "08   01");
    EXPECT_FALSE(find<QComboBox>("cboView").isEnabled());
    press(Qt::Key_S, Qt::AltModifier);  // the button's caption is another now
    EXPECT_EQ(cell("grdStrm0", 9, 0), "10");
}

TEST_F(StationWindows, Stream1MeasuresAndNarrowsItsRows) {
    windows.at_select = [](SelectChannelsDialog& dialog) {
        dialog.screen.chkChan[4].checked = true;
        dialog.chkChan_Click(4);
        dialog.cmdOK_Click();
    };
    shown.show_stream1(stream1);
    enter("frmStrm1");
    EXPECT_FALSE(find<QPushButton>("cmdMeasure").isEnabled());
    press(Qt::Key_C, Qt::AltModifier);
    EXPECT_EQ(find<QLabel>("lblRequest").text(), "Requests:  ME05;");
    EXPECT_TRUE(find<QPushButton>("cmdMeasure").isEnabled());
    EXPECT_EQ(cell("grdMeasure", 4, 2), "Measuring...");
    press(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(find<QTableView>("grdMeasure").model()->rowCount(), 2);
    run_time.Link.StreamRequests = {};
    press(Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(driver.recorded("Tx 3"), (Lines{"Tx 3 ME05", "Tx 3 ME05"}));
}

TEST_F(StationWindows, Stream2FollowsItsEndUnlessOlderEventsAreLookedAt) {
    shown.show_stream2(stream2);
    enter("frmStrm2");
    auto& table = find<QTableView>("grdStrm2");
    QScrollBar& bar = *table.verticalScrollBar();
    const auto report = [&] {
        run_time.Poll.LastEvent[2] = EventTableSize - 1;
        run_time.Status[2].StreamSeen[EventStream] = 1;
        stream2.show_events();
        mirrors.refresh();
        QCoreApplication::processEvents();
    };
    for (int i = 0; i < 3; ++i) report();
    EXPECT_EQ(table.model()->rowCount(), 3 * EventTableSize);
    EXPECT_EQ(bar.value(), bar.maximum());
    bar.setValue(5);
    report();
    EXPECT_EQ(bar.value(), 5);
    QTest::keyClick(&find<QComboBox>("cboView"), Qt::Key_Down);
    mirrors.refresh();
    EXPECT_EQ(run_time.Poll.ViewedZav, Pod::at_index(7));
    EXPECT_EQ(find<QLabel>("lblZAVNo").text(), "ZAV: 08");
    EXPECT_EQ(table.model()->rowCount(), 0);
}

TEST_F(StationWindows, ColumnsAreDraggedAndKeepTheirWidths) {
    shown.show_stream3(stream3);
    enter("frmStrm3");
    QHeaderView& header = *find<QTableView>("grdStrm3").horizontalHeader();
    const int before = header.sectionSize(1);
    const QPoint edge(header.sectionViewportPosition(1) + before - 1, header.height() / 2);
    QTest::mousePress(header.viewport(), Qt::LeftButton, {}, edge);
    QTest::mouseMove(header.viewport(), edge + QPoint(60, 0));
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, edge + QPoint(60, 0));
    const int dragged = header.sectionSize(1);
    EXPECT_GT(dragged, before);
    form->close();
    QtWindows of_next_start(mirrors, directory.filePath("windows.ini"));
    of_next_start.show_stream3(stream3);
    enter("frmStrm3");
    EXPECT_EQ(find<QTableView>("grdStrm3").columnWidth(1), dragged);
}

}  // namespace
}  // namespace kavorix::test
