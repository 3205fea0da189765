#include "graphs/live_graph.h"

#include <algorithm>

#include "base/program_name.h"
#include "graphs/palette.h"

namespace kavorix {

namespace {

// Bars always show the latest values.
constexpr double BarInterval = 1;  // s

void set_colours(Plot& plot, PlotHandle graph, int lines) {
    plot.WGSetTextByName(graph, "Arial", plot.WGGetRGBColor(TextColour));
    for (int line = 0; line < lines; ++line)
        plot.WGSetLineStyle(graph, line, plot.WGGetRGBColor(FirstLineColour + line),
                            line_dash(line));
}

void draw_axes_and_titles(Plot& plot, PlotHandle graph, const GraphPage& page, const PlotBox& area,
                          double x_maximum) {
    const GraphSettings& settings = page.Settings;
    plot.WGSetPlotArea(graph, area);
    plot.WGScalePlotArea(graph, {0, x_maximum, settings.YMinimum, settings.YMaximum});
    plot.WGSetXYIntercepts(graph, 0, settings.YMinimum);
    set_colours(plot, graph, page.channels());
    plot.WGDrawYAxis(graph);
    plot.WGLabelAxis(graph, PlotAxis::Y);
    plot.WGTitleAxis(graph, PlotAxis::Y, settings.YTitle);
    plot.WGTitleGraph(graph, settings.Title);
}

}  // namespace

PlotHandle draw_trend_page(Plot& plot, PlotHandle graph, const GraphPage& page) {
    draw_axes_and_titles(plot, graph, page, TrendArea, page.Span_s);
    plot.WRDrawTimeAxis(graph);
    plot.WRLabelTimeAxis(graph);
    plot.WGTitleAxis(graph, PlotAxis::X, page.Settings.XTitle);
    if (page.Settings.GridLines) plot.WRDynGrid(graph);
    const PlotHandle data_set =
        plot.WRDefineDynDataSet(graph, "TrendData", page.channels(), page.Interval_s, page.Span_s);
    plot.WRSetDynText(data_set, "Volts");
    plot.WRDynLegendPtr(graph, data_set, page.Legend, TrendLegend);
    plot.WRSetScrollGraph(graph, data_set);
    plot.WRStartTimeLabelsUpdate(graph);
    return data_set;
}

PlotHandle draw_bar_page(Plot& plot, PlotHandle graph, const GraphPage& page) {
    draw_axes_and_titles(plot, graph, page, BarArea, page.channels());
    const PlotHandle data_set =
        plot.WRDefineDynDataSet(graph, "BarData", page.channels(), page.Interval_s, page.Span_s);
    plot.WRSetDynText(data_set, "Volts");
    plot.WRDynLegendPtr(graph, data_set, page.Legend, BarLegend);
    plot.WRSetBargraph(graph, data_set);
    return data_set;
}

double trend_span_s(const GraphSettings& settings) {
    return settings.Hours * 3600.0 + settings.Minutes * 60.0;
}

double trend_interval_s(const GraphSettings& settings) {
    return settings.Hours / 4 + 1;
}

LiveGraph::LiveGraph(const Surroundings& surroundings) : with_(surroundings) {}

LiveGraph::~LiveGraph() {
    if (exists()) free_graph();
    with_.plot.WRCleanup();
}

bool LiveGraph::exists() const {
    return graph_ != NoPlotHandle && with_.plot.WGIsDescValid(graph_);
}

void LiveGraph::view_graph() {
    trapped(with_.failures, "frmMain/mnuTrendItem_Click", [&] {
        if (!every_selected_pod_has_channels()) {
            with_.dialogs.beep();
            with_.dialogs.Msg_Box("One or more Selected ZAV(s) have no Channels Selected to Graph",
                                  box::Exclamation, ProgramName);
            return;
        }
        start_samplers();
        with_.window.show_graph();
        BuildGraph();
    });
}

bool LiveGraph::every_selected_pod_has_channels() const {
    return std::all_of(with_.link.ZavSelected.begin(), with_.link.ZavSelected.end(),
                       [&](Pod pod) { return with_.graph.TrendSelected[pod] != ChannelFlags{}; });
}

void LiveGraph::start_samplers() {
    for (const Pod pod : all_pods()) {
        with_.graph.TrendRef[pod].fill(0);
        with_.graph.TrendDev[pod].fill(0);
        with_.graph.TrendPeak[pod] = with_.status[pod].Reading;
    }
}

void LiveGraph::BuildGraph() {
    trapped(with_.failures, "QCGRAPH/BuildGraph", [&] {
        page_ = with_.plot.WGCreatePage("PAGE1");
        with_.plot.WGEnableDialogs(false);
        StartGraphs();
        with_.plot.WGUpdatePage(page_);
        with_.graph.TrendRunning = true;
    });
}

void LiveGraph::StartGraphs() {
    trapped(with_.failures, "QCGRAPH/StartGraphs", [&] {
        channels_ = graphed_channels(with_.graph.TrendSelected);
        graph_ = with_.plot.WGCreateGraph(page_);
        shown_type_ = with_.graph.Settings.Type;
        if (shown_type_ == TrendGraph)
            DrawP1G1();
        else
            DrawP1G2();
    });
}

void LiveGraph::DrawP1G1() {
    trapped(with_.failures, "QCGRAPH/DrawP1G1", [&] {
        with_.graph.TrendInterval = trend_interval_s(with_.graph.Settings);
        data_set_ =
            draw_trend_page(with_.plot, graph_,
                            {with_.graph.Settings, legend_text(channels_, with_.pods),
                             with_.graph.TrendInterval, trend_span_s(with_.graph.Settings)});
    });
}

void LiveGraph::DrawP1G2() {
    trapped(with_.failures, "QCGRAPH/DrawP1G2", [&] {
        with_.graph.TrendInterval = BarInterval;
        data_set_ = draw_bar_page(
            with_.plot, graph_,
            {with_.graph.Settings, legend_text(channels_, with_.pods), BarInterval, 0});
    });
}

void LiveGraph::colours_changed() {
    if (!exists()) return;
    set_colours(with_.plot, graph_, static_cast<int>(channels_.size()));
    with_.plot.WGUpdatePage(page_);
}

void LiveGraph::WRUpdateData(std::span<const float> samples) {
    with_.plot.WRUpdateData(data_set_, samples);
    last_error_ = with_.plot.WGGetLastError();
}

bool LiveGraph::unload_request() {
    return trapped(with_.failures, "frmGraph/Form_QueryUnload", [&] {
        if (shown_type_ == TrendGraph &&
            with_.dialogs.Msg_Box("All Data will be Lost. Are you Sure you want to Exit?",
                                  box::OkCancel + box::Question, ProgramName) != Answer::Ok)
            return false;
        if (exists()) free_graph();
        with_.window.close_graph();
        return true;
    });
}

void LiveGraph::free_graph() {
    with_.graph.TrendRunning = false;
    with_.plot.WRDeleteRTGraph(graph_);
    with_.plot.WRFreeDynDataSet(data_set_);
    page_ = graph_ = data_set_ = NoPlotHandle;
}

void LiveGraph::print() {
    trapped(with_.failures, "frmGraph/cmdPrint_Click", [&] { with_.plot.WGPrintGraph(page_); });
}

void LiveGraph::printer_setup() {
    trapped(with_.failures, "frmMain/mnuUtilitiesItem_Click", [&] { with_.plot.WGPrinterSetup(); });
}

}  // namespace kavorix
