#pragma once

// The text files of the tree.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace kavorix::test {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

struct SourceFile {
    std::string path;  // below the root of the tree, with "/" between folders
    std::string text;
};

inline std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Every text file of the tree: not what was built, not version control's own, no picture.
inline const std::vector<SourceFile>& tree() {
    static const std::vector<SourceFile> Tree = [] {
        const fs::path root = KAVORIX_SOURCE_DIR;
        std::vector<SourceFile> files;
        for (auto at = fs::recursive_directory_iterator(root); at != fs::end(at); ++at) {
            const std::string name = at->path().filename().string();
            const bool hidden = name.starts_with('.') && name != ".ci";
            if (at->is_directory() &&
                (hidden || name == "build" || name == "corpus" || name == "__pycache__"))
                at.disable_recursion_pending();
            if (hidden || !at->is_regular_file()) continue;
            SourceFile file{fs::relative(at->path(), root).generic_string(), read(at->path())};
            if (file.text.find('\0') == std::string::npos) files.push_back(std::move(file));
        }
        return files;
    }();
    return Tree;
}

inline Texts split(std::string_view text, char mark) {
    Texts parts(1);
    for (const char c : text)
        if (c == mark)
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

}  // namespace kavorix::test
