#include "ui/qt/kit/binder.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

namespace kavorix::test {
namespace {

struct Record {
    Button cmdOK{"&OK", "Accept"};
    Button cmdCancel{"Cancel", ""};
    CheckBox chkGrid{"&Grid lines"};
    OptionButton optTrend{"Trend", true};
    OptionButton optBar{"Bar"};
    TextField txtTitle{"Boiler"};
    TextField txtUnit{
        "\xB0"
        "C"};
    ListBox cboMode{{{"Volts DC", 7}, {"Skip", 9}}, 0};
    Label lblPods{"3 pods"};
    Frame fraLimits{"Limits"};
    Grid grdRows{{"Chan", "Value"}, {{{"01"}, {"1.5"}}}};
    std::array<Label, 2> lblRow{Label{"first"}, Label{"second"}};

    template <class Visit>
    void each(Visit&& visit) {
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
        visit("chkGrid", chkGrid);
        visit("optTrend", optTrend);
        visit("optBar", optBar);
        visit("txtTitle", txtTitle);
        visit("txtUnit", txtUnit);
        visit("cboMode", cboMode);
        visit("lblPods", lblPods);
        visit("fraLimits", fraLimits);
        visit("grdRows", grdRows);
        visit("lblRow", lblRow);
    }
};

// Types any characters, also those that QTest knows no keys for.
void type_into(QWidget& widget, const QString& text) {
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QApplication::sendEvent(&widget, &press);
    }
}

class BinderTest : public testing::Test {
  protected:
    BinderTest() {
        form.setObjectName("frmTest");
        place<QLineEdit>("txtTitle");
        place<QLineEdit>("txtUnit");
        place<QPushButton>("cmdOK");
        place<QPushButton>("cmdCancel");
        place<QCheckBox>("chkGrid");
        place<QRadioButton>("optTrend");
        place<QRadioButton>("optBar");
        place<QComboBox>("cboMode");
        place<QLabel>("lblPods");
        place<QGroupBox>("fraLimits");
        place<QTableView>("grdRows");
        place<QLabel>("lblRow_0");
        place<QLabel>("lblRow_1");
        binder.bind(record);
        form.show();
        form.activateWindow();
        QApplication::setActiveWindow(&form);
    }

    template <class Widget>
    void place(const char* name) {
        auto* const widget = new Widget;
        widget->setObjectName(name);
        layout.addWidget(widget);
    }
    template <class Widget>
    Widget& find(const char* name) {
        return *form.findChild<Widget*>(name);
    }

