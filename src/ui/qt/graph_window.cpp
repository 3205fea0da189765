#include "ui/qt/graph_window.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QMimeData>

#include "link/error_log.h"
#include "ui/qt/graph_canvas.h"
#include "ui/qt/graph_files.h"
#include "ui/qt/theme.h"
#include "ui_frmGraph.h"

namespace kavorix {

namespace {

constexpr auto SplitKey = "frmGraph/split";

Ground screen_ground() {
    return is_dark(QApplication::palette()) ? Ground::Dark : Ground::Light;
}

}  // namespace

QtGraphWindow::QtGraphWindow(const Surroundings& surroundings)
    : QDialog(nullptr, Qt::Window),
      with_(surroundings),
      ui_(std::make_unique<Ui::frmGraph>()),
      canvas_(new GraphCanvas(with_.page, with_.controls)) {
    ui_->setupUi(this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    ui_->split->insertWidget(0, canvas_);
    ui_->split->setStretchFactor(0, 1);
    ui_->split->setCollapsible(0, false);
    canvas_->set_dispatch(
        [this](const std::function<void()>& work) { with_.mirrors.loop().dispatch(work); });
    bind_controls();
    with_.page.set_ground(screen_ground());
    with_.memory.restore(*this);
    ui_->split->restoreState(with_.memory.value(SplitKey));
    with_.mirrors.add(*this);
}

QtGraphWindow::~QtGraphWindow() {
    with_.mirrors.remove(*this);
}

void QtGraphWindow::bind_controls() {
    GraphControls& controls = with_.controls;
    binder_ = std::make_unique<Binder>(with_.mirrors, *this);
    binder_->bind(controls.screen);
    binder_->on_click("chkFollow", [&] { controls.chkFollow_Click(); });
    binder_->on_click("chkPause", [&] { controls.chkPause_Click(); });
    binder_->on_click("chkCursors", [&] { controls.chkCursors_Click(); });
    binder_->on_click("chkClock", [&] { controls.chkClock_Click(); });
    binder_->on_click("cmdAll", [&] { controls.cmdAll_Click(); });
    binder_->on_click("cmdAutoscale", [&] { controls.cmdAutoscale_Click(); });
    binder_->on_click("cmdExport", [this] { save(); });
    binder_->on_click("cmdCopy", [this] { copy(); });
    binder_->on_click("cmdPrint", [this] { with_.graph.print(); });
    binder_->on_click("cmdExit", [this] { ask_to_close(); });
}

void QtGraphWindow::open_window() {
    setWindowTitle(QString::fromStdString(with_.controls.screen.caption));
    with_.page.set_ground(screen_ground());
    show();
    raise();
    activateWindow();
    canvas_->setFocus();
}

void QtGraphWindow::close_window() {
    with_.memory.save(*this);
    with_.memory.set_value(SplitKey, ui_->split->saveState());
    hide();
}

void QtGraphWindow::refresh() {
    if (!isVisible()) return;
    follow_palette();
    if (isMinimized())
        with_.controls.refresh();
    else
        canvas_->update_graph();
}

void QtGraphWindow::follow_palette() {
    if (with_.page.ground() == screen_ground()) return;
    with_.page.set_ground(screen_ground());
    with_.graph.colours_changed();
}

void QtGraphWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    ask_to_close();
}

void QtGraphWindow::reject() {
    ask_to_close();
}

// The graph closes the window when the operator agrees.
void QtGraphWindow::ask_to_close() {
    if (asking_) return;
    asking_ = true;
    with_.mirrors.loop().dispatch([this] { with_.graph.unload_request(); });
    asking_ = false;
}

void QtGraphWindow::on_paper(const std::function<void(GraphCanvas&)>& work) {
    with_.page.set_ground(Ground::Light);
    with_.graph.colours_changed();
    canvas_->update_graph();
    work(*canvas_);
    follow_palette();
    canvas_->update_graph();
}

void QtGraphWindow::save() {
    const auto path = with_.dialogs.choose_file_to_save(graph_file_request());
    if (!path || !with_.graph.exists()) return;
    std::optional<std::string> failure;
    on_paper([&](GraphCanvas& canvas) {
        failure = save_graph(canvas, with_.files, *path, with_.controls.csv());
    });
    if (failure) with_.dialogs.message_box(*failure, box::Exclamation, ProgramName);
}

void QtGraphWindow::copy() {
    on_paper([this](GraphCanvas& canvas) {
        QApplication::clipboard()->setMimeData(graph_mime_data(canvas, with_.controls.csv()));
    });
}

}  // namespace kavorix
