#include "ui/qt/pods/polynomial_plot.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

constexpr double CurveWidth = 2;
constexpr int Margin = 8;

QString limit_text(double value) {
    return QString::number(value, 'g', 4);
}

}  // namespace

PolynomialPlot::PolynomialPlot(QWidget* parent) : QWidget(parent) {
    values_ = value_range(coefficients_, from_, to_);
}

void PolynomialPlot::show_curve(const Coefficients6& coefficients, double from, double to) {
    if (coefficients == coefficients_ && from == from_ && to == to_) return;
    coefficients_ = coefficients;
    from_ = from;
    to_ = to;
    values_ = value_range(coefficients, from, to);
    update();
}

QPointF PolynomialPlot::place(const QRectF& area, double x, double y) const {
    return {
        area.left() + (x - from_) / (to_ - from_) * area.width(),
        area.bottom() - (y - values_.lowest) / (values_.highest - values_.lowest) * area.height()};
}

void PolynomialPlot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const SignalColours colours = signal_colours(palette());
    painter.setPen(QPen(colours.line, 1));
    painter.setBrush(colours.panel);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);

    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    painter.setFont(small);
    const double text_height = QFontMetricsF(small).height();
    const QRectF area =
        QRectF(rect()).adjusted(Margin, Margin + text_height, -Margin, -Margin - text_height);
    if (area.width() <= 0 || area.height() <= 0) return;
    draw_axes(painter, area);
    draw_curve(painter, area);
    draw_limits(painter, area);
}

void PolynomialPlot::draw_axes(QPainter& painter, const QRectF& area) const {
    painter.setPen(QPen(signal_colours(palette()).line, 1));
    if (from_ <= 0 && to_ >= 0) {
        const double x = place(area, 0, 0).x();
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
    if (values_.lowest <= 0 && values_.highest >= 0) {
        const double y = place(area, 0, 0).y();
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
}

void PolynomialPlot::draw_curve(QPainter& painter, const QRectF& area) const {
    QPainterPath path;
    const int steps = static_cast<int>(area.width());
    bool drawing = false;
    for (int i = 0; i <= steps; ++i) {
        const double x = from_ + (to_ - from_) * i / std::max(1, steps);
        const double y = value_at(coefficients_, x);
        if (!std::isfinite(y)) {
            drawing = false;
            continue;
        }
        const QPointF point = place(area, x, y);
        if (drawing)
            path.lineTo(point);
        else
            path.moveTo(point);
        drawing = true;
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), CurveWidth));
    painter.drawPath(path);
}

void PolynomialPlot::draw_limits(QPainter& painter, const QRectF& area) const {
    painter.setPen(signal_colours(palette()).faint);
    const double height = QFontMetricsF(painter.font()).height();
    const QRectF above(area.left(), area.top() - height, area.width(), height);
    const QRectF below(area.left(), area.bottom(), area.width(), height);
    painter.drawText(above, Qt::AlignHCenter | Qt::AlignVCenter, limit_text(values_.highest));
    painter.drawText(below, Qt::AlignHCenter | Qt::AlignVCenter, limit_text(values_.lowest));
    painter.drawText(below, Qt::AlignLeft | Qt::AlignVCenter, limit_text(from_));
    painter.drawText(below, Qt::AlignRight | Qt::AlignVCenter, limit_text(to_));
}

}  // namespace kavorix
