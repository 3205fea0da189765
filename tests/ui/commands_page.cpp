// The user guide's page of commands is the table of availability in words.

#include <gtest/gtest.h>

#include <fstream>

#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

std::string without_marks(std::string_view caption) {
    std::string text(caption);
    std::erase(text, '&');
    return text;
}

std::string when(Conditions conditions) {
    std::string text;
    for (const Condition* condition : conditions)
        text += (text.empty() ? "" : "; ") + std::string(condition->text);
    return text.empty() ? "always" : text;
}

// "| Config > Save | `mnuConfigItem(4)` | conditions |" for every item.
void add_rows(const MenuRow& menu, const std::string& path, Lines& rows) {
    const std::string own = path + without_marks(menu.caption) + " > ";
    for (const MenuLine& line : menu.lines) {
        if (line.submenu != nullptr) add_rows(*line.submenu, own, rows);
        if (line.command == Command::None) continue;
        const CommandRow& row = command_row(line.command);
        rows.push_back("| " + own + without_marks(row.caption) + " | `" + std::string(row.name) +
                       "` | " + when(row.conditions()) + " |");
    }
}

TEST(CommandsPage, PrintsTheTable) {
    Lines rows;
    for (const ButtonRow& row : buttons())
        rows.push_back("| " + without_marks(row.caption) + " | `" + std::string(row.name) + "` | " +
                       when(command_row(row.id).conditions()) + " |");
    for (const MenuRow& menu : menu_bar())
        rows.push_back("| " + without_marks(menu.caption) + " | `" + std::string(menu.name) +
                       "` | " + when(menu.conditions()) + " |");
    for (const MenuRow& menu : menu_bar()) add_rows(menu, "", rows);

    std::ifstream page(KAVORIX_SOURCE_DIR "/docs/commands.md");
    Lines lines;
    for (std::string line; std::getline(page, line);)
        if (line.find("| `") != std::string::npos) lines.push_back(line);
    ASSERT_EQ(lines.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with(rows[i])) << rows[i] << "\n" << lines[i];
        EXPECT_GT(lines[i].size(), rows[i].size() + 10) << "says what it does: " << lines[i];
    }
}

}  // namespace
}  // namespace kavorix::test
