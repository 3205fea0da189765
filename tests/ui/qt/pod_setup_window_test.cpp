// What only the toolkit can break in the pod configuration dialog and those it opens: focus,
// keyboard, names, and that every control reaches its handler. The rules have tests of their own.

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <map>

#include "support/rig.h"
#include "ui/pods/pod_setup.h"
#include "ui/qt/operator.h"
#include "ui/qt/pods/pod_setup_windows.h"

namespace kavorix::test {
namespace {

constexpr int Pod = 2;  // ZAV 3

struct SubDialog {
    const char* button;
    const char* name;
};
// Those that channel 1 of a universal pod opens, in mode 39 (user thermocouple 1).
constexpr SubDialog SubDialogs[] = {{"cmdCopyChan", "frmCopyChan"}, {"cmdViewChans", "frmViewChan"},
                                    {"cmdMx_c", "frmMx_c"},         {"cmdPostLin", "frmPost"},
                                    {"cmdCoeff", "frmCoeff"},       {"cmdAlarm", "frmAlarm"},
                                    {"cmdGroup", "frmGroup"}};

class PodSetupWindowTest : public testing::Test {
  protected:
    // Opens the dialog for a pod of `type` whose channels have the default mode, does `work` in it
    // and cancels what is still open.
    void operate(std::int16_t type, const std::function<void(Form&)>& work) {
        const std::string ident = std::string(pod_type(type).code) + "JA 0F 1.00";
        std::copy(ident.begin(), ident.end(), rig.status(Pod + 1).Ident.begin());
        default_ZAV_config(rig.config(Pod + 1), type, 1);
        if (is_universal_type(type)) rig.config(Pod + 1).Channel[0].Mode = UserTable1Mode;
        rig.config(Pod + 1).AmbTemp = 0;
        rig.dialogs.take_boxes();
        loop.call_later(0, [&] {
            QWidget* const window = open_window("frmConfigZAV");
            ASSERT_NE(window, nullptr);
            Form form(loop, *window);
            work(form);
            if (dialog.closed()) return;
            if (dialog.state().dialog_changed == 1) rig.dialogs.answer(Answer::No);
            dialog.unload_request();
        });
        dialog.run(Pod);
    }

    // The same for a dialog that the pod's opens.
    void operate(const SubDialog& which, const std::function<void(Form&)>& work) {
        operate(Type7V, [&](Form& form) {
            form.with(which.button, which.name, [&](Form& sub) {
                work(sub);
                if (!sub.window().isVisible()) return;
                sub.click(sub.window().findChild<QWidget*>("cmdCancel") ? "cmdCancel" : "cmdOK");
            });
        });
    }

    // Boxes are those of `rig`: nothing opens on the screen.
    std::vector<std::string> box_texts() {
        std::vector<std::string> texts;
        for (const ShownBox& shown : rig.dialogs.take_boxes()) texts.push_back(shown.text);
        return texts;
    }

