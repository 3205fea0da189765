#pragma once

// The graph of the running station: a trend or bars of the channels in force, built on a Plot and
// fed by the poll cycle.

#include <span>
#include <vector>

#include "base/trap.h"
#include "graphs/legend.h"
#include "graphs/plot.h"
#include "model/runtime.h"
#include "platform/dialogs.h"

namespace kavorix {

// Places on the graph.
inline constexpr PlotBox TrendArea{0.12, 0.96, 0.08, 0.73};
inline constexpr PlotBox TrendLegend{0.0, 1.0, 0.85, 0.99};
inline constexpr PlotBox BarArea{0.12, 0.95, 0.10, 0.70};
inline constexpr PlotBox BarLegend{0.0, 1.0, 0.80, 0.95};

// The time span of a trend in seconds, and its sample interval: 1 s below 4 hours, then a second
// more for every 4 hours.
double trend_span_s(const GraphSettings& settings);
double trend_interval_s(const GraphSettings& settings);

// What a page shows.
struct GraphPage {
    const GraphSettings& Settings;
    std::string Legend;  // an entry of LegendLength characters per channel
    double Interval_s;   // between rows
    double Span_s;       // of the time axis

    int channels() const { return static_cast<int>(Legend.size() / LegendLength); }
};

// Draw axes, titles and legend of a trend or of bars and define the data set that is returned.
PlotHandle draw_trend_page(Plot& plot, PlotHandle graph, const GraphPage& page);
PlotHandle draw_bar_page(Plot& plot, PlotHandle graph, const GraphPage& page);

// The window `frmGraph` around the page.
class GraphWindow {
  public:
    virtual ~GraphWindow() = default;
    virtual void show_graph() = 0;
    virtual void close_graph() = 0;
};

class LiveGraph {
  public:
    // All of it but the window outlives the graph.
    struct Surroundings {
        GraphState& graph;
        const PodStatuses& status;
        const LinkState& link;
        const PodConfigs& pods;
        Dialogs& dialogs;
        FailureReporter& failures;
        Plot& plot;
        GraphWindow& window;
    };
    explicit LiveGraph(const Surroundings& surroundings);

    // Frees the graph and cleans the drawing layer up; the window may be gone by then.
    ~LiveGraph();
    LiveGraph(const LiveGraph&) = delete;
    LiveGraph& operator=(const LiveGraph&) = delete;

    // The menu's "View Graph...": opens the window and builds the graph, or says which selected pod
    // has no channel on it.
    void view_graph();

    // One row of samples in legend order, from the poll cycle.
    void WRUpdateData(std::span<const float> samples);

    // Whether a graph is there to be fed.
    bool exists() const;

    // The window is asked to close: false when the operator wants to keep a trend.
    bool unload_request();

    // The palette changed between light and dark: lines and texts take their colours anew.
    void colours_changed();

    void print();
    void printer_setup();

    // The drawing layer's error after the last feeding.
    std::int16_t last_error() const { return last_error_; }

  private:
    bool every_selected_pod_has_channels() const;
    void start_samplers();
    void BuildGraph();
    void StartGraphs();
    void DrawP1G1();
    void DrawP1G2();
    void free_graph();

    Surroundings with_;
    std::vector<GraphedChannel> channels_;
    std::int16_t shown_type_ = TrendGraph;  // the settings may be reset while the graph is shown
    PlotHandle page_ = NoPlotHandle;
    PlotHandle graph_ = NoPlotHandle;
    PlotHandle data_set_ = NoPlotHandle;
    std::int16_t last_error_ = NoPlotError;
};

}  // namespace kavorix
