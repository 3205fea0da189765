#pragma once

// A drawing layer that remembers what it is told, a line per call: "WGSetPlotArea 2 0.12 0.96 0.08
// 0.73". Pages, graphs and data sets get the handles 1, 2, 3 and on. Lever: `error` is the error of
// every operation.

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/numbers.h"
#include "graphs/plot.h"

namespace kavorix::test {

class RecordingPlot : public Plot {
  public:
    std::vector<std::string> calls;
    std::set<PlotHandle> handles;
    std::int16_t error = NoPlotError;

    // The calls so far, forgetting them.
    std::vector<std::string> take_calls() { return std::exchange(calls, {}); }

    // The calls of one operation.
    std::vector<std::string> calls_of(std::string_view operation) const {
        std::vector<std::string> found;
        for (const std::string& call : calls)
            if (call.substr(0, call.find(' ')) == operation) found.push_back(call);
        return found;
    }

    PlotHandle WGCreatePage(std::string_view name) override {
        note("WGCreatePage", name);
        return add();
    }
    PlotHandle WGCreateGraph(PlotHandle page) override {
        note("WGCreateGraph", page);
        return add();
    }
    void WGEnableDialogs(bool enabled) override { note("WGEnableDialogs", enabled ? "on" : "off"); }
    void WGSetPlotArea(PlotHandle graph, const PlotBox& area) override {
        note("WGSetPlotArea", graph, area.left, area.right, area.bottom, area.top);
    }
    void WGScalePlotArea(PlotHandle graph, const PlotScale& scale) override {
        note("WGScalePlotArea", graph, scale.x_minimum, scale.x_maximum, scale.y_minimum,
             scale.y_maximum);
    }
    void WGSetXYIntercepts(PlotHandle graph, double x, double y) override {
        note("WGSetXYIntercepts", graph, x, y);
    }
    void WGSetTextByName(PlotHandle graph, std::string_view font, std::uint32_t rgb) override {
        note("WGSetTextByName", graph, font, rgb);
    }
    void WGSetLineStyle(PlotHandle graph, int line, std::uint32_t rgb, Dash dash) override {
        note("WGSetLineStyle", graph, line, rgb, dash == Dash::Solid ? "solid" : "dashed");
    }
    void WGDrawYAxis(PlotHandle graph) override { note("WGDrawYAxis", graph); }
    void WGLabelAxis(PlotHandle graph, PlotAxis axis) override {
        note("WGLabelAxis", graph, name(axis));
    }
    void WGTitleAxis(PlotHandle graph, PlotAxis axis, std::string_view title) override {
        note("WGTitleAxis", graph, name(axis), title);
    }
    void WGTitleGraph(PlotHandle graph, std::string_view title) override {
        note("WGTitleGraph", graph, title);
    }
    std::uint32_t WGGetRGBColor(int number) override {
        return 1000U + static_cast<std::uint32_t>(number);
    }
    void WGUpdatePage(PlotHandle page) override { note("WGUpdatePage", page); }
    bool WGIsDescValid(PlotHandle handle) override { return handles.count(handle) > 0; }
    std::int16_t WGGetLastError() override { return error; }
    void WGPrinterSetup() override { note("WGPrinterSetup"); }
    void WGPrintGraph(PlotHandle page) override { note("WGPrintGraph", page); }
    PlotHandle WRDefineDynDataSet(PlotHandle graph, std::string_view data_name, int channels,
                                  double interval_s, double span_s) override {
        note("WRDefineDynDataSet", graph, data_name, channels, interval_s, span_s);
        return add();
    }
    void WRSetDynText(PlotHandle set, std::string_view text) override {
        note("WRSetDynText", set, text);
    }
    void WRUpdateData(PlotHandle set, std::span<const float> row) override {
        std::string values;
        for (const float value : row) values += (values.empty() ? "" : " ") + general(value);
        note("WRUpdateData", set, values);
    }
    void WRSetScrollGraph(PlotHandle graph, PlotHandle set) override {
        note("WRSetScrollGraph", graph, set);
    }
    void WRSetBargraph(PlotHandle graph, PlotHandle set) override {
        note("WRSetBargraph", graph, set);
    }
    void WRDrawTimeAxis(PlotHandle graph) override { note("WRDrawTimeAxis", graph); }
    void WRLabelTimeAxis(PlotHandle graph) override { note("WRLabelTimeAxis", graph); }
    void WRStartTimeLabelsUpdate(PlotHandle graph) override {
        note("WRStartTimeLabelsUpdate", graph);
    }
    void WRDynGrid(PlotHandle graph) override { note("WRDynGrid", graph); }
    void WRDynLegendPtr(PlotHandle graph, PlotHandle set, std::string_view legend,
                        const PlotBox& box) override {
        note("WRDynLegendPtr", graph, set, legend, box.left, box.right, box.bottom, box.top);
    }
    void WRDeleteRTGraph(PlotHandle graph) override {
        note("WRDeleteRTGraph", graph);
        handles.erase(graph);
    }
    void WRFreeDynDataSet(PlotHandle set) override {
        note("WRFreeDynDataSet", set);
        handles.erase(set);
    }
    void WRCleanup() override { note("WRCleanup"); }

  private:
    static std::string text(std::string_view value) { return std::string(value); }
    static std::string text(const char* value) { return value; }
    static std::string text(const std::string& value) { return value; }
    static std::string text(double value) { return shortest(value); }
    static std::string text(int value) { return std::to_string(value); }
    static std::string text(std::uint32_t value) { return std::to_string(value); }
    static const char* name(PlotAxis axis) { return axis == PlotAxis::X ? "X" : "Y"; }

    template <class... Values>
    void note(std::string call, const Values&... values) {
        ((call += " " + text(values)), ...);
        calls.push_back(std::move(call));
    }

    PlotHandle add() {
        handles.insert(++latest_);
        return latest_;
    }

    PlotHandle latest_ = 0;
};

}  // namespace kavorix::test
