#pragma once

// The rules of the house as checks over source text. A check gets one file and gives its breaches,
// each as "FILE:LINE: what is wrong". Paths are relative to the tree's root, with "/" between
// folders.

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kavorix::test {

struct SourceFile {
    std::string path;
    std::string text;
};

using Breaches = std::vector<std::string>;

// Which rooms a room builds on directly, by folder under src/.
using Arrows = std::map<std::string, std::vector<std::string>>;
const Arrows& house_arrows();

// The arrows that a build description states, one kavorix_room(ROOM USES...) a line.
Arrows arrows_in(std::string_view build_description);

// The text with comments, string and character literals blanked out, its lines where they were.
std::string code_only(std::string_view text);

// Includes of a file under src/ reach its own room and those below it alone.
Breaches check_arrows(const SourceFile& file, const Arrows& arrows);
// The toolkit stays in ui/qt and app.
Breaches check_toolkit(const SourceFile& file);
// Clocks are read, and threads sleep, in the event loops alone.
Breaches check_clocks(const SourceFile& file);
// The core opens files through the platform alone.
Breaches check_file_calls(const SourceFile& file);
// Numbers never follow the host's locale.
Breaches check_locale(const SourceFile& file);
// Words that have no place in the tree.
Breaches check_words(const SourceFile& file);
// Notes to oneself and unmerged text.
Breaches check_leftovers(const SourceFile& file);
// At most this many lines.
inline constexpr int MostLines = 600;
Breaches check_length(const SourceFile& file);
// A header can be included twice.
Breaches check_header(const SourceFile& file);

// All of them.
Breaches check_file(const SourceFile& file, const Arrows& arrows);

}  // namespace kavorix::test