    QTemporaryDir directory;
    QtEventLoop loop;
    Mirrors mirrors{loop};
    Rig rig;
    WindowMemory memory{directory.filePath("windows.ini")};
    QtPodSetupWindows windows{mirrors, rig.dialogs, memory};
    PodSetup dialog{{rig.configuration,
                     rig.run_time,
                     rig.driver,
                     rig.dialogs,
                     rig.message_line,
                     rig.failures,
                     windows,
                     {}}};
};

TEST_F(PodSetupWindowTest, AFieldWithAnErrorKeepsTheFocusAndStoresNothing) {
    operate(Type7V, [&](Form& form) {
        form.type("txtUnit", "degrees");
        form.press(Qt::Key_Tab);
        EXPECT_EQ(form.focused(), "txtUnit");
        EXPECT_EQ(form.find<QLineEdit>("txtUnit").selectedText(), "degrees");
        EXPECT_EQ(box_texts(), std::vector<std::string>{"Unit too long - Max 5 Characters"});
        QTest::mouseClick(&form.find<QPushButton>("cmdOK"), Qt::LeftButton);
        EXPECT_FALSE(dialog.closed()) << "the click that left the field goes nowhere";
        EXPECT_EQ(dialog.pod().Channel[0].Unit, "");
        form.type("txtUnit", "degC");
        form.press(Qt::Key_Tab);
        EXPECT_NE(form.focused(), "txtUnit");
        EXPECT_EQ(dialog.pod().Channel[0].Unit, "degC");
    });
}

TEST_F(PodSetupWindowTest, TheReferenceIsNotCheckedOnTheWayToCancelOrTheOtherReference) {
    for (const char* next : {"optAmbTemp", "cmdCancel"})
        operate(Type7V, [&](Form& form) {
            form.type("txtExtTemp", "warm");
            form.click(next);
            EXPECT_EQ(box_texts(), std::vector<std::string>()) << next;
        });
}

TEST_F(PodSetupWindowTest, FieldsOfTheOtherDialogsAreCheckedButOnTheWayToCancel) {
    struct Row {
        SubDialog dialog;
        const char* enable;  // what makes the field available
        const char* field;
        const char* message;
    };
    for (const Row& row :
         {Row{SubDialogs[2], nullptr, "txtMValue", "Value Entered for 'M' must be a Number"},
          Row{SubDialogs[2], nullptr, "txtCValue", "Value Entered for 'C' must be a Number"},
          Row{SubDialogs[3], nullptr, "txtCoeff_2", "Coefficient must be a number"},
          Row{SubDialogs[3], nullptr, "txtbCoeff_5", "Coefficient must be a number"},
          Row{SubDialogs[4], nullptr, "txtCoeff_0", "Coefficient must be a number"},
          Row{SubDialogs[4], nullptr, "txtbCoeff_1", "Coefficient must be a number"},
          Row{SubDialogs[5], "chkEnableAlarm_0", "txtAlarmLimit_0", "Alarm Limit must be a number"},
          Row{SubDialogs[5], "chkEnableAlarm_1", "txtHisteresisLimit_1",
              "Hysteresis Limit must be a positive number"}})
        operate(row.dialog, [&](Form& form) {
            if (row.enable) form.click(row.enable);
            form.type(row.field, "x");
            form.press(Qt::Key_Tab);
            EXPECT_EQ(form.focused(), row.field);
            EXPECT_EQ(box_texts(), std::vector<std::string>{row.message}) << row.field;
            form.click("cmdCancel");
            EXPECT_EQ(box_texts(), std::vector<std::string>()) << row.field;
        });
}

TEST_F(PodSetupWindowTest, AnEmptyLimitHasTheFocusWhenOkIsRefused) {
    operate(SubDialogs[5], [&](Form& form) {
        form.click("chkEnableAlarm_0");
        form.click("cmdOK");
        EXPECT_EQ(form.focused(), "txtAlarmLimit_0");
        EXPECT_EQ(box_texts(),
                  std::vector<std::string>{"Hight Alarm limit Rrequired if alarm is enabled"});
    });
}

TEST_F(PodSetupWindowTest, CancelLeavesNoTrace) {
    PodConfigs before;
    operate(Type7V, [&](Form& form) {
        before = rig.configuration.ZavConfig;
        form.choose("cboScanPeriod", "500ms");
        form.type("txtLabel", "Oven");
        form.with("cmdAlarm", "frmAlarm", [](Form& alarm) {
            alarm.click("chkEnableAlarm_1");
            alarm.type("txtAlarmLimit_1", "5");
            alarm.type("txtHisteresisLimit_1", "1");
            alarm.click("cmdOK");
        });
        form.with("cmdMx_c", "frmMx_c", [](Form& conversion) {
            conversion.type("txtMValue", "7");
            conversion.click("cmdCancel");
        });
        EXPECT_EQ(dialog.pod().Channel[0].MValue, 1.0F);
        EXPECT_EQ(dialog.pod().Channel[0].LowAlarm.Limit, 5.0F);
        rig.dialogs.answer(Answer::No);
        form.press(Qt::Key_Escape);
        EXPECT_TRUE(dialog.closed());
        EXPECT_EQ(box_texts(), std::vector<std::string>{"Configuration changed.\n\nKeep changes?"});
    });
    EXPECT_EQ(rig.configuration.ZavConfig, before);
    EXPECT_EQ(rig.configuration.ConfigChanged, 0);
}

TEST_F(PodSetupWindowTest, UndoAndRedoAnswerToTheirKeysButInAFieldWhichHasItsOwn) {
    operate(Type7V, [&](Form& form) {
        const std::int16_t before = dialog.pod().ScanPeriod;
        const auto holds = [&](std::int16_t period) {
            return [this, period] { return dialog.pod().ScanPeriod == period; };
        };
        form.choose("cboScanPeriod", "500ms");
        for (const char* place : {"cboScanPeriod", "grdChannels", "chkArm"}) {
            form.find<QWidget>(place).setFocus();
            form.press_until(Qt::Key_Z, Qt::ControlModifier, holds(before));
            form.press_until(Qt::Key_Y, Qt::ControlModifier, holds(500));
        }
        form.type("txtLabel", "Oven");
        form.press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(form.text("txtLabel"), "");
        EXPECT_EQ(dialog.pod().ScanPeriod, 500);
    });
}

TEST_F(PodSetupWindowTest, TheTableAndTheListOfChannelsGoTogether) {
    operate(Type8S, [&](Form& form) {
        auto& table = form.find<QTableView>("grdChannels");
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                          table.visualRect(table.model()->index(4, 1)).center());
        form.settle();
        EXPECT_EQ(form.find<QComboBox>("cboChannel").currentText(), "5");
        form.choose("cboChannel", "29");
        EXPECT_EQ(table.currentIndex().row(), 28);
        EXPECT_TRUE(table.viewport()->rect().contains(table.visualRect(table.currentIndex())));
        form.choose("cboChanMode", "Switch Output");
        form.type("txtLabel", "Pump");
        form.press(Qt::Key_Tab);
        EXPECT_EQ(table.model()->index(28, 1).data().toString(), "Switch Output");
        EXPECT_EQ(table.model()->index(28, 3).data().toString(), "Pump");
    });
}

TEST_F(PodSetupWindowTest, AcceleratorsReachTheirControls) {
    operate(Type7V, [&](Form& form) {
        for (const auto& [key, control] : {std::pair{Qt::Key_M, "cboChanMode"},
                                           {Qt::Key_N, "cboRange"},
                                           {Qt::Key_B, "txtLabel"},
                                           {Qt::Key_U, "txtUnit"},
                                           {Qt::Key_P, "cboScanPeriod"},
                                           {Qt::Key_I, "cboIntegration"}}) {
            form.press(key, Qt::AltModifier);
            EXPECT_EQ(form.focused(), control);
        }
        form.press_until(Qt::Key_O, Qt::AltModifier, [&] { return dialog.pod().OpenTC == 1; });
    });
}

// Where Tab takes the operator, control by control.
TEST_F(PodSetupWindowTest, TabFollowsTheEye) {
    operate(Type7V, [&](Form& form) {
        form.find<QWidget>("cboZAVType").setFocus();
        std::string order;
        for (int i = 0; i < 27; ++i) {
            order += form.focused() + " ";
            form.press(Qt::Key_Tab);
        }
        EXPECT_EQ(order,
                  "cboZAVType cboScanPeriod cmdDefault chkSetup chkArm chkCalOn chkContScan "
                  "grdChannels cboChannel cboChanMode cboRange txtLabel txtUnit cmdMx_c cmdPostLin "
                  "cmdCoeff cmdAlarm cmdGroup cmdCopyChan cmdViewChans cboIntegration chkDegF "
                  "optAmbTemp txtExtTemp chkOpenTC cmdOK cmdCancel ");
        EXPECT_EQ(form.focused(), "cboZAVType");
    });
}

QString caption_of(const QWidget& widget) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return button->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) return group->title();
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return label && label->buddy() ? label->text() : QString();
}

