#include "ui/qt/graph/qt_graph.h"

#include "base/program_name.h"
#include "ui/qt/graph/graph_setup_dialog.h"
#include "ui/qt/graph/graph_window.h"
#include "ui/qt/kit/window_placing.h"

namespace kavorix {

QtGraph::QtGraph(const Surroundings& surroundings) : with_(surroundings) {
    with_.graph.page.set_printing({[this] { set_up_printer(); }, [this] { print(); }});
}

QtGraph::~QtGraph() {
    with_.graph.page.set_printing({});
}

void QtGraph::show_graph_setup(GraphSetup& setup) {
    show_graph_setup_dialog(setup, with_.mirrors, window_in_front(main_window_));
}

void QtGraph::show_graph() {
    if (!window_)
        window_ = std::make_unique<QtGraphWindow>(QtGraphWindow::Surroundings{
            with_.graph, with_.mirrors, with_.dialogs, with_.files, with_.memory});
    window_->open_window();
}

void QtGraph::close_graph() {
    if (window_) window_->close_window();
}

void QtGraph::set_up_printer() {
    printer_.set_up(with_.mirrors.loop(), window_in_front(main_window_));
}

void QtGraph::print() {
    if (!window_ || !printer_.choose(with_.mirrors.loop(), window_.get())) return;
    bool printed = false;
    window_->on_paper([&](GraphCanvas& canvas) { printed = printer_.print(canvas); });
    if (!printed)
        with_.dialogs.message_box("The printer does not take the graph.", box::Exclamation,
                                  ProgramName);
}

}  // namespace kavorix
