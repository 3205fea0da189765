#include "support/scripted_dialogs.h"

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

namespace kavorix::test {

void PrintTo(const ShownBox& shown, std::ostream* out) {
    *out << "[" << shown.title << "] (" << shown.flags << ") " << shown.text;
}

std::vector<ShownBox> ScriptedDialogs::take_boxes() {
    return std::exchange(boxes, {});
}

Answer ScriptedDialogs::message_box(std::string_view text, int flags, std::string_view title) {
    boxes.push_back({std::string(text), flags, std::string(title)});
    if (at_box_) at_box_(ShownBox(boxes.back()));
    if ((flags & box::ButtonMask) == box::Ok) return Answer::Ok;
    if (answers_.empty()) {
        ADD_FAILURE() << "No answer for: " << text;
        return Answer::Cancel;
    }
    const Answer next = answers_.front();
    answers_.pop_front();
    return next;
}

Answer ScriptedDialogs::Msg_Box(std::string_view text, int flags, std::string_view title) {
    return message_box(text, flags, title);
}

std::optional<std::string> ScriptedDialogs::choose_file_to_open(const FileRequest& request) {
    return next_choice(request);
}

std::optional<std::string> ScriptedDialogs::choose_file_to_save(const FileRequest& request) {
    return next_choice(request);
}

std::optional<std::string> ScriptedDialogs::next_choice(const FileRequest& request) {
    requests.push_back(request);
    if (choices_.empty()) {
        ADD_FAILURE() << "No choice for the file dialog " << request.title;
        return std::nullopt;
    }
    auto next = std::move(choices_.front());
    choices_.pop_front();
    return next;
}

bool ScriptedDialogs::open_in_editor(const std::string& path) {
    edited.push_back(path);
    return editor_works;
}

}  // namespace kavorix::test
