#include "ui/qt/graph/graph_lines.h"

#include <cmath>

namespace kavorix {

namespace {

constexpr double LineWidth = 1.5;
constexpr double MarkSize = 8;  // of the triangle at a bar that is out of range
constexpr double MarkRoom = 4;  // between it and the edge
constexpr double ValueGap = 3;  // between a bar and its value
constexpr int ValueDigits = 5;

// Pixels can be put as they are: onto a pixmap or an image, not scaled.
bool takes_pixels(const QCPPainter& painter) {
    return painter.paintEngine()->type() == QPaintEngine::Raster &&
           painter.worldTransform().type() <= QTransform::TxTranslate;
}

// Device pixels for a pixel of the widget, at least one.
double pixel_ratio(const QCPPainter& painter) {
    return std::max(1.0, painter.device()->devicePixelRatioF() * painter.worldTransform().m11());
}

}  // namespace

void GraphLines::draw(QCPPainter* painter) {
    if (frame_.area.width() < 2 || frame_.area.height() < 2) return;
    const double ratio = pixel_ratio(*painter);
    const double width_s = frame_.time.length() / mapping(ratio).width;
    columns_.show(controls_.data(), frame_.time, width_s);
    if (columns_.dense() && takes_pixels(*painter))
        draw_strokes(*painter, ratio);
    else
        draw_polylines(*painter, ratio);
}

PixelMapping GraphLines::mapping(double pixel_ratio) const {
    PixelMapping mapping;
    mapping.width = static_cast<int>(std::lround(frame_.area.width() * pixel_ratio));
    mapping.height = static_cast<int>(std::lround(frame_.area.height() * pixel_ratio));
    mapping.first_column = std::llround(frame_.time.begin / frame_.time.length() * mapping.width);
    mapping.y_minimum = frame_.values.low;
    mapping.y_maximum = frame_.values.high;
    mapping.pixel_scale = pixel_ratio;
    return mapping;
}

void GraphLines::draw_strokes(QCPPainter& painter, double pixel_ratio) {
    const PixelMapping to = mapping(pixel_ratio);
    raster_.draw(columns_, to, controls_.looks());
    QImage image(reinterpret_cast<const uchar*>(raster_.pixels()), to.width, to.height,
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixel_ratio);
    painter.drawImage(frame_.area.topLeft(), image);
}

void GraphLines::draw_polylines(QCPPainter& painter, double ratio) {
    const PixelMapping to = mapping(ratio);
    const std::vector<LineLook> looks = controls_.looks();
    QPolygonF polygon;
    for (std::size_t line = 0; line < looks.size(); ++line) {
        if (looks[line].hidden) continue;
        painter.setPen(QPen(QColor::fromRgb(looks[line].rgb), LineWidth, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        for (const Polyline& piece :
             trace(columns_, static_cast<int>(line), to, looks[line].dash)) {
            polygon.clear();
            for (const PlotPoint& point : piece)
                polygon << QPointF(frame_.area.left() + point.x / ratio,
                                   frame_.area.top() + point.y / ratio);
            if (polygon.size() == 1)
                painter.drawPoint(polygon.front());
            else
                painter.drawPolyline(polygon);
        }
    }
}

// Marks and values may stand beside the plot area.
QRect GraphBars::clipRect() const {
    return mParentPlot->viewport();
}

void GraphBars::draw(QCPPainter* painter) {
    const TrendData& data = controls_.data();
    if (data.empty()) return;
    const std::vector<LineLook> looks = controls_.looks();
    const QRect& area = frame_.area;
    const PixelBox box{static_cast<double>(area.left()), static_cast<double>(area.top()),
                       static_cast<double>(area.width()), static_cast<double>(area.height())};
    const std::span<const float> values = data.values(data.end_row() - 1);
    const auto shapes = bar_shapes(values, frame_.values, box);
    const double base = bar_base(frame_.values, box);
    painter->setPen(QPen(QColor::fromRgb(page_.picture().text_rgb), 1));
    painter->drawLine(QLineF(box.left, base, box.right(), base));
    for (std::size_t bar = 0; bar < shapes.size(); ++bar) {
        if (!shapes[bar].value || looks[bar].hidden) continue;
        draw_bar(*painter, shapes[bar], looks[bar]);
        if (shapes[bar].out != OutOfRange::No) draw_mark(*painter, shapes[bar]);
        draw_value(*painter, shapes[bar], values[bar]);
    }
}

// What are dashed lines in a trend are hatched bars.
void GraphBars::draw_bar(QCPPainter& painter, const BarShape& shape, const LineLook& look) const {
    const QRectF rect(shape.box.left, shape.box.top, shape.box.width, shape.box.height);
    const QColor colour = QColor::fromRgb(look.rgb);
    painter.setPen(Qt::NoPen);
    if (look.dash == Dash::Dashed) {
        QColor pale = colour;
        pale.setAlphaF(0.35F);
        painter.fillRect(rect, pale);
        painter.setBrush(QBrush(colour, Qt::BDiagPattern));
    } else {
        painter.setBrush(colour);
    }
    painter.drawRect(rect);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1));
    painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
}

// A triangle in the end of the bar, pointing where the value is.
void GraphBars::draw_mark(QCPPainter& painter, const BarShape& shape) const {
    const double x = shape.box.left + shape.box.width / 2;
    const bool above = shape.out == OutOfRange::Above;
    const double tip = above ? frame_.area.top() + MarkRoom : frame_.area.bottom() - MarkRoom;
    const double base = above ? tip + MarkSize : tip - MarkSize;
    const QPolygonF triangle({{x, tip}, {x - MarkSize, base}, {x + MarkSize, base}});
    painter.setPen(QPen(QColor::fromRgb(page_.picture().text_rgb), 1.5));
    painter.setBrush(QColor::fromRgb(graph_ground(page_.ground())));
    painter.drawPolygon(triangle);
}

// Outside the end of the bar; inside the plot area where there is no room below it.
void GraphBars::draw_value(QCPPainter& painter, const BarShape& shape, float value) const {
    const QString text = QString::number(static_cast<double>(value), 'g', ValueDigits);
    const double height = QFontMetricsF(painter.font()).height();
    const bool below = value < 0 && shape.box.bottom() + height < frame_.area.bottom();
    const double top = below ? shape.box.bottom() + ValueGap : shape.box.top - height - ValueGap;
    painter.setPen(QColor::fromRgb(page_.picture().text_rgb));
    painter.drawText(QRectF(shape.box.left - shape.box.width, top, shape.box.width * 3, height),
                     Qt::AlignCenter | Qt::TextDontClip, text);
}

}  // namespace kavorix
