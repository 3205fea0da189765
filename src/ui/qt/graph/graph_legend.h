#pragma once

// Legend and cursors of a graph, as layers of the plotting widget.

#include <vector>

#include "ui/qt/graph/graph_lines.h"

namespace kavorix {

// The legend: colour, dashes and name of each line; a hidden one is faint.
class GraphLegend : public GraphLayer {
  public:
    GraphLegend(QCustomPlot& plot, const QString& layer, const GraphControls& controls,
                const PlotFrame& frame, const PagePlot& page)
        : GraphLayer(plot, layer, controls, frame), page_(page) {}

    // The entry at a point of the widget, -1 for none.
    int entry_at(const QPointF& point) const;

    // The middle of an entry, in widget pixels.
    QPoint centre_of(int entry) const;

    // The entry under the pointer is marked; -1 for none. True when that is another one.
    bool set_hovered(int entry);

  protected:
    void draw(QCPPainter* painter) override;
    QRect clipRect() const override { return mParentPlot->viewport(); }

  private:
    std::vector<PixelBox> cells() const;
    void draw_entry(QCPPainter& painter, const PixelBox& cell, const LineLook& look,
                    const QString& name) const;
    void draw_sample(QCPPainter& painter, const QRectF& place, const LineLook& look) const;

    const PagePlot& page_;
    int hovered_ = -1;
};

// The two cursors with a dot on every line.
class GraphCursors : public GraphLayer {
  public:
    GraphCursors(QCustomPlot& plot, const QString& layer, const GraphControls& controls,
                 const PlotFrame& frame, const PagePlot& page)
        : GraphLayer(plot, layer, controls, frame), page_(page) {}

    // The cursor whose line is within reach of a point; -1 for none.
    int cursor_near(const QPointF& point) const;

  protected:
    void draw(QCPPainter* painter) override;

  private:
    void draw_cursor(QCPPainter& painter, Cursor cursor) const;
    void draw_dots(QCPPainter& painter, double time_s, double x) const;

    const PagePlot& page_;
};

}  // namespace kavorix
