#pragma once

// The pictures of the pod icons and of the interface icon. What a picture says is told by its shape
// as well as by its colour: selected = filled body with a tick; data = a wave on the display and
// the lamp lit; error = a cross on the display and a warning triangle; logging = a file beside the
// pod.

#include <QPalette>
#include <QRectF>

#include "ui/main/main_screen.h"

class QPainter;

namespace kavorix {

// What is to be told apart in a picture.
struct PictureTraits {
    bool interface_card = false;
    bool selected = false;
    bool data = false;
    bool error = false;
    bool logging = false;
    bool operator==(const PictureTraits&) const = default;
};
PictureTraits picture_traits(Picture picture);

// The same in words: "selected, data arrived".
std::string picture_words(Picture picture);

// Draws the picture into the square in the middle of `box`.
void paint_picture(QPainter& painter, const QRectF& box, Picture picture, const QPalette& palette);

}  // namespace kavorix
