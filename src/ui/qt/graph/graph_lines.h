#pragma once

// What a graph plots, as layers of the plotting widget: lines, bars, legend, cursors.

#include <qcustomplot.h>

#include "graphs/graph_controls.h"
#include "graphs/graph_layout.h"
#include "graphs/trend_raster.h"

namespace kavorix {

// The values in the plot area that axes have.
struct PlotFrame {
    QRect area;  // between the axes, in widget pixels
    TimeRange time;
    ValueRange values;

    double time_at(double x) const {
        return time.begin + (x - area.left()) / area.width() * time.length();
    }
    double value_at(double y) const {
        return values.high - (y - area.top()) / area.height() * values.length();
    }
    double x_at(double time_s) const {
        return area.left() + (time_s - time.begin) / time.length() * area.width();
    }
    double y_at(double value) const {
        return area.top() + (values.high - value) / values.length() * area.height();
    }
};

// A layer that draws within a frame, kept by the canvas.
class GraphLayer : public QCPLayerable {
  public:
    GraphLayer(QCustomPlot& plot, const QString& layer, const GraphControls& controls,
               const PlotFrame& frame)
        : QCPLayerable(&plot, layer), controls_(controls), frame_(frame) {}

  protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
        painter->setAntialiasing(true);
    }
    QRect clipRect() const override { return frame_.area; }

    const GraphControls& controls_;
    const PlotFrame& frame_;
};

// The lines of a trend. On screen dense lines are strokes of pixel columns, drawn once and then
// moved on; everywhere else, and where rows are far apart, they are polylines.
class GraphLines : public GraphLayer {
  public:
    using GraphLayer::GraphLayer;

    // The rows are others than before.
    void forget() { columns_.clear(); }

  protected:
    void draw(QCPPainter* painter) override;

  private:
    void draw_strokes(QCPPainter& painter, double pixel_ratio);
    void draw_polylines(QCPPainter& painter, double pixel_ratio);
    PixelMapping mapping(double pixel_ratio) const;

    TrendColumns columns_;
    TrendRaster raster_;
};

// One bar per channel, marked where its value is out of range, with its value above it.
class GraphBars : public GraphLayer {
  public:
    GraphBars(QCustomPlot& plot, const QString& layer, const GraphControls& controls,
              const PlotFrame& frame, const PagePlot& page)
        : GraphLayer(plot, layer, controls, frame), page_(page) {}

  protected:
    void draw(QCPPainter* painter) override;
    QRect clipRect() const override;

  private:
    void draw_bar(QCPPainter& painter, const BarShape& shape, const LineLook& look) const;
    void draw_value(QCPPainter& painter, const BarShape& shape, float value) const;
    void draw_mark(QCPPainter& painter, const BarShape& shape) const;

    const PagePlot& page_;
};

}  // namespace kavorix
