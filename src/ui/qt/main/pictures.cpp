#include "ui/qt/main/pictures.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <cmath>

#include "ui/qt/kit/glyphs.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

// All pictures are drawn on a field of 40 x 40.
constexpr double Field = 40;

struct Inks {
    QColor body;
    QColor edge;
    QColor detail;  // on the body
    QColor display;
    QColor trace;  // on the display
    SignalColours signal;
};

Inks inks_of(const PictureTraits& traits, const QPalette& palette) {
    const SignalColours signal = signal_colours(palette);
    const bool dark = is_dark(palette);
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    Inks inks;
    inks.signal = signal;
    inks.body = traits.selected ? signal.selected : blend(window, text, dark ? 0.20 : 0.10);
    inks.edge = traits.error      ? signal.error
                : traits.selected ? blend(signal.selected, Qt::black, 0.25)
                                  : blend(window, text, 0.55);
    inks.detail = traits.selected ? QColor(0xFF, 0xFF, 0xFF) : blend(window, text, 0.62);
    inks.display = traits.error  ? blend(signal.error, Qt::black, dark ? 0.70 : 0.10)
                   : traits.data ? QColor(0x0C, 0x3B, 0x26)
                                 : QColor(0x2A, 0x32, 0x3D);
    inks.trace = traits.error  ? (dark ? signal.error : QColor(Qt::white))
                 : traits.data ? QColor(0x58, 0xE8, 0x9C)
                               : QColor(0x93, 0x9F, 0xAF);
    return inks;
}

QPen pen(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paint_trace(QPainter& painter, const PictureTraits& traits, const Inks& inks) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(inks.trace, traits.error || traits.data ? 2.0 : 1.6));
    if (traits.error) {
        painter.drawLine(QPointF(16.6, 12.4), QPointF(23.4, 19.2));
        painter.drawLine(QPointF(23.4, 12.4), QPointF(16.6, 19.2));
    } else if (traits.data) {
        QPainterPath wave(QPointF(11, 15.8));
        wave.cubicTo(13, 9.5, 15.5, 9.5, 17.5, 15.8);
        wave.cubicTo(19.5, 22.1, 22, 22.1, 24, 15.8);
        wave.cubicTo(25, 12.6, 26.5, 11, 29, 11.5);
        painter.drawPath(wave);
    } else {
        painter.drawLine(QPointF(12, 15.8), QPointF(28, 15.8));
    }
}

// A measurement module: display above, terminals and a lamp below.
void paint_pod_body(QPainter& painter, const PictureTraits& traits, const Inks& inks) {
    painter.setPen(pen(inks.edge, traits.error ? 2.0 : 1.4));
    painter.setBrush(inks.body);
    painter.drawRoundedRect(QRectF(6, 6, 28, 28), 4, 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(inks.display);
    painter.drawRoundedRect(QRectF(9.5, 9.5, 21, 12.6), 2, 2);
    paint_trace(painter, traits, inks);
    painter.setPen(Qt::NoPen);
    painter.setBrush(inks.detail);
    for (const double x : {10.0, 14.8, 19.6})
        painter.drawRoundedRect(QRectF(x, 25.6, 3.2, 5), 1, 1);
    painter.setPen(pen(inks.detail, 1.2));
    painter.setBrush(traits.data ? QBrush(QColor(0x58, 0xE8, 0x9C)) : QBrush(Qt::NoBrush));
    painter.drawEllipse(QPointF(28.2, 28.1), 2.4, 2.4);
}

// A plug-in card: bracket at the left, chip in the middle, contacts at the lower edge.
void paint_card_body(QPainter& painter, const Inks& inks) {
    painter.setPen(pen(inks.edge, 1.4));
    painter.setBrush(inks.body);
    QPainterPath board;
    board.addRoundedRect(QRectF(8, 9, 28, 19), 2.5, 2.5);
    painter.drawPath(board);
    painter.setPen(Qt::NoPen);
    painter.setBrush(inks.edge);
    painter.drawRoundedRect(QRectF(4, 6, 3, 28), 1.5, 1.5);
    for (int i = 0; i < 6; ++i) painter.drawRect(QRectF(13 + 3.4 * i, 28.4, 2, 4));
    painter.setBrush(inks.display);
    painter.drawRoundedRect(QRectF(17, 13, 11, 10.5), 1.5, 1.5);
    painter.setPen(pen(inks.detail, 1.3));
    for (const double y : {15.2, 18.2, 21.2}) {
        painter.drawLine(QPointF(13.6, y), QPointF(16, y));
        painter.drawLine(QPointF(29, y), QPointF(31.4, y));
    }
}

void paint_tick(QPainter& painter, const Inks& inks) {
    painter.setPen(pen(inks.signal.selected, 1.4));
    painter.setBrush(QColor(Qt::white));
    painter.drawEllipse(QPointF(7.6, 7.6), 6.2, 6.2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(inks.signal.selected, 2.2));
    painter.drawPolyline(QPolygonF({{4.8, 7.8}, {6.9, 10.0}, {10.6, 5.4}}));
}

// A file with a folded corner and lines of text.
void paint_file(QPainter& painter, const Inks& inks) {
    QPainterPath sheet;
    sheet.moveTo(25.5, 1.5);
    sheet.lineTo(33.5, 1.5);
    sheet.lineTo(38.2, 6.2);
    sheet.lineTo(38.2, 17);
    sheet.lineTo(25.5, 17);
    sheet.closeSubpath();
    painter.setPen(pen(QColor(Qt::white), 1.4));
    painter.setBrush(inks.signal.logging);
    painter.drawPath(sheet);
    painter.setPen(pen(QColor(Qt::white), 1.5));
    painter.drawLine(QPointF(28.3, 8.2), QPointF(35.4, 8.2));
    painter.drawLine(QPointF(28.3, 11.0), QPointF(35.4, 11.0));
    painter.drawLine(QPointF(28.3, 13.8), QPointF(32.8, 13.8));
}

void draw(QPainter& painter, double size, const PictureTraits& traits, const QPalette& palette) {
    const Inks inks = inks_of(traits, palette);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / Field, size / Field);
    if (traits.interface_card)
        paint_card_body(painter, inks);
    else
        paint_pod_body(painter, traits, inks);
    if (traits.logging) paint_file(painter, inks);
    if (traits.selected) paint_tick(painter, inks);
    if (traits.error)
        paint_glyph(painter, QRectF(24, 22, 16, 16), Glyph::Warning, inks.signal.error);
}

