#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cmath>

#include "ui/qt/kit/theme.h"
#include "ui/qt/main/pictures.h"

namespace kavorix::test {
namespace {

constexpr Picture All[] = {Picture::img1ZAV,  Picture::imgZAV,    Picture::img1ZAV_D,
                           Picture::imgZAV_D, Picture::img1ZAV_E, Picture::img1LOG,
                           Picture::imgLOG,   Picture::img1LOG_D, Picture::imgLOG_D,
                           Picture::img14A,   Picture::img4A};

QPalette palette_of(Theme theme) {
    const QPalette before = QApplication::palette();
    apply_theme(*qApp, theme);
    QPalette palette = QApplication::palette();
    QApplication::setPalette(before);
    return palette;
}

QImage drawn(Picture picture, const QPalette& palette) {
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(palette.color(QPalette::Base));
    QPainter painter(&image);
    paint_picture(painter, image.rect(), picture, palette);
    painter.end();
    return image.convertToFormat(QImage::Format_Grayscale8);
}

// Pixels whose lightness differs visibly, wherever the hue is.
int different_pixels(const QImage& a, const QImage& b) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 60) ++count;
    return count;
}

class Pictures : public testing::TestWithParam<Theme> {};

TEST_P(Pictures, CanBeToldApartWithoutColour) {
    const QPalette palette = palette_of(GetParam());
    for (const Picture a : All)
        for (const Picture b : All) {
            if (a >= b) continue;
            EXPECT_GE(different_pixels(drawn(a, palette), drawn(b, palette)), 25)
                << static_cast<int>(a) << " and " << static_cast<int>(b);
        }
}

double luminance(const QColor& colour) {
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

TEST_P(Pictures, TextsOfTheRecordsCanBeRead) {
    const QPalette palette = palette_of(GetParam());
    for (const Colour colour :
         {Colour::Automatic, Colour::Black, Colour::Red, Colour::Yellow, Colour::Blue})
        for (const auto ground : {QPalette::Window, QPalette::Base})
            EXPECT_GE(contrast(text_colour(colour, palette), palette.color(ground)), 4.5)
                << static_cast<unsigned>(colour);
    EXPECT_GE(contrast(signal_colours(palette).faint, palette.color(QPalette::Window)), 4.5);
    EXPECT_GE(contrast(signal_colours(palette).faint, signal_colours(palette).panel), 4.5);
}

INSTANTIATE_TEST_SUITE_P(Themes, Pictures, testing::Values(Theme::Light, Theme::Dark),
                         [](const auto& theme) {
                             return theme.param == Theme::Dark ? "Dark" : "Light";
                         });

TEST(PictureWords, SayWhatThePictureShows) {
    EXPECT_EQ(picture_words(Picture::img1ZAV), "not selected");
    EXPECT_EQ(picture_words(Picture::imgZAV_D), "selected, data arrived");
    EXPECT_EQ(picture_words(Picture::img1ZAV_E), "in error");
    EXPECT_EQ(picture_words(Picture::imgLOG_D), "selected, data arrived, logging");
    EXPECT_EQ(picture_words(Picture::img4A), "selected");
}

TEST(Theme, SystemFollowsTheDesktop) {
    const QPalette before = QApplication::palette();
    for (const Theme desktop : {Theme::Dark, Theme::Light}) {
        apply_theme(*qApp, desktop);
        apply_theme(*qApp, Theme::System);
        EXPECT_EQ(is_dark(QApplication::palette()), desktop == Theme::Dark);
    }
    QApplication::setPalette(before);
}

}  // namespace
}  // namespace kavorix::test
