// The guide keeps step with the program: it names every message that the program can show, and its
// links lead somewhere.

#include "house_rules/tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <regex>
#include <set>

namespace kavorix::test {
namespace {

const fs::path Root = KAVORIX_SOURCE_DIR;

// The pages of the guide and of the formats.
std::vector<SourceFile> pages() {
    std::vector<SourceFile> found;
    for (const SourceFile& file : tree())
        if (file.path.starts_with("docs/") && file.path.ends_with(".md")) found.push_back(file);
    return found;
}

// One blank between words, no code marks.
std::string plain(std::string_view text) {
    std::string words;
    for (const char c : text) {
        const bool blank = std::isspace(static_cast<unsigned char>(c)) != 0;
        if (c == '`' || (blank && (words.empty() || words.back() == ' '))) continue;
        words += blank ? ' ' : c;
    }
    if (words.ends_with(' ')) words.pop_back();
    return words;
}

std::string unescaped(std::string_view literal) {
    std::string text;
    for (std::size_t i = 0; i < literal.size(); ++i)
        if (literal[i] != '\\')
            text += literal[i];
        else if (++i < literal.size())
            text += literal[i] == 'n' || literal[i] == 'r' ? ' ' : literal[i];
    return text;
}

int words_in(const std::string& text) {
    static const std::regex Word("[A-Za-z][A-Za-z]+[^ ]*");
    return static_cast<int>(
        std::distance(std::sregex_iterator(text.begin(), text.end(), Word), {}));
}

// The literals of a source file that an operator may get to read, those that stand side by side as
// one: `least` words or more, or what is given to a message box or the message line. Texts of
// options stand in --help.
Texts messages_in(const std::string& source, int least) {
    static const std::regex Token(
        R"re(//[^\n]*|#[^\n]*|"((?:[^"\\\n]|\\.)*)"|'(?:[^'\\\n]|\\.)+')re");
    static const std::regex Shown("DispMsg|Msg_Box|message_box");
    static const std::regex NotShown("add_option|add_flag|add_subcommand|static_assert|CLI::App");
    Texts messages;
    const std::sregex_iterator end;
    for (std::sregex_iterator token(source.begin(), source.end(), Token); token != end;) {
        if (!(*token)[1].matched) {
            ++token;
            continue;
        }
        const auto at = static_cast<std::size_t>(token->position());
        const auto begins = at == 0 ? 0 : source.find_last_of(";{}", at - 1) + 1;
        const std::string statement = source.substr(begins, at - begins);
        std::string text;
        do {
            text += unescaped((*token)[1].str());
            const std::string between = (++token == end) ? "x" : token->prefix().str();
            if (!plain(between).empty()) break;
        } while ((*token)[1].matched);
        text = plain(text);
        const int wanted = std::regex_search(statement, Shown) ? 1 : least;
        if (words_in(text) >= wanted && !std::regex_search(statement, NotShown))
            messages.push_back(text);
    }
    return messages;
}

Texts messages_of_the_program(int least) {
    // Menus and their conditions have a page of their own, tested beside their tables.
    static const std::regex Speaking(
        "src/(?!sim/|model/|base/)(?!.*/(commands|availability)\\.cpp).*\\.cpp");
    Texts messages;
    for (const SourceFile& file : tree())
        if (std::regex_match(file.path, Speaking))
            for (const std::string& text : messages_in(file.text, least)) messages.push_back(text);
    return messages;
}

TEST(GuidePages, NameEveryMessageOfTheProgram) {
    // Parts of files and of tool windows, no messages.
    const std::set<std::string> others = {
        "KAVORIX ZAV CONFIGURATION FILE ERROR LOG FOR",
        "PNG picture(*.png)|*.png|SVG drawing(*.svg)|*.svg|PDF document(*.pdf)|*.pdf|CSV "
        "values(*.csv)|*.csv",
        "The page before",
        "The first page of the guide",
        "Page of the guide",
        "Operator station for a network of measurement pods. Without a command it opens its "
        "window.",
        "With --network or --driver the file is checked against the pods that answer there, "
        "otherwise against pods of the types that it names itself.",
        ": Selected File is not an ZAV Configuration File: Header Record missing",
        "Pod Ident Type Channels",
        "Listening for signals",
    };
    std::string guide;
    for (const SourceFile& page : pages()) guide += plain(page.text) + "\n";
    const Texts messages = messages_of_the_program(3);
    EXPECT_GT(messages.size(), 250u);
    std::set<std::string> missing, found(messages.begin(), messages.end());
    for (const std::string& text : messages)
        if (guide.find(text) == std::string::npos && !others.contains(text)) missing.insert(text);
    EXPECT_EQ(missing, std::set<std::string>());
    for (const std::string& text : others) EXPECT_TRUE(found.contains(text)) << text;
}

TEST(GuidePages, NameNoMessageThatTheProgramDoesNotHave) {
    const Texts messages = messages_of_the_program(2);
    const std::string page = read(Root / "docs/guide/messages.md");
    static const std::regex Row(R"(\n\| ([^\n]*`[^\n]*))");
    int rows = 0;
    for (std::sregex_iterator row(page.begin(), page.end(), Row); row != std::sregex_iterator();
         ++row, ++rows) {
        const std::string text = plain((*row)[1].str());
        EXPECT_TRUE(std::any_of(messages.begin(), messages.end(), [&](const std::string& message) {
            return text.find(message) != std::string::npos;
        })) << text;
    }
    EXPECT_GT(rows, 150);
}

// What a link to a heading ends with.
std::string anchor_of(std::string_view heading) {
    std::string anchor;
    for (const char c : heading) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) || c == '-' || c == '_' || c == ' ')
            anchor += c == ' ' ? '-' : static_cast<char>(std::tolower(byte));
    }
    return anchor;
}

bool has_anchor(const fs::path& page, const std::string& anchor) {
    for (const std::string& line : split(read(page), '\n'))
        if (const auto text = line.find_first_not_of('#');
            line.starts_with('#') && text != line.npos)
            if (anchor_of(line.substr(text + 1)) == anchor) return true;
    return false;
}

// The targets of a page's links and pictures, those of the net left out, each with its anchor.
std::vector<std::pair<fs::path, std::string>> links_of(const SourceFile& page) {
    static const std::regex Link(R"(\]\((?!http)([^)\s#]*)#?([^)\s]*)\))");
    std::vector<std::pair<fs::path, std::string>> links;
    const fs::path path = Root / page.path;
    for (std::sregex_iterator at(page.text.begin(), page.text.end(), Link), end; at != end; ++at) {
        const std::string file = (*at)[1].str();
        links.emplace_back(file.empty() ? path : (path.parent_path() / file).lexically_normal(),
                           (*at)[2].str());
    }
    return links;
}

TEST(GuidePages, LinksLeadSomewhereAndToEveryPage) {
    std::vector<SourceFile> all = pages();
    all.push_back({"README.md", read(Root / "README.md")});
    std::map<std::string, std::set<std::string>> links;
    for (const SourceFile& page : all)
        for (const auto& [target, anchor] : links_of(page)) {
            const std::string path = fs::relative(target, Root).generic_string();
            // An installed guide has nothing beside it but the other pages.
            EXPECT_TRUE(fs::exists(target) &&
                        (page.path == "README.md" || path.starts_with("docs/")))
                << page.path << ": " << path;
            EXPECT_TRUE(anchor.empty() || has_anchor(target, anchor))
                << page.path << ": " << path << "#" << anchor;
            links[page.path].insert(path);
        }
    std::set<std::string> reached = {"docs/guide/index.md"};
    for (std::size_t before = 0; before < reached.size();) {
        before = reached.size();
        for (const std::string& page : std::set(reached))
            reached.insert(links[page].begin(), links[page].end());
    }
    for (const SourceFile& page : pages()) EXPECT_TRUE(reached.contains(page.path)) << page.path;
}

}  // namespace
}  // namespace kavorix::test
