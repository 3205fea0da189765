#include "ui/qt/kit/window_placing.h"

#include <QApplication>
#include <QDialog>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "ui/qt/kit/qt_event_loop.h"

namespace kavorix {

QWidget* window_in_front(QWidget* otherwise) {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal ? modal : otherwise;
}

void show_over(QDialog& dialog, QWidget* over, QPoint offset) {
    dialog.winId();  // makes the window handle
    const QWidget* const owner = over && over->isVisible() ? over->window() : nullptr;
    if (owner) dialog.windowHandle()->setTransientParent(owner->windowHandle());
    const QRect screen =
        (owner ? owner->screen() : QApplication::primaryScreen())->availableGeometry();
    dialog.ensurePolished();
    dialog.adjustSize();
    QRect place({}, dialog.sizeHint());
    place.moveCenter(owner ? owner->geometry().center() : screen.center());
    place.translate(offset);
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    dialog.move(place.topLeft());
    dialog.show();
}

int run_modal(QtEventLoop& loop, QDialog& dialog, QWidget* over) {
    bool open = true;
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&open] { open = false; });
    dialog.setWindowModality(Qt::ApplicationModal);
    show_over(dialog, over);
    loop.wait_until([&open] { return !open; });
    return dialog.result();
}

}  // namespace kavorix
