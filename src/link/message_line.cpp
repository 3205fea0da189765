#include "link/message_line.h"

namespace kavorix {

void MessageLine::DispMsg(std::string_view text, Colour colour) {
    screen_.lblMsg.fore = colour;
    if (colour == Colour::Red) dialogs_.beep();
    screen_.lblMsg.caption = text;
    dialogs_.repaint();
}

}  // namespace kavorix
