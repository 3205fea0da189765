// The command verify: do the simulated pods hold what a file configures, once it was transmitted?

#include <memory>
#include <ostream>

#include "app/command_line.h"
#include "app/measurement.h"
#include "app/verify.h"
#include "platform/host_event_loop.h"
#include "platform/virtual_event_loop.h"

namespace kavorix {

namespace {

int verify(const CommandLine& line, const std::string& path) {
    if (!line.common.driver.empty())
        throw UnusableInput{"Only simulated pods can be asked what they hold: leave out --driver"};
    VirtualEventLoop loop(host_wall_time());
    TerminalStation terminal(line.common, loop, line.with.messages, false);
    if (!terminal.start()) return ExitFailed;
    load_configuration_file(terminal, path);
    Station& station = terminal.station;
    const PodSet pods = configured_pods(station);
    station.select_pods(pods);
    station.pods.transmit_config();

    const auto& network = dynamic_cast<const sim::Network&>(terminal.driver());
    const auto found = verify_pods(station.configuration.ZavConfig, network, pods);
    for (const std::string& difference : found) line.with.out << difference << "\n";
    line.with.messages << pods.count() << (pods.count() == 1 ? " pod" : " pods") << " compared, "
                       << found.size() << (found.size() == 1 ? " difference" : " differences")
                       << std::endl;
    return found.empty() && station.run_time.Link.SessionErrorCount == 0 ? ExitDone : ExitFailed;
}

}  // namespace

void add_verify(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "verify",
        "Load and transmit a configuration, then compare it with what the simulated pods hold");
    const auto path = std::make_shared<std::string>();
    command->add_option("file", *path, "Configuration file")->type_name("FILE.CFG")->required();
    command->callback([=] { line.action = [=] { return verify(line, *path); }; });
}

}  // namespace kavorix
