#pragma once

// The windows of the graph: set-up, graph, printer.

#include <QPointer>
#include <QWidget>
#include <memory>

#include "graphs/station_graph.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "ui/qt/graph/graph_files.h"
#include "ui/qt/kit/mirrors.h"
#include "ui/qt/kit/window_memory.h"

namespace kavorix {

class QtGraphWindow;

// Also what the drawing layer does about printers: a page is printed through the system's dialog,
// on white paper whatever the palette of the screen.
class QtGraph : public GraphWindow {
  public:
    // All of it outlives the windows.
    struct Surroundings {
        StationGraph& graph;
        Mirrors& mirrors;
        Dialogs& dialogs;
        Files& files;
        const WindowMemory& memory;
    };
    explicit QtGraph(const Surroundings& surroundings);
    ~QtGraph() override;

    void set_main_window(QWidget* window) { main_window_ = window; }

    void show_graph_setup(GraphSetup& setup);
    void show_graph() override;
    void close_graph() override;

  private:
    void set_up_printer();
    void print();

    Surroundings with_;
    QPointer<QWidget> main_window_;
    GraphPrinter printer_;
    std::unique_ptr<QtGraphWindow> window_;
};

}  // namespace kavorix
