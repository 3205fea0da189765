#include "ui/qt/pods/pod_setup_window.h"

#include <QHeaderView>
#include <QKeySequence>
#include <QLineEdit>
#include <QScreen>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <algorithm>

#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

constexpr auto ColumnsKey = "frmConfigZAV/columns";
constexpr int ColumnWidths[] = {52, 190, 150, 130};
constexpr int RoomyHeight = 900;  // all 20 channels of most types are in sight
constexpr int TitleBar = 60;      // the height that the desktop adds, and some

// Rows of channels that are not in use stand back.
class ChannelDelegate : public QStyledItemDelegate {
  public:
    ChannelDelegate(const ChannelOverview& overview, QObject* parent)
        : QStyledItemDelegate(parent), overview_(overview) {}

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!overview_.in_use(index.row()))
            option->palette.setColor(QPalette::Text, signal_colours(option->palette).faint);
    }

  private:
    const ChannelOverview& overview_;
};

}  // namespace

FocusMirror::FocusMirror(Mirrors& mirrors, QWidget& form, std::string& wanted)
    : mirrors_(mirrors), form_(form), wanted_(wanted) {
    mirrors_.add(*this);
}

FocusMirror::~FocusMirror() {
    mirrors_.remove(*this);
}

void FocusMirror::refresh() {
    if (wanted_.empty()) return;
    auto* const target = form_.findChild<QWidget*>(to_qt(wanted_));
    wanted_.clear();
    if (!target) return;
    target->setFocus(Qt::OtherFocusReason);
    if (auto* const edit = qobject_cast<QLineEdit*>(target)) edit->selectAll();
}

PodSetupWindow::PodSetupWindow(PodSetup& dialog, Mirrors& mirrors, const WindowMemory& memory)
    : ModalForm(mirrors, dialog.screen),
      dialog_(dialog),
      mirrors_(mirrors),
      memory_(memory),
      overview_([&dialog]() -> const PodConfig& { return dialog.pod(); }),
      focus_(mirrors, *this, dialog.screen.focus) {
    setWindowTitle(to_qt(dialog.screen.caption));
    bind_pod();
    bind_channel();
    bind_groups();
    bind_table();
    mirrors_.add(*this);
}

PodSetupWindow::~PodSetupWindow() {
    mirrors_.remove(*this);
}

void PodSetupWindow::run(QWidget* over) {
    ModalForm::run(
        over, [this] { return dialog_.closed(); }, [this] { dialog_.unload_request(); });
    memory_.save(*this);
    memory_.set_value(ColumnsKey, ui.grdChannels->horizontalHeader()->saveState());
}

void PodSetupWindow::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        make_room();
        memory_.restore(*this);
    }
    QDialog::showEvent(event);
}

// As high as the screen allows, where it would open smaller.
void PodSetupWindow::make_room() {
    const QRect free = screen()->availableGeometry();
    const int more = std::min(RoomyHeight, free.height() - TitleBar) - height();
    if (more <= 0) return;
    resize(width(), height() + more);
    move(x(), std::max(free.top(), y() - more / 2));
}

void PodSetupWindow::bind_pod() {
    binder.on_choose("cboZAVNo", [this](int) { dialog_.cboZAVNo_Click(); });
    binder.on_choose("cboZAVType", [this](int) { dialog_.cboZAVType_Click(); });
    binder.on_choose("cboScanPeriod", [this](int) { dialog_.cboScanPeriod_Click(); });
    binder.on_click("chkSetup", [this] { dialog_.chkSetup_Click(); });
    binder.on_click("chkArm", [this] { dialog_.chkArm_Click(); });
    binder.on_click("chkCalOn", [this] { dialog_.chkCalOn_Click(); });
    binder.on_click("chkContScan", [this] { dialog_.chkContScan_Click(); });
    binder.on_click("cmdDefault", [this] { dialog_.cmdDefault_Click(); });
    binder.on_click("cmdUndo", [this] { dialog_.cmdUndo_Click(); });
    binder.on_click("cmdRedo", [this] { dialog_.cmdRedo_Click(); });
    binder.on_click("cmdOK", [this] { dialog_.cmdOK_Click(); });
    binder.on_click("cmdCancel", [this] { dialog_.unload_request(); });
    ui.cmdUndo->setShortcut(QKeySequence::Undo);
    ui.cmdRedo->setShortcut(QKeySequence("Ctrl+Y"));
}

