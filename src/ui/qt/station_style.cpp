#include "ui/qt/station_style.h"

#include "ui/qt/glyphs.h"

namespace kavorix {

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
