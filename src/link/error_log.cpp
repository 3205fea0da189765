#include "link/error_log.h"

#include <exception>

#include "base/program_name.h"
#include "base/text.h"

namespace kavorix {

namespace {

// Every line break of a text, LF or CR LF, as the log writes it.
std::string with_log_line_breaks(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) result += '\r';
        result += text[i];
    }
    return result;
}

}  // namespace

ErrorLog::ErrorLog(Files& files, const EventLoop& loop, const std::string& directory, bool keep)
    : files_(files), loop_(loop), path_(join_path(directory, "ERR_LOG.TXT")), keep_(keep) {}

void ErrorLog::open() {
    if (!keep_) return;
    file_ = files_.open(path_, OpenMode::Create);
    write_line(general_date(loop_.wall_time()));
    write_line("");
    write_line("---- KAVORIX Error file ----");
    write_line("");
}

void ErrorLog::write_line(std::string_view line) {
    if (file_) file_->write(std::string(line) + "\r\n");
}

void ErrorLog::close() {
    if (const auto file = std::move(file_)) file->close();
}

void ErrorLog::remove() {
    if (keep_ && files_.exists(path_)) files_.remove(path_);
}

void ErrorLog::append_last_words(std::string_view text) {
    if (!keep_) return;
    close();
    const auto file = files_.open(path_, OpenMode::Append);
    file->write(with_log_line_breaks(text) + "\r\n");
    file->close();
}

void ErrorReporter::ReportError(std::int16_t number, std::string_view description,
                                std::string_view location) {
    dialogs_.set_pointer(Pointer::Default);
    location = trim(location);
    std::string message = "A serious error has occurred in " + std::string(ProgramName);
    message += location.empty() ? "." : " at " + std::string(location);
    message += "\n\nError code : " + std::to_string(number) + ", " + from_utf8_lossy(description) +
               "\n\r\n" + std::string(ProgramName) + " will stop";
    try {
        dialogs_.message_box(message, box::Stop, ProgramName);
        log_.append_last_words(message);
    } catch (const std::exception&) {
        // The program ends in any case; a log that cannot be written must not hide the failure
        // already shown.
    }
    throw ProgramEnded{1};
}

}  // namespace kavorix
