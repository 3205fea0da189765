#include "ui/qt/pods/pod_setup_windows.h"

#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>
#include <algorithm>

#include "ui/pods/alarm_groups.h"
#include "ui/pods/alarm_limits.h"
#include "ui/pods/channel_view.h"
#include "ui/pods/copy_channel.h"
#include "ui/pods/post_linearisation.h"
#include "ui/pods/unit_conversion.h"
#include "ui/pods/user_thermocouple.h"
#include "ui/qt/kit/modal_form.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/window_placing.h"
#include "ui/qt/pods/pod_setup_window.h"
#include "ui_frmAlarm.h"
#include "ui_frmCoeff.h"
#include "ui_frmCopyChan.h"
#include "ui_frmGroup.h"
#include "ui_frmMx_c.h"
#include "ui_frmPost.h"
#include "ui_frmViewChan.h"

namespace kavorix {

namespace {

constexpr double CurveRanges[] = {1, 10, 100, 1000};  // the curves go from -range to range
constexpr int FirstCurveRange = 1;
constexpr int ColumnGap = 12;  // pixels

std::string indexed(const char* name, int index) {
    return std::string(name) + '_' + std::to_string(index);
}

// A table so wide that no column is out of sight.
void show_all_columns(GridView& table) {
    table.resizeColumnsToContents();
    int width = 2 * table.frameWidth() + table.verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < table.model()->columnCount(); ++column) {
        if (table.isColumnHidden(column)) continue;
        table.setColumnWidth(column, table.columnWidth(column) + ColumnGap);
        width += table.columnWidth(column);
    }
    table.setMinimumWidth(std::max(table.minimumWidth(), width));
}

// A form in the middle of the screen. The pointer is busy from the start until the form is shown.
template <class UiForm>
class CentredForm : public ModalForm<UiForm> {
  public:
    template <class Record>
    CentredForm(Mirrors& mirrors, Record& record, Dialogs& dialogs)
        : ModalForm<UiForm>(mirrors, record), dialogs_(dialogs) {
        this->setWindowTitle(to_qt(record.caption));
    }

  protected:
    void showEvent(QShowEvent* event) override {
        QDialog::showEvent(event);
        if (event->spontaneous()) return;
        QRect place = this->frameGeometry();
        place.moveCenter(this->screen()->availableGeometry().center());
        this->move(place.topLeft());
        dialogs_.set_pointer(Pointer::Default);
    }

  private:
    Dialogs& dialogs_;
};

}  // namespace

QtPodSetupWindows::QtPodSetupWindows(Mirrors& mirrors, Dialogs& dialogs, const WindowMemory& memory)
    : mirrors_(mirrors), dialogs_(dialogs), memory_(memory) {}

QWidget* QtPodSetupWindows::front() const {
    return window_in_front(main_window_);
}

void QtPodSetupWindows::show_pod_setup(PodSetup& dialog) {
    PodSetupWindow(dialog, mirrors_, memory_).run(front());
}

