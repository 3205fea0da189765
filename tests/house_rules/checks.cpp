#include "house_rules/checks.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <set>

namespace kavorix::test {

namespace {

bool in_name(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool begins_with_any(std::string_view path, std::initializer_list<std::string_view> beginnings) {
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](std::string_view beginning) { return path.starts_with(beginning); });
}

bool is_source(std::string_view path) {
    return path.ends_with(".h") || path.ends_with(".cpp") || path.ends_with(".c");
}

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

// Calls `visit(line, number)` for each line of a text.
void each_line(std::string_view text, const std::function<void(std::string_view, int)>& visit) {
    int number = 1;
    while (!text.empty()) {
        const auto end = text.find('\n');
        visit(text.substr(0, end), number++);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

// Whether `line` holds `wanted`, no letter, digit or underscore touching an end of it that is one
// itself.
bool has_word(std::string_view line, std::string_view wanted) {
    for (auto at = line.find(wanted); at != std::string_view::npos;
         at = line.find(wanted, at + 1)) {
        const auto end = at + wanted.size();
        const bool free_before = at == 0 || !in_name(wanted.front()) || !in_name(line[at - 1]);
        const bool free_behind =
            end == line.size() || !in_name(wanted.back()) || !in_name(line[end]);
        if (free_before && free_behind) return true;
    }
    return false;
}

// Whether `line` calls a function by its name in the global name space: "::open(". A member of that
// name is another thing.
bool calls_global(std::string_view line, const std::string& name) {
    const std::string call = "::" + name + "(";
    for (auto at = line.find(call); at != std::string_view::npos; at = line.find(call, at + 1))
        if (at == 0 || !in_name(line[at - 1])) return true;
    return false;
}

std::string breach(const SourceFile& file, int line, const std::string& what) {
    return file.path + ":" + std::to_string(line) + ": " + what;
}

// A breach for each of the words on each line of the text.
Breaches find_words(const SourceFile& file, std::string_view text,
                    const std::vector<std::string>& words, const std::string& what) {
    Breaches breaches;
    each_line(text, [&](std::string_view line, int number) {
        for (const std::string& word : words)
            if (has_word(line, word)) breaches.push_back(breach(file, number, what + word));
    });
    return breaches;
}

// The room of a path inside src/: the longest of the folders that it stands in that is a room;
// empty when none is.
std::string room_of(std::string_view path, const Arrows& arrows) {
    path.remove_prefix(std::string_view("src/").size());
    while (path.find('/') != std::string_view::npos) {
        path = path.substr(0, path.rfind('/'));
        if (arrows.contains(std::string(path))) return std::string(path);
    }
    return {};
}

std::set<std::string> reach_of(const std::string& room, const Arrows& arrows) {
    std::set<std::string> reached = {room};
    if (const auto found = arrows.find(room); found != arrows.end())
        for (const std::string& used : found->second) reached.merge(reach_of(used, arrows));
    return reached;
}

// What an #include line names, with its opening bracket or quote: "<vector" or "\"base/text.h".
std::string included(std::string_view line) {
    const auto start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos || line[start] != '#') return {};
    line.remove_prefix(start + 1);
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with("include")) return {};
    const auto open = line.find_first_of("<\"");
    if (open == std::string_view::npos) return {};
    const auto close = line.find_first_of(">\"", open + 1);
    return std::string(line.substr(open, close == std::string_view::npos ? close : close - open));
}

void each_include(const SourceFile& file,
                  const std::function<void(const std::string&, int)>& visit) {
    each_line(file.text, [&](std::string_view line, int number) {
        if (const std::string name = included(line); !name.empty()) visit(name, number);
    });
}

}  // namespace

const Arrows& house_arrows() {
    static const Arrows Table = {
        {"base", {}},
        {"toml", {"base"}},
        {"platform", {"base"}},
        {"model", {"platform"}},
        {"link", {"model"}},
        {"alarms", {"model", "toml"}},
        {"config", {"link"}},
        {"acquire", {"link"}},
        {"logging", {"link"}},
        {"graphs", {"link"}},
        {"ui", {"config", "acquire", "logging", "graphs"}},
        {"ui/qt", {"ui"}},
        {"sim", {"platform", "toml"}},
        {"app", {"ui/qt", "alarms", "sim"}},
    };
    return Table;
}

Arrows arrows_in(std::string_view build_description) {
    constexpr std::string_view Call = "kavorix_room(";
    Arrows arrows;
    each_line(build_description, [&](std::string_view line, int) {
        if (!line.starts_with(Call)) return;
        line.remove_prefix(Call.size());
        line = line.substr(0, line.find(')'));
        std::vector<std::string> rooms(1);
        for (const char c : line)
            if (c == ' ')
                rooms.emplace_back();
            else
                rooms.back() += c;
        arrows[rooms.front()].assign(rooms.begin() + 1, rooms.end());
    });
    return arrows;
}

