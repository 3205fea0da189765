#pragma once

#include <QProxyStyle>

namespace kavorix {

// The toolkit's own style with more room in tables and menus, outlines that can be seen on dark
// windows, and message box pictures that follow the palette.
class StationStyle : public QProxyStyle {
    Q_OBJECT

  public:
    StationStyle() : QProxyStyle("Fusion") {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override;
    QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                       const QWidget* widget) const override;
};

}  // namespace kavorix
