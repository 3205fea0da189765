#pragma once

#include <QApplication>
#include <QWidget>

namespace kavorix::test {

// The window of this object name that is on the screen, nullptr when there is none.
inline QWidget* open_window(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == name && window->isVisible()) return window;
    return nullptr;
}

}  // namespace kavorix::test
