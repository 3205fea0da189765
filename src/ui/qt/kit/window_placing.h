#pragma once

#include <QPoint>

class QDialog;
class QWidget;

namespace kavorix {

class QtEventLoop;

// The window that a new window belongs to: the modal one in front, else `otherwise`.
QWidget* window_in_front(QWidget* otherwise);

// Shows `dialog` in the middle of the window `over` (the screen when there is none), moved by
// `offset`, and ties it to that window without making it its child: it stays above that window, can
// be used while that window is modal, and lives on when that window is destroyed.
void show_over(QDialog& dialog, QWidget* over, QPoint offset = {});

// Shows a dialog modally over a window and returns its result when it is closed; events flow.
int run_modal(QtEventLoop& loop, QDialog& dialog, QWidget* over);

}  // namespace kavorix