    QtEventLoop loop;
    Mirrors mirrors{loop};
    Record record;
    QWidget form;
    QVBoxLayout& layout = *new QVBoxLayout(&form);
    Binder binder{mirrors, form};
};

TEST_F(BinderTest, WidgetsShowTheRecordAtOnce) {
    EXPECT_EQ(find<QPushButton>("cmdOK").text(), "&OK");
    EXPECT_EQ(find<QPushButton>("cmdOK").toolTip(), "Accept");
    EXPECT_EQ(find<QCheckBox>("chkGrid").text(), "&Grid lines");
    EXPECT_TRUE(find<QRadioButton>("optTrend").isChecked());
    EXPECT_EQ(find<QLineEdit>("txtTitle").text(), "Boiler");
    EXPECT_EQ(find<QLineEdit>("txtUnit").text(), QString::fromUtf8("\u00b0C"));
    EXPECT_EQ(find<QComboBox>("cboMode").currentText(), "Volts DC");
    EXPECT_EQ(find<QLabel>("lblPods").text(), "3 pods");
    EXPECT_EQ(find<QGroupBox>("fraLimits").title(), "Limits");
    EXPECT_EQ(find<QTableView>("grdRows").model()->index(0, 1).data().toString(), "1.5");
    EXPECT_EQ(find<QLabel>("lblRow_1").text(), "second");
}

TEST_F(BinderTest, WidgetsFollowTheRecord) {
    record.cmdOK = {"&Accept", "", false};
    record.chkGrid.checked = true;
    record.optTrend.selected = false;
    record.optBar.selected = true;
    record.txtTitle.text = "Kettle";
    record.cboMode = {{{"Skip", 9}, {"Event", 11}, {"Totalise", 12}}, 2};
    record.lblPods = {"none", Colour::Red};
    record.fraLimits.visible = false;
    record.grdRows.rows.push_back({{"02"}, {"ErrOvrld", true}});
    mirrors.refresh();
    EXPECT_EQ(find<QPushButton>("cmdOK").text(), "&Accept");
    EXPECT_EQ(find<QPushButton>("cmdOK").toolTip(), "Accept");  // an empty one changes nothing
    EXPECT_FALSE(find<QPushButton>("cmdOK").isEnabled());
    EXPECT_TRUE(find<QCheckBox>("chkGrid").isChecked());
    EXPECT_TRUE(find<QRadioButton>("optBar").isChecked());
    EXPECT_FALSE(find<QRadioButton>("optTrend").isChecked());
    EXPECT_EQ(find<QLineEdit>("txtTitle").text(), "Kettle");
    EXPECT_EQ(find<QComboBox>("cboMode").count(), 3);
    EXPECT_EQ(find<QComboBox>("cboMode").currentText(), "Totalise");
    EXPECT_TRUE(find<QGroupBox>("fraLimits").isHidden());
    EXPECT_EQ(find<QTableView>("grdRows").model()->rowCount(), 2);
}

TEST_F(BinderTest, NoOptionCanBeChosen) {
    record.optTrend.selected = false;
    mirrors.refresh();
    EXPECT_FALSE(find<QRadioButton>("optTrend").isChecked());
    find<QRadioButton>("optBar").click();
    find<QRadioButton>("optTrend").click();
    EXPECT_FALSE(find<QRadioButton>("optBar").isChecked());  // still exclusive
}

TEST_F(BinderTest, ShowingTheRecordDoesNotWriteToIt) {
    const ListBox list = record.cboMode = {{{"Skip", 9}, {"Event", 11}}, -1};
    record.optTrend.selected = record.optBar.selected = false;
    mirrors.refresh();
    EXPECT_EQ(record.cboMode, list);
    EXPECT_FALSE(record.optTrend.selected || record.optBar.selected);
}

TEST_F(BinderTest, EntriesAreInTheRecordBeforeHandlersRun) {
    std::string seen;
    binder.on_click("cmdOK", [&] { seen = record.txtTitle.text; });
    find<QLineEdit>("txtTitle").clear();
    type_into(find<QLineEdit>("txtTitle"), QString::fromUtf8("K\u00fche"));
    find<QPushButton>("cmdOK").click();
    EXPECT_EQ(seen,
              "K\xFC"
              "he");
}

TEST_F(BinderTest, ChecksOptionsAndChoicesAreInTheRecordBeforeHandlersRun) {
    std::vector<std::string> seen;
    binder.on_click("chkGrid",
                    [&] { seen.emplace_back(record.chkGrid.checked ? "grid" : "no grid"); });
    binder.on_click("optBar", [&] {
        seen.emplace_back(record.optBar.selected && !record.optTrend.selected ? "bar" : "trend");
    });
    binder.on_choose("cboMode", [&](int index) {
        seen.push_back(std::to_string(index) + "=" + std::to_string(record.cboMode.code()));
    });
    binder.on_edit("txtTitle", [&] { seen.push_back(record.txtTitle.text); });
    find<QCheckBox>("chkGrid").click();
    find<QRadioButton>("optBar").click();
    QTest::keyClick(&find<QComboBox>("cboMode"), Qt::Key_Down);
    QTest::keyClicks(&find<QLineEdit>("txtTitle"), "s");
    EXPECT_EQ(seen, (std::vector<std::string>{"grid", "bar", "1=9", "Boilers"}));
}

TEST_F(BinderTest, RecordPutBackByAHandlerIsShown) {
    binder.on_choose("cboMode", [&](int) { record.cboMode.index = 0; });
    QTest::keyClick(&find<QComboBox>("cboMode"), Qt::Key_Down);
    mirrors.refresh();
    EXPECT_EQ(find<QComboBox>("cboMode").currentIndex(), 0);
}

TEST_F(BinderTest, CharactersOutsideTheCodePageAreRefused) {
    auto& title = find<QLineEdit>("txtTitle");
    title.setCursorPosition(3);
    type_into(title, QString::fromUtf8("\u03a9"));
    EXPECT_EQ(title.text(), "Boiler");
    EXPECT_EQ(title.cursorPosition(), 3);
    EXPECT_EQ(record.txtTitle.text, "Boiler");
    type_into(title, QString::fromUtf8("\u20ac"));
    EXPECT_EQ(record.txtTitle.text, "Boi\x80ler");
}

TEST_F(BinderTest, ExceptionOfAHandlerLeavesTheWait) {
    binder.on_click("cmdOK", [] { throw std::runtime_error("clicked"); });
    loop.call_later(0, [&] { find<QPushButton>("cmdOK").click(); });
    EXPECT_THROW(loop.wait_until([] { return false; }), std::runtime_error);
}

TEST_F(BinderTest, MissingWidgetIsNamed) {
    Button button;
    try {
        binder.add("cmdNowhere", button);
        FAIL();
    } catch (const std::logic_error& failure) {
        EXPECT_STREQ(failure.what(), "frmTest has no QAbstractButton \"cmdNowhere\"");
    }
}

TEST_F(BinderTest, ActionFollowsTheRecordAfterAClick) {
    QAction action;
    action.setCheckable(true);
    MenuItem item{"&Reminder", true, true};
    binder.add(action, item);
    EXPECT_TRUE(action.isChecked());
    action.trigger();  // the toolkit takes the mark away, the record keeps it
    mirrors.refresh();
    EXPECT_TRUE(action.isChecked());
    item.enabled = item.checked = false;
    mirrors.refresh();
    EXPECT_FALSE(action.isEnabled());
    EXPECT_FALSE(action.isChecked());
}

TEST_F(BinderTest, LabelsFollowANewPalette) {
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::WindowText, QColor(1, 2, 3));
    QApplication::setPalette(dark);
    mirrors.refresh();
    EXPECT_EQ(find<QLabel>("lblPods").palette().color(QPalette::WindowText), QColor(1, 2, 3));
    QApplication::setPalette(before);
}