// Many pods change their picture at every tick: each one is drawn once for its size and palette.
QPixmap kept_picture(Picture picture, double size, double density, const QPalette& palette) {
    const QString key = QString("kavorix picture %1 %2 %3 %4")
                            .arg(static_cast<int>(picture))
                            .arg(size)
                            .arg(density)
                            .arg(palette.cacheKey());
    QPixmap kept;
    if (QPixmapCache::find(key, &kept)) return kept;
    const int pixels = static_cast<int>(std::ceil(size * density));
    kept = QPixmap(pixels, pixels);
    kept.setDevicePixelRatio(density);
    kept.fill(Qt::transparent);
    QPainter painter(&kept);
    draw(painter, size, picture_traits(picture), palette);
    painter.end();
    QPixmapCache::insert(key, kept);
    return kept;
}

}  // namespace

PictureTraits picture_traits(Picture picture) {
    PictureTraits traits;
    switch (picture) {
        case Picture::img1ZAV:
            break;
        case Picture::imgZAV:
            traits.selected = true;
            break;
        case Picture::img1ZAV_D:
            traits.data = true;
            break;
        case Picture::imgZAV_D:
            traits.selected = traits.data = true;
            break;
        case Picture::img1ZAV_E:
            traits.error = true;
            break;
        case Picture::img1LOG:
            traits.logging = true;
            break;
        case Picture::imgLOG:
            traits.logging = traits.selected = true;
            break;
        case Picture::img1LOG_D:
            traits.logging = traits.data = true;
            break;
        case Picture::imgLOG_D:
            traits.logging = traits.selected = traits.data = true;
            break;
        case Picture::img14A:
            traits.interface_card = true;
            break;
        case Picture::img4A:
            traits.interface_card = traits.selected = true;
            break;
    }
    return traits;
}

std::string picture_words(Picture picture) {
    const PictureTraits traits = picture_traits(picture);
    std::string words = traits.error ? "in error" : traits.selected ? "selected" : "not selected";
    if (traits.data) words += ", data arrived";
    if (traits.logging) words += ", logging";
    return words;
}

void paint_picture(QPainter& painter, const QRectF& box, Picture picture, const QPalette& palette) {
    const double size = std::floor(std::min(box.width(), box.height()));
    const QPointF corner = box.center() - QPointF(size, size) / 2;
    const QPointF whole(std::round(corner.x()), std::round(corner.y()));
    painter.drawPixmap(whole,
                       kept_picture(picture, size, painter.device()->devicePixelRatio(), palette));
}

}  // namespace kavorix
