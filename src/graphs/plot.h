#pragma once

// What the graph logic asks of the drawing layer: pages, graphs, axes, texts, dynamic data sets,
// printing. The names are those of the charting library that the station was first built on.

#include <cstdint>
#include <span>
#include <string_view>

namespace kavorix {

// A page, a graph or a dynamic data set; 0 stands for none.
using PlotHandle = std::int32_t;
inline constexpr PlotHandle NoPlotHandle = 0;

// A rectangle on a graph, in fractions of its width and height counted from the lower left corner.
struct PlotBox {
    double left = 0;
    double right = 1;
    double bottom = 0;
    double top = 1;
    bool operator==(const PlotBox&) const = default;
};

// The ends of the two axes.
struct PlotScale {
    double x_minimum = 0;
    double x_maximum = 1;
    double y_minimum = 0;
    double y_maximum = 1;
    bool operator==(const PlotScale&) const = default;
};

enum class PlotAxis { X, Y };
enum class Dash { Solid, Dashed };

// Colour numbers of WGGetRGBColor: texts, then the lines or bars in legend order.
inline constexpr int TextColour = 0;
inline constexpr int FirstLineColour = 1;

// What WGGetLastError answers.
enum PlotErrors : std::int16_t { NoPlotError = 0, UnknownHandle = 1, WrongRowLength = 2 };

// An operation given a handle that is not valid does nothing but set the last error. Texts are
// Windows-1252.
class Plot {
  public:
    virtual ~Plot() = default;

    // A page in the graph window, and a graph that fills it.
    virtual PlotHandle WGCreatePage(std::string_view name) = 0;
    virtual PlotHandle WGCreateGraph(PlotHandle page) = 0;

    // Whether the drawing layer may open dialogs of its own over the graph.
    virtual void WGEnableDialogs(bool enabled) = 0;

    // Place of the area between the axes, its scaling, and where the axes cross.
    virtual void WGSetPlotArea(PlotHandle graph, const PlotBox& area) = 0;
    virtual void WGScalePlotArea(PlotHandle graph, const PlotScale& scale) = 0;
    virtual void WGSetXYIntercepts(PlotHandle graph, double x, double y) = 0;

    // Font and colour (0xRRGGBB) of the titles to come.
    virtual void WGSetTextByName(PlotHandle graph, std::string_view font, std::uint32_t rgb) = 0;

    // Colour and dashes of a line or bar, 0 the first.
    virtual void WGSetLineStyle(PlotHandle graph, int line, std::uint32_t rgb, Dash dash) = 0;

    virtual void WGDrawYAxis(PlotHandle graph) = 0;
    virtual void WGLabelAxis(PlotHandle graph, PlotAxis axis) = 0;
    virtual void WGTitleAxis(PlotHandle graph, PlotAxis axis, std::string_view title) = 0;
    virtual void WGTitleGraph(PlotHandle graph, std::string_view title) = 0;

    // A colour of the palette on the present background, 0xRRGGBB.
    virtual std::uint32_t WGGetRGBColor(int number) = 0;

    // Draws the page with everything on it.
    virtual void WGUpdatePage(PlotHandle page) = 0;

    virtual bool WGIsDescValid(PlotHandle handle) = 0;

    // The error of the last operation; NoPlotError after a good one.
    virtual std::int16_t WGGetLastError() = 0;

    virtual void WGPrinterSetup() = 0;
    virtual void WGPrintGraph(PlotHandle page) = 0;

    // A data set of `channels` values a row. Row n stands at n * `interval_s`; at least the rows of
    // the last `span_s` seconds are kept.
    virtual PlotHandle WRDefineDynDataSet(PlotHandle graph, std::string_view name, int channels,
                                          double interval_s, double span_s) = 0;

    // What the values of a data set are.
    virtual void WRSetDynText(PlotHandle data_set, std::string_view text) = 0;

    // Appends one row. A row of another length than the data set's is refused.
    virtual void WRUpdateData(PlotHandle data_set, std::span<const float> row) = 0;

    // Shows the rows as lines that move on once the graph is full, or the last row as bars.
    virtual void WRSetScrollGraph(PlotHandle graph, PlotHandle data_set) = 0;
    virtual void WRSetBargraph(PlotHandle graph, PlotHandle data_set) = 0;

    // A time axis along the X scaling, its labels, their moving on with the rows, grid lines.
    virtual void WRDrawTimeAxis(PlotHandle graph) = 0;
    virtual void WRLabelTimeAxis(PlotHandle graph) = 0;
    virtual void WRStartTimeLabelsUpdate(PlotHandle graph) = 0;
    virtual void WRDynGrid(PlotHandle graph) = 0;

    // The legend: entries of LegendLength characters each, in the order of the row's values.
    virtual void WRDynLegendPtr(PlotHandle graph, PlotHandle data_set, std::string_view legend,
                                const PlotBox& box) = 0;

    virtual void WRDeleteRTGraph(PlotHandle graph) = 0;
    virtual void WRFreeDynDataSet(PlotHandle data_set) = 0;

    // Gives back everything that is left.
    virtual void WRCleanup() = 0;
};

}  // namespace kavorix
