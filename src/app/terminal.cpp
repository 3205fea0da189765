#include "app/terminal.h"

#include <algorithm>
#include <ostream>

#include "base/text.h"
#include "sim/network.h"

namespace kavorix {

Answer TerminalDialogs::message_box(std::string_view text, int flags, std::string_view) {
    std::string line = to_utf8(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::erase(line, '\r');
    messages_ << line << std::endl;
    const int buttons = flags & box::ButtonMask;
    return buttons == box::YesNo || buttons == box::YesNoCancel ? Answer::No : Answer::Ok;
}

Answer TerminalDialogs::Msg_Box(std::string_view text, int flags, std::string_view title) {
    return message_box(text, flags, title);
}

TerminalStation::TerminalStation(const CommonOptions& options, EventLoop& loop,
                                 std::ostream& messages, bool keep_error_log)
    : files_(make_host_files()),
      system_info_(make_host_system_info()),
      driver_(make_driver(options, *files_, loop)),
      dialogs_(messages),
      station({*driver_,
               loop,
               dialogs_,
               *files_,
               windows_,
               {program_directory(options, *files_), keep_error_log},
               *system_info_}) {
    dialogs_.on_repaint([&] {
        const Label& line = station.screen.lblMsg;
        if (line.fore == Colour::Red && !line.caption.empty())
            messages << to_utf8(trim(line.caption)) << std::endl;
    });
}

bool TerminalStation::start() {
    station.start();
    return station.run_time.Link.PollTable.NumInPoll > 0;
}

const sim::Network* TerminalStation::simulated_network() const {
    return dynamic_cast<const sim::Network*>(driver_.get());
}

std::vector<int> TerminalStation::pods(const std::string& list) const {
    const PodFlags& in_table = station.run_time.Link.PollTable.InPollTable;
    std::vector<int> chosen;
    if (list.empty()) {
        for (int pod = 0; pod < MaxZavs; ++pod)
            if (in_table[at(pod)] == 1) chosen.push_back(pod);
        return chosen;
    }
    const auto numbers = parse_pod_list(list);
    if (!numbers)
        throw UnusableInput{"\"" + list + "\" is not a list of pod numbers such as 1-5,7"};
    for (const int number : *numbers) {
        if (in_table[at(number - 1)] != 1)
            throw UnusableInput{"No pod answers at number " + std::to_string(number)};
        chosen.push_back(number - 1);
    }
    return chosen;
}

}  // namespace kavorix
