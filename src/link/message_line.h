#pragma once

#include <string_view>

#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/main_screen.h"

namespace kavorix {

// The main window's message line: blue for progress, red (with a beep) for errors. Shown at once.
class MessageLine {
  public:
    MessageLine(MainScreen& screen, Dialogs& dialogs) : screen_(screen), dialogs_(dialogs) {}

    void DispMsg(std::string_view text, Colour colour);

  private:
    MainScreen& screen_;
    Dialogs& dialogs_;
};

}  // namespace kavorix
