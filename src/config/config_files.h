#pragma once

// Saving and opening configuration files, with the dialogs that go with it.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "base/trap.h"
#include "config/config_reader.h"
#include "config/load_log.h"
#include "link/message_line.h"
#include "model/runtime.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"

namespace kavorix {

// Writes a whole configuration file in one step: the file that was there survives every failure.
// Throws std::system_error.
void write_config_file(Files& files, const std::string& path, const Configuration& configuration,
                       const WallTime& created);

class ConfigFiles {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        Configuration& configuration;
        const PodStatuses& status;
        Dialogs& dialogs;
        Files& files;
        const EventLoop& loop;
        MessageLine& message_line;
        FailureReporter& failures;
        std::string program_directory;
    };
    explicit ConfigFiles(Surroundings surroundings);

    // Writes the live configuration, after the file dialog when saveAs is 1 or no file is named
    // yet. Returns 1 when the operator gave up because the chosen file has another extension, else
    // 0. What cannot be written is told: then the old file and its name stay, and the configuration
    // is still marked as changed.
    std::int16_t save_file(std::int16_t saveAs);

    // Why the last save did not write, in the system's words; nothing when it did.
    const std::optional<std::string>& save_failure() const { return save_failure_; }

    // Asks for a file and loads it: as a whole, or not at all and with an error log beside it.
    void open_file();

    // The same with a file that the operator has chosen otherwise.
    void open_file(const std::string& path);

    // Called with the path of every file that was loaded or saved.
    void on_used(std::function<void(const std::string&)> action) { used_ = std::move(action); }

  private:
    struct Choice {
        std::optional<std::string> path;
        bool refused = false;  // given up at the question about the extension
    };

    template <class Ask>
    Choice choose(Ask ask, std::string_view complaint);
    bool name_file(std::int16_t& result);
    void write_file();
    void report_unsaved(const std::string& path);
    bool may_open();
    std::optional<std::string> ask_for_file(const std::string& directory);
    template <class Ask>
    void open_chosen(Ask ask);
    void note_use() const;
    void load(const std::string& path);
    bool log_message(LoadLog& log, const LoadMessage& message);
    void report_no_header();
    void report_loaded(const std::string& path);
    void report_errors(const LoadLog& log);

    Surroundings with_;
    std::function<void(const std::string&)> used_;
    std::optional<std::string> save_failure_;
};

}  // namespace kavorix