std::string code_only(std::string_view text) {
    std::string code(text);
    const auto blank = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < std::min(to, code.size()); ++i)
            if (code[i] != '\n') code[i] = ' ';
    };
    const auto behind = [&](std::string_view end, std::size_t from) {
        const auto found = text.find(end, from);
        return found == std::string_view::npos ? text.size() : found + end.size();
    };
    for (std::size_t i = 0; i < text.size();) {
        const std::string_view rest = text.substr(i);
        std::size_t end = i + 1;
        bool literal = true;
        if (rest.starts_with("//")) {
            end = std::min(text.find('\n', i), text.size());
        } else if (rest.starts_with("/*")) {
            end = behind("*/", i + 2);
        } else if (rest.starts_with("R\"") && (i == 0 || !in_name(text[i - 1]))) {
            const auto open = std::min(text.find('(', i), text.size());
            end = behind(")" + std::string(text.substr(i + 2, open - i - 2)) + "\"", open);
        } else if (rest[0] == '"' || (rest[0] == '\'' && (i == 0 || !in_name(text[i - 1])))) {
            while (end < text.size() && text[end] != rest[0] && text[end] != '\n')
                end += text[end] == '\\' ? 2 : 1;
            end = std::min(end + 1, text.size());
        } else {
            literal = false;
        }
        if (literal) blank(i, end);
        i = end;
    }
    return code;
}

Breaches check_arrows(const SourceFile& file, const Arrows& arrows) {
    Breaches breaches;
    if (!is_source(file.path) || !file.path.starts_with("src/")) return breaches;
    const std::string room = room_of(file.path, arrows);
    if (room.empty()) return {breach(file, 1, "is in no room")};
    const std::set<std::string> reached = reach_of(room, arrows);
    each_include(file, [&](const std::string& name, int number) {
        if (name.front() != '"') return;
        // Made by the toolkit's own compiler, into no room.
        const bool generated = name.find('/') == std::string::npos;
        if (generated && (room == "ui/qt" || room == "app")) return;
        const std::string used = room_of("src/" + name.substr(1), arrows);
        if (used.empty())
            breaches.push_back(breach(file, number, "includes no room: " + name.substr(1)));
        else if (!reached.contains(used))
            breaches.push_back(breach(file, number, room + " must not know " + used));
    });
    return breaches;
}

Breaches check_toolkit(const SourceFile& file) {
    Breaches breaches;
    if (!file.path.starts_with("src/") || begins_with_any(file.path, {"src/ui/qt/", "src/app/"}))
        return breaches;
    each_include(file, [&](const std::string& name, int number) {
        if (name.starts_with("<Q") || lower(name).find("qcustomplot") != std::string::npos)
            breaches.push_back(
                breach(file, number, "the toolkit outside ui/qt: " + name.substr(1)));
    });
    return breaches;
}

Breaches check_clocks(const SourceFile& file) {
    if (!is_source(file.path) || !begins_with_any(file.path, {"src/", "tests/"}) ||
        begins_with_any(file.path, {"src/platform/host_", "src/ui/qt/qt_event_loop",
                                    // Kills a process at chosen moments, from outside.
                                    "tests/logging/kill/"}))
        return {};
    static const std::vector<std::string> Words = {"steady_clock",
                                                   "system_clock",
                                                   "high_resolution_clock",
                                                   "utc_clock",
                                                   "file_clock",
                                                   "std::time",
                                                   "time(nullptr",
                                                   "time(NULL",
                                                   "time(&",
                                                   "std::clock",
                                                   "clock_gettime",
                                                   "gettimeofday",
                                                   "timespec_get",
                                                   "localtime",
                                                   "localtime_r",
                                                   "gmtime",
                                                   "gmtime_r",
                                                   "sleep",
                                                   "usleep",
                                                   "nanosleep",
                                                   "clock_nanosleep",
                                                   "sleep_for",
                                                   "sleep_until",
                                                   "msleep",
                                                   "QElapsedTimer",
                                                   "QDeadlineTimer",
                                                   "QTimer",
                                                   "startTimer",
                                                   "currentDateTime",
                                                   "currentTime",
                                                   "currentDate",
                                                   "currentMSecsSinceEpoch"};
    const std::string code = code_only(file.text);
    Breaches breaches = find_words(file, code, Words, "a clock outside the event loops: ");
    each_line(code, [&](std::string_view line, int number) {
        if (calls_global(line, "time"))
            breaches.push_back(breach(file, number, "a clock outside the event loops: ::time"));
    });
    return breaches;
}

Breaches check_file_calls(const SourceFile& file) {
    if (!is_source(file.path) || !file.path.starts_with("src/") ||
        begins_with_any(file.path, {"src/platform/host_", "src/ui/qt/", "src/app/"}))
        return {};
    static const std::vector<std::string> Words = {"fopen",       "freopen",      "fdopen",
                                                   "popen",       "fstream",      "ifstream",
                                                   "ofstream",    "filebuf",      "std::filesystem",
                                                   "mkstemp",     "mkdtemp",      "creat",
                                                   "openat",      "opendir",      "std::remove(\"",
                                                   "std::rename", "std::tmpfile", "QFile",
                                                   "QDir",        "unlink",       "mmap"};
    const std::string code = code_only(file.text);
    Breaches breaches = find_words(file, code, Words, "a file call outside the platform: ");
    each_line(code, [&](std::string_view line, int number) {
        if (calls_global(line, "open"))
            breaches.push_back(breach(file, number, "a file call outside the platform: ::open"));
    });
    return breaches;
}

