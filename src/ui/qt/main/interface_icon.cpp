#include "ui/qt/main/interface_icon.h"

#include <QPainter>

#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"
#include "ui/qt/main/pictures.h"

namespace kavorix {

InterfaceIcon::InterfaceIcon(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    shown_.visible = true;  // so that the first record is taken over
    show_icon({Picture::img14A, false, {}});
}

void InterfaceIcon::show_icon(const Icon& icon) {
    if (icon == shown_) return;
    shown_ = icon;
    setEnabled(icon.visible);
    const QString name = to_qt(icon.tool_tip.empty() ? "Interface card" : icon.tool_tip);
    setToolTip(icon.visible ? name : "No interface card found");
    setAccessibleName(icon.visible ? name + ", " + to_qt(picture_words(icon.picture))
                                   : "No interface card");
    update();
}

void InterfaceIcon::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const SignalColours signal = signal_colours(palette());
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const bool selected = shown_.visible && picture_traits(shown_.picture).selected;
    QColor ground = signal.panel;
    if (selected)
        ground = blend(ground, signal.selected, 0.16);
    else if (isEnabled() && underMouse())
        ground = blend(ground, palette().color(QPalette::WindowText), 0.07);
    painter.setPen(QPen(hasFocus() ? signal.selected : signal.line, hasFocus() ? 1.6 : 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(frame, 6, 6);
    if (shown_.visible) {
        paint_picture(painter, frame.adjusted(4, 4, -4, -4), shown_.picture, palette());
        return;
    }
    painter.setPen(QPen(signal.line, 1, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(14, 13, -14, -13), 3, 3);
}

}  // namespace kavorix
