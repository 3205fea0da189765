#include "ui/qt/kit/glyphs.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

// All glyphs are drawn on a field of 16 x 16.
constexpr double Field = 16;

QPen line(const QColor& colour, double width = 1.7) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void fill(QPainter& painter, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
}

void stroke(QPainter& painter, const QColor& colour, double width = 1.7) {
    painter.setPen(line(colour, width));
    painter.setBrush(Qt::NoBrush);
}

void paint_transmit(QPainter& painter, const QColor& colour) {
    stroke(painter, colour);
    painter.drawPolyline(QPolygonF({{2.5, 10.5}, {2.5, 13.5}, {13.5, 13.5}, {13.5, 10.5}}));
    painter.drawLine(QPointF(8, 10), QPointF(8, 2.8));
    painter.drawPolyline(QPolygonF({{4.8, 5.8}, {8, 2.6}, {11.2, 5.8}}));
}

// Three sliders.
void paint_configure(QPainter& painter, const QColor& colour) {
    constexpr double Rows[] = {3.5, 8, 12.5};
    constexpr double Knobs[] = {10.5, 5.0, 9.0};
    stroke(painter, colour, 1.5);
    for (const double y : Rows) painter.drawLine(QPointF(2, y), QPointF(14, y));
    fill(painter, colour);
    for (int i = 0; i < 3; ++i) painter.drawEllipse(QPointF(Knobs[i], Rows[i]), 2.2, 2.2);
}

void paint_layout(QPainter& painter, const QColor& colour) {
    stroke(painter, colour, 1.5);
    painter.drawRoundedRect(QRectF(2, 2.5, 12, 11), 1.5, 1.5);
    painter.drawLine(QPointF(2.2, 6.5), QPointF(13.8, 6.5));
    painter.drawLine(QPointF(2.2, 10), QPointF(13.8, 10));
}

void paint_select_all(QPainter& painter, const QColor& colour) {
    stroke(painter, colour, 1.5);
    painter.drawRoundedRect(QRectF(1.8, 4.2, 10, 10), 1.5, 1.5);
    painter.drawPolyline(QPolygonF({{4.2, 1.8}, {14.2, 1.8}, {14.2, 11.8}}));
    painter.drawPolyline(QPolygonF({{4.4, 9.2}, {6.2, 11.2}, {9.6, 7.2}}));
}

// A broom stroke: a line struck through under a small cross.
void paint_clear(QPainter& painter, const QColor& colour) {
    stroke(painter, colour, 1.5);
    painter.drawPolyline(
        QPolygonF({{5.6, 3.5}, {14, 3.5}, {14, 12.5}, {5.6, 12.5}, {1.8, 8}, {5.6, 3.5}}));
    painter.drawLine(QPointF(7.6, 6), QPointF(11.4, 10));
    painter.drawLine(QPointF(11.4, 6), QPointF(7.6, 10));
}

void paint_warning(QPainter& painter, const QColor& colour) {
    painter.setPen(line(colour, 1.6));
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF({{8, 2.2}, {14.4, 13.4}, {1.6, 13.4}}));
    const QColor mark = colour.lightness() > 150 ? QColor(0x20, 0x10, 0x10) : QColor(Qt::white);
    stroke(painter, mark, 1.7);
    painter.drawLine(QPointF(8, 6.2), QPointF(8, 9.3));
    fill(painter, mark);
    painter.drawEllipse(QPointF(8, 11.8), 1.0, 1.0);
}

void paint_disc(QPainter& painter, const QColor& colour) {
    fill(painter, colour);
    painter.drawEllipse(QPointF(8, 8), 7, 7);
}

void paint_information(QPainter& painter, const QColor& colour) {
    paint_disc(painter, colour);
    stroke(painter, Qt::white, 1.8);
    painter.drawLine(QPointF(8, 7.6), QPointF(8, 11.4));
    fill(painter, Qt::white);
    painter.drawEllipse(QPointF(8, 4.7), 1.1, 1.1);
}

