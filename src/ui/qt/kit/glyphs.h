#pragma once

// Small pictures drawn as vectors: sharp at any size and any screen density, in the colours of the
// palette.

#include <QColor>
#include <QIcon>
#include <QRectF>

#include "ui/main/commands.h"

class QPainter;

namespace kavorix {

// Draws the glyph into the square in the middle of `box`.
void paint_glyph(QPainter& painter, const QRectF& box, Glyph glyph, const QColor& colour);

// The glyph as an icon of a button or a cell; pictures of messages have their own colours,
// everything else has the colour of button texts.
QIcon glyph_icon(Glyph glyph);

}  // namespace kavorix
