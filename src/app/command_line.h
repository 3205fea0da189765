#pragma once

// The command line: common options and one function a subcommand.

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <string>

#include "app/options.h"

namespace kavorix {

// What the command line has chosen to do; returns the exit code.
using Action = std::function<int()>;

// Where a command gets its options and leaves its action.
struct CommandLine {
    CLI::App& app;
    const CommonOptions& common;
    std::ostream& out;
    std::ostream& messages;
    Action& action;
};

// Each adds its subcommand.
void add_discover(const CommandLine& line);
void add_watch(const CommandLine& line);
void add_check(const CommandLine& line);
void add_statements(const CommandLine& line);
void add_rewrite(const CommandLine& line);

// Runs the program: `window` opens the main window, everything else is done in the terminal. Usage
// errors, unusable input and failures become messages and an exit code.
int run_command_line(int argc, const char* const* argv, std::ostream& out, std::ostream& messages,
                     const std::function<int(const CommonOptions&)>& window);

}  // namespace kavorix
