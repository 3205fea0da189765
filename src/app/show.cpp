// The command show: the channels of a configuration file as a table.

#include <algorithm>
#include <memory>
#include <ostream>

#include "app/command_line.h"
#include "app/config_loading.h"
#include "app/network.h"
#include "base/text.h"
#include "ui/channel_view.h"

namespace kavorix {

namespace {

constexpr std::size_t Gap = 2;  // blanks between columns

struct ShowOptions {
    std::string file;
    int pod = 0;  // 0: all
};

// A column as wide as its widest text, the heading being the first.
struct Column {
    std::vector<std::string> texts;
    std::size_t width = 0;

    void add(std::string text) {
        width = std::max(width, text.size());
        texts.push_back(std::move(text));
    }
};

// The columns of the channel view but those that the type has no use for.
std::vector<Column> columns_of(const Grid& grid) {
    std::vector<Column> columns;
    for (std::size_t i = 0; i < grid.headings.size(); ++i) {
        std::string heading = grid.headings[i];
        if (heading.empty()) continue;
        std::replace(heading.begin(), heading.end(), '\n', ' ');
        Column column;
        column.add(heading);
        for (const auto& row : grid.rows) column.add(row[i].text);
        columns.push_back(std::move(column));
    }
    return columns;
}

// Texts are measured in the characters that they have before they become UTF-8.
void print_pod(const PodConfig& pod, int number, std::ostream& out) {
    const ChannelView view(pod, number);
    out << view.screen.caption << "\n";
    const std::vector<Column> columns = columns_of(view.screen.grdChannel);
    for (std::size_t row = 0; row <= view.screen.grdChannel.rows.size(); ++row) {
        std::string line;
        for (const Column& column : columns) {
            line += column.texts[row];
            line.append(column.width - column.texts[row].size() + Gap, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << to_utf8(line) << "\n";
    }
}

int show(const CommandLine& line, const ShowOptions& options) {
    const auto files = make_host_files();
    const LoadedConfig loaded = load_config_or_explain(line, *files, options.file);
    if (loaded.outcome != LoadOutcome::Loaded) return ExitFailed;
    bool any = false;
    for (int number = 1; number <= MaxZavs; ++number) {
        const PodConfig& pod = loaded.configuration->ZavConfig[at(number - 1)];
        if (pod.TypeCode == NoDevice || (options.pod != 0 && number != options.pod)) continue;
        if (any) line.with.out << "\n";
        any = true;
        print_pod(pod, number, line.with.out);
    }
    if (!any)
        throw UnusableInput{
            options.file + " configures " +
            (options.pod == 0 ? std::string("no ZAV") : "no ZAV " + std::to_string(options.pod))};
    return ExitDone;
}

}  // namespace

void add_show(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "show", "Print the channels of a configuration file as a table for each pod");
    const auto options = std::make_shared<ShowOptions>();
    command->add_option("file", options->file, "Configuration file")
        ->type_name("FILE.CFG")
        ->required();
    command->add_option("--pod", options->pod, "Only the pod of this number")
        ->type_name("N")
        ->check(CLI::Range(1, MaxZavs));
    command->callback([=] { line.action = [=] { return show(line, *options); }; });
}

}  // namespace kavorix