class ListInAWindow : public testing::Test {
  protected:
    ListInAWindow() {
        widget.setObjectName("lstPods");
        layout.addWidget(&widget);
        binder.add("lstPods", pods);
        binder.on_choose("lstPods", [this](int index) {
            chosen.push_back(std::to_string(index) + "=" + std::to_string(pods.code()));
        });
        form.show();
    }
    void press(int row) {
        QTest::mouseClick(widget.viewport(), Qt::LeftButton, Qt::NoModifier,
                          widget.visualItemRect(widget.item(row)).center());
        loop.process_events(0);
    }

    QtEventLoop loop;
    Mirrors mirrors{loop};
    ListBox pods{{{"ZAV 3", 3}, {"ZAV 7", 7}, {"ZAV 9", 9}}, 1};
    std::vector<std::string> chosen;
    QWidget form;
    QVBoxLayout& layout = *new QVBoxLayout(&form);
    QListWidget& widget = *new QListWidget(&form);
    Binder binder{mirrors, form};
};

TEST_F(ListInAWindow, ShowsTheRecordAndFollowsIt) {
    EXPECT_EQ(widget.count(), 3);
    EXPECT_EQ(widget.currentRow(), 1);
    EXPECT_TRUE(widget.item(1)->isSelected());
    const ListBox other = pods = {{{"ZAV 9", 9}, {"ZAV 7", 7}}, 0, false};
    mirrors.refresh();
    EXPECT_EQ(widget.count(), 2);
    EXPECT_EQ(widget.currentItem()->text(), "ZAV 9");
    EXPECT_FALSE(widget.isEnabled());
    pods.index = -1;
    mirrors.refresh();
    EXPECT_EQ(widget.currentRow(), -1);
    EXPECT_EQ(pods.entries, other.entries);
    EXPECT_EQ(chosen, std::vector<std::string>());  // nobody has chosen anything
}