void paint_question(QPainter& painter, const QColor& colour) {
    paint_disc(painter, colour);
    stroke(painter, Qt::white, 1.7);
    QPainterPath hook(QPointF(5.7, 6.2));
    hook.cubicTo(5.8, 3.2, 10.3, 3.2, 10.3, 6.1);
    hook.cubicTo(10.3, 7.9, 8, 7.9, 8, 9.6);
    painter.drawPath(hook);
    fill(painter, Qt::white);
    painter.drawEllipse(QPointF(8, 12.1), 1.1, 1.1);
}

void paint_stop(QPainter& painter, const QColor& colour) {
    paint_disc(painter, colour);
    stroke(painter, Qt::white, 1.9);
    painter.drawLine(QPointF(5.4, 5.4), QPointF(10.6, 10.6));
    painter.drawLine(QPointF(10.6, 5.4), QPointF(5.4, 10.6));
}

void paint_cycle(QPainter& painter, const QColor& colour) {
    stroke(painter, colour, 1.8);
    painter.drawArc(QRectF(2.6, 2.6, 10.8, 10.8), 50 * 16, 280 * 16);
    fill(painter, colour);
    painter.drawPolygon(QPolygonF({{9.0, 1.0}, {13.8, 3.4}, {9.8, 6.6}}));
}

void paint_shape(QPainter& painter, Glyph glyph, const QColor& colour) {
    switch (glyph) {
        case Glyph::Trigger:
            painter.setPen(line(colour, 1.6));
            painter.setBrush(colour);
            painter.drawPolygon(QPolygonF({{4.2, 2.8}, {13, 8}, {4.2, 13.2}}));
            break;
        case Glyph::Halt:
            fill(painter, colour);
            painter.drawRoundedRect(QRectF(3, 3, 10, 10), 1.6, 1.6);
            break;
        case Glyph::Transmit:
            paint_transmit(painter, colour);
            break;
        case Glyph::Configure:
            paint_configure(painter, colour);
            break;
        case Glyph::Layout:
            paint_layout(painter, colour);
            break;
        case Glyph::SelectAll:
            paint_select_all(painter, colour);
            break;
        case Glyph::Clear:
            paint_clear(painter, colour);
            break;
        case Glyph::Warning:
        case Glyph::Caution:
            paint_warning(painter, colour);
            break;
        case Glyph::Information:
            paint_information(painter, colour);
            break;
        case Glyph::Question:
            paint_question(painter, colour);
            break;
        case Glyph::Stop:
            paint_stop(painter, colour);
            break;
        case Glyph::Cycle:
            paint_cycle(painter, colour);
            break;
    }
}

// Of the pictures of messages; invalid for the others.
QColor own_colour(Glyph glyph, const QPalette& palette) {
    switch (glyph) {
        case Glyph::Warning:
        case Glyph::Stop:
            return signal_colours(palette).error;
        case Glyph::Caution:
            return is_dark(palette) ? QColor(0xF0, 0xC0, 0x4A) : QColor(0xD9, 0x8A, 0x04);
        case Glyph::Information:
        case Glyph::Question:
            return signal_colours(palette).selected;
        default:
            return {};
    }
}

// Paints when it is asked to, so that it follows size, density and palette.
class GlyphEngine : public QIconEngine {
  public:
    explicit GlyphEngine(Glyph glyph) : glyph_(glyph) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor colour = own_colour(glyph_, palette);
        const QColor text = palette.color(
            group, mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText);
        // Some air around it keeps it off the text beside it.
        const double air = rect.width() * 0.1;
        paint_glyph(*painter, QRectF(rect).adjusted(air, air, -air, -air), glyph_,
                    colour.isValid() ? colour : text);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new GlyphEngine(glyph_); }

  private:
    Glyph glyph_;
};

}  // namespace

void paint_glyph(QPainter& painter, const QRectF& box, Glyph glyph, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double size = std::min(box.width(), box.height());
    painter.translate(box.center() - QPointF(size, size) / 2);
    painter.scale(size / Field, size / Field);
    paint_shape(painter, glyph, colour);
    painter.restore();
}

QIcon glyph_icon(Glyph glyph) {
    return QIcon(new GlyphEngine(glyph));
}

}  // namespace kavorix
