#include "platform/files.h"

#include <array>
#include <system_error>

namespace kavorix {

std::string read_all(Files& files, const std::string& path, std::uint64_t most) {
    const auto file = files.open(path, OpenMode::Read);
    std::string content;
    std::array<char, 65536> buffer{};
    while (const std::size_t count = file->read(buffer)) {
        content.append(buffer.data(), count);
        if (content.size() > most)
            throw std::system_error(std::make_error_code(std::errc::file_too_large),
                                    "Reading \"" + path + "\"");
    }
    return content;
}

void replace_file(Files& files, const std::string& path, std::string_view content) {
    const std::string temporary = path + ".new";
    try {
        const auto file = files.open(temporary, OpenMode::Create);
        file->write(content);
        file->sync();
        file->close();
        files.rename(temporary, path);
    } catch (...) {
        try {
            if (files.exists(temporary)) files.remove(temporary);
        } catch (const std::exception&) {
            // The first failure is the one to report.
        }
        throw;
    }
    files.sync_directory(directory_of(path));
}

std::string directory_of(const std::string& path) {
    const auto separator = path.rfind('/');
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

std::string name_of(const std::string& path) {
    const auto separator = path.rfind('/');
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

std::string join_path(const std::string& directory, const std::string& name) {
    return directory.empty() ? name : directory + "/" + name;
}

}  // namespace kavorix
