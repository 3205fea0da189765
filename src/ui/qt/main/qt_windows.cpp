#include "ui/qt/main/qt_windows.h"

#include <QApplication>
#include <QDialog>

#include "ui/qt/graph/qt_graph.h"
#include "ui/qt/kit/icons.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/window_placing.h"
#include "ui/qt/logs/logging_windows.h"
#include "ui/qt/main/station_forms.h"
#include "ui/qt/streams/stream_windows.h"
#include "ui_frmAbout.h"

namespace kavorix {

QtWindows::QtWindows(Mirrors& mirrors, const QString& memory_path)
    : mirrors_(mirrors), memory_(memory_path), guide_(documents_folder(), memory_) {}

QtWindows::~QtWindows() = default;

void QtWindows::set_main_window(QWidget* window) {
    main_window_ = window;
    if (graph_) graph_->set_main_window(window);
}

void QtWindows::set_graph(StationGraph& graph, Dialogs& dialogs, Files& files) {
    graph_ =
        std::make_unique<QtGraph>(QtGraph::Surroundings{graph, mirrors_, dialogs, files, memory_});
    graph_->set_main_window(main_window_);
}

void QtWindows::show_graph_setup(GraphSetup& rules) {
    if (graph_) graph_->show_graph_setup(rules);
}

void QtWindows::show_graph() {
    if (graph_) graph_->show_graph();
}

void QtWindows::close_graph() {
    if (graph_) graph_->close_graph();
}

void QtWindows::show_about(const AboutBox& about) {
    QDialog dialog;
    Ui::frmAbout ui;
    ui.setupUi(&dialog);
    dialog.setWindowTitle(to_qt(about.title));
    ui.imgProgram->setPixmap(program_icon().pixmap(64, 64));
    ui.lblProgram->setText(to_qt(about.program));
    ui.lblModel->setText(to_qt(about.model));
    ui.lblVersion->setText(to_qt(about.version));
    ui.lblDLLVers->setText(to_qt(about.lblDLLVers));
    run_modal(mirrors_.loop(), dialog, window_in_front(main_window_));
}

QWidget* QtWindows::in_use() const {
    QWidget* const active = QApplication::activeWindow();
    return window_in_front(active ? active : main_window_.data());
}

template <class View>
void QtWindows::open_view(std::int16_t stream, View& view) {
    auto& window = stream_windows_[at(stream)];
    if (!window) window = make_stream_window(view, mirrors_, memory_);
    window->open_view();
}

void QtWindows::show_stream0(Stream0View& view) {
    open_view(ReadingStream, view);
}

void QtWindows::show_stream1(Stream1View& view) {
    open_view(RequestStream, view);
}

void QtWindows::show_stream2(Stream2View& view) {
    open_view(EventStream, view);
}

void QtWindows::show_stream3(Stream3View& view) {
    open_view(TextStream, view);
}

void QtWindows::show_interface_settings(InterfaceSettingsDialog& dialog) {
    run_form(dialog, mirrors_, in_use());
}

void QtWindows::show_status(StatusView& view) {
    run_form(view, mirrors_, in_use());
}

void QtWindows::show_tx_command(TxCommandDialog& dialog) {
    run_form(dialog, mirrors_, in_use());
}

void QtWindows::show_select_channels(SelectChannelsDialog& dialog) {
    run_form(dialog, mirrors_, in_use());
}

void QtWindows::show_log_setup(LogSetup& rules) {
    run_log_setup(mirrors_, rules, window_in_front(main_window_));
}

void QtWindows::show_csv_conversion(CsvDialog& rules) {
    run_csv_conversion(mirrors_, rules, window_in_front(main_window_));
}

void QtWindows::show_csv_progress(CsvProgress& rules, bool open) {
    csv_progress_.reset();
    if (open)
        csv_progress_ =
            std::make_unique<CsvProgressWindow>(mirrors_, rules, window_in_front(main_window_));
}

}  // namespace kavorix
