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
      driver_(make_driver(options, *files_, loop)),
      dialogs_(messages),
      station({*driver_,
               loop,
               dialogs_,
               *files_,
               {program_directory(options, *files_), keep_error_log}}) {
    station.message_line.told.always([&messages](const Message& message) {
        if (message.Severity == Severity::Error)
            messages << to_utf8(trim(message.Text)) << std::endl;
    });
}

bool TerminalStation::start() {
    station.start();
    return !station.run_time.Link.PollTable.InPollTable.empty();
}

const sim::Network* TerminalStation::simulated_network() const {
    return dynamic_cast<const sim::Network*>(driver_.get());
}

PodSet TerminalStation::pods(const std::string& list) const {
    const PodSet& in_table = station.run_time.Link.PollTable.InPollTable;
    if (list.empty()) return in_table;
    const auto numbers = parse_pod_list(list);
    if (!numbers)
        throw UnusableInput{"\"" + list + "\" is not a list of pod numbers such as 1-5,7"};
    PodSet chosen;
    for (const int number : *numbers) {
        if (!in_table.has(Pod::numbered(number)))
            throw UnusableInput{"No pod answers at number " + std::to_string(number)};
        chosen.add(Pod::numbered(number));
    }
    return chosen;
}

}  // namespace kavorix
