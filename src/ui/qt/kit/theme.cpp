#include "ui/qt/kit/theme.h"

#include <QApplication>
#include <QToolTip>

#include "ui/qt/kit/station_style.h"

namespace kavorix {

namespace {

struct PaletteRow {
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr PaletteRow Rows[] = {
    {QPalette::Window, 0xFFF1F3F6, 0xFF1D2025},
    {QPalette::WindowText, 0xFF1A1F27, 0xFFE4E7EB},
    {QPalette::Base, 0xFFFFFFFF, 0xFF15181C},
    {QPalette::AlternateBase, 0xFFF6F8FA, 0xFF1A1D22},
    {QPalette::Text, 0xFF1A1F27, 0xFFE4E7EB},
    {QPalette::PlaceholderText, 0xFF7A8494, 0xFF8992A0},
    {QPalette::Button, 0xFFFBFCFD, 0xFF2A2E35},
    {QPalette::ButtonText, 0xFF1A1F27, 0xFFE4E7EB},
    {QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF},
    {QPalette::ToolTipBase, 0xFF262B33, 0xFF363B44},
    {QPalette::ToolTipText, 0xFFF4F6F8, 0xFFF4F6F8},
    {QPalette::Highlight, 0xFF1F6FD6, 0xFF3D8BEF},
    {QPalette::HighlightedText, 0xFFFFFFFF, 0xFFFFFFFF},
    {QPalette::Link, 0xFF1F6FD6, 0xFF6CAAF5},
    {QPalette::LinkVisited, 0xFF6B4FC0, 0xFFA994F0},
    {QPalette::Light, 0xFFFFFFFF, 0xFF3A3F48},
    {QPalette::Midlight, 0xFFE6E9EE, 0xFF30353D},
    {QPalette::Mid, 0xFFC5CCD6, 0xFF454B55},
    {QPalette::Dark, 0xFF9AA4B2, 0xFF101215},
    {QPalette::Shadow, 0xFF4B5563, 0xFF000000},
};

QPalette make_palette(bool dark) {
    QPalette palette;
    for (const PaletteRow& row : Rows)
        palette.setColor(row.role, QColor::fromRgba(dark ? row.dark : row.light));
    const QColor dim = dark ? QColor(0x6F, 0x77, 0x84) : QColor(0x9A, 0xA3, 0xB0);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dim);
    // A field that cannot be used is no white box.
    palette.setColor(QPalette::Disabled, QPalette::Base,
                     palette.color(QPalette::Active, QPalette::Window));
    palette.setColor(QPalette::Disabled, QPalette::Highlight,
                     palette.color(QPalette::Active, QPalette::Mid));
    return palette;
}

}  // namespace

void apply_theme(QApplication& application, Theme theme) {
    const bool dark =
        theme == Theme::Dark || (theme == Theme::System && is_dark(application.palette()));
    QApplication::setStyle(new StationStyle);
    const QPalette palette = make_palette(dark);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

bool is_dark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

QColor text_colour(Colour colour, const QPalette& palette) {
    const bool dark = is_dark(palette);
    switch (colour) {
        case Colour::Automatic:
        case Colour::Black:
            return palette.color(QPalette::WindowText);
        case Colour::Red:
            return dark ? QColor(0xFF, 0x7B, 0x72) : QColor(0xC0, 0x1C, 0x28);
        case Colour::Yellow:
            return dark ? QColor(0xF0, 0xC0, 0x4A) : QColor(0x8C, 0x5E, 0x00);
        case Colour::Blue:
            return dark ? QColor(0x7A, 0xB4, 0xFA) : QColor(0x1A, 0x53, 0xB8);
        default:
            return QColor::fromRgb(static_cast<QRgb>(colour));
    }
}

SignalColours signal_colours(const QPalette& palette) {
    const bool dark = is_dark(palette);
    const QColor ground = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    return {
        palette.color(QPalette::Highlight),
        dark ? QColor(0x3F, 0xC3, 0x80) : QColor(0x17, 0x8A, 0x4F),
        dark ? QColor(0xF0, 0x62, 0x5C) : QColor(0xC9, 0x2A, 0x2A),
        dark ? QColor(0xB3, 0x94, 0xF2) : QColor(0x6D, 0x45, 0xC4),
        blend(ground, text, dark ? 0.55 : 0.62),
        blend(ground, text, dark ? 0.18 : 0.16),
        palette.color(QPalette::Base),
    };
}

QColor blend(const QColor& from, const QColor& to, double share) {
    const auto mix = [share](double a, double b) {
        return static_cast<float>(a + (b - a) * share);
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

}  // namespace kavorix
