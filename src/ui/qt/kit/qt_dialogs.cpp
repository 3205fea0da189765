#include "ui/qt/kit/qt_dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "platform/files.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/window_placing.h"

namespace kavorix {

namespace {

constexpr int StackStep = 28;         // pixels between open boxes: a title bar stays readable
constexpr int LongestFlush_ms = 250;  // for a new window to reach the screen

QMessageBox::Icon icon_of(int flags) {
    switch (flags & box::IconMask) {
        case box::Stop:
            return QMessageBox::Critical;
        case box::Question:
            return QMessageBox::Question;
        case box::Exclamation:
            return QMessageBox::Warning;
        case box::Information:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButtons buttons_of(int flags) {
    switch (flags & box::ButtonMask) {
        case box::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case box::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case box::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        default:
            return QMessageBox::Ok;
    }
}

Answer answer_of(const QMessageBox& box) {
    switch (box.standardButton(box.clickedButton())) {
        case QMessageBox::Ok:
            return Answer::Ok;
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        case QMessageBox::Cancel:
            return Answer::Cancel;
        default: {
            const auto buttons = box.standardButtons();
            return buttons.testFlag(QMessageBox::Cancel) ? Answer::Cancel
                   : buttons.testFlag(QMessageBox::No)   ? Answer::No
                                                         : Answer::Ok;
        }
    }
}

// Line ends of message texts are LF, CR LF or both in turn.
QString box_text(std::string_view text) {
    return to_qt(text).remove(u'\r');
}

void fill_box(QMessageBox& box, std::string_view text, int flags, std::string_view title) {
    box.setWindowTitle(to_qt(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(box_text(text));
    box.setIcon(icon_of(flags));
    const auto buttons = buttons_of(flags);
    box.setStandardButtons(buttons);
    box.setDefaultButton(buttons.testFlag(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok);
}

Answer ask(QtEventLoop& loop, QMessageBox& box, QWidget* over) {
    run_modal(loop, box, over);
    return answer_of(box);
}

}  // namespace

struct QtDialogs::Notice {
    QMessageBox box;
    int place = 0;
};

QtDialogs::QtDialogs(Mirrors& mirrors) : mirrors_(mirrors), loop_(mirrors.loop()) {}

QtDialogs::~QtDialogs() {
    set_pointer(Pointer::Default);
}

Answer QtDialogs::message_box(std::string_view text, int flags, std::string_view title) {
    QMessageBox box;
    fill_box(box, text, flags, title);
    return ask(loop_, box, window_in_front(main_window_));
}

Answer QtDialogs::Msg_Box(std::string_view text, int flags, std::string_view title) {
    if ((flags & box::ButtonMask) == box::Ok) {
        show_notice(text, flags, title);
        return Answer::Ok;
    }
    QMessageBox box;
    fill_box(box, text, flags, title);
    questions_.push_back(&box);
    struct Forget {
        std::vector<QMessageBox*>& questions;
        QMessageBox* box;
        ~Forget() {
            questions.erase(std::remove(questions.begin(), questions.end(), box), questions.end());
        }
    } const forget{questions_, &box};
    return ask(loop_, box, window_in_front(main_window_));
}

void QtDialogs::show_notice(std::string_view text, int flags, std::string_view title) {
    forget_closed_notices();
    for (const auto& notice : notices_)
        if (notice->box.text() == box_text(text) && notice->box.windowTitle() == to_qt(title)) {
            notice->box.raise();
            notice->box.activateWindow();
            return;
        }
    auto notice = std::make_unique<Notice>();
    notice->place = free_place();
    fill_box(notice->box, text, flags, title);
    notice->box.setWindowModality(Qt::NonModal);
    // It does not take the keyboard from somebody who types into a dialog.
    notice->box.setAttribute(Qt::WA_ShowWithoutActivating,
                             QApplication::activeModalWidget() != nullptr);
    show_over(notice->box, window_in_front(main_window_),
              QPoint(StackStep, StackStep) * notice->place);
    notices_.push_back(std::move(notice));
}

void QtDialogs::forget_closed_notices() {
    notices_.erase(std::remove_if(notices_.begin(), notices_.end(),
                                  [](const auto& notice) { return !notice->box.isVisible(); }),
                   notices_.end());
}

int QtDialogs::free_place() const {
    int place = 0;
    const auto taken = [&] {
        return std::any_of(notices_.begin(), notices_.end(),
                           [&](const auto& notice) { return notice->place == place; });
    };
    while (taken()) ++place;
    return place;
}

void QtDialogs::Unload_Msg_Box() {
    for (const auto& notice : notices_) notice->box.close();
    forget_closed_notices();
    for (QMessageBox* question : std::vector(questions_)) question->done(QMessageBox::NoButton);
}

std::optional<std::string> QtDialogs::choose_file_to_open(const FileRequest& request) {
    return choose(request, FileChoice::Open);
}

std::optional<std::string> QtDialogs::choose_file_to_save(const FileRequest& request) {
    return choose(request, FileChoice::Save);
}

// A request that names no file begins where the last file of its kind was.
std::optional<std::string> QtDialogs::choose(const FileRequest& request, FileChoice choice) {
    const QString key = "folder/" + to_qt(request.default_extension);
    FileRequest asked = request;
    if (memory_ && (request.name.empty() || request.name.front() == '*')) {
        const QByteArray folder = memory_->value(key);
        if (QFileInfo(QFile::decodeName(folder)).isDir()) asked.directory = folder.toStdString();
    }
    const auto path = choose_file(loop_, *this, window_in_front(main_window_), asked, choice);
    if (memory_ && path) memory_->set_value(key, QByteArray::fromStdString(directory_of(*path)));
    return path;
}

void QtDialogs::show_wait_message(std::string_view text) {
    wait_window_.reset();
    if (text.empty()) return;
    auto window = std::make_unique<QDialog>(
        nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    window->setObjectName("frmWinMsg");
    window->setWindowTitle("KAVORIX");
    auto* const label = new QLabel(to_qt(trim(text)));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    auto* const layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(32, 28, 32, 28);
    layout->addWidget(label);
    show_over(*window, window_in_front(main_window_));
    wait_window_ = std::move(window);
}

void QtDialogs::set_pointer(Pointer pointer) {
    const bool busy = pointer == Pointer::Busy;
    if (busy == busy_) return;
    busy_ = busy;
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void QtDialogs::beep() {
    QApplication::beep();
}

void QtDialogs::repaint() {
    mirrors_.refresh();
    show_new_windows();
    // What is laid out or painted later would come with the next events; here only what changed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
}

// Waits for windows that the window system has not put on the screen yet, once for each.
void QtDialogs::show_new_windows() {
    constexpr auto Awaited = "awaited";
    QWindowList fresh;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window->isVisible() && !window->isExposed() && !window->property(Awaited).toBool())
            fresh << window;
    if (fresh.isEmpty()) return;
    for (QWindow* window : fresh) window->setProperty(Awaited, true);
    loop_.flush_screen(LongestFlush_ms, [&fresh] {
        return std::all_of(fresh.begin(), fresh.end(),
                           [](const QWindow* window) { return window->isExposed(); });
    });
}

bool QtDialogs::open_in_editor(const std::string& path) {
    return QProcess::startDetached("xdg-open",
                                   {QFile::decodeName(QByteArray::fromStdString(path))});
}

}  // namespace kavorix
