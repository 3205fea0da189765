#include "ui/qt/kit/guide.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScreen>
#include <QWindow>
#include <utility>

#include "ui/qt/kit/guide_window.h"
#include "ui/qt/kit/window_placing.h"

namespace kavorix {

namespace {

constexpr const char* FirstPage = "/guide/index.md";
constexpr const char* MessagesPage = "/guide/messages.md";
constexpr QSize UsualSize(900, 760);

}  // namespace

QString documents_folder() {
    const QString program = QCoreApplication::applicationDirPath();
    for (const char* place : {"/../share/kavorix/docs", "/../../docs"})
        if (QFile::exists(program + place + FirstPage)) return program + place;
    return {};
}

Guide::Guide(QString documents, const WindowMemory& memory)
    : documents_(std::move(documents)), memory_(memory) {
    qApp->installEventFilter(this);
}

Guide::~Guide() {
    if (window_) memory_.save(*window_);
    delete window_;
}

void Guide::open(std::string_view page) {
    show_page(documents_ + "/guide/" +
              QString::fromLatin1(page.data(), static_cast<qsizetype>(page.size())) + ".md");
}

void Guide::open_about(const QWidget* window) {
    show_page(page_about(window));
}

QString Guide::page_about(const QWidget* window) const {
    for (const QWidget* at = window; at; at = at->parentWidget()) {
        if (qobject_cast<const QMessageBox*>(at)) return documents_ + MessagesPage;
        const QString page = documents_ + "/guide/windows/" + at->objectName() + ".md";
        if (!at->objectName().isEmpty() && QFile::exists(page)) return page;
    }
    return documents_ + FirstPage;
}

void Guide::show_page(const QString& path) {
    if (!window_) {
        window_ = new GuideWindow(documents_ + FirstPage);
        window_->winId();  // makes the window handle
        if (!memory_.restore(*window_))
            window_->resize(UsualSize.boundedTo(window_->screen()->availableSize()));
    }
    place_above(window_in_front(nullptr));
    window_->show();
    window_->raise();
    window_->activateWindow();
    window_->show_page(path);
}

// A window above a modal one can be used together with it; that is settled when it is shown.
void Guide::place_above(const QWidget* modal) {
    QWindow* const owner = modal ? modal->windowHandle() : nullptr;
    if (window_->windowHandle()->transientParent() == owner) return;
    window_->hide();
    window_->windowHandle()->setTransientParent(owner);
}

bool Guide::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
    const auto* const key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
    open_about(static_cast<QWidget*>(watched));
    return true;
}

}  // namespace kavorix
