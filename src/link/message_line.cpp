#include "link/message_line.h"

namespace kavorix {

std::uint64_t MessageLine::DispMsg(std::string_view text, Severity severity) {
    if (severity == Severity::Error) dialogs_.beep();
    line_ = {std::string(text), severity, line_.Number + 1};
    dialogs_.repaint();
    told(line_);
    return line_.Number;
}

void MessageLine::take_back(std::uint64_t number) {
    if (line_.Number == number) DispMsg("", Severity::Progress);
}

}  // namespace kavorix
