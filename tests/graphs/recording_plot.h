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
        note(__func__, name);
        return add();
    }
    PlotHandle WGCreateGraph(PlotHandle p) override {
        note(__func__, p);
        return add();
    }
    void WGEnableDialogs(bool enabled) override { note(__func__, enabled ? "on" : "off"); }
    void WGSetPlotArea(PlotHandle g, const PlotBox& box) override { note(__func__, g, box); }
    void WGScalePlotArea(PlotHandle g, const PlotScale& scale) override {
        note(__func__, g, scale);
    }
    void WGSetXYIntercepts(PlotHandle g, double x, double y) override { note(__func__, g, x, y); }
    void WGSetTextByName(PlotHandle g, std::string_view font, std::uint32_t rgb) override {
        note(__func__, g, font, rgb);
    }
    void WGSetLineStyle(PlotHandle g, int line, std::uint32_t rgb, Dash dash) override {
        note(__func__, g, line, rgb, dash);
    }
    void WGDrawYAxis(PlotHandle g) override { note(__func__, g); }
    void WGLabelAxis(PlotHandle g, PlotAxis axis) override { note(__func__, g, axis); }
    void WGTitleAxis(PlotHandle g, PlotAxis axis, std::string_view title) override {
        note(__func__, g, axis, title);
    }
    void WGTitleGraph(PlotHandle g, std::string_view title) override { note(__func__, g, title); }
    std::uint32_t WGGetRGBColor(int number) override {
        return 1000U + static_cast<std::uint32_t>(number);
    }
    void WGUpdatePage(PlotHandle p) override { note(__func__, p); }
    bool WGIsDescValid(PlotHandle h) override { return handles.count(h) > 0; }
    std::int16_t WGGetLastError() override { return error; }
    void WGPrinterSetup() override { note(__func__); }
    void WGPrintGraph(PlotHandle p) override { note(__func__, p); }
    PlotHandle WRDefineDynDataSet(PlotHandle g, std::string_view data_name, int channels,
                                  double interval_s, double span_s) override {
        note(__func__, g, data_name, channels, interval_s, span_s);
        return add();
    }
    void WRSetDynText(PlotHandle s, std::string_view text) override { note(__func__, s, text); }
    void WRUpdateData(PlotHandle s, std::span<const float> row) override {
        std::string values;
        for (const float value : row) values += (values.empty() ? "" : " ") + general(value);
        note(__func__, s, values);
    }
    void WRSetScrollGraph(PlotHandle g, PlotHandle s) override { note(__func__, g, s); }
    void WRSetBargraph(PlotHandle g, PlotHandle s) override { note(__func__, g, s); }
    void WRDrawTimeAxis(PlotHandle g) override { note(__func__, g); }
    void WRLabelTimeAxis(PlotHandle g) override { note(__func__, g); }
    void WRStartTimeLabelsUpdate(PlotHandle g) override { note(__func__, g); }
    void WRDynGrid(PlotHandle g) override { note(__func__, g); }
    void WRDynLegendPtr(PlotHandle g, PlotHandle s, std::string_view legend,
                        const PlotBox& box) override {
        note(__func__, g, s, legend, box);
    }
    void WRDeleteRTGraph(PlotHandle g) override {
        note(__func__, g);
        handles.erase(g);
    }
    void WRFreeDynDataSet(PlotHandle s) override {
        note(__func__, s);
        handles.erase(s);
    }
    void WRCleanup() override { note(__func__); }

  private:
    static std::string text(std::string_view value) { return std::string(value); }
    static std::string text(double value) { return shortest(value); }
    static std::string text(int value) { return std::to_string(value); }
    static std::string text(std::uint32_t value) { return std::to_string(value); }
    static std::string text(PlotAxis axis) { return axis == PlotAxis::X ? "X" : "Y"; }
    static std::string text(Dash dash) { return dash == Dash::Solid ? "solid" : "dashed"; }
    static std::string text(const PlotBox& box) {
        return texts(box.left, box.right, box.bottom, box.top);
    }
    static std::string text(const PlotScale& scale) {
        return texts(scale.x_minimum, scale.x_maximum, scale.y_minimum, scale.y_maximum);
    }

    template <class... Values>
    static std::string texts(const Values&... values) {
        std::string all;
        ((all += (all.empty() ? "" : " ") + text(values)), ...);
        return all;
    }
    template <class... Values>
    void note(const char* call, const Values&... values) {
        calls.push_back(texts(call, values...));
    }

    PlotHandle add() {
        handles.insert(++latest_);
        return latest_;
    }

    PlotHandle latest_ = 0;
};

}  // namespace kavorix::test
