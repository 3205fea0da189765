#pragma once

// The page of a graph as a widget: draws what PagePlot and GraphControls say, and hands wheel,
// mouse and keys to GraphControls. Also the source of pictures, files and prints.

#include <qcustomplot.h>

#include <QRubberBand>
#include <functional>
#include <optional>

#include "graphs/graph_controls.h"
#include "ui/qt/graph/graph_legend.h"
#include "ui/qt/graph/graph_lines.h"

namespace kavorix {

class GraphCanvas : public QCustomPlot {
  public:
    // Both outlive the canvas.
    GraphCanvas(const PagePlot& page, GraphControls& controls, QWidget* parent = nullptr);

    // Runs what an event of the widget does; by default at once. The window sets the way that lets
    // exceptions out.
    void set_dispatch(std::function<void(const std::function<void()>&)> dispatch) {
        dispatch_ = std::move(dispatch);
    }

    // Draws what has changed since the last call; nothing when that is nothing.
    void update_graph();

    // Draws the page of the given size (0: the widget's) onto a painter, as vectors.
    void draw_page(QCPPainter& painter, int width = 0, int height = 0);

    // The page as a picture, `scale` pixels for one of the widget's.
    QImage picture(double scale);

    QString page_title() const;

    // The area between the axes, in widget pixels.
    const PlotFrame& frame() const { return frame_; }
    QPoint legend_entry_centre(int entry) const;

  protected:
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

  private:
    class PageAxisRect;
    class TimeTicker;
    enum class Drag { None, Time, Values, CursorA, CursorB, Area };
    enum class Zone { Plot, ValueAxis, TimeAxis, Other };

    void take_over_page();
    void lay_out(const QRect& area);
    void style_axes();
    void style_axis(QCPAxis& axis);
    void show_time_title();
    void show_bar_names();
    void replot_all();
    Zone zone_of(const QPointF& point) const;
    Drag drag_for(const QMouseEvent& event) const;
    void drag_to(const QPointF& point);
    void end_area(const QPointF& point);
    TimeRange pixel_column(double x) const;
    void show_pointer(const QPointF& point);
    void run(const std::function<void()>& work) { dispatch_ ? dispatch_(work) : work(); }

    const PagePlot& page_;
    GraphControls& controls_;
    std::function<void(const std::function<void()>&)> dispatch_;
    PlotFrame frame_;
    QCPAxisRect* axes_;
    QSharedPointer<TimeTicker> time_ticker_;
    QSharedPointer<QCPAxisTickerText> bar_ticker_;
    QCPItemText* title_;
    GraphLines* lines_;
    GraphBars* bars_;
    GraphLegend* legend_;
    GraphCursors* cursors_;
    std::uint64_t graph_shown_ = 0;
    std::uint64_t page_shown_ = 0;
    std::uint64_t controls_shown_ = 0;
    std::uint64_t cursors_shown_ = 0;
    Drag drag_ = Drag::None;
    QPointF pressed_at_;
    QPointF dragged_to_;
    QRubberBand band_{QRubberBand::Rectangle, this};
};

}  // namespace kavorix
