// The command that draws a log: plot.

#include <QApplication>
#include <memory>
#include <ostream>
#include <system_error>

#include "app/command_line.h"
#include "app/log_trend.h"
#include "app/network.h"
#include "base/text.h"
#include "graphs/graph_controls.h"
#include "graphs/live_graph.h"
#include "logging/channel_list.h"
#include "ui/qt/graph/graph_canvas.h"
#include "ui/qt/graph/graph_files.h"

namespace kavorix {

namespace {

constexpr int PictureWidth = 1200;  // pixels
constexpr int PictureHeight = 700;

struct PlotOptions {
    std::string log;
    std::string picture;
    std::string channels;
};

// The toolkit without a screen, as long as the picture is drawn.
class OffScreen {
  public:
    OffScreen() {
        if (!QCoreApplication::instance())
            application_ = std::make_unique<QApplication>(count_, arguments_);
    }

  private:
    char program_[8] = "kavorix";
    char option_[10] = "-platform";
    char platform_[10] = "offscreen";
    char* arguments_[4] = {program_, option_, platform_, nullptr};
    int count_ = 3;
    std::unique_ptr<QApplication> application_;
};

std::vector<CsvColumn> columns_of(const CommandLine& line, const PlotOptions& options,
                                  const LogContents& contents) {
    if (contents.Kind != ScanLog)
        throw UnusableInput{options.log + " is an event log; only scan logs can be drawn"};
    CsvSelection selection = select_all(contents.Pods);
    if (!options.channels.empty()) {
        const ChannelList list = parse_channel_list(options.channels, contents.Pods);
        if (!list.Complaint.empty()) throw UnusableInput{list.Complaint};
        selection = list.Selection;
    }
    std::vector<CsvColumn> columns = csv_columns(contents.Pods, selection);
    if (columns.size() > MaxGraphChannels) {
        if (!options.channels.empty())
            throw UnusableInput{"At most 16 channels can be drawn; " +
                                std::to_string(columns.size()) + " are asked for"};
        line.with.messages << "The log holds " << columns.size()
                           << " channels; the first 16 are drawn. --channels chooses others."
                           << std::endl;
        columns.resize(MaxGraphChannels);
    }
    return columns;
}

LogTrend read_trend(const CommandLine& line, Files& files, const PlotOptions& options) {
    try {
        const LogContents contents = read_log_contents(*files.open(options.log, OpenMode::Read));
        if (contents.Runs == 0)
            throw UnusableInput{options.log + " is no log file: it has no header"};
        const auto file = files.open(options.log, OpenMode::Read);
        LogTrend trend = read_log_trend(*file, columns_of(line, options, contents));
        if (trend.Rows.size() < 2)
            throw UnusableInput{options.log + " holds too few records for a trend"};
        return trend;
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
}

void build_page(PagePlot& page, const LogTrend& trend, const std::string& log) {
    GraphSettings settings;
    settings.Title = trend.Comment.empty() ? from_utf8_lossy(name_of(log)) : trend.Comment;
    settings.YTitle = trend.Unit;
    std::string legend;
    for (const std::string& name : trend.Names) legend += legend_entry(name, {});
    const double span_s = trend.Rows.back().time_s;
    const double interval_s = span_s / static_cast<double>(trend.Rows.size() - 1);

    const PlotHandle sheet = page.WGCreatePage("PAGE1");
    const PlotHandle graph = page.WGCreateGraph(sheet);
    draw_trend_page(page, graph, {settings, legend, interval_s, span_s});
    const std::size_t width = trend.Columns.size();
    for (std::size_t row = 0; row < trend.Rows.size(); ++row)
        page.append_row(trend.Rows[row].time_s, trend.Rows[row].wall,
                        {&trend.Values[row * width], width});
    page.WGUpdatePage(sheet);
}

int plot(const CommandLine& line, const PlotOptions& options) {
    const auto files = make_host_files();
    if (!is_graph_picture(options.picture))
        throw UnusableInput{"The picture is written as .png, .svg or .pdf"};
    const LogTrend trend = read_trend(line, *files, options);

    const OffScreen off_screen;
    const auto loop = line.with.make_loop([] {});
    PagePlot page(*loop);
    page.set_ground(line.common.theme == "dark" ? Ground::Dark : Ground::Light);
    build_page(page, trend, options.log);
    GraphControls controls(page);
    controls.refresh();
    controls.screen.chkClock.checked = true;
    controls.cmdAutoscale_Click();
    GraphCanvas canvas(page, controls);
    canvas.resize(PictureWidth, PictureHeight);
    canvas.update_graph();
    if (const auto failure = save_graph(canvas, *files, options.picture, controls.csv())) {
        line.with.messages << *failure << std::endl;
        return ExitFailed;
    }
    if (trend.Damage.empty()) return ExitDone;
    line.with.messages << "The log file " << options.log << " " << trend.Damage
                       << "; what stands before it is drawn." << std::endl;
    return ExitFailed;
}

}  // namespace

void add_plot(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand("plot", "Draw the trend of a scan log");
    const auto options = std::make_shared<PlotOptions>();
    command->add_option("log", options->log, "Log file")->type_name("LOG.DAT")->required();
    command->add_option("-o", options->picture, "Picture: .png, .svg or .pdf")
        ->type_name("OUT.png")
        ->required();
    command
        ->add_option("--channels", options->channels,
                     "Pods and channels to draw, for example 3/1-5,3/7,4/* (default: all, at most "
                     "16)")
        ->type_name("LIST");
    command->callback([=] { line.action = [=] { return plot(line, *options); }; });
}

}  // namespace kavorix
