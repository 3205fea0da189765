// A running trend at its fullest: one row of 16 channels is appended and 1200x700 pixels are
// repainted with the whole span on screen, 14,400 rows (the most that a span holds). Beside it the
// plotting library alone with the same points, axes and frame, thinning them by its own adaptive
// sampling: with the graph's smoothed lines of 1.5 pixels, and with its fastest, plain lines of
// one. "core_percent" is the share of one core that a row a second takes.

#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <array>
#include <cmath>
#include <functional>
#include <random>

#include "graphs/live_graph.h"
#include "platform/virtual_event_loop.h"
#include "ui/qt/graph/graph_canvas.h"

namespace {

using namespace kavorix;

constexpr int Channels = 16;
constexpr int Rows = 14400;
constexpr double Interval_s = 1;
constexpr int Width = 1200;
constexpr int Height = 700;

using Row = std::array<float, Channels>;

// Slow sines, or the same with noise on them; the values lie between 0 and 16.
class Signal {
  public:
    explicit Signal(bool noisy) : noisy_(noisy) {}

    Row next() {
        Row row;
        for (int channel = 0; channel < Channels; ++channel) {
            const double phase = number_ / (400.0 + 90 * channel);
            double value = channel + 0.5 + 0.4 * std::sin(phase);
            if (noisy_) value += noise_(random_);
            row.at(static_cast<std::size_t>(channel)) = static_cast<float>(value);
        }
        ++number_;
        return row;
    }

  private:
    bool noisy_;
    int number_ = 0;
    std::mt19937 random_{1};
    std::uniform_real_distribution<double> noise_{-0.4, 0.4};
};

// Paints as a window does: with the events that the call left behind.
void measure(benchmark::State& state, const std::function<void()>& append_and_draw) {
    for (auto _ : state) {
        append_and_draw();
        QApplication::processEvents();
    }
}

void trend(benchmark::State& state, bool noisy) {
    VirtualEventLoop loop;
    PagePlot page(loop);
    GraphSettings settings;
    settings.YMinimum = 0;
    settings.YMaximum = 16;
    const PlotHandle sheet = page.WGCreatePage("PAGE1");
    const PlotHandle graph = page.WGCreateGraph(sheet);
    std::vector<GraphedChannel> channels;
    for (int channel = 0; channel < Channels; ++channel) channels.push_back({0, channel});
    const PlotHandle data = draw_trend_page(
        page, graph,
        {settings, legend_text(channels, PodConfigs{}), Interval_s, Rows * Interval_s});
    page.WGUpdatePage(sheet);
    GraphControls controls(page);
    GraphCanvas canvas(page, controls);
    canvas.resize(Width, Height);
    canvas.show();

    Signal signal(noisy);
    for (int row = 0; row < Rows; ++row) page.WRUpdateData(data, signal.next());
    canvas.update_graph();
    measure(state, [&] {
        page.WRUpdateData(data, signal.next());
        canvas.update_graph();
    });
}

void library(benchmark::State& state, bool noisy, bool smooth_lines) {
    QCustomPlot plot;
    plot.resize(Width, Height);
    plot.yAxis->setRange(0, 16);
    for (int channel = 0; channel < Channels; ++channel) {
        QCPGraph* const line = plot.addGraph();
        line->setPen(QPen(QColor::fromHsv(channel * 22, 200, 180), smooth_lines ? 1.5 : 1));
        line->setAntialiased(smooth_lines);
    }
    plot.show();
    Signal signal(noisy);
    int number = 0;
    const auto append = [&] {
        const Row row = signal.next();
        for (int channel = 0; channel < Channels; ++channel) {
            plot.graph(channel)->addData(
                number, static_cast<double>(row.at(static_cast<std::size_t>(channel))));
            plot.graph(channel)->data()->removeBefore(number - Rows);
        }
        plot.xAxis->setRange(number - Rows, number);
        ++number;
    };
    for (int row = 0; row < Rows; ++row) append();
    measure(state, [&] {
        append();
        plot.replot(QCustomPlot::rpQueuedRefresh);
    });
}

BENCHMARK_CAPTURE(trend, smooth, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(library, smooth, false, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(library, smooth_plain_lines, false, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(trend, noisy, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(library, noisy, true, true)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(library, noisy_plain_lines, true, false)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
