#pragma once

// Small pictures drawn as vectors: sharp at any size and any screen density, in the colours of the
// palette.

#include <QColor>
#include <QIcon>
#include <QRectF>

class QPainter;

namespace kavorix {

enum class Glyph {
    Trigger,
    Halt,
    Transmit,
    Configure,
    Layout,
    SelectAll,
    Clear,
    Warning,      // a red triangle with an exclamation mark
    Caution,      // the same in amber
    Information,  // a disc with an i
    Question,     // a disc with a question mark
    Stop,         // a disc with a cross
    Cycle         // an arrow going round
};

// Draws the glyph into the square in the middle of `box`.
void paint_glyph(QPainter& painter, const QRectF& box, Glyph glyph, const QColor& colour);

// The glyph as an icon of a button or a cell; pictures of messages have their own colours,
// everything else has the colour of button texts.
QIcon glyph_icon(Glyph glyph);

}  // namespace kavorix
