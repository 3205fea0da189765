#include "config/config_files.h"

#include <system_error>
#include <utility>

#include "base/program_name.h"
#include "base/text.h"
#include "config/config_writer.h"

namespace kavorix {

namespace {

constexpr const char* Extension = "CFG";
constexpr const char* SaveTitle = "Save ZAV Configuration As";

bool has_extension(const std::string& path) {
    const std::string name = name_of(path);
    const auto point = name.rfind('.');
    return point != std::string::npos && upper(name.substr(point + 1)) == Extension;
}

FileRequest request(std::string title, std::string directory, std::string name) {
    return {std::move(title), "Config files(*.CFG)|*.CFG", Extension, std::move(directory),
            std::move(name)};
}

}  // namespace

void write_config_file(Files& files, const std::string& path, const Configuration& configuration,
                       const WallTime& created) {
    replace_file(files, path,
                 config_text(configuration.Interface, configuration.ZavConfig, created));
}

ConfigFiles::ConfigFiles(Surroundings surroundings) : with_(std::move(surroundings)) {}

// Asks until a file with the right extension is chosen or the operator gives up.
template <class Ask>
ConfigFiles::Choice ConfigFiles::choose(Ask ask, std::string_view complaint) {
    for (;;) {
        const std::optional<std::string> path = ask();
        if (!path || has_extension(*path)) return {path, false};
        if (with_.dialogs.message_box(complaint, box::OkCancel | box::Exclamation, ProgramName) ==
            Answer::Cancel)
            return {std::nullopt, true};
    }
}

// False when there is no file to write to; `result` is then what the save returns.
bool ConfigFiles::name_file(std::int16_t& result) {
    std::string& current = with_.configuration.ConfigFileName;
    const FileRequest asked = current.empty()
                                  ? request(SaveTitle, with_.program_directory, "*.CFG")
                                  : request(SaveTitle, directory_of(current), name_of(current));
    const Choice choice = choose([&] { return with_.dialogs.choose_file_to_save(asked); },
                                 "Selected File is not an ZAV Configuration File. Please Select a "
                                 "File with an Extension of .CFG");
    if (choice.path) current = *choice.path;
    result = choice.refused ? 1 : 0;
    return choice.path.has_value();
}

std::int16_t ConfigFiles::save_file(std::int16_t saveAs) {
    return trapped(with_.failures, "confact/save_file", [&]() -> std::int16_t {
        with_.message_line.DispMsg("", Severity::Progress);
        save_failure_.reset();
        const std::string before = with_.configuration.ConfigFileName;
        std::int16_t result = 0;
        if ((saveAs == 1 || before.empty()) && !name_file(result)) return result;
        with_.dialogs.set_pointer(Pointer::Busy);
        write_file();
        with_.dialogs.set_pointer(Pointer::Default);
        if (save_failure_)
            report_unsaved(std::exchange(with_.configuration.ConfigFileName, before));
        return 0;
    });
}

void ConfigFiles::write_file() {
    try {
        write_config_file(with_.files, with_.configuration.ConfigFileName, with_.configuration,
                          with_.loop.wall_time());
    } catch (const std::system_error& failure) {
        save_failure_ = from_utf8_lossy(failure.what());
        return;
    }
    with_.configuration.ConfigChanged = 0;
    with_.message_line.DispMsg(" Configuration file Saved", Severity::Progress);
    note_use();
}

void ConfigFiles::report_unsaved(const std::string& path) {
    with_.configuration.ConfigChanged = 1;
    with_.dialogs.beep();
    with_.dialogs.message_box("The configuration could not be saved to " + from_utf8_lossy(path) +
                                  ".\n\n" + *save_failure_ +
                                  "\n\nWhat was there before is unchanged.",
                              box::Exclamation, ProgramName);
}

// The question about changes that were not saved.
bool ConfigFiles::may_open() {
    if (with_.configuration.ConfigChanged != 1) return true;
    const Answer answer = with_.dialogs.message_box(
        "Configuration changes made but not saved.\n\n"
        "Save before Opening another Configuration File?",
        box::YesNoCancel | box::Question, ProgramName);
    if (answer == Answer::Yes) save_file(0);
    return answer != Answer::Cancel && !(answer == Answer::Yes && save_failure_);
}

void ConfigFiles::note_use() const {
    if (used_) used_(with_.configuration.ConfigFileName);
}

std::optional<std::string> ConfigFiles::ask_for_file(const std::string& directory) {
    return with_.dialogs.choose_file_to_open(request("Open ZAV Configuration", directory, "*.CFG"));
}

template <class Ask>
void ConfigFiles::open_chosen(Ask ask) {
    trapped(with_.failures, "confact/open_file", [&] {
        with_.message_line.DispMsg("", Severity::Progress);
        if (!may_open()) return;
        const Choice choice = choose(ask,
                                     "File is not an ZAV Configuration File. Please Select a File "
                                     "with an Extension of .CFG");
        if (choice.path) load(*choice.path);
    });
}

void ConfigFiles::open_file() {
    open_chosen([&] { return ask_for_file(with_.program_directory); });
}

void ConfigFiles::open_file(const std::string& path) {
    bool asked = false;
    open_chosen([&]() -> std::optional<std::string> {
        if (std::exchange(asked, true)) return ask_for_file(directory_of(path));
        if (with_.files.exists(path)) return path;
        with_.dialogs.message_box(
            from_utf8_lossy(path) + "\n\nFile not found. Please check the name.", box::Exclamation,
            ProgramName);
        return std::nullopt;
    });
}

void ConfigFiles::load(const std::string& path) {
    with_.dialogs.set_pointer(Pointer::Busy);
    const std::string content = read_config_file(with_.files, path);
    LoadLog log(with_.files, with_.loop, path);
    const LoadOutcome outcome = load_configuration(
        content, connected_now(with_.configuration.Interface, with_.status), with_.configuration,
        [&](const LoadMessage& message) { return log_message(log, message); });
    switch (outcome) {
        case LoadOutcome::NoHeader:
            return report_no_header();
        case LoadOutcome::Loaded:
            return report_loaded(path);
        case LoadOutcome::Errors:
            return report_errors(log);
        case LoadOutcome::Stopped:
            with_.dialogs.message_box("Previous Configuration Restored. No Log File Available",
                                      box::Information, ProgramName);
            with_.dialogs.set_pointer(Pointer::Default);
    }
}

// False when there is no log to write to and the operator keeps the old one.
bool ConfigFiles::log_message(LoadLog& log, const LoadMessage& message) {
    if (log.path().empty() && !log.take_free_name()) {
        const std::string question =
            "Errors in the Configuration & No Free Log Files available.\n\nCan " +
            from_utf8_lossy(log.fallback_path()) + " be Overwritten?";
        if (with_.dialogs.message_box(question, box::YesNo | box::Question, ProgramName) !=
            Answer::Yes)
            return false;
        log.take_fallback_name();
    }
    log.append(message.text);
    return true;
}

void ConfigFiles::report_no_header() {
    with_.dialogs.set_pointer(Pointer::Default);
    with_.dialogs.beep();
    with_.dialogs.message_box(
        "Selected File is not an ZAV Configuration File: Header Record missing\n\n"
        "Previous Configuration not Overwritten.",
        box::Exclamation, ProgramName);
}

void ConfigFiles::report_loaded(const std::string& path) {
    with_.configuration.ConfigFileName = path;
    with_.configuration.ConfigChanged = 0;
    note_use();
    with_.dialogs.set_pointer(Pointer::Default);
    with_.message_line.DispMsg(" Configuration file Loaded - must be Transmitted to take Effect",
                               Severity::Progress);
}

void ConfigFiles::report_errors(const LoadLog& log) {
    with_.dialogs.set_pointer(Pointer::Default);
    with_.dialogs.beep();
    const Answer answer = with_.dialogs.message_box(
        "Errors Occurred during the Load of the Configuration File. "
        "Original Configuration Restored.\n\n"
        "Would you like to View the Error Log now?",
        box::YesNo | box::Question, ProgramName);
    if (answer != Answer::Yes || with_.dialogs.open_in_editor(log.path())) return;
    with_.dialogs.beep();
    with_.dialogs.message_box("Configuration Log File could not be Displayed", box::Exclamation,
                              ProgramName);
}

}  // namespace kavorix
