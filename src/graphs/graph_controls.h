#pragma once

// What the operator does with the graph on screen in `frmGraph`: zoom, pan, follow, pause, cursors,
// hidden lines. No toolkit; times in seconds, values in the units of the Y axis.

#include <cstdint>
#include <optional>
#include <string>

#include "graphs/cursors.h"
#include "graphs/page_plot.h"
#include "graphs/trend_view.h"
#include "platform/controls.h"

namespace kavorix {

struct GraphScreen {
    std::string caption = "Real Time Graph";
    CheckBox chkFollow{"&Follow"};
    CheckBox chkPause{"Pa&use"};
    CheckBox chkCursors{"&Cursors"};
    CheckBox chkClock{"Cloc&k"};
    Button cmdAll{"&Whole Span", "Show the whole span and the set-up's Y range"};
    Button cmdAutoscale{"&Autoscale", "Fit the Y range to what is shown"};
    Button cmdExport{"&Export...", "Save what is shown as PNG, SVG, PDF or CSV"};
    Button cmdCopy{"C&opy", "Copy the picture and its values"};
    Button cmdPrint{"&Print", "Print the page"};
    Button cmdExit{"E&xit", "Close the graph"};
    Label lblStatus;
    Frame fraCursors;
    Grid grdCursors;

    template <class Visit>
    void each(Visit&& visit) {
        visit("chkFollow", chkFollow);
        visit("chkPause", chkPause);
        visit("chkCursors", chkCursors);
        visit("chkClock", chkClock);
        visit("cmdAll", cmdAll);
        visit("cmdAutoscale", cmdAutoscale);
        visit("cmdExport", cmdExport);
        visit("cmdCopy", cmdCopy);
        visit("cmdPrint", cmdPrint);
        visit("cmdExit", cmdExit);
        visit("lblStatus", lblStatus);
        visit("fraCursors", fraCursors);
        visit("grdCursors", grdCursors);
    }
};

// Keys that the graph itself takes.
enum class GraphKey {
    Left,
    Right,
    PageLeft,  // by many rows, or by most of the view
    PageRight,
    Up,
    Down,
    ZoomIn,
    ZoomOut,
    Follow,
    Pause,
    All,
    OtherCursor
};

class GraphControls {
  public:
    // The plot outlives it.
    explicit GraphControls(const PagePlot& plot) : plot_(plot) {}

    GraphScreen screen;

    // Brings view and texts up to date with the plot. A graph that is new starts with its whole
    // span, nothing hidden and no cursors.
    void refresh();

    void chkFollow_Click();
    void chkPause_Click();
    void chkCursors_Click();
    void chkClock_Click();
    void cmdAll_Click();
    void cmdAutoscale_Click();

    // A legend entry was clicked: hides its line, or shows it again.
    void legend_click(int line);

    // The wheel: zooms in for positive steps, around a time or a value.
    void wheel_time(double steps, double around_s);
    void wheel_values(double steps, double around);

    // The graph is dragged: what is under the pointer goes with it.
    void drag_time(double by_s);
    void drag_values(double by);

    // A stretch of the graph was marked: it fills the view.
    void show_area(const TimeRange& time, const ValueRange& values);

    // A cursor is put into a pixel column.
    void put_cursor(Cursor cursor, const TimeRange& column);

    void key(GraphKey key);

    // What is to be drawn: while paused the rows of that moment, else the latest.
    const TrendData& data() const { return frozen_ ? *frozen_ : plot_.picture().data; }
    bool paused() const { return frozen_.has_value(); }
    bool trend() const { return plot_.picture().scrolling; }
    const TrendView& view() const { return view_; }
    const Cursors& cursors() const { return cursors_; }
    bool by_clock() const { return screen.chkClock.checked; }

    // The lines as they look now, hidden ones marked.
    std::vector<LineLook> looks() const;

    // The rows on screen, as comma-separated text.
    std::string csv() const;

    // Changes whenever something else than before is to be drawn, but for cursors alone.
    std::uint64_t revision() const { return revision_; }
    std::uint64_t cursor_revision() const { return cursor_revision_; }

  private:
    void Form_Load();
    TrendLimits limits() const;
    void show(const TrendView& view);
    void place_missing_cursors();
    void show_cursors();
    void move_cursor(int steps);
    void pan_by_share(double share);
    void show_state();
    std::string status_text() const;

    const PagePlot& plot_;
    TrendView view_;
    std::optional<TrendData> frozen_;
    std::vector<bool> hidden_;
    Cursors cursors_;
    std::uint64_t revision_ = 0;
    std::uint64_t cursor_revision_ = 0;
    std::uint64_t rows_seen_ = 0;
    std::uint64_t plot_seen_ = 0;
    std::uint64_t graph_seen_ = 0;
};

}  // namespace kavorix
