#include "graphs/page_plot.h"

#include <cmath>

#include "graphs/legend.h"

namespace kavorix {

std::size_t rows_of_span(double span_s, double interval_s) {
    return static_cast<std::size_t>(std::floor(span_s / interval_s)) + 2;
}

bool PagePlot::valid(PlotHandle handle, PlotHandle of_kind) {
    const bool known = handle != NoPlotHandle && handle == of_kind;
    last_error_ = known ? NoPlotError : UnknownHandle;
    return known;
}

template <class Operation>
void PagePlot::on(PlotHandle handle, PlotHandle of_kind, Operation&& operation) {
    if (valid(handle, of_kind)) operation();
}

PlotHandle PagePlot::WGCreatePage(std::string_view name) {
    page_name_ = name;
    last_error_ = NoPlotError;
    return page_ = ++latest_;
}

PlotHandle PagePlot::WGCreateGraph(PlotHandle page) {
    if (!valid(page, page_)) return NoPlotHandle;
    picture_ = GraphPicture{};
    drawn_ = false;
    ++graph_number_;
    ++revision_;
    return graph_ = ++latest_;
}

void PagePlot::WGSetPlotArea(PlotHandle graph, const PlotBox& area) {
    on(graph, graph_, [&] { picture_.area = area; });
}

void PagePlot::WGScalePlotArea(PlotHandle graph, const PlotScale& scale) {
    on(graph, graph_, [&] { picture_.scale = scale; });
}

void PagePlot::WGSetXYIntercepts(PlotHandle graph, double x, double y) {
    on(graph, graph_, [&] {
        picture_.x_intercept = x;
        picture_.y_intercept = y;
    });
}

void PagePlot::WGSetTextByName(PlotHandle graph, std::string_view font, std::uint32_t rgb) {
    on(graph, graph_, [&] {
        picture_.font = font;
        picture_.text_rgb = rgb;
    });
}

void PagePlot::WGSetLineStyle(PlotHandle graph, int line, std::uint32_t rgb, Dash dash) {
    on(graph, graph_, [&] {
        const auto index = static_cast<std::size_t>(line);
        if (picture_.looks.size() <= index) picture_.looks.resize(index + 1);
        picture_.looks[index].rgb = rgb;
        picture_.looks[index].dash = dash;
    });
}

void PagePlot::WGDrawYAxis(PlotHandle graph) {
    on(graph, graph_, [&] { picture_.y_axis = true; });
}

void PagePlot::WGLabelAxis(PlotHandle graph, PlotAxis axis) {
    on(graph, graph_,
       [&] { (axis == PlotAxis::Y ? picture_.y_labels : picture_.time_labels) = true; });
}

void PagePlot::WGTitleAxis(PlotHandle graph, PlotAxis axis, std::string_view title) {
    on(graph, graph_, [&] { (axis == PlotAxis::X ? picture_.x_title : picture_.y_title) = title; });
}

void PagePlot::WGTitleGraph(PlotHandle graph, std::string_view title) {
    on(graph, graph_, [&] { picture_.title = title; });
}

std::uint32_t PagePlot::WGGetRGBColor(int number) {
    return graph_colour(number, ground_);
}

void PagePlot::WGUpdatePage(PlotHandle page) {
    on(page, page_, [&] {
        drawn_ = graph_ != NoPlotHandle && data_set_ != NoPlotHandle;
        ++revision_;
    });
}

bool PagePlot::WGIsDescValid(PlotHandle handle) {
    return handle != NoPlotHandle && (handle == page_ || handle == graph_ || handle == data_set_);
}

void PagePlot::WGPrinterSetup() {
    if (printing_.set_up) printing_.set_up();
}

void PagePlot::WGPrintGraph(PlotHandle page) {
    if (valid(page, page_) && printing_.print) printing_.print();
}

PlotHandle PagePlot::WRDefineDynDataSet(PlotHandle graph, std::string_view name, int channels,
                                        double interval_s, double span_s) {
    if (!valid(graph, graph_)) return NoPlotHandle;
    picture_.data_name = name;
    picture_.interval_s = interval_s;
    picture_.span_s = span_s;
    picture_.data = TrendData(channels, rows_of_span(span_s, interval_s));
    return data_set_ = ++latest_;
}

void PagePlot::WRSetDynText(PlotHandle data_set, std::string_view text) {
    on(data_set, data_set_, [&] { picture_.data_text = text; });
}

void PagePlot::WRUpdateData(PlotHandle data_set, std::span<const float> row) {
    if (!valid(data_set, data_set_)) return;
    if (row.size() != static_cast<std::size_t>(picture_.data.channels())) {
        last_error_ = WrongRowLength;
        return;
    }
    const double time_s = static_cast<double>(picture_.data.end_row()) * picture_.interval_s;
    picture_.data.append(time_s, loop_.wall_time(), row);
}

void PagePlot::append_row(double time_s, const WallTime& wall, std::span<const float> row) {
    picture_.data.append(time_s, wall, row);
}

void PagePlot::WRSetScrollGraph(PlotHandle graph, PlotHandle data_set) {
    if (valid(data_set, data_set_)) on(graph, graph_, [&] { picture_.scrolling = true; });
}

void PagePlot::WRSetBargraph(PlotHandle graph, PlotHandle data_set) {
    if (valid(data_set, data_set_)) on(graph, graph_, [&] { picture_.bars = true; });
}

void PagePlot::WRDrawTimeAxis(PlotHandle graph) {
    on(graph, graph_, [&] { picture_.time_axis = true; });
}

void PagePlot::WRLabelTimeAxis(PlotHandle graph) {
    on(graph, graph_, [&] { picture_.time_labels = true; });
}

void PagePlot::WRStartTimeLabelsUpdate(PlotHandle graph) {
    on(graph, graph_, [&] { picture_.labels_move = true; });
}

void PagePlot::WRDynGrid(PlotHandle graph) {
    on(graph, graph_, [&] { picture_.grid = true; });
}

void PagePlot::WRDynLegendPtr(PlotHandle graph, PlotHandle data_set, std::string_view legend,
                              const PlotBox& box) {
    if (!valid(data_set, data_set_)) return;
    on(graph, graph_, [&] {
        picture_.legend = legend_entries(legend);
        picture_.legend_box = box;
    });
}

void PagePlot::WRDeleteRTGraph(PlotHandle graph) {
    on(graph, graph_, [&] {
        graph_ = NoPlotHandle;
        drawn_ = false;
        ++revision_;
    });
}

// The rows stay in the record for whoever is still drawing it, until there is another graph.
void PagePlot::WRFreeDynDataSet(PlotHandle data_set) {
    on(data_set, data_set_, [&] { data_set_ = NoPlotHandle; });
}

void PagePlot::WRCleanup() {
    page_ = graph_ = data_set_ = NoPlotHandle;
    picture_ = GraphPicture{};
    drawn_ = false;
    ++revision_;
}

}  // namespace kavorix
