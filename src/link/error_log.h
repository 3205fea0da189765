#pragma once

// The error log ERR_LOG.TXT of a run and the common reporter of unexpected failures.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/trap.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"

namespace kavorix {

// Text lines ended by CR LF, in the order of what happened. On disk line by line.
class ErrorLog {
  public:
    // keep false: nothing is ever written, for a short run that shows its errors only.
    ErrorLog(Files& files, const EventLoop& loop, const std::string& directory, bool keep = true);

    // Makes the file anew and writes its header lines. Throws std::system_error.
    void open();
    // One line; nothing happens while the log is not open. Throws std::system_error.
    void write_line(std::string_view line);
    void close();
    // Deletes the file, which may be gone already.
    void remove();
    // Closes the log and appends `text` to the file, its line breaks as CR LF.
    void append_last_words(std::string_view text);

    const std::string& path() const { return path_; }

  private:
    Files& files_;
    const EventLoop& loop_;
    std::string path_;
    bool keep_;
    std::unique_ptr<File> file_;
};

// Shows the failure, puts it at the end of the error log and ends the program by throwing
// ProgramEnded{1}. The log stays on disk; nothing else is shut down.
class ErrorReporter : public FailureReporter {
  public:
    ErrorReporter(ErrorLog& log, Dialogs& dialogs) : log_(log), dialogs_(dialogs) {}

    [[noreturn]] void ReportError(std::int16_t number, std::string_view description,
                                  std::string_view location) override;

  private:
    ErrorLog& log_;
    Dialogs& dialogs_;
};

}  // namespace kavorix
