#include "ui/qt/main/pod_geometry.h"

#include <algorithm>
#include <cmath>

namespace kavorix {

namespace {

constexpr double Gutter = 64;
constexpr double CardMargin = 10;  // between the card's edge and the first column
constexpr double CardPadding = 10;
constexpr double CardGap = 12;
constexpr double LeastColumn = 44;
constexpr double LeastIcon = 40;
constexpr double LargestIcon = 60;
constexpr double TypeGap = 4;
constexpr double IndicatorGap = 8;

// Of the pod number and of the type label.
double line_height(double text_height) {
    return text_height + 3;
}

double indicator_height(double text_height) {
    return text_height + 6;
}

double fixed_height(bool expanded, double text_height) {
    return 2 * line_height(text_height) + TypeGap +
           (expanded ? IndicatorGap + indicator_height(text_height) * StreamCount : 0);
}

}  // namespace

PodGeometry::PodGeometry(QSize size, bool expanded, int text_height)
    : size_(size),
      text_height_(text_height),
      column_width_(std::floor((size_.width() - Gutter - 2 * CardMargin) / PodsPerStrip)),
      card_height_(std::floor((size_.height() - CardGap * (StripCount - 1)) / StripCount)) {
    const double fixed = fixed_height(expanded, text_height);
    const double room = card_height_ - 2 * CardPadding - fixed;
    icon_size_ = std::clamp(std::min(room, column_width_ - 4), LeastIcon, LargestIcon);
    content_height_ = fixed + icon_size_;
}

QSize PodGeometry::minimum_size(bool expanded, int text_height) {
    const double card = fixed_height(expanded, text_height) + LeastIcon + 2 * CardPadding;
    return {static_cast<int>(LeastColumn * PodsPerStrip + Gutter + 2 * CardMargin),
            static_cast<int>(card * StripCount + CardGap * (StripCount - 1))};
}

QRectF PodGeometry::card(int strip) const {
    return {0, strip * (card_height_ + CardGap), size_.width(), card_height_};
}

double PodGeometry::column_left(int column) const {
    const double columns = column_width_ * PodsPerStrip;
    const double slack = size_.width() - Gutter - 2 * CardMargin - columns;
    return CardMargin + Gutter + std::floor(slack / 2) + column * column_width_;
}

double PodGeometry::content_top(int strip) const {
    return card(strip).top() + std::floor((card_height_ - content_height_) / 2);
}

QRectF PodGeometry::tile(int pod) const {
    return {column_left(pod % PodsPerStrip), content_top(pod / PodsPerStrip) - 2, column_width_,
            content_height_ + 4};
}

QRectF PodGeometry::number(int pod) const {
    return {column_left(pod % PodsPerStrip), content_top(pod / PodsPerStrip), column_width_,
            line_height(text_height_)};
}

QRectF PodGeometry::icon(int pod) const {
    const QRectF above = number(pod);
    return {above.center().x() - icon_size_ / 2, above.bottom(), icon_size_, icon_size_};
}

QRectF PodGeometry::type(int pod) const {
    const double width = std::min(column_width_ - 8, 40.0);
    const QRectF above = icon(pod);
    return {above.center().x() - width / 2, above.bottom() + TypeGap, width,
            line_height(text_height_)};
}

QRectF PodGeometry::indicator(int pod, int stream) const {
    const double height = indicator_height(text_height_);
    return {column_left(pod % PodsPerStrip), type(pod).bottom() + IndicatorGap + stream * height,
            column_width_, height};
}

QRectF PodGeometry::row_name(int strip, int stream) const {
    const QRectF row = indicator(strip * PodsPerStrip, stream);
    return {CardMargin, row.top(), Gutter - 8, row.height()};
}

int PodGeometry::pod_at(QPointF point) const {
    for (int strip = 0; strip < StripCount; ++strip) {
        const QRectF first = tile(strip * PodsPerStrip);
        if (point.y() < first.top() || point.y() >= first.bottom()) continue;
        const double column = std::floor((point.x() - first.left()) / column_width_);
        if (column >= 0 && column < PodsPerStrip)
            return strip * PodsPerStrip + static_cast<int>(column);
    }
    return -1;
}

int pod_after(int pod, Step step) {
    switch (step) {
        case Step::Left:
            return std::max(pod - 1, 0);
        case Step::Right:
            return std::min(pod + 1, MaxZavs - 1);
        case Step::Up:
            return pod < PodsPerStrip ? pod : pod - PodsPerStrip;
        case Step::Down:
            return pod < PodsPerStrip ? pod + PodsPerStrip : pod;
        case Step::First:
            return 0;
        case Step::Last:
            return MaxZavs - 1;
    }
    return pod;
}

}  // namespace kavorix
