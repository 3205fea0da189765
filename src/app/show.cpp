// The command show: the channels of a configuration file as a table.

#include <algorithm>
#include <memory>
#include <ostream>

#include "app/command_line.h"
#include "app/config_loading.h"
#include "app/network.h"
#include "app/text_table.h"
#include "ui/pods/channel_view.h"

namespace kavorix {

namespace {

struct ShowOptions {
    std::string file;
    int pod = 0;  // 0: all
};

// The rows of the channel view, without the columns that the type has no use for.
void print_pod(const PodConfig& pod, int number, std::ostream& out) {
    const ChannelView view(pod, number);
    const Grid& grid = view.screen.grdChannel;
    std::vector<std::vector<std::string>> rows(grid.rows.size() + 1);
    for (std::size_t i = 0; i < grid.headings.size(); ++i) {
        if (grid.headings[i].empty()) continue;
        rows[0].push_back(grid.headings[i]);
        std::replace(rows[0].back().begin(), rows[0].back().end(), '\n', ' ');
        for (std::size_t row = 0; row < grid.rows.size(); ++row)
            rows[row + 1].push_back(grid.rows[row][i].text);
    }
    out << view.screen.caption << "\n";
    print_table(rows, out);
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
