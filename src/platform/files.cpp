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

Replacement::Replacement(Files& files, const std::string& path)
    : files_(files), path_(files.target_of(path)) {
    files_.check_writable(path_);
    if (files_.exists(path_)) lock_ = files_.lock(path_);
    file_ = files_.create_beside(path_, temporary_);
}

Replacement::~Replacement() {
    if (temporary_.empty()) return;
    file_.reset();
    try {
        files_.remove(temporary_);
    } catch (const std::exception&) {
        // Whoever unwinds to here has a failure of its own to report.
    }
}

void Replacement::commit() {
    file_->sync();
    file_->close();
    files_.rename(temporary_, path_);
    temporary_.clear();
    files_.sync_directory(directory_of(path_));
}

void replace_file(Files& files, const std::string& path, std::string_view content) {
    Replacement replacement(files, path);
    replacement.file().write(content);
    replacement.commit();
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
