#pragma once

#include <cstdint>
#include <functional>

#include "link/command_link.h"

namespace kavorix {

// The one way out of the program.
class ProgramExit {
  public:
    // Saves the configuration (0: to its own file); returns 1 when the operator abandoned it.
    using SaveFile = std::function<std::int16_t(std::int16_t)>;

    ProgramExit(const CommandLink::Surroundings& surroundings, SaveFile save_file)
        : with_(surroundings), save_file_(std::move(save_file)) {}

    // Refuses while scanning or logging runs, asks about unsaved changes and for confirmation,
    // closes the error log (deleting it after a run without errors), leaves the card and ends the
    // program by throwing ProgramEnded{0}. Returns when the operator stays. Asked again while it
    // asks, it does nothing.
    void ExitKAVORIX();

  private:
    bool may_leave();
    bool save_changes();
    void leave();

    CommandLink::Surroundings with_;
    SaveFile save_file_;
    bool asking_ = false;
};

}  // namespace kavorix
