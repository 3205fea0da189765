#pragma once

// The drawing layer's record of what is on the page. Everything that draws the graph (the window,
// exported files, the printer) draws this record.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "graphs/palette.h"
#include "graphs/plot.h"
#include "graphs/trend_data.h"
#include "graphs/trend_raster.h"
#include "platform/event_loop.h"

namespace kavorix {

// A graph as it is to be seen. Texts are Windows-1252.
struct GraphPicture {
    PlotBox area;
    PlotScale scale;
    double x_intercept = 0;
    double y_intercept = 0;
    std::string font;
    std::uint32_t text_rgb = 0;
    std::string title;
    std::string x_title;
    std::string y_title;
    bool y_axis = false;
    bool y_labels = false;
    bool time_axis = false;
    bool time_labels = false;
    bool labels_move = false;
    bool grid = false;
    bool bars = false;
    bool scrolling = false;
    std::string data_name;
    std::string data_text;
    double interval_s = 1;
    double span_s = 0;
    TrendData data;
    std::vector<LineLook> looks;  // per line or bar
    std::vector<std::string> legend;
    PlotBox legend_box;
};

// How many rows a span needs: both its ends, and one row on the way out at the left edge.
std::size_t rows_of_span(double span_s, double interval_s);

class PagePlot : public Plot {
  public:
    // What the toolkit does about printers; may be empty.
    struct Printing {
        std::function<void()> set_up;
        std::function<void()> print;
    };

    // `loop` tells the rows' wall-clock time and outlives the plot.
    explicit PagePlot(const EventLoop& loop) : loop_(loop) {}

    void set_printing(Printing printing) { printing_ = std::move(printing); }
    void set_ground(Ground ground) { ground_ = ground; }
    Ground ground() const { return ground_; }

    const GraphPicture& picture() const { return picture_; }

    // One more row at a time of its own: rows that were taken before, such as those of a log.
    void append_row(double time_s, const WallTime& wall, std::span<const float> row);

    // Whether there is a graph with its data, drawn by WGUpdatePage.
    bool drawn() const { return drawn_; }

    // Changes with everything but the rows: with a graph, with whatever WGUpdatePage draws.
    std::uint64_t revision() const { return revision_; }
    // Changes when there is another graph.
    std::uint64_t graph_number() const { return graph_number_; }

    // Whether the drawing layer may open dialogs of its own.
    bool dialogs_enabled() const { return dialogs_enabled_; }
    const std::string& page_name() const { return page_name_; }

    PlotHandle WGCreatePage(std::string_view name) override;
    PlotHandle WGCreateGraph(PlotHandle page) override;
    void WGEnableDialogs(bool enabled) override { dialogs_enabled_ = enabled; }
    void WGSetPlotArea(PlotHandle graph, const PlotBox& area) override;
    void WGScalePlotArea(PlotHandle graph, const PlotScale& scale) override;
    void WGSetXYIntercepts(PlotHandle graph, double x, double y) override;
    void WGSetTextByName(PlotHandle graph, std::string_view font, std::uint32_t rgb) override;
    void WGSetLineStyle(PlotHandle graph, int line, std::uint32_t rgb, Dash dash) override;
    void WGDrawYAxis(PlotHandle graph) override;
    void WGLabelAxis(PlotHandle graph, PlotAxis axis) override;
    void WGTitleAxis(PlotHandle graph, PlotAxis axis, std::string_view title) override;
    void WGTitleGraph(PlotHandle graph, std::string_view title) override;
    std::uint32_t WGGetRGBColor(int number) override;
    void WGUpdatePage(PlotHandle page) override;
    bool WGIsDescValid(PlotHandle handle) override;
    std::int16_t WGGetLastError() override { return last_error_; }
    void WGPrinterSetup() override;
    void WGPrintGraph(PlotHandle page) override;
    PlotHandle WRDefineDynDataSet(PlotHandle graph, std::string_view name, int channels,
                                  double interval_s, double span_s) override;
    void WRSetDynText(PlotHandle data_set, std::string_view text) override;
    void WRUpdateData(PlotHandle data_set, std::span<const float> row) override;
    void WRSetScrollGraph(PlotHandle graph, PlotHandle data_set) override;
    void WRSetBargraph(PlotHandle graph, PlotHandle data_set) override;
    void WRDrawTimeAxis(PlotHandle graph) override;
    void WRLabelTimeAxis(PlotHandle graph) override;
    void WRStartTimeLabelsUpdate(PlotHandle graph) override;
    void WRDynGrid(PlotHandle graph) override;
    void WRDynLegendPtr(PlotHandle graph, PlotHandle data_set, std::string_view legend,
                        const PlotBox& box) override;
    void WRDeleteRTGraph(PlotHandle graph) override;
    void WRFreeDynDataSet(PlotHandle data_set) override;
    void WRCleanup() override;

  private:
    bool valid(PlotHandle handle, PlotHandle of_kind);
    // Carries an operation out on a graph or data set, or notes that there is none.
    template <class Operation>
    void on(PlotHandle handle, PlotHandle of_kind, Operation&& operation);

    const EventLoop& loop_;
    Printing printing_;
    Ground ground_ = Ground::Light;
    GraphPicture picture_;
    std::string page_name_;
    PlotHandle latest_ = NoPlotHandle;  // handle given last
    PlotHandle page_ = NoPlotHandle;
    PlotHandle graph_ = NoPlotHandle;
    PlotHandle data_set_ = NoPlotHandle;
    std::int16_t last_error_ = NoPlotError;
    bool dialogs_enabled_ = true;
    bool drawn_ = false;
    std::uint64_t revision_ = 0;
    std::uint64_t graph_number_ = 0;
};

}  // namespace kavorix
