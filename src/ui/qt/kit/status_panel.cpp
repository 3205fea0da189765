#include "ui/qt/kit/status_panel.h"

#include <QPainter>
#include <algorithm>

#include "ui/qt/kit/glyphs.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

constexpr double Radius = 6;
constexpr int Padding = 10;
constexpr int Edge = 5;       // above the title and below the value
constexpr int MostBars = 11;  // of a load

QFont title_font(QFont font) {
    font.setPointSizeF(font.pointSizeF() * 0.85);
    return font;
}

QFont value_font(QFont font, StatusPanel::Kind kind) {
    font.setPointSizeF(font.pointSizeF() * 1.05);
    font.setBold(kind != StatusPanel::Message);
    return font;
}

}  // namespace

StatusPanel::StatusPanel(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StatusPanel::setTitle(const QString& title) {
    title_ = title;
    speak();
    update();
}

void StatusPanel::setKind(Kind kind) {
    kind_ = kind;
    updateGeometry();
    update();
}

void StatusPanel::show_label(const Label& label) {
    text_ = to_qt(trim(label.caption));
    fore_ = label.fore;
    setEnabled(label.enabled);
    setVisible(label.visible);
    speak();
    update();
}

void StatusPanel::speak() {
    setAccessibleName(text_.isEmpty() ? title_ : title_ + ": " + text_);
}

QSize StatusPanel::sizeHint() const {
    return {kind_ == Message  ? 320
            : kind_ == Stream ? 96
                              : 112,
            2 * (fontMetrics().height() + Edge + 4)};
}

QColor StatusPanel::accent() const {
    const SignalColours signal = signal_colours(palette());
    if (text_.isEmpty()) return {};
    switch (kind_) {
        case Active:
            return signal.data;
        case Fault:
            return signal.error;
        case Message:
            return fore_ == Colour::Red    ? signal.error
                   : fore_ == Colour::Blue ? signal.selected
                                           : QColor();
        default:
            return {};
    }
}

void StatusPanel::enterEvent(QEnterEvent*) {
    update();
}

void StatusPanel::leaveEvent(QEvent*) {
    update();
}

void StatusPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor mark = accent();
    paint_ground(painter, mark);
    QRectF box = QRectF(rect()).adjusted(Padding, Edge, -Padding, -Edge);
    if (mark.isValid()) {
        const double size = kind_ == Message ? 20 : 16;
        const QRectF place(box.left(), box.center().y() - size / 2, size, size);
        const Glyph glyph = kind_ == Active                          ? Glyph::Cycle
                            : kind_ == Fault || fore_ == Colour::Red ? Glyph::Warning
                                                                     : Glyph::Information;
        paint_glyph(painter, place, glyph, mark);
        box.setLeft(place.right() + 8);
    }
    painter.setFont(title_font(font()));
    painter.setPen(signal_colours(palette()).faint);
    const int title_height = fontMetrics().height() + 1;
    painter.drawText(QRectF(box.left(), box.top(), box.width(), title_height),
                     Qt::AlignLeft | Qt::AlignVCenter, title_);
    box.setTop(box.top() + title_height);
    const QColor colour = text_colour(fore_, palette());
    if (kind_ == Load)
        paint_load(painter, box, colour);
    else
        paint_text(painter, box, colour);
}

void StatusPanel::paint_ground(QPainter& painter, const QColor& accent) const {
    const SignalColours signal = signal_colours(palette());
    const bool open = kind_ == Stream && underMouse();
    QColor ground = signal.panel;
    if (accent.isValid()) ground = blend(ground, accent, 0.13);
    if (open) ground = blend(ground, signal.selected, 0.10);
    const QColor edge = accent.isValid() ? blend(signal.line, accent, 0.7)
                        : open           ? signal.selected
                                         : signal.line;
    painter.setPen(QPen(edge, 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
}

void StatusPanel::paint_text(QPainter& painter, QRectF box, const QColor& colour) const {
    painter.setFont(value_font(font(), kind_));
    painter.setPen(colour);
    const QString shown =
        painter.fontMetrics().elidedText(text_, Qt::ElideRight, static_cast<int>(box.width()));
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, shown);
}

// "10% |": the number, then as many lit segments as the caption has bars.
void StatusPanel::paint_load(QPainter& painter, QRectF box, const QColor& colour) const {
    const auto bars = static_cast<int>(text_.count(u'|'));
    const QString number = QString(text_).remove(u'|').trimmed();
    painter.setFont(value_font(font(), kind_));
    painter.setPen(colour);
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, number);
    const double left = box.left() + painter.fontMetrics().horizontalAdvance("100%") + 8;
    const double pitch = std::min(9.0, (box.right() - left) / MostBars);
    const SignalColours signal = signal_colours(palette());
    const QColor lit = fore_ == Colour::Red || fore_ == Colour::Yellow ? colour : signal.data;
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < MostBars; ++i) {
        painter.setBrush(i < bars ? lit : signal.line);
        painter.drawRoundedRect(
            QRectF(left + i * pitch, box.center().y() - 7, std::max(pitch - 2, 2.0), 14), 1, 1);
    }
}

}  // namespace kavorix
