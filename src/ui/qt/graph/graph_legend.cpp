#include "ui/qt/graph/graph_legend.h"

#include <cmath>

#include "ui/qt/kit/qt_text.h"

namespace kavorix {

namespace {

constexpr double SampleWidth = 26;
constexpr double SampleHeight = 3;
constexpr double Gap = 8;
constexpr double LinePadding = 6;  // of a legend line, above and below its text together
constexpr double HiddenOpacity = 0.35;
constexpr double Reach = 6;      // pixels around a cursor's line
constexpr double FlagSize = 18;  // of a cursor's letter
constexpr double DotSize = 3.5;

}  // namespace

std::vector<PixelBox> GraphLegend::cells() const {
    const GraphPicture& picture = page_.picture();
    const QRect page = mParentPlot->viewport();
    const double line = QFontMetricsF(mParentPlot->font()).height() + LinePadding;
    return legend_cells(on_page(picture.legend_box, page.width(), page.height()),
                        static_cast<int>(picture.legend.size()), line);
}

int GraphLegend::entry_at(const QPointF& point) const {
    const auto places = cells();
    for (std::size_t i = 0; i < places.size(); ++i)
        if (places[i].contains(point.x(), point.y())) return static_cast<int>(i);
    return -1;
}

QPoint GraphLegend::centre_of(int entry) const {
    const PixelBox cell = cells().at(static_cast<std::size_t>(entry));
    return QPointF(cell.left + cell.width / 2, cell.top + cell.height / 2).toPoint();
}

bool GraphLegend::set_hovered(int entry) {
    return std::exchange(hovered_, entry) != entry;
}

void GraphLegend::draw(QCPPainter* painter) {
    const auto places = cells();
    const std::vector<LineLook> looks = controls_.looks();
    for (std::size_t i = 0; i < places.size() && i < looks.size(); ++i) {
        if (static_cast<int>(i) == hovered_) {
            QColor mark = QColor::fromRgb(looks[i].rgb);
            mark.setAlphaF(0.14F);
            painter->setPen(Qt::NoPen);
            painter->setBrush(mark);
            painter->drawRoundedRect(
                QRectF(places[i].left + 2, places[i].top, places[i].width - 4, places[i].height), 4,
                4);
        }
        draw_entry(*painter, places[i], looks[i], to_qt(page_.picture().legend[i]));
    }
}

void GraphLegend::draw_entry(QCPPainter& painter, const PixelBox& cell, const LineLook& look,
                             const QString& name) const {
    const QRectF sample(cell.left + Gap, cell.top + (cell.height - SampleHeight) / 2, SampleWidth,
                        SampleHeight);
    const QRectF text(sample.right() + Gap, cell.top, cell.right() - sample.right() - 2 * Gap,
                      cell.height);
    painter.setOpacity(look.hidden ? HiddenOpacity : 1);
    draw_sample(painter, sample, look);
    QFont font = mParentPlot->font();
    if (cell.height < QFontMetricsF(font).height())
        font.setPixelSize(std::max(6, static_cast<int>(cell.height) - 2));
    font.setStrikeOut(look.hidden);
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(page_.picture().text_rgb));
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(font).elidedText(name, Qt::ElideRight, text.width()));
    painter.setOpacity(1);
}

void GraphLegend::draw_sample(QCPPainter& painter, const QRectF& place,
                              const LineLook& look) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(look.rgb));
    if (look.dash == Dash::Solid) {
        painter.drawRect(place);
        return;
    }
    // Three dashes.
    const double dash = place.width() / 4;
    for (int i = 0; i < 3; ++i)
        painter.drawRect(QRectF(place.left() + i * dash * 1.5, place.top(), dash, place.height()));
}

int GraphCursors::cursor_near(const QPointF& point) const {
    if (!controls_.cursors().shown || !frame_.area.contains(point.toPoint())) return -1;
    int nearest = -1;
    double distance = Reach;
    for (const Cursor cursor : {Cursor::A, Cursor::B}) {
        const double x = frame_.x_at(controls_.cursors().time(cursor));
        if (std::abs(point.x() - x) > distance) continue;
        distance = std::abs(point.x() - x);
        nearest = static_cast<int>(cursor);
    }
    return nearest;
}

void GraphCursors::draw(QCPPainter* painter) {
    if (!controls_.cursors().shown || !controls_.trend()) return;
    for (const Cursor cursor : {Cursor::B, Cursor::A}) draw_cursor(*painter, cursor);
}

void GraphCursors::draw_cursor(QCPPainter& painter, Cursor cursor) const {
    const Cursors& cursors = controls_.cursors();
    if (!cursors.placed[static_cast<std::size_t>(cursor)] || controls_.data().empty() ||
        cursors.time(cursor) < controls_.data().range().begin)
        return;
    const double x = std::round(frame_.x_at(cursors.time(cursor))) + 0.5;
    const bool active = cursors.active == cursor;
    const QColor text = QColor::fromRgb(page_.picture().text_rgb);
    const QColor ground = QColor::fromRgb(graph_ground(page_.ground()));
    painter.setAntialiasing(false);
    painter.setPen(QPen(text, 1, active ? Qt::SolidLine : Qt::DashLine));
    painter.drawLine(QLineF(x, frame_.area.top(), x, frame_.area.bottom()));
    painter.setAntialiasing(true);
    draw_dots(painter, cursors.time(cursor), x);

    const QRectF flag(x - FlagSize / 2, frame_.area.top() + 1, FlagSize, FlagSize);
    painter.setPen(QPen(text, 1));
    painter.setBrush(active ? text : ground);
    painter.drawRoundedRect(flag, 3, 3);
    painter.setPen(active ? ground : text);
    painter.drawText(flag, Qt::AlignCenter, cursor == Cursor::A ? "A" : "B");
}

void GraphCursors::draw_dots(QCPPainter& painter, double time_s, double x) const {
    const TrendData& data = controls_.data();
    const std::uint64_t row = data.nearest_row(time_s);
    const std::vector<LineLook> looks = controls_.looks();
    painter.setPen(QPen(QColor::fromRgb(graph_ground(page_.ground())), 1));
    for (int line = 0; line < data.channels(); ++line) {
        const LineLook& look = looks[static_cast<std::size_t>(line)];
        const auto value = static_cast<double>(data.value(row, line));
        if (look.hidden || !std::isfinite(value)) continue;
        painter.setBrush(QColor::fromRgb(look.rgb));
        painter.drawEllipse(QPointF(x, frame_.y_at(value)), DotSize, DotSize);
    }
}

}  // namespace kavorix
