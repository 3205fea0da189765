#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "base/trap.h"
#include "link/error_log.h"
#include "link/polling.h"
#include "platform/driver.h"

namespace kavorix {

// The one way out of the program.
class ProgramExit {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        Driver& driver;
        Dialogs& dialogs;
        ErrorLog& error_log;
        FailureReporter& failures;
        Polling& polling;
        const Configuration& configuration;
        const RunTime& run_time;
        // Saves the configuration (0: to its own file); returns 1 when the operator abandoned it.
        std::function<std::int16_t(std::int16_t)> save_file;
    };
    explicit ProgramExit(Surroundings surroundings) : with_(std::move(surroundings)) {}

    // Refuses while scanning or logging runs, asks about unsaved changes and for confirmation,
    // closes the error log (deleting it after a run without errors), leaves the card and ends the
    // program by throwing ProgramEnded{0}. Returns when the operator stays. Asked again while it
    // asks, it does nothing.
    void ExitKAVORIX();

  private:
    bool may_leave();
    bool save_changes();
    void leave();

    Surroundings with_;
    bool asking_ = false;
};

}  // namespace kavorix
