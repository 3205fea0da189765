#pragma once

// A desktop that answers from a script and remembers what it was asked. Levers: answer() queues
// answers to message boxes, choose() queues file choices, at_box() runs code while a box is open. A
// box with a choice that no answer was queued for fails the test.

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace kavorix::test {

struct ShownBox {
    std::string text;
    int flags = 0;
    std::string title;
    bool operator==(const ShownBox&) const = default;
};

void PrintTo(const ShownBox& shown, std::ostream* out);

class ScriptedDialogs : public Dialogs {
  public:
    void answer(Answer next) { answers_.push_back(next); }
    void choose(std::optional<std::string> path) { choices_.push_back(std::move(path)); }
    void at_box(std::function<void(const ShownBox&)> action) { at_box_ = std::move(action); }

    std::vector<ShownBox> boxes;          // message_box and Msg_Box, in order
    std::vector<FileRequest> requests;    // file dialogs, in order
    std::vector<std::string> wait_texts;  // show_wait_message, in order
    std::vector<std::string> edited;      // open_in_editor, in order
    int beeps = 0;
    int repaints = 0;
    int unloads = 0;
    Pointer pointer = Pointer::Default;
    bool editor_works = true;

    // The boxes so far, forgetting them.
    std::vector<ShownBox> take_boxes();

    Answer message_box(std::string_view text, int flags, std::string_view title) override;
    Answer Msg_Box(std::string_view text, int flags, std::string_view title) override;
    void Unload_Msg_Box() override { ++unloads; }
    std::optional<std::string> choose_file_to_open(const FileRequest& request) override;
    std::optional<std::string> choose_file_to_save(const FileRequest& request) override;
    void show_wait_message(std::string_view text) override { wait_texts.emplace_back(text); }
    void set_pointer(Pointer next) override { pointer = next; }
    void beep() override { ++beeps; }
    void repaint() override { ++repaints; }
    bool open_in_editor(const std::string& path) override;

  private:
    std::optional<std::string> next_choice(const FileRequest& request);

    std::deque<Answer> answers_;
    std::deque<std::optional<std::string>> choices_;
    std::function<void(const ShownBox&)> at_box_;
};

}  // namespace kavorix::test
