#include <iomanip>
#include <ostream>

#include "app/command_line.h"
#include "app/terminal.h"
#include "base/text.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

void print_card(const Station& station, std::ostream& out) {
    const InterfaceSettings& card = station.configuration.Interface;
    const auto& version = station.run_time.Link.DllVersion;
    const std::string_view text(version.data(), version.size());
    out << "Card at " << hex16(card.CardAddress) << ", handle " << card.CardHandle << ", "
        << to_utf8(trim(text.substr(0, text.find('\0')))) << "\n\n";
}

void print_pods(const Station& station, std::ostream& out) {
    out << "Pod  Ident         Type                    Channels\n";
    for (const Pod pod : station.run_time.Link.PollTable.InPollTable) {
        const PodStatus& status = station.run_time.Status[pod];
        const PodTypeRow& type = pod_type(GetZAVTypeCode(status.type_code()));
        out << two_digits(pod.number()) << "   " << std::left << std::setw(14);
        if (status.connected())
            out << to_utf8(status.ident()) << std::setw(24)
                << (type.type == NoDevice ? "Unknown" : type.description) << status.Channels;
        else
            out << "NC"
                << "No status reply";
        out << "\n";
    }
}

}  // namespace

void add_discover(const CommandLine& line) {
    CLI::App* command =
        line.app.add_subcommand("discover", "Find the card and list the pods that answer");
    command->callback([=] {
        line.action = [=] {
            const auto loop = line.with.make_loop([] { throw ProgramEnded{ExitFailed}; });
            TerminalStation terminal(line.common, *loop, line.with.messages, false);
            if (!terminal.start()) return ExitFailed;
            print_card(terminal.station, line.with.out);
            print_pods(terminal.station, line.with.out);
            return ExitDone;
        };
    });
}

}  // namespace kavorix
