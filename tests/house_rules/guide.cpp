// The guide keeps step with the program: it names every message that the program can show, and its
// links lead somewhere.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

namespace kavorix::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const fs::path Root = KAVORIX_SOURCE_DIR;
const fs::path MessagesPage = Root / "docs/guide/messages.md";

std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<fs::path> files_below(const fs::path& folder, const std::string& extension) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(Root / folder))
        if (entry.path().extension() == extension) files.push_back(entry.path());
    return files;
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
    static const std::set<std::string> Others = {"commands.cpp", "availability.cpp"};
    Texts messages;
    for (const fs::path& file : files_below("src", ".cpp")) {
        const std::string room = fs::relative(file, Root / "src").begin()->string();
        if (room == "sim" || room == "model" || room == "base") continue;
        if (Others.contains(file.filename().string())) continue;
        for (std::string& text : messages_in(read(file), least))
            messages.push_back(std::move(text));
    }
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
    for (const fs::path& page : files_below("docs", ".md")) guide += plain(read(page)) + "\n";
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
    const std::string page = read(MessagesPage);
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

std::string anchor_of(std::string_view heading) {
    std::string anchor;
    for (const char c : heading) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) || c == '-' || c == '_')
            anchor += static_cast<char>(std::tolower(byte));
        else if (c == ' ')
            anchor += '-';
    }
    return anchor;
}

std::set<std::string> anchors_of(const fs::path& page) {
    static const std::regex Heading(R"((?:^|\n)#+ ([^\n]+))");
    std::set<std::string> anchors;
    const std::string text = read(page);
    for (std::sregex_iterator at(text.begin(), text.end(), Heading); at != std::sregex_iterator();
         ++at)
        anchors.insert(anchor_of((*at)[1].str()));
    return anchors;
}

// The targets of a page's links and pictures, those of the net left out.
Texts links_of(const fs::path& page) {
    static const std::regex Link(R"(\]\(([^)\s]+)\))");
    const std::string text = read(page);
    Texts links;
    for (std::sregex_iterator at(text.begin(), text.end(), Link); at != std::sregex_iterator();
         ++at)
        if (const std::string target = (*at)[1].str(); !target.starts_with("http"))
            links.push_back(target);
    return links;
}

fs::path target_of(const fs::path& page, const std::string& link) {
    const std::string file = link.substr(0, link.find('#'));
    return file.empty() ? page : (page.parent_path() / file).lexically_normal();
}

TEST(GuidePages, LinksLeadSomewhere) {
    std::vector<fs::path> pages = files_below("docs", ".md");
    pages.push_back(Root / "README.md");
    std::string broken;
    for (const fs::path& page : pages)
        for (const std::string& link : links_of(page)) {
            const fs::path target = target_of(page, link);
            const auto hash = link.find('#');
            // An installed guide has nothing beside it but the other pages.
            const bool inside = page.filename() == "README.md" ||
                                target.string().starts_with((Root / "docs").string());
            if (!inside || !fs::exists(target) ||
                (hash != std::string::npos && !anchors_of(target).contains(link.substr(hash + 1))))
                broken += fs::relative(page, Root).string() + ": " + link + "\n";
        }
    EXPECT_EQ(broken, "");
}

TEST(GuidePages, AllOfThemAreReachedFromTheFirst) {
    std::set<fs::path> reached = {Root / "docs/guide/index.md"};
    std::vector<fs::path> ahead(reached.begin(), reached.end());
    while (!ahead.empty()) {
        const fs::path page = ahead.back();
        ahead.pop_back();
        for (const std::string& link : links_of(page)) {
            const fs::path target = target_of(page, link);
            if (target.extension() == ".md" && reached.insert(target).second)
                ahead.push_back(target);
        }
    }
    for (const fs::path& page : files_below("docs", ".md"))
        EXPECT_TRUE(reached.contains(page)) << page;
}

}  // namespace
}  // namespace kavorix::test