void PodSetupWindow::bind_channel() {
    binder.on_choose("cboChannel", [this](int) { dialog_.cboChannel_Click(); });
    binder.on_choose("cboChanMode", [this](int) { dialog_.cboChanMode_Click(); });
    binder.on_choose("cboRange", [this](int) { dialog_.cboRange_Click(); });
    binder.on_leave("txtLabel",
                    [this](std::string_view to) { return dialog_.txtLabel_LostFocus(to); });
    binder.on_leave("txtUnit",
                    [this](std::string_view to) { return dialog_.txtUnit_LostFocus(to); });
    binder.on_click("cmdCopyChan", [this] { dialog_.cmdCopyChan_Click(); });
    binder.on_click("cmdViewChans", [this] { dialog_.cmdViewChans_Click(); });
    binder.on_click("cmdMx_c", [this] { dialog_.cmdMx_c_Click(); });
    binder.on_click("cmdPostLin", [this] { dialog_.cmdPostLin_Click(); });
    binder.on_click("cmdCoeff", [this] { dialog_.cmdCoeff_Click(); });
    binder.on_click("cmdAlarm", [this] { dialog_.cmdAlarm_Click(); });
    binder.on_click("cmdGroup", [this] { dialog_.cmdGroup_Click(); });
}

void PodSetupWindow::bind_groups() {
    binder.on_choose("cboIntegration", [this](int) { dialog_.cboIntegration_Click(); });
    binder.on_click("chkDegF", [this] { dialog_.chkDegF_Click(); });
    binder.on_click("optAmbTemp", [this] { dialog_.optAmbTemp_Click(); });
    binder.on_click("optExtTemp", [this] { dialog_.optExtTemp_Click(); });
    binder.on_leave("txtExtTemp",
                    [this](std::string_view to) { return dialog_.txtExtTemp_LostFocus(to); });
    binder.on_click("chkOpenTC", [this] { dialog_.chkOpenTC_Click(); });
    binder.on_choose("cboSampleRate", [this](int) { dialog_.cboSampleRate_Click(); });
    binder.on_choose("cboTimeout", [this](int) { dialog_.cboTimeout_Click(); });
    binder.on_click("chkHWWatch", [this] { dialog_.chkHWWatch_Click(); });
    binder.on_click("chkSWWatch", [this] { dialog_.chkSWWatch_Click(); });
    binder.on_leave("txtSWWatchTime",
                    [this](std::string_view to) { return dialog_.txtSWWatchTime_LostFocus(to); });
    binder.on_leave("txtGaugeFactor",
                    [this](std::string_view to) { return dialog_.txtGaugeFactor_LostFocus(to); });
    binder.on_leave("txtOffset",
                    [this](std::string_view to) { return dialog_.txtOffset_LostFocus(to); });
    binder.on_leave("txtInitialVolt",
                    [this](std::string_view to) { return dialog_.txtInitialVolt_LostFocus(to); });
    binder.on_click("cmdInitialise", [this] { dialog_.cmdInitialise_Click(); });
}

void PodSetupWindow::bind_table() {
    GridView& table = *ui.grdChannels;
    binder.add("grdChannels", static_cast<GridSource&>(overview_));
    table.setItemDelegate(new ChannelDelegate(overview_, &table));
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::SingleSelection);
    for (int column = 0; column < static_cast<int>(std::size(ColumnWidths)); ++column)
        table.setColumnWidth(column, ColumnWidths[column]);
    table.horizontalHeader()->restoreState(memory_.value(ColumnsKey));
    connect(table.selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& row) { choose_row(row.row()); });
}

void PodSetupWindow::choose_row(int row) {
    if (row < 0) return;
    mirrors_.loop().dispatch([&] {
        dialog_.screen.cboChannel.index = row;
        dialog_.cboChannel_Click();
    });
}

// The table follows the channel list.
void PodSetupWindow::refresh() {
    GridView& table = *ui.grdChannels;
    table.setEnabled(dialog_.screen.cboChannel.enabled);
    const int row = dialog_.screen.cboChannel.index;
    if (table.currentIndex().row() == row || row >= table.model()->rowCount()) return;
    const QSignalBlocker quiet(table.selectionModel());
    table.setCurrentIndex(table.model()->index(row, 0));
    if (row >= 0) table.scrollTo(table.currentIndex());
    table.viewport()->update();
}

}  // namespace kavorix
