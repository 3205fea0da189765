#include "config/load_log.h"

#include <utility>

#include "base/text.h"

namespace kavorix {

namespace {

constexpr int LogNames = 100;
constexpr std::size_t ExtensionLength = 3;
constexpr std::string_view EntryEnd = "\r\n\r\n";

}  // namespace

LoadLog::LoadLog(Files& files, const EventLoop& loop, std::string config_path)
    : files_(files), loop_(loop), config_path_(std::move(config_path)) {}

std::string LoadLog::path_with(int number) const {
    const std::size_t kept =
        config_path_.size() < ExtensionLength ? 0 : config_path_.size() - ExtensionLength;
    return config_path_.substr(0, kept) + "L" + two_digits(number);
}

bool LoadLog::take_free_name() {
    for (int number = 0; number < LogNames; ++number)
        if (!files_.exists(path_with(number))) {
            path_ = path_with(number);
            return true;
        }
    return false;
}

void LoadLog::take_fallback_name() {
    path_ = fallback_path();
    files_.remove(path_);
}

void LoadLog::append(std::string_view message) {
    std::string entry;
    if (!has_header_)
        entry = "KAVORIX ZAV CONFIGURATION FILE ERROR LOG FOR " + from_utf8_lossy(config_path_) +
                " " + general_date(loop_.wall_time()) + std::string(EntryEnd);
    entry.append(message).append(EntryEnd);
    const auto file = files_.open(path_, OpenMode::Append);
    file->write(entry);
    file->close();
    has_header_ = true;
}

}  // namespace kavorix