void QtPodSetupWindows::show_copy_channel(CopyChannel& dialog) {
    ModalForm<Ui::frmCopyChan> form(mirrors_, dialog.screen);
    form.setWindowTitle(to_qt(dialog.screen.caption));
    form.binder.on_click("cmdSelectAll", [&] { dialog.cmdSelectAll_Click(); });
    form.binder.on_click("cmdDeSelectAll", [&] { dialog.cmdDeSelectAll_Click(); });
    form.binder.on_click("cmdOK", [&] { dialog.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { dialog.cmdCancel_Click(); });
    form.run(
        front(), [&] { return dialog.closed(); }, [&] { dialog.cmdCancel_Click(); });
}

void QtPodSetupWindows::show_channel_view(ChannelView& view) {
    ModalForm<Ui::frmViewChan> form(mirrors_, view.screen);
    form.setWindowTitle(to_qt(view.screen.caption));
    const auto& headings = view.screen.grdChannel.headings;
    for (std::size_t column = 0; column < headings.size(); ++column)
        form.ui.grdChannel->setColumnHidden(static_cast<int>(column), headings[column].empty());
    show_all_columns(*form.ui.grdChannel);
    form.binder.on_click("cmdOK", [&] { view.cmdOK_Click(); });
    form.run(
        front(), [&] { return view.closed(); }, [&] { view.cmdOK_Click(); });
}

void QtPodSetupWindows::show_unit_conversion(UnitConversion& dialog) {
    dialogs_.set_pointer(Pointer::Busy);
    CentredForm<Ui::frmMx_c> form(mirrors_, dialog.screen, dialogs_);
    const FocusMirror focus(mirrors_, form, dialog.screen.focus);
    form.binder.on_leave("txtMValue",
                         [&](std::string_view to) { return dialog.txtMValue_LostFocus(to); });
    form.binder.on_leave("txtCValue",
                         [&](std::string_view to) { return dialog.txtCValue_LostFocus(to); });
    for (const char* field : {"txtMValue", "txtCValue"})
        form.binder.on_edit(field, [&] { dialog.txtValue_Change(); });
    for (int entry = 0; entry < static_cast<int>(dialog.screen.PostLinOp.size()); ++entry)
        form.binder.on_click(indexed("PostLinOp", entry),
                             [&dialog, entry] { dialog.PostLinOp_Click(entry); });
    form.binder.on_click("cmdOK", [&] { dialog.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { dialog.cmdCancel_Click(); });
    form.run(
        front(), [&] { return dialog.closed(); }, [&] { dialog.cmdCancel_Click(); });
}

template <class UiForm, class Rules>
void QtPodSetupWindows::show_polynomials(Rules& dialog) {
    dialogs_.set_pointer(Pointer::Busy);
    CentredForm<UiForm> form(mirrors_, dialog.screen, dialogs_);
    for (const double range : CurveRanges)
        form.ui.cboPlotRange->addItem(QString("%1 to %2").arg(-range).arg(range));
    form.ui.cboPlotRange->setCurrentIndex(FirstCurveRange);
    const auto draw = [&] {
        const double range = CurveRanges[form.ui.cboPlotRange->currentIndex()];
        form.ui.plotA->show_curve(dialog.first(), -range, range);
        form.ui.plotB->show_curve(dialog.second(), -range, range);
    };
    draw();
    form.binder.on_choose("cboPlotRange", [&](int) { draw(); });
    for (int i = 0; i < Coefficients; ++i) {
        const std::string first = indexed("txtCoeff", i);
        const std::string second = indexed("txtbCoeff", i);
        form.binder.on_leave(
            first, [&dialog, i](std::string_view to) { return dialog.txtCoeff_LostFocus(i, to); });
        form.binder.on_leave(second, [&dialog, i](std::string_view to) {
            return dialog.txtbCoeff_LostFocus(i, to);
        });
        form.binder.on_edit(first, [&] {
            dialog.txtCoeff_Change();
            draw();
        });
        form.binder.on_edit(second, [&] {
            dialog.txtbCoeff_Change();
            draw();
        });
    }
    form.binder.on_click("cmdOK", [&] { dialog.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { dialog.cmdCancel_Click(); });
    form.run(
        front(), [&] { return dialog.closed(); }, [&] { dialog.cmdCancel_Click(); });
}

void QtPodSetupWindows::show_post_linearisation(PostLinearisation& dialog) {
    show_polynomials<Ui::frmPost>(dialog);
}

void QtPodSetupWindows::show_user_thermocouple(UserThermocouple& dialog) {
    show_polynomials<Ui::frmCoeff>(dialog);
}

void QtPodSetupWindows::show_alarm_limits(AlarmLimits& dialog) {
    ModalForm<Ui::frmAlarm> form(mirrors_, dialog.screen);
    form.setWindowTitle(to_qt(dialog.screen.caption));
    const FocusMirror focus(mirrors_, form, dialog.screen.focus);
    for (const int row : {HighRow, LowRow}) {
        form.binder.on_click(indexed("chkEnableAlarm", row),
                             [&dialog, row] { dialog.chkEnableAlarm_Click(row); });
        form.binder.on_leave(indexed("txtAlarmLimit", row), [&dialog, row](std::string_view to) {
            return dialog.txtAlarmLimit_LostFocus(row, to);
        });
        form.binder.on_leave(indexed("txtHisteresisLimit", row),
                             [&dialog, row](std::string_view to) {
                                 return dialog.txtHisteresisLimit_LostFocus(row, to);
                             });
    }
    form.binder.on_click("cmdOK", [&] { dialog.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { dialog.cmdCancel_Click(); });
    form.run(
        front(), [&] { return dialog.closed(); }, [&] { dialog.cmdCancel_Click(); });
}

void QtPodSetupWindows::show_alarm_groups(AlarmGroups& dialog) {
    ModalForm<Ui::frmGroup> form(mirrors_, dialog.screen);
    form.setWindowTitle(to_qt(dialog.screen.caption));
    form.binder.on_click("optchan19", [&] { dialog.optchan19_Click(); });
    form.binder.on_click("optchan20", [&] { dialog.optchan20_Click(); });
    form.binder.on_click("optAss", [&] { dialog.optAss_Click(); });
    form.binder.on_click("optDis", [&] { dialog.optDis_Click(); });
    form.binder.on_click("optOff", [&] { dialog.optOff_Click(); });
    form.binder.on_click("cmdSelectAll", [&] { dialog.cmdSelectAll_Click(); });
    form.binder.on_click("cmdClearAll", [&] { dialog.cmdClearAll_Click(); });
    form.binder.on_click("cmdOK", [&] { dialog.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { dialog.cmdCancel_Click(); });
    form.run(
        front(), [&] { return dialog.closed(); }, [&] { dialog.cmdCancel_Click(); });
}

}  // namespace kavorix
