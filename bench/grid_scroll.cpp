// A frame of the stream-0 view in multi view with all 1600 channels of a full network: scrolled by
// three rows, and painted anew after a poll at which every reading changed, cells made as they are
// painted.
//
// The baseline is a plain table view of the same size over the same texts, kept ready as strings,
// in the same run. Times are medians of single frames; `ratio` is the view's to the plain one's.

#include <benchmark/benchmark.h>

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <chrono>
#include <memory>
#include <random>
#include <vector>

#include "ui/qt/kit/grid_model.h"
#include "ui/qt/kit/grid_view.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"
#include "ui/streams/stream0_view.h"

namespace {

using namespace kavorix;
using Clock = std::chrono::steady_clock;

constexpr int Rows = MaxZavs * MaxChannels;
constexpr int WindowWidth = 900;
constexpr int WindowHeight = 800;
constexpr int RowsPerStep = 3;  // of a mouse wheel
constexpr int ErrorChannel = 7;

// Fifty pods of 32 channels, all viewed; one channel of each is in error.
class Network {
  public:
    Network() {
        for (int pod = 0; pod < MaxZavs; ++pod) {
            PodStatus& status = run_time_->Status[at(pod)];
            std::copy_n("7RJA 0F 1.00", IdentLength, status.Ident.begin());
            status.Channels = status.ChannelCount = MaxChannels;
            status.ResultCode[ErrorChannel] = HighestValidCode + 1;
            run_time_->Link.ZavSelected.add(Pod::at_index(pod));
            for (int channel = 0; channel < MaxChannels; ++channel) {
                ChannelConfig& config = configuration_->ZavConfig[at(pod)].Channel[at(channel)];
                config.Label = "Boiler";
                config.Unit = "bar";
            }
        }
        poll();
        view.load();
        view.cmdToggle_Click();
    }
    void poll() {
        for (PodStatus& status : run_time_->Status)
            for (std::size_t channel = 0; channel < MaxChannels; ++channel) {
                status.Reading[channel] = step_(random_);
                status.PeakMin[channel] =
                    std::min(status.PeakMin[channel], status.Reading[channel]);
                status.PeakMax[channel] =
                    std::max(status.PeakMax[channel], status.Reading[channel]);
            }
    }

  private:
    std::unique_ptr<RunTime> run_time_ = std::make_unique<RunTime>();
    std::unique_ptr<Configuration> configuration_ = std::make_unique<Configuration>();
    std::mt19937 random_{7};
    std::normal_distribution<float> step_{2, 1};

  public:
    Stream0View view{*run_time_, *configuration_};
};

// The texts of a source, ready to be painted.
class PlainModel : public QAbstractTableModel {
  public:
    explicit PlainModel(GridSource& source) : columns_(static_cast<int>(source.headings().size())) {
        for (int row = 0; row < Rows; ++row)
            for (int column = 0; column < columns_; ++column)
                texts_.push_back(to_qt(source.cell(row, column).text));
    }
    int rowCount(const QModelIndex& = {}) const override { return Rows; }
    int columnCount(const QModelIndex& = {}) const override { return columns_; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return texts_[static_cast<std::size_t>(index.row() * columns_ + index.column())];
    }
    void announce_all() { emit dataChanged(index(0, 0), index(Rows - 1, columns_ - 1)); }

  private:
    int columns_;
    std::vector<QString> texts_;
};

void open(QTableView& table) {
    table.resize(WindowWidth, WindowHeight);
    table.show();
    QCoreApplication::processEvents();
}

// Paints of a table's cells, to see that a frame is one.
class PaintCounter : public QObject {
  public:
    explicit PaintCounter(QTableView& table) { table.viewport()->installEventFilter(this); }
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints;
        return false;
    }
};

template <class Work>
double seconds(Work&& work) {
    const auto start = Clock::now();
    work();
    QCoreApplication::processEvents();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void scroll_on(QTableView& table) {
    QScrollBar& bar = *table.verticalScrollBar();
    const int step = table.verticalScrollMode() == QTableView::ScrollPerItem
                         ? RowsPerStep
                         : RowsPerStep * table.rowHeight(0);
    bar.setValue(bar.value() + step > bar.maximum() ? 0 : bar.value() + step);
}

// Alternates frames of both tables, so that what else the machine does meets both.
template <class StationFrame, class PlainFrame>
void compare(benchmark::State& state, StationFrame&& station_frame, PlainFrame&& plain_frame) {
    std::vector<double> station_times;
    std::vector<double> plain_times;
    for (auto _ : state) {
        station_times.push_back(station_frame());
        plain_times.push_back(plain_frame());
        state.SetIterationTime(station_times.back());
    }
    const double station = median(station_times);
    const double plain = median(plain_times);
    state.counters["median_us"] = station * 1E6;
    state.counters["plain_us"] = plain * 1E6;
    state.counters["ratio"] = station / plain;
}

class Tables {
  public:
    Tables() {
        table.setModel(&model);
        plain_table.setModel(&plain_model);
        plain_table.verticalHeader()->hide();
        plain_table.verticalHeader()->setDefaultSectionSize(table.rowHeight(0));
        for (int column = 0; column < model.columnCount(); ++column)
            plain_table.setColumnWidth(column, table.columnWidth(column));
        open(table);
        open(plain_table);
    }
    Network network;
    GridModel model{network.view};
    PlainModel plain_model{network.view};
    GridView table;
    QTableView plain_table;
};

void check(benchmark::State& state, const PaintCounter& painted, const PaintCounter& plain) {
    if (painted.paints < static_cast<int>(state.iterations()) ||
        plain.paints < static_cast<int>(state.iterations()))
        state.SkipWithError("not every frame was painted");
}

void scroll(benchmark::State& state) {
    Tables tables;
    const PaintCounter painted(tables.table);
    const PaintCounter plain_painted(tables.plain_table);
    compare(
        state, [&] { return seconds([&] { scroll_on(tables.table); }); },
        [&] { return seconds([&] { scroll_on(tables.plain_table); }); });
    check(state, painted, plain_painted);
}

void poll(benchmark::State& state) {
    Tables tables;
    const PaintCounter painted(tables.table);
    const PaintCounter plain_painted(tables.plain_table);
    compare(
        state,
        [&] {
            tables.network.poll();
            return seconds([&] {
                tables.network.view.refresh();
                tables.model.refresh();
            });
        },
        [&] { return seconds([&] { tables.plain_model.announce_all(); }); });
    check(state, painted, plain_painted);
}

BENCHMARK(scroll)->UseManualTime();
BENCHMARK(poll)->UseManualTime();

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    apply_theme(application, Theme::Light);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
