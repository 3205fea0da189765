#pragma once

// What the program asks of the desktop, with the toolkit's dialogs.

#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "platform/dialogs.h"
#include "ui/qt/kit/file_dialog.h"
#include "ui/qt/kit/mirrors.h"
#include "ui/qt/kit/window_memory.h"

class QMessageBox;

namespace kavorix {

// Boxes and dialogs belong to the window set with set_main_window(), or to the modal window in
// front of it.
class QtDialogs : public Dialogs {
  public:
    explicit QtDialogs(Mirrors& mirrors);
    ~QtDialogs() override;

    void set_main_window(QWidget* window) { main_window_ = window; }

    // Where file dialogs remember the folder of last time, by the kind of file.
    void set_memory(const WindowMemory& memory) { memory_ = memory; }

    Answer message_box(std::string_view text, int flags, std::string_view title) override;

    // A text that already stands in an open box is not opened twice: its box comes to the front.
    Answer Msg_Box(std::string_view text, int flags, std::string_view title) override;
    void Unload_Msg_Box() override;
    std::optional<std::string> choose_file_to_open(const FileRequest& request) override;
    std::optional<std::string> choose_file_to_save(const FileRequest& request) override;
    void show_wait_message(std::string_view text) override;
    void set_pointer(Pointer pointer) override;
    void beep() override;
    void repaint() override;
    bool open_in_editor(const std::string& path) override;

  private:
    struct Notice;  // an open one-button box and its place in the stack

    std::optional<std::string> choose(const FileRequest& request, FileChoice choice);
    void show_notice(std::string_view text, int flags, std::string_view title);
    void forget_closed_notices();
    int free_place() const;
    void show_new_windows();

    Mirrors& mirrors_;
    QtEventLoop& loop_;
    QPointer<QWidget> main_window_;
    std::optional<WindowMemory> memory_;
    std::vector<std::unique_ptr<Notice>> notices_;
    std::vector<QMessageBox*> questions_;  // open Msg_Box boxes with a choice
    std::unique_ptr<QWidget> wait_window_;
    bool busy_ = false;
};

}  // namespace kavorix
