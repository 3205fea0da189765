#include "ui/qt/main/station_forms.h"

#include <QFontDatabase>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QShowEvent>
#include <QValidator>
#include <algorithm>

#include "base/text.h"
#include "ui/qt/kit/modal_form.h"
#include "ui/qt/kit/qt_text.h"
#include "ui_frmConfigAdap.h"
#include "ui_frmSelChan.h"
#include "ui_frmTxCmd.h"
#include "ui_frmViewStat.h"

namespace kavorix {

namespace {

constexpr int MostReportLines = 14;  // shown without scrolling

// Makes a field take capital letters, the cursor staying where it is.
class UpperCase : public QValidator {
  public:
    using QValidator::QValidator;
    State validate(QString& text, int&) const override {
        if (const auto stored = from_qt(text)) text = to_qt(upper(*stored));
        return Acceptable;
    }
};

// Stands in the middle of the screen, wherever the main window is.
class StatusForm : public ModalForm<Ui::frmViewStat> {
  public:
    using ModalForm::ModalForm;

  protected:
    void showEvent(QShowEvent* event) override {
        QDialog::showEvent(event);
        if (event->spontaneous()) return;
        QRect place({}, size());
        place.moveCenter(screen()->availableGeometry().center());
        move(place.topLeft());
    }
};

// A text of a fixed pitch, as wide as its widest line and as high as it has lines, within reason.
void show_report(QPlainTextEdit& field, const std::string& lines, int least_width) {
    field.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QString text = to_qt(lines);
    if (text.endsWith(u'\n')) text.chop(1);
    field.setPlainText(text);
    const int margins = 2 * static_cast<int>(field.document()->documentMargin());
    const auto height_of = [&](int count) {
        // A line to spare: a tight field gets scroll bars that take the room from each other.
        return (count + 1) * field.fontMetrics().lineSpacing() + margins +
               field.horizontalScrollBar()->sizeHint().height();
    };
    const int count = std::max(field.document()->blockCount(), 1);
    field.setMinimumHeight(height_of(std::min(count, MostReportLines)));
    field.setMaximumHeight(height_of(count));
    field.setMinimumWidth(least_width + margins + field.verticalScrollBar()->sizeHint().width());
}

}  // namespace

void run_form(InterfaceSettingsDialog& rules, Mirrors& mirrors, QWidget* over) {
    ModalForm<Ui::frmConfigAdap> form(mirrors, rules.screen);
    form.binder.on_click("cmdOK", [&] { rules.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { rules.cmdCancel_Click(); });
    form.run(
        over, [&] { return rules.closed(); }, [&] { rules.cmdCancel_Click(); });
}

void run_form(StatusView& rules, Mirrors& mirrors, QWidget* over) {
    StatusForm form(mirrors, rules.screen);
    QLabel& header = *form.ui.lblZAVHead;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setBold(true);
    header.setFont(font);
    header.setIndent(static_cast<int>(form.ui.txtZAVStat->document()->documentMargin()));
    show_report(*form.ui.txtZAVStat, rules.screen.txtZAVStat.text, header.sizeHint().width());
    show_report(*form.ui.txtAdapStat, rules.screen.txtAdapStat.text, 0);
    form.binder.on_click("cmdCompare", [&] {
        rules.cmdCompare_Click();
        show_report(*form.ui.txtHeld, rules.screen.txtHeld.text, 0);
    });
    form.binder.on_click("cmdOK", [&] { rules.cmdOK_Click(); });
    form.run(
        over, [&] { return rules.closed(); }, [&] { rules.cmdOK_Click(); });
}

void run_form(TxCommandDialog& rules, Mirrors& mirrors, QWidget* over) {
    ModalForm<Ui::frmTxCmd> form(mirrors, rules.screen);
    QLineEdit& field = *form.ui.txtTxCmd;
    field.setValidator(new UpperCase(&field));
    form.binder.on_edit("txtTxCmd", [&] { rules.txtTxCmd_Change(); });
    form.binder.on_click("cmdSend", [&] {
        field.setFocus();
        rules.cmdSend_Click();
    });
    form.binder.on_click("cmdCancel", [&] { rules.cmdCancel_Click(); });
    const auto on_key = [&](Qt::Key key, void (TxCommandDialog::*action)()) {
        auto* const shortcut = new QShortcut(key, &form);
        QObject::connect(shortcut, &QShortcut::activated, &form, [&rules, &mirrors, action] {
            mirrors.loop().dispatch([&] { (rules.*action)(); });
        });
    };
    on_key(Qt::Key_Up, &TxCommandDialog::history_older);
    on_key(Qt::Key_Down, &TxCommandDialog::history_newer);
    form.run(
        over, [&] { return rules.closed(); }, [&] { rules.cmdCancel_Click(); });
}

void run_form(SelectChannelsDialog& rules, Mirrors& mirrors, QWidget* over) {
    ModalForm<Ui::frmSelChan> form(mirrors, rules.screen);
    form.setWindowTitle(to_qt(rules.screen.caption));
    form.binder.on_choose("cboZav", [&](int index) { rules.cboZav_Click(index); });
    for (int channel = 0; channel < MaxChannels; ++channel)
        form.binder.on_click("chkChan_" + std::to_string(channel),
                             [&rules, channel] { rules.chkChan_Click(channel); });
    form.binder.on_click("cmdAll", [&] { rules.cmdAll_Click(); });
    form.binder.on_click("cmdNone", [&] { rules.cmdNone_Click(); });
    form.binder.on_click("cmdOK", [&] { rules.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { rules.cmdCancel_Click(); });
    form.run(
        over, [&] { return rules.closed(); }, [&] { rules.cmdCancel_Click(); });
}

}  // namespace kavorix
