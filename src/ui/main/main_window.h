#pragma once

// The main window `frmMain`: which command does what, what is shown, and the clicks that are no
// commands.

#include <array>
#include <functional>
#include <string_view>

#include "ui/main/main_screen.h"
#include "ui/main/pod_commands.h"

namespace kavorix {

class MainWindow {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        PodCommands& pods;
        Dialogs& dialogs;
        FailureReporter& failures;
        const Configuration& configuration;
        RunTime& run_time;
        std::function<void()> exit;  // leaves the program, or returns when the operator stays
    };
    explicit MainWindow(Surroundings surroundings);

    // What the window shows now.
    MainScreen screen() const;

    // Gives a command what it does. A command that was given nothing is never available.
    void on(Command command, std::function<void()> action);

    // Whether a command can be used now.
    bool available(Command command) const;

    // A menu item was chosen, or a button pressed; nothing happens while the command is not
    // available.
    void run(Command command);
    void press(const ButtonRow& button);

    // As run(), with another way to do it, such as with a file that is already chosen.
    void run(Command command, const std::function<void()>& action);

    void img_ZAV_Click(Pod pod);
    // A menu of what can be done with a pod is about to open: a pod that is not selected becomes
    // the only one that is.
    void select_for_menu(Pod pod);
    void img_4A_Click();
    void pnlErr_DblClick();
    void pnlButton_DblClick(int stream);
    void unload_request();  // the window is asked to close; it stays until the program ends

  private:
    void register_own_commands();
    void configure();
    void toggle_stream3_auto_clear();
    void run(Command command, std::string_view trace, const std::function<void()>& action);
    const std::function<void()>& action_of(Command command) const {
        return actions_[static_cast<std::size_t>(command)];
    }
    template <class Action>
    void handler(std::string_view trace, Action&& action);

    Surroundings with_;
    LinkState& link_;
    std::array<std::function<void()>, CommandCount> actions_;
};

}  // namespace kavorix
