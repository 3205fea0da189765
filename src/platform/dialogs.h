#pragma once

// What the program asks of the operator's desktop beside its own windows. All texts are
// Windows-1252, paths are the host's bytes. No call stops the timers: where one waits for an
// answer, events flow.

#include <optional>
#include <string>
#include <string_view>

namespace kavorix {

// Style of a message box: one choice of buttons plus one icon, for example 33 = OkCancel +
// Question.
namespace box {
inline constexpr int Ok = 0;
inline constexpr int OkCancel = 1;
inline constexpr int YesNoCancel = 3;
inline constexpr int YesNo = 4;
inline constexpr int Stop = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;
inline constexpr int ButtonMask = 15;
inline constexpr int IconMask = 0x70;
}  // namespace box

// The button that closed a message box. Closing it otherwise counts as Cancel, as No where there is
// no Cancel, as Ok where Ok is the only button.
enum class Answer { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

struct FileRequest {
    std::string title;
    std::string filter;             // "Config files(*.CFG)|*.CFG"
    std::string default_extension;  // "CFG": appended to a name typed without one
    std::string directory;
    std::string name;
    bool existing_welcome = false;  // saving: an existing file is chosen without a question
};

enum class Pointer { Default, Busy };

class Dialogs {
  public:
    virtual ~Dialogs() = default;

    // A modal message box of the program; returns when it is answered.
    virtual Answer message_box(std::string_view text, int flags, std::string_view title) = 0;

    // A message box that does not hold up the program. One that only has an Ok button returns at
    // once and stays open beside the windows; one with a choice returns the operator's answer, the
    // program going on meanwhile.
    virtual Answer Msg_Box(std::string_view text, int flags, std::string_view title) = 0;

    // Closes every box that Msg_Box left open.
    virtual void Unload_Msg_Box() = 0;

    // The chosen path, nothing when cancelled. Opening: path and file must exist. Saving asks
    // before it lets an existing file be chosen, unless the request welcomes one.
    virtual std::optional<std::string> choose_file_to_open(const FileRequest& request) = 0;
    virtual std::optional<std::string> choose_file_to_save(const FileRequest& request) = 0;

    // The small message window without buttons; closed by an empty text.
    virtual void show_wait_message(std::string_view text) = 0;

    virtual void set_pointer(Pointer pointer) = 0;
    virtual void beep() = 0;

    // Brings what the control records say onto the screen at once.
    virtual void repaint() = 0;

    // Starts the host's text editor on a file, not waiting for it. False when none can be started.
    virtual bool open_in_editor(const std::string& path) = 0;
};

}  // namespace kavorix