TEST_F(ListInAWindow, ChoiceIsInTheRecordBeforeTheHandlerRunsOnce) {
    press(2);
    QTest::keyClick(&widget, Qt::Key_Up);
    EXPECT_EQ(chosen, (std::vector<std::string>{"2=9", "1=7"}));
}

TEST_F(ListInAWindow, ChosenEntryCanBeChosenAgain) {
    press(1);
    press(0);
    press(0);
    EXPECT_EQ(chosen, (std::vector<std::string>{"1=7", "0=3", "0=3"}));
}

TEST_F(ListInAWindow, IsDoubleClickedInside) {
    int count = 0;
    binder.on_double_click("lstPods", [&] { ++count; });
    QTest::mouseDClick(widget.viewport(), Qt::LeftButton, Qt::NoModifier,
                       widget.visualItemRect(widget.item(0)).center());
    EXPECT_EQ(count, 1);
}

TEST(BinderOfAProgressBar, ShowsTheCaptionInTheBar) {
    QtEventLoop loop;
    Mirrors mirrors(loop);
    QWidget form;
    QProgressBar bar(&form);
    bar.setObjectName("picProgress");
    bar.setValue(40);
    Binder binder(mirrors, form);
    Label label{"39%"};
    binder.add("picProgress", label);
    EXPECT_EQ(bar.text(), "39%");
    label.caption = "40%";
    mirrors.refresh();
    EXPECT_EQ(bar.text(), "40%");
}

class LeavingAField : public BinderTest {
  protected:
    LeavingAField() {
        binder.on_leave("txtTitle", [this](std::string_view next) {
            asked.emplace_back(next);
            return next == "cmdCancel" || record.txtTitle.text != "bad";
        });
        binder.on_click("cmdOK", [this] { ++accepted; });
        find<QLineEdit>("txtTitle").setFocus();
    }
    void type(const QString& text) {
        find<QLineEdit>("txtTitle").clear();
        QTest::keyClicks(&find<QLineEdit>("txtTitle"), text);
    }

    std::vector<std::string> asked;
    int accepted = 0;
};

TEST_F(LeavingAField, IsCheckedWithTheWidgetThatGetsTheFocus) {
    QTest::keyClick(&find<QLineEdit>("txtTitle"), Qt::Key_Tab);
    EXPECT_EQ(asked, std::vector<std::string>{"txtUnit"});
    EXPECT_TRUE(find<QLineEdit>("txtUnit").hasFocus());
}

TEST_F(LeavingAField, IsRefusedByTheCheck) {
    type("bad");
    QTest::keyClick(&find<QLineEdit>("txtTitle"), Qt::Key_Tab);
    EXPECT_TRUE(find<QLineEdit>("txtTitle").hasFocus());
    EXPECT_EQ(asked.size(), 1U);
}

TEST_F(LeavingAField, CanBeLeftToTheCheckToAllow) {
    type("bad");
    find<QPushButton>("cmdCancel").setFocus();
    EXPECT_EQ(asked, std::vector<std::string>{"cmdCancel"});
    EXPECT_TRUE(find<QPushButton>("cmdCancel").hasFocus());
}

TEST_F(LeavingAField, ByMouseDoesNotClickWhatWasRefused) {
    type("bad");
    QTest::mouseClick(&find<QPushButton>("cmdOK"), Qt::LeftButton);
    EXPECT_EQ(accepted, 0);
    EXPECT_FALSE(find<QPushButton>("cmdOK").isDown());
    type("good");
    loop.process_events(0);
    QTest::mouseClick(&find<QPushButton>("cmdOK"), Qt::LeftButton);
    EXPECT_EQ(accepted, 1);
}

TEST_F(LeavingAField, ByAcceleratorComesBeforeTheClick) {
    type("bad");
    find<QPushButton>("cmdOK").click();  // as an accelerator does: the focus stays
    EXPECT_EQ(accepted, 0);
    EXPECT_EQ(asked, std::vector<std::string>{"cmdOK"});
    EXPECT_TRUE(find<QLineEdit>("txtTitle").hasFocus());
    type("good");
    find<QPushButton>("cmdOK").click();
    EXPECT_EQ(accepted, 1);
}

}  // namespace
}  // namespace kavorix::test
