#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "house_rules/checks.h"

namespace kavorix::test {
namespace {

namespace fs = std::filesystem;

std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Every text file of the tree: not what was built, not version control's own, no picture.
std::vector<SourceFile> tree() {
    const fs::path root = KAVORIX_SOURCE_DIR;
    std::vector<SourceFile> files;
    for (auto at = fs::recursive_directory_iterator(root); at != fs::end(at); ++at) {
        const std::string name = at->path().filename().string();
        const bool hidden = name.starts_with('.') && name != ".ci";
        if (at->is_directory()) {
            if (hidden || name == "build" || name == "corpus") at.disable_recursion_pending();
            continue;
        }
        if (hidden || !at->is_regular_file()) continue;
        SourceFile file{fs::relative(at->path(), root).generic_string(), read(at->path())};
        if (file.text.find('\0') == std::string::npos) files.push_back(std::move(file));
    }
    return files;
}

TEST(HouseRules, HoldInEveryFileOfTheTree) {
    const std::vector<SourceFile> files = tree();
    EXPECT_GT(files.size(), 100u);
    std::string all;
    for (const SourceFile& file : files)
        for (const std::string& found : check_file(file, house_arrows())) all += found + "\n";
    EXPECT_EQ(all, "");
}

TEST(HouseRules, TheArrowsAreThoseOfTheBuild) {
    EXPECT_EQ(arrows_in(read(fs::path(KAVORIX_SOURCE_DIR) / "CMakeLists.txt")), house_arrows());
}

TEST(HouseRules, TheArrowsPointDownwardsAlone) {
    // A room stands above everything that it uses: no circle.
    std::map<std::string, int> floor;
    const auto floor_of = [&](const auto& self, const std::string& room, int depth) -> int {
        if (depth > 20) return 1000;
        int highest = 0;
        for (const std::string& used : house_arrows().at(room))
            highest = std::max(highest, 1 + self(self, used, depth + 1));
        return highest;
    };
    for (const auto& [room, uses] : house_arrows()) EXPECT_LT(floor_of(floor_of, room, 0), 20);
}

}  // namespace
}  // namespace kavorix::test
