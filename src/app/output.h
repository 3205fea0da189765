#pragma once

// What every command does with the text that it shows.

#include <iosfwd>
#include <string>
#include <string_view>

namespace kavorix {

// A text for the terminal: control characters that came out of files and names, and bytes that are
// no UTF-8, become "?"; line feeds and tabs stay.
std::string for_terminal(std::string_view utf8);

// The exit code of a command that is done: `code`, or 1 after a message when not all of its results
// could be written.
int after_output(std::ostream& out, std::ostream& messages, int code);

}  // namespace kavorix
