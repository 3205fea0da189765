#pragma once

#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "platform/files.h"

namespace kavorix {

// The error log of a load: a text file beside the configuration file, with the extension L00..L99
// in place of its last three characters. Opened and closed for every entry. File failures are
// thrown as std::system_error.
class LoadLog {
  public:
    LoadLog(Files& files, const EventLoop& loop, std::string config_path);

    // Takes the first of the hundred names that no file has; false when all are taken.
    bool take_free_name();

    // The name with L01: to be asked for, and taken, its file deleted, when all are taken.
    std::string fallback_path() const { return path_with(1); }
    void take_fallback_name();

    // Appends a message and an empty line, before the first one the log's header.
    void append(std::string_view message);

    // Empty until a name is taken.
    const std::string& path() const { return path_; }

  private:
    std::string path_with(int number) const;

    Files& files_;
    const EventLoop& loop_;
    std::string config_path_;
    std::string path_;
    bool has_header_ = false;
};

}  // namespace kavorix
