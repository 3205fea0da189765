#pragma once

// Where the pods stand on the pod display: two strips of 25 columns, each on a card of its own, a
// gutter with the row names at the left. Pure geometry, in device-independent pixels.

#include <QPointF>
#include <QRectF>
#include <QSize>

#include "platform/driver.h"

namespace kavorix {

inline constexpr int PodsPerStrip = 25;
inline constexpr int StripCount = 2;

class PodGeometry {
  public:
    // For a display of this size, with the stream indicator rows or without, and a line of text
    // that is `text_height` high. More room than minimum_size() goes into larger icons first, then
    // into the spacing.
    PodGeometry(QSize size, bool expanded, int text_height);

    static QSize minimum_size(bool expanded, int text_height);

    QRectF card(int strip) const;
    QRectF tile(int pod) const;
    QRectF number(int pod) const;
    QRectF icon(int pod) const;
    QRectF type(int pod) const;
    QRectF indicator(int pod, int stream) const;
    QRectF row_name(int strip, int stream) const;

    // The pod at a point, -1 for none.
    int pod_at(QPointF point) const;

  private:
    double column_left(int column) const;
    double content_top(int strip) const;

    QSizeF size_;
    double text_height_;
    double column_width_;
    double card_height_;
    double icon_size_;
    double content_height_;
};

enum class Step { Left, Right, Up, Down, First, Last };

// The pod that the keyboard goes to from `pod` (index 0..49). Left and Right go through both
// strips and stop at the ends, Up and Down change the strip.
int pod_after(int pod, Step step);

}  // namespace kavorix
