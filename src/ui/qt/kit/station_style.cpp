#include "ui/qt/kit/station_style.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/qt/kit/glyphs.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

// The toolkit's style outlines fields and boxes darker than the window: on a dark one that is no
// outline at all.
void StationStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!is_dark(option->palette)) return;
    const bool enabled = option->state.testFlag(State_Enabled);
    const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(option->palette.color(enabled ? QPalette::Mid : QPalette::Midlight));
    // A field that has the focus has an outline in another colour.
    if (element == PE_FrameLineEdit && !option->state.testFlag(State_HasFocus))
        painter->drawRoundedRect(edge, 2, 2);
    else if (element == PE_IndicatorCheckBox)
        painter->drawRect(edge);
    else if (element == PE_IndicatorRadioButton)
        painter->drawEllipse(edge);
    painter->restore();
}

int StationStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                              const QWidget* widget) const {
    switch (metric) {
        case PM_HeaderMargin:
            return 7;
        case PM_FocusFrameHMargin:  // left and right of the text in table cells
            return 6;
        case PM_MessageBoxIconSize:
            return 40;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize StationStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                     const QSize& size, const QWidget* widget) const {
    const QSize usual = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
        case CT_MenuBarItem:
            return usual + QSize(4, 8);
        case CT_MenuItem:
            // A separator has no text and stays thin.
            return size.height() > 0 && usual.height() > 12 ? usual + QSize(12, 4) : usual;
        case CT_PushButton:
            return usual + QSize(16, 4);
        default:
            return usual;
    }
}

int StationStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* result) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
}

QIcon StationStyle::standardIcon(StandardPixmap picture, const QStyleOption* option,
                                 const QWidget* widget) const {
    switch (picture) {
        case SP_MessageBoxInformation:
            return glyph_icon(Glyph::Information);
        case SP_MessageBoxWarning:
            return glyph_icon(Glyph::Caution);
        case SP_MessageBoxCritical:
            return glyph_icon(Glyph::Stop);
        case SP_MessageBoxQuestion:
            return glyph_icon(Glyph::Question);
        default:
            return QProxyStyle::standardIcon(picture, option, widget);
    }
}

}  // namespace kavorix
