#pragma once

// Light and dark palettes, and the colours of the records in either.

#include <QColor>
#include <QPalette>

#include "platform/controls.h"

class QApplication;

namespace kavorix {

enum class Theme {
    Light,
    Dark,
    System  // light or dark as the desktop is
};

// Style, palette and font sizes of the whole program.
void apply_theme(QApplication& application, Theme theme);

// Whether text stands light on dark.
bool is_dark(const QPalette& palette);

// A record's text colour on a background of the palette: the same hue, readable. Black is the
// palette's text colour.
QColor text_colour(Colour colour, const QPalette& palette);

// The colours that say the same thing everywhere on the screen.
struct SignalColours {
    QColor selected;  // chosen by the operator
    QColor data;      // data arrived
    QColor error;
    QColor logging;
    QColor faint;  // positions without a pod, names beside values
    QColor line;   // edges of panels
    QColor panel;  // their ground
};
SignalColours signal_colours(const QPalette& palette);

// Between two colours: 0 gives `from`, 1 gives `to`.
QColor blend(const QColor& from, const QColor& to, double share);

}  // namespace kavorix