// The accelerators that more than one control has that can be used now.
std::string shared_accelerators(const QWidget& window) {
    std::map<QString, QStringList> users;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const QString key = QKeySequence::mnemonic(caption_of(*widget)).toString();
        if (!key.isEmpty() && widget->isEnabled() && widget->isVisible())
            users[key] << widget->objectName();
    }
    QStringList shared;
    for (const auto& [key, names] : users)
        if (names.size() > 1) shared << key + ": " + names.join(' ');
    return shared.join("; ").toStdString();
}

TEST_F(PodSetupWindowTest, NoTwoControlsThatCanBeUsedShareAnAccelerator) {
    for (const PodTypeRow& type : pod_types())
        operate(type.type, [&](Form& form) {
            for (const int number : {1, 2, 19, 29}) {
                if (number > dialog.pod().NumChannels) continue;
                form.choose("cboChannel", std::to_string(number).c_str());
                const auto& modes = form.find<QComboBox>("cboChanMode");
                for (int i = 0; i < modes.count(); ++i) {
                    const QString mode = modes.itemText(i);
                    rig.dialogs.answer(Answer::Yes);  // to a question about six poles
                    form.choose("cboChanMode", mode.toLatin1().constData());
                    EXPECT_EQ(shared_accelerators(form.window()), "")
                        << type.code << " " << number << " " << mode.toStdString();
                }
            }
        });
    for (const SubDialog& which : SubDialogs)
        operate(which, [&](Form& form) {
            EXPECT_EQ(shared_accelerators(form.window()), "") << which.name;
        });
}

// The controls of a window that an operator uses, but not the toolkit's own inside them.
QList<QWidget*> controls(const QWidget& window) {
    QList<QWidget*> found;
    for (QWidget* widget : window.findChildren<QWidget*>())
        if (widget->focusPolicy() != Qt::NoFocus && !widget->objectName().isEmpty() &&
            !widget->objectName().startsWith("qt_"))
            found << widget;
    return found;
}

void expect_names_and_tips(const Form& form) {
    const std::string window = form.window().objectName().toStdString();
    EXPECT_GE(controls(form.window()).size(), 2) << window;
    for (const QWidget* widget : controls(form.window())) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool speaks = button && !button->text().isEmpty();  // its text is its name
        EXPECT_TRUE(speaks || !widget->accessibleName().isEmpty())
            << window << "." << widget->objectName().toStdString() << " has no name";
        EXPECT_FALSE(widget->toolTip().isEmpty())
            << window << "." << widget->objectName().toStdString() << " has no tip";
    }
}

TEST_F(PodSetupWindowTest, EveryControlHasANameAndATip) {
    operate(Type7V, [](Form& form) { expect_names_and_tips(form); });
    for (const SubDialog& which : SubDialogs)
        operate(which, [](Form& form) { expect_names_and_tips(form); });
}

}  // namespace
}  // namespace kavorix::test
