#include "link/program_exit.h"

#include "base/program_name.h"

#include <string>

namespace kavorix {

void ProgramExit::ExitKAVORIX() {
    if (asking_) return;
    asking_ = true;
    struct Asking {
        bool& flag;
        ~Asking() { flag = false; }
    } const reset{asking_};
    trapped(with_.failures, "KAVORIX/ExitKAVORIX", [&] {
        if (may_leave() && save_changes() &&
            with_.dialogs.message_box("Are you sure you wish to Exit KAVORIX",
                                      box::OkCancel | box::Question, ProgramName) != Answer::Cancel)
            leave();
    });
}

bool ProgramExit::may_leave() {
    const RunTime& run_time = with_.run_time;
    if (!run_time.Link.ContScanning && !run_time.Log.running()) return true;
    with_.dialogs.Msg_Box("Cannot Exit:   Continuous Scanning/Logging in Progress",
                          box::Exclamation, ProgramName);
    return false;
}

bool ProgramExit::save_changes() {
    if (with_.configuration.ConfigChanged != 1) return true;
    const Answer answer =
        with_.dialogs.message_box("Configuration changes made but not saved.\n\nSave changes?",
                                  box::YesNoCancel | box::Question, ProgramName);
    if (answer == Answer::Cancel) return false;
    // Cancelling the file dialog also leaves the changes unsaved, without being reported as
    // abandoned.
    return answer == Answer::No ||
           (with_.save_file(0) == 0 && with_.configuration.ConfigChanged == 0);
}

void ProgramExit::leave() {
    const LinkState& link = with_.run_time.Link;
    with_.error_log.close();
    if (link.SessionErrorCount == 0) with_.error_log.remove();
    with_.polling.stop();
    if (with_.configuration.Interface.PowerOn == 1)
        with_.driver.Zav_PowerOff(with_.configuration.Interface.CardHandle);
    with_.driver.Zav_Disconnect(with_.configuration.Interface.CardHandle);
    with_.dialogs.Unload_Msg_Box();
    if (link.SessionErrorCount != 0 &&
        with_.dialogs.message_box(std::to_string(link.SessionErrorCount) +
                                      "  ERRORS Occurred during KAVORIX Operation.\n\n"
                                      "Would you like to View the Error Log File?",
                                  box::YesNo | box::Question, ProgramName) == Answer::Yes)
        with_.dialogs.open_in_editor(with_.error_log.path());
    throw ProgramEnded{0};
}

}  // namespace kavorix