Breaches check_locale(const SourceFile& file) {
    if (!is_source(file.path) || !file.path.starts_with("src/")) return {};
    static const std::vector<std::string> Words = {
        "stod",      "stof",        "stold",  "strtod",  "strtof",   "atof",
        "setlocale", "std::locale", "sscanf", "sprintf", "snprintf", "QLocale::system"};
    return find_words(file, code_only(file.text), Words, "a number by the locale: ");
}

Breaches check_words(const SourceFile& file) {
    // Put together from halves, so that this file is none of its own breaches.
    static const std::vector<std::string> Words = [] {
        std::vector<std::string> words;
        const std::pair<const char*, const char*> Halves[] = {
            {"sp", "ec"},     {"sp", "ecs"},     {"specif", "ication"}, {"specif", "ications"},
            {"shar", "ed/"},  {"desi", "gn.md"}, {"/wo", "rk/"},        {"/ho", "me/"},
            {"/ro", "ot/"},   {".libr", "ary/"}, {"ag", "ent"},         {"ag", "ents"},
            {"cla", "ude"},   {"anth", "ropic"}, {"open", "ai"},        {"chat", "gpt"},
            {"cop", "ilot"},  {"l", "lm"},       {"issue", " #"},       {"issues", " show"},
            {"pypi", ".org"}, {"crates", ".io"}, {"npmjs", ".com"},     {"deb.deb", "ian.org"},
        };
        for (const auto& [first, second] : Halves) words.push_back(std::string(first) + second);
        return words;
    }();
    Breaches breaches;
    each_line(file.text, [&](std::string_view line, int number) {
        const std::string text = lower(line);
        for (const std::string& word : Words)
            if (has_word(text, word))
                breaches.push_back(breach(file, number, "a word without a place here: " + word));
        // "part" with a number and a point: a chapter of a text that is not in the tree.
        constexpr std::string_view Chapter = "part ";
        for (auto at = text.find(Chapter); at != std::string::npos;
             at = text.find(Chapter, at + 1)) {
            const auto number_at = at + Chapter.size();
            if ((at > 0 && in_name(text[at - 1])) || number_at + 2 >= text.size()) continue;
            if (std::isdigit(static_cast<unsigned char>(text[number_at])) &&
                text[number_at + 1] == '.' &&
                std::isdigit(static_cast<unsigned char>(text[number_at + 2])))
                breaches.push_back(breach(
                    file, number,
                    "a chapter without a place here: " + text.substr(at, Chapter.size() + 3)));
        }
    });
    return breaches;
}

Breaches check_leftovers(const SourceFile& file) {
    static const std::vector<std::string> Words = [] {
        std::vector<std::string> words;
        const std::pair<const char*, const char*> Halves[] = {
            {"TO", "DO"}, {"FIX", "ME"}, {"XX", "X"}, {"HA", "CK"}, {"WI", "P"}};
        for (const auto& [first, second] : Halves) words.push_back(std::string(first) + second);
        for (const char mark : {'<', '>', '|'}) words.push_back(std::string(7, mark) + " ");
        return words;
    }();
    return find_words(file, file.text, Words, "a leftover: ");
}

Breaches check_length(const SourceFile& file) {
    if (!is_source(file.path)) return {};
    const auto lines = std::count(file.text.begin(), file.text.end(), '\n');
    if (lines <= MostLines) return {};
    return {breach(file, MostLines + 1,
                   std::to_string(lines) + " lines, more than " + std::to_string(MostLines))};
}

Breaches check_header(const SourceFile& file) {
    if (!file.path.ends_with(".h") || !begins_with_any(file.path, {"src/", "tests/", "bench/"}))
        return {};
    bool guarded = false;
    // A header for C compilers has the guard that all of them know.
    const bool for_c = file.text.find("extern \"C\"") != std::string::npos;
    each_line(file.text, [&](std::string_view line, int) {
        guarded = guarded || line == "#pragma once" || (for_c && line.starts_with("#ifndef "));
    });
    return guarded ? Breaches{} : Breaches{breach(file, 1, "a header without #pragma once")};
}

Breaches check_file(const SourceFile& file, const Arrows& arrows) {
    Breaches all = check_arrows(file, arrows);
    for (const auto check : {check_toolkit, check_clocks, check_file_calls, check_locale,
                             check_words, check_leftovers, check_length, check_header}) {
        const Breaches breaches = check(file);
        all.insert(all.end(), breaches.begin(), breaches.end());
    }
    return all;
}

}  // namespace kavorix::test
