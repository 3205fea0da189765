#include <memory>
#include <ostream>

#include "app/command_line.h"
#include "app/terminal.h"
#include "base/text.h"
#include "ui/card/status_view.h"

namespace kavorix {

namespace {

// The status view with its sections as text; the exit code tells whether a pod failed.
int print_status(Station& station, const PodSet& pods, std::ostream& out) {
    station.select_pods(pods);
    station.run_time.Link.InterfaceSelected = true;
    const auto system_info = make_host_system_info();
    StatusView view({station.discovery,
                     station.message_line,
                     station.failures,
                     *system_info,
                     station.configuration,
                     station.run_time,
                     {}});
    view.Form_Load();
    out << StatusHeader << "\n"
        << to_utf8(view.screen.txtZAVStat.text) << "\n"
        << to_utf8(view.screen.txtAdapStat.text) << "\n"
        << view.screen.lblSysInfo.caption << "\n";
    return station.run_time.Link.SessionErrorCount > 0 ? ExitFailed : ExitDone;
}

}  // namespace

void add_status(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "status", "Ask pods for their status and print it, with that of the interface");
    const auto list = std::make_shared<std::string>();
    command->add_option("--pods", *list, "Pod numbers, for example 1-5,7 (default: all)")
        ->type_name("LIST");
    command->callback([=] {
        line.action = [=] {
            const auto loop = line.with.make_loop([] { throw ProgramEnded{ExitFailed}; });
            TerminalStation terminal(line.common, *loop, line.with.messages, false);
            if (!terminal.start()) return ExitFailed;
            return print_status(terminal.station, terminal.pods(*list), line.with.out);
        };
    });
}

}  // namespace kavorix
