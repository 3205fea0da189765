#pragma once

#include <string_view>

#include "base/signal.h"
#include "model/runtime.h"
#include "platform/dialogs.h"

namespace kavorix {

// The main window's message line: progress, or an error with a beep. Shown at once.
class MessageLine {
  public:
    MessageLine(Message& line, Dialogs& dialogs) : line_(line), dialogs_(dialogs) {}

    // Puts a message in the place of the one before; an empty one clears the line. Returns its
    // number.
    std::uint64_t DispMsg(std::string_view text, Severity severity);

    // Clears the line unless another message has come after that of this number.
    void take_back(std::uint64_t number);

    // Tells every message, once it stands on the line.
    Signal<const Message&> told;

  private:
    Message& line_;
    Dialogs& dialogs_;
};

}  // namespace kavorix
