#pragma once

// The graph window `frmGraph` on the screen.

#include <QDialog>
#include <functional>
#include <memory>

#include "graphs/station_graph.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "ui/qt/kit/binder.h"
#include "ui/qt/kit/window_memory.h"

namespace Ui {
class frmGraph;
}

namespace kavorix {

class GraphCanvas;

// Shows the page while the graph is there; asks it when it is to be closed. What it saves, copies
// and prints is on white paper, whatever the palette of the screen.
class QtGraphWindow : public QDialog, private Mirror {
  public:
    // All of it outlives the window.
    struct Surroundings {
        StationGraph& graph;
        Mirrors& mirrors;
        Dialogs& dialogs;
        Files& files;
        const WindowMemory& memory;
    };
    explicit QtGraphWindow(const Surroundings& surroundings);
    ~QtGraphWindow() override;

    // Opens the window, or brings it to the front.
    void open_window();
    void close_window();

    // Runs `work` while the canvas shows the graph as on white paper.
    void on_paper(const std::function<void(GraphCanvas&)>& work);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

  private:
    void refresh() override;
    void bind_controls();
    void ask_to_close();
    void follow_palette();
    void mark_pressed_buttons();
    void fit_cursor_table();
    void save();
    void copy();

    Surroundings with_;
    PagePlot& page_;
    GraphControls& controls_;
    std::unique_ptr<Ui::frmGraph> ui_;
    GraphCanvas* canvas_;
    std::unique_ptr<Binder> binder_;
    bool asking_ = false;
    bool table_fitted_ = false;
};

}  // namespace kavorix
