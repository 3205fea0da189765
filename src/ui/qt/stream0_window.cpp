#include "ui/qt/stream0_window.h"

#include <QHeaderView>

#include "ui_frmStrm0.h"

namespace kavorix {

namespace {

constexpr auto ColumnsKey = "frmStrm0/columns";

}  // namespace

Stream0Window::Stream0Window(Stream0View& view, Mirrors& mirrors, const WindowMemory& memory)
    : QDialog(nullptr, Qt::Window),
      view_(view),
      mirrors_(mirrors),
      memory_(memory),
      ui_(std::make_unique<Ui::frmStrm0>()) {
    ui_->setupUi(this);
    binder_ = std::make_unique<Binder>(mirrors, *this);
    binder_->bind(view.screen);
    binder_->add("grdStrm0", static_cast<GridSource&>(view));
    binder_->on_choose("cboView", [this](int index) { view_.cboView_Click(index); });
    binder_->on_click("cmdToggle", [this] { view_.cmdToggle_Click(); });
    binder_->on_click("cmdMin", [this] { view_.cmdMin_Click(); });
    binder_->on_click("cmdMax", [this] { view_.cmdMax_Click(); });
    binder_->on_click("cmdExit", [this] { close(); });
    connect(this, &QDialog::finished, this, [this] { unload(); });
    memory_.restore(*this);
    ui_->grdStrm0->horizontalHeader()->restoreState(memory_.value(ColumnsKey));
}

Stream0Window::~Stream0Window() {
    unload();
}

void Stream0Window::open_view() {
    view_.load();
    loaded_ = true;
    setWindowTitle(QString::fromStdString(view_.screen.caption));
    mirrors_.refresh();
    show();
    raise();
    activateWindow();
}

void Stream0Window::unload() {
    if (!loaded_) return;
    loaded_ = false;
    memory_.save(*this);
    memory_.set_value(ColumnsKey, ui_->grdStrm0->horizontalHeader()->saveState());
    mirrors_.loop().dispatch([this] { view_.unload(); });
}

}  // namespace kavorix
