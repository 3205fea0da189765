#include "ui/qt/graph/graph_window.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QMimeData>

#include "base/program_name.h"
#include "ui/qt/graph/graph_canvas.h"
#include "ui/qt/graph/graph_files.h"
#include "ui/qt/kit/theme.h"
#include "ui_frmGraph.h"

namespace kavorix {

namespace {

constexpr double PressedShare = 0.4;  // of the highlight colour in a pressed button
constexpr int ValueColumn = 96;       // pixels for a reading of seven digits

Ground screen_ground() {
    return is_dark(QApplication::palette()) ? Ground::Dark : Ground::Light;
}

}  // namespace

QtGraphWindow::QtGraphWindow(const Surroundings& surroundings)
    : QDialog(nullptr, Qt::Window),
      with_(surroundings),
      page_(with_.graph.page),
      controls_(with_.graph.controls),
      ui_(std::make_unique<Ui::frmGraph>()),
      canvas_(new GraphCanvas(page_, controls_)) {
    ui_->setupUi(this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    ui_->split->insertWidget(0, canvas_);
    ui_->split->setStretchFactor(0, 1);
    ui_->split->setChildrenCollapsible(false);
    canvas_->set_dispatch(
        [this](const std::function<void()>& work) { with_.mirrors.loop().dispatch(work); });
    // Before the binder's mirror: following the graph changes the records that it shows.
    with_.mirrors.add(*this);
    bind_controls();
    page_.set_ground(screen_ground());
    with_.memory.restore(*this);
}

QtGraphWindow::~QtGraphWindow() {
    with_.mirrors.remove(*this);
}

void QtGraphWindow::bind_controls() {
    GraphControls& controls = controls_;
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
    binder_->on_click("cmdPrint", [this] { with_.graph.live.print(); });
    binder_->on_click("cmdExit", [this] { ask_to_close(); });
}

void QtGraphWindow::open_window() {
    setWindowTitle(QString::fromStdString(controls_.screen.caption));
    page_.set_ground(screen_ground());
    show();
    raise();
    activateWindow();
    canvas_->setFocus();
}

void QtGraphWindow::close_window() {
    with_.memory.save(*this);
    hide();
}

void QtGraphWindow::refresh() {
    if (!isVisible()) return;
    follow_palette();
    if (isMinimized())
        controls_.refresh();
    else
        canvas_->update_graph();
    mark_pressed_buttons();
    // Once it stands there with its columns.
    if (ui_->fraCursors->isVisible() && !std::exchange(table_fitted_, true)) fit_cursor_table();
}

// A pressed button wears the colour of what is chosen.
void QtGraphWindow::mark_pressed_buttons() {
    const QPalette usual = QApplication::palette();
    QPalette pressed = usual;
    pressed.setColor(QPalette::Button, blend(usual.color(QPalette::Button),
                                             usual.color(QPalette::Highlight), PressedShare));
    const GraphScreen& screen = controls_.screen;
    const auto mark = [&](QWidget& button, const CheckBox& box) {
        const QPalette& wanted = box.checked ? pressed : usual;
        if (button.palette().color(QPalette::Button) != wanted.color(QPalette::Button))
            button.setPalette(wanted);
    };
    mark(*ui_->chkFollow, screen.chkFollow);
    mark(*ui_->chkPause, screen.chkPause);
    mark(*ui_->chkCursors, screen.chkCursors);
    mark(*ui_->chkClock, screen.chkClock);
}

void QtGraphWindow::fit_cursor_table() {
    int width = ui_->grdCursors->columnWidth(0);
    for (int column = 1; column < ui_->grdCursors->model()->columnCount(); ++column) {
        ui_->grdCursors->setColumnWidth(column, ValueColumn);
        width += ValueColumn;
    }
    ui_->split->setSizes({ui_->split->width() - width, width});
}

void QtGraphWindow::follow_palette() {
    if (page_.ground() == screen_ground()) return;
    page_.set_ground(screen_ground());
    with_.graph.live.colours_changed();
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
    with_.mirrors.loop().dispatch([this] { with_.graph.live.unload_request(); });
    asking_ = false;
}

void QtGraphWindow::on_paper(const std::function<void(GraphCanvas&)>& work) {
    page_.set_ground(Ground::Light);
    with_.graph.live.colours_changed();
    canvas_->update_graph();
    work(*canvas_);
    follow_palette();
    canvas_->update_graph();
}

void QtGraphWindow::save() {
    const auto path = with_.dialogs.choose_file_to_save(graph_file_request());
    if (!path || !with_.graph.live.exists()) return;
    std::optional<std::string> failure;
    on_paper([&](GraphCanvas& canvas) {
        failure = save_graph(canvas, with_.files, *path, controls_.csv());
    });
    if (failure) with_.dialogs.message_box(*failure, box::Exclamation, ProgramName);
}

void QtGraphWindow::copy() {
    on_paper([this](GraphCanvas& canvas) {
        QApplication::clipboard()->setMimeData(graph_mime_data(canvas, controls_.csv()));
    });
}

}  // namespace kavorix
