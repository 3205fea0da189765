#include "graphs/live_graph.h"

#include <algorithm>

#include "graphs/palette.h"
#include "link/error_log.h"

namespace kavorix {

namespace {

// Bars always show the latest values.
constexpr double BarInterval = 1;  // s

}  // namespace

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
        with_.main_window.CheckItems();
    });
}

bool LiveGraph::every_selected_pod_has_channels() const {
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const ChannelFlags& chosen = with_.graph.TrendSelected[at(pod)];
        if (with_.link.ZavSelected[at(pod)] == 1 && std::count(chosen.begin(), chosen.end(), 1) < 1)
            return false;
    }
    return true;
}

void LiveGraph::start_samplers() {
    for (int pod = 0; pod < MaxZavs; ++pod) {
        with_.graph.TrendRef[at(pod)].fill(0);
        with_.graph.TrendDev[at(pod)].fill(0);
        with_.graph.TrendPeak[at(pod)] = with_.status[at(pod)].Reading;
    }
}

void LiveGraph::BuildGraph() {
    trapped(with_.failures, "QCGRAPH/BuildGraph", [&] {
        page_ = with_.plot.WGCreatePage("PAGE1");
        with_.plot.WGEnableDialogs(false);
        StartGraphs();
        with_.plot.WGUpdatePage(page_);
        with_.graph.TrendRunning = 1;
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
        const GraphSettings& settings = with_.graph.Settings;
        const double span_s = trend_span_s(settings);
        with_.graph.TrendInterval = trend_interval_s(settings);
        draw_axes_and_titles(TrendArea, span_s);
        with_.plot.WRDrawTimeAxis(graph_);
        with_.plot.WRLabelTimeAxis(graph_);
        with_.plot.WGTitleAxis(graph_, PlotAxis::X, settings.XTitle);
        if (settings.GridLines == 1) with_.plot.WRDynGrid(graph_);
        data_set_ =
            with_.plot.WRDefineDynDataSet(graph_, "TrendData", static_cast<int>(channels_.size()),
                                          with_.graph.TrendInterval, span_s);
        with_.plot.WRSetDynText(data_set_, "Volts");
        with_.plot.WRDynLegendPtr(graph_, data_set_, legend_text(channels_, with_.pods),
                                  TrendLegend);
        with_.plot.WRSetScrollGraph(graph_, data_set_);
        with_.plot.WRStartTimeLabelsUpdate(graph_);
    });
}

void LiveGraph::DrawP1G2() {
    trapped(with_.failures, "QCGRAPH/DrawP1G2", [&] {
        with_.graph.TrendInterval = BarInterval;
        draw_axes_and_titles(BarArea, static_cast<double>(channels_.size()));
        data_set_ = with_.plot.WRDefineDynDataSet(
            graph_, "BarData", static_cast<int>(channels_.size()), BarInterval, 0);
        with_.plot.WRSetDynText(data_set_, "Volts");
        with_.plot.WRDynLegendPtr(graph_, data_set_, legend_text(channels_, with_.pods), BarLegend);
        with_.plot.WRSetBargraph(graph_, data_set_);
    });
}

void LiveGraph::draw_axes_and_titles(const PlotBox& area, double x_maximum) {
    const GraphSettings& settings = with_.graph.Settings;
    with_.plot.WGSetPlotArea(graph_, area);
    with_.plot.WGScalePlotArea(graph_, {0, x_maximum, settings.YMinimum, settings.YMaximum});
    with_.plot.WGSetXYIntercepts(graph_, 0, settings.YMinimum);
    set_colours();
    with_.plot.WGDrawYAxis(graph_);
    with_.plot.WGLabelAxis(graph_, PlotAxis::Y);
    with_.plot.WGTitleAxis(graph_, PlotAxis::Y, settings.YTitle);
    with_.plot.WGTitleGraph(graph_, settings.Title);
}

void LiveGraph::set_colours() {
    with_.plot.WGSetTextByName(graph_, "Arial", with_.plot.WGGetRGBColor(TextColour));
    for (int line = 0; line < static_cast<int>(channels_.size()); ++line)
        with_.plot.WGSetLineStyle(graph_, line, with_.plot.WGGetRGBColor(FirstLineColour + line),
                                  line_dash(line));
}

void LiveGraph::colours_changed() {
    if (!exists()) return;
    set_colours();
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
        with_.main_window.CheckItems();
        return true;
    });
}

void LiveGraph::free_graph() {
    with_.graph.TrendRunning = 0;
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
