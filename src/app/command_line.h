#pragma once

// The command line: common options and one function a subcommand.

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "app/options.h"
#include "platform/event_loop.h"

namespace kavorix {

// What the command line has chosen to do; returns the exit code.
using Action = std::function<int()>;

// What the program is given beside its arguments.
struct ProgramSurroundings {
    std::ostream& out;       // results
    std::ostream& messages;  // everything else that is said
    std::function<int(const CommonOptions&)>
        window;  // opens the main window, returns the exit code
    // The loop of a run that follows the wall clock; its argument is called at a signal to end.
    std::function<std::unique_ptr<EventLoop>(std::function<void()>)> make_loop;
};

// Where a command gets its options and leaves its action.
struct CommandLine {
    CLI::App& app;
    const CommonOptions& common;
    const ProgramSurroundings& with;
    Action& action;
};

// Each adds its subcommand.
void add_discover(const CommandLine& line);
void add_watch(const CommandLine& line);
void add_log(const CommandLine& line);
void add_status(const CommandLine& line);
void add_convert(const CommandLine& line);
void add_info(const CommandLine& line);
void add_repair(const CommandLine& line);
void add_plot(const CommandLine& line);
void add_check(const CommandLine& line);
void add_statements(const CommandLine& line);
void add_rewrite(const CommandLine& line);
void add_show(const CommandLine& line);
void add_verify(const CommandLine& line);
void add_alarms(const CommandLine& line);

// Runs the program: without a command the main window, everything else in the terminal. Usage
// errors, unusable input and failures become messages and an exit code.
int run_command_line(int argc, const char* const* argv, const ProgramSurroundings& with);

}  // namespace kavorix
