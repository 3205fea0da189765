#pragma once

#include "graphs/graph_controls.h"
#include "graphs/graph_setup.h"
#include "graphs/live_graph.h"
#include "graphs/page_plot.h"

namespace kavorix {

// All parts of a station's graph, wired to each other.
class StationGraph {
  public:
    // All of it but the window outlives the graph.
    struct Surroundings {
        RunTime& run_time;
        const Configuration& configuration;
        const EventLoop& loop;
        Dialogs& dialogs;
        FailureReporter& failures;
        GraphWindow& window;
    };
    explicit StationGraph(const Surroundings& with)
        : page(with.loop),
          live({with.run_time.Graph, with.run_time.Status, with.run_time.Link,
                with.configuration.ZavConfig, with.dialogs, with.failures, page, with.window}),
          setup({with.run_time.Graph, with.run_time.Status, with.run_time.Link,
                 with.configuration.ZavConfig, with.dialogs, with.failures,
                 [this] { live.printer_setup(); }}),
          controls(page) {}

    PagePlot page;
    LiveGraph live;
    GraphSetup setup;
    GraphControls controls;
};

}  // namespace kavorix
