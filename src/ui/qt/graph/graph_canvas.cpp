#include "ui/qt/graph/graph_canvas.h"

#include <QKeyEvent>
#include <QToolTip>
#include <cmath>

#include "graphs/time_axis.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

constexpr int PixelsPerLabel = 84;  // a time label with room around it
constexpr double WheelStep = 120;   // of a wheel's angle
constexpr int LabelPadding = 5;     // pixels between ticks, labels and titles
constexpr double TitleSize = 1.35;  // of the font
constexpr int SmallestArea = 8;     // pixels; a smaller marked area is a slip of the hand

QColor colour_of(std::uint32_t rgb) {
    return QColor::fromRgb(rgb);
}

// A name on several lines, one word each, cut where a word is too long.
QString stacked(const QString& name, const QFontMetricsF& metrics, double width) {
    QStringList lines;
    for (const QString& word : name.split(u' ', Qt::SkipEmptyParts)) {
        const QString joined = lines.isEmpty() ? word : lines.back() + u' ' + word;
        if (!lines.isEmpty() && metrics.horizontalAdvance(joined) <= width)
            lines.back() = joined;
        else if (lines.size() < 2)
            lines << word;
    }
    for (QString& line : lines) line = metrics.elidedText(line, Qt::ElideRight, width);
    return lines.join(u'\n');
}

}  // namespace

// Stands at the given fractions of the page, whatever its size.
class GraphCanvas::PageAxisRect : public QCPAxisRect {
  public:
    PageAxisRect(GraphCanvas& canvas, const PagePlot& page)
        : QCPAxisRect(&canvas), canvas_(canvas), page_(page) {
        setAutoMargins(QCP::msNone);
        setMinimumMargins({});
    }

    void update(UpdatePhase phase) override {
        if (phase == upPreparation) {
            const QRect page = canvas_.viewport();
            const PixelBox box = on_page(page_.picture().area, page.width(), page.height());
            const QRect area(QPointF(box.left, box.top).toPoint(),
                             QSizeF(box.width, box.height).toSize());
            setMargins({area.left(), area.top(), page.width() - area.left() - area.width(),
                        page.height() - area.top() - area.height()});
            // The base class places the ticks now.
            canvas_.lay_out(area);
        }
        QCPAxisRect::update(phase);
    }

  private:
    GraphCanvas& canvas_;
    const PagePlot& page_;
};

class GraphCanvas::TimeTicker : public QCPAxisTicker {
  public:
    TimeTicks ticks;

    void generate(const QCPRange&, const QLocale&, QChar, int, QVector<double>& places,
                  QVector<double>* between, QVector<QString>* labels) override {
        places.clear();
        if (labels) labels->clear();
        for (const TimeTick& tick : ticks.ticks) {
            places << tick.time_s;
            if (labels) *labels << to_qt(tick.label);
        }
        if (between) *between = QVector<double>(ticks.between.begin(), ticks.between.end());
    }
};

GraphCanvas::GraphCanvas(const PagePlot& page, GraphControls& controls, QWidget* parent)
    : QCustomPlot(parent),
      page_(page),
      controls_(controls),
      time_ticker_(new TimeTicker),
      bar_ticker_(new QCPAxisTickerText) {
    setLocale(QLocale::c());
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName("Graph");
    setMinimumSize(480, 320);
    setNoAntialiasingOnDrag(false);
    plotLayout()->clear();
    axes_ = new PageAxisRect(*this, page);
    plotLayout()->addElement(0, 0, axes_);
    title_ = new QCPItemText(this);
    title_->setClipToAxisRect(false);
    title_->position->setType(QCPItemPosition::ptViewportRatio);
    lines_ = new GraphLines(*this, "main", controls, frame_);
    bars_ = new GraphBars(*this, "main", controls, frame_, page);
    legend_ = new GraphLegend(*this, "legend", controls, frame_, page);
    cursors_ = new GraphCursors(*this, "overlay", controls, frame_, page);
}

void GraphCanvas::update_graph() {
    controls_.refresh();
    if (!page_.drawn()) return;
    if (std::exchange(graph_shown_, page_.graph_number()) != page_.graph_number()) lines_->forget();
    if (std::exchange(page_shown_, page_.revision()) != page_.revision()) take_over_page();
    const bool cursors_moved =
        std::exchange(cursors_shown_, controls_.cursor_revision()) != controls_.cursor_revision();
    if (std::exchange(controls_shown_, controls_.revision()) != controls_.revision())
        replot_all();
    else if (cursors_moved)
        layer("overlay")->replot();
}

void GraphCanvas::replot_all() {
    replot(QCustomPlot::rpQueuedRefresh);
}

// Everything that does not change with the rows.
void GraphCanvas::take_over_page() {
    const GraphPicture& picture = page_.picture();
    QFont font(to_qt(picture.font));
    font.setPointSizeF(QApplication::font().pointSizeF());
    setFont(font);
    setBackground(QBrush(colour_of(graph_ground(page_.ground()))));
    lines_->setVisible(picture.scrolling);
    bars_->setVisible(picture.bars);
    cursors_->setVisible(picture.scrolling);

    QFont title_font = font;
    title_font.setPointSizeF(font.pointSizeF() * TitleSize);
    title_font.setBold(true);
    title_->setFont(title_font);
    title_->setColor(colour_of(picture.text_rgb));
    title_->setText(to_qt(picture.title));
    const double middle = (picture.area.top + picture.legend_box.bottom) / 2;
    title_->position->setCoords((picture.area.left + picture.area.right) / 2, 1 - middle);
    title_->setPositionAlignment(Qt::AlignCenter);
    style_axes();
    controls_shown_ = controls_.revision() - 1;
}

void GraphCanvas::style_axes() {
    const GraphPicture& picture = page_.picture();
    QCPAxis& time = *axes_->axis(QCPAxis::atBottom);
    QCPAxis& values = *axes_->axis(QCPAxis::atLeft);
    style_axis(time);
    style_axis(values);
    values.setLabel(to_qt(picture.y_title));
    values.setTickLabels(picture.y_labels);
    values.setNumberFormat("gb");
    values.setVisible(picture.y_axis);
    if (picture.bars)
        time.setTicker(bar_ticker_);
    else
        time.setTicker(time_ticker_);
    time.setTickLabels(picture.time_labels || picture.bars);
    time.setTickLength(0, picture.bars ? 0 : 5);
    time.setSubTicks(!picture.bars);
    time.setSubTickLength(0, 3);
    values.setTickLength(0, 5);
    values.setSubTickLength(0, 3);

    const QColor text = colour_of(picture.text_rgb);
    const QColor ground = colour_of(graph_ground(page_.ground()));
    for (QCPAxis* axis : {&time, &values}) {
        axis->grid()->setVisible(picture.grid);
        axis->grid()->setPen(QPen(blend(ground, text, 0.16), 1));
        axis->grid()->setZeroLinePen(QPen(blend(ground, text, 0.3), 1));
    }
    axes_->setBackground(QBrush(ground));
}

void GraphCanvas::style_axis(QCPAxis& axis) {
    const QColor text = colour_of(page_.picture().text_rgb);
    const QColor faint = blend(colour_of(graph_ground(page_.ground())), text, 0.45);
    axis.setVisible(true);
    axis.setBasePen(QPen(faint, 1));
    axis.setTickPen(QPen(faint, 1));
    axis.setSubTickPen(QPen(faint, 1));
    axis.setTickLabelColor(text);
    axis.setTickLabelFont(font());
    axis.setLabelColor(text);
    axis.setLabelFont(font());
    axis.setTickLabelPadding(LabelPadding);
    axis.setLabelPadding(LabelPadding);
}

// Axes and frame follow the view.
void GraphCanvas::lay_out(const QRect& area) {
    frame_.area = area;
    if (frame_.area.width() < 1 || frame_.area.height() < 1) return;
    frame_.values = controls_.view().values;
    show_time_title();
    QCPAxis& time = *axes_->axis(QCPAxis::atBottom);
    axes_->axis(QCPAxis::atLeft)->setRange(frame_.values.low, frame_.values.high);
    if (!controls_.trend()) {
        show_bar_names();
        return;
    }
    const int pixels =
        static_cast<int>(std::lround(frame_.area.width() * bufferDevicePixelRatio()));
    frame_.time = on_pixels(controls_.view().time, pixels);
    time.setRange(frame_.time.begin, frame_.time.end);
    const int most = std::max(2, frame_.area.width() / PixelsPerLabel);
    time_ticker_->ticks = controls_.by_clock() ? clock_ticks(controls_.data(), frame_.time, most)
                                               : elapsed_ticks(frame_.time, most);
}

// On a low page there is no room for it below the labels.
void GraphCanvas::show_time_title() {
    const int lines = controls_.trend() && !controls_.by_clock() ? 2 : 3;
    const double needed = lines * QFontMetricsF(font()).height() + 3 * LabelPadding;
    const bool room = viewport().height() - frame_.area.bottom() > needed;
    axes_->axis(QCPAxis::atBottom)->setLabel(room ? to_qt(page_.picture().x_title) : QString());
}

void GraphCanvas::show_bar_names() {
    const auto& names = page_.picture().legend;
    const QFontMetricsF metrics(font());
    const double width = frame_.area.width() / std::max(1.0, static_cast<double>(names.size())) - 6;
    bar_ticker_->clear();
    for (std::size_t i = 0; i < names.size(); ++i)
        bar_ticker_->addTick(static_cast<double>(i) + 0.5,
                             stacked(to_qt(names[i]), metrics, width));
    axes_->axis(QCPAxis::atBottom)->setRange(0, static_cast<double>(names.size()));
}

void GraphCanvas::draw_page(QCPPainter& painter, int width, int height) {
    toPainter(&painter, width, height);
}

QImage GraphCanvas::picture(double scale) {
    return toPixmap(0, 0, scale).toImage();
}

QString GraphCanvas::page_title() const {
    return to_qt(page_.picture().title);
}

QPoint GraphCanvas::legend_entry_centre(int entry) const {
    return legend_->centre_of(entry);
}

GraphCanvas::Zone GraphCanvas::zone_of(const QPointF& point) const {
    const QRectF area(frame_.area);
    if (area.contains(point)) return Zone::Plot;
    if (point.y() >= area.top() && point.y() <= area.bottom() && point.x() < area.left())
        return Zone::ValueAxis;
    if (point.x() >= area.left() && point.x() <= area.right() && point.y() > area.bottom())
        return Zone::TimeAxis;
    return Zone::Other;
}

void GraphCanvas::wheelEvent(QWheelEvent* event) {
    const double steps = (event->angleDelta().y() + event->angleDelta().x()) / WheelStep;
    const QPointF point = event->position();
    const Zone zone = zone_of(point);
    event->accept();
    if (zone == Zone::Other) return;
    const bool values = zone == Zone::ValueAxis || !controls_.trend() ||
                        (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    run([&] {
        if (values)
            controls_.wheel_values(steps, frame_.value_at(point.y()));
        else
            controls_.wheel_time(steps, frame_.time_at(point.x()));
        update_graph();
    });
}

GraphCanvas::Drag GraphCanvas::drag_for(const QMouseEvent& event) const {
    const Zone zone = zone_of(event.position());
    if (zone == Zone::Other) return Drag::None;
    if (zone == Zone::ValueAxis || !controls_.trend()) return Drag::Values;
    if (event.button() == Qt::RightButton || (event.modifiers() & Qt::ShiftModifier))
        return Drag::Area;
    if (zone == Zone::Plot && controls_.cursors().shown)
        switch (cursors_->cursor_near(event.position())) {
            case static_cast<int>(Cursor::A):
                return Drag::CursorA;
            case static_cast<int>(Cursor::B):
                return Drag::CursorB;
            default:
                break;
        }
    return Drag::Time;
}

void GraphCanvas::mousePressEvent(QMouseEvent* event) {
    pressed_at_ = dragged_to_ = event->position();
    if (const int entry = legend_->entry_at(event->position()); entry >= 0) {
        run([&] {
            controls_.legend_click(entry);
            update_graph();
        });
        return;
    }
    drag_ = drag_for(*event);
    show_pointer(event->position());
}

void GraphCanvas::mouseMoveEvent(QMouseEvent* event) {
    const QPointF point = event->position();
    if (drag_ == Drag::None) {
        if (legend_->set_hovered(legend_->entry_at(point))) replot_all();
        show_pointer(point);
        return;
    }
    run([&] {
        drag_to(point);
        update_graph();
    });
}

void GraphCanvas::drag_to(const QPointF& point) {
    switch (drag_) {
        case Drag::Time:
            controls_.drag_time(frame_.time_at(point.x()) - frame_.time_at(dragged_to_.x()));
            break;
        case Drag::Values:
            controls_.drag_values(frame_.value_at(point.y()) - frame_.value_at(dragged_to_.y()));
            break;
        case Drag::CursorA:
            controls_.put_cursor(Cursor::A, pixel_column(point.x()));
            break;
        case Drag::CursorB:
            controls_.put_cursor(Cursor::B, pixel_column(point.x()));
            break;
        case Drag::Area:
            band_.setGeometry(QRect(pressed_at_.toPoint(), point.toPoint())
                                  .normalized()
                                  .intersected(frame_.area));
            band_.show();
            break;
        case Drag::None:
            break;
    }
    dragged_to_ = point;
}

TimeRange GraphCanvas::pixel_column(double x) const {
    const double inside = std::clamp(x, static_cast<double>(frame_.area.left()),
                                     static_cast<double>(frame_.area.right()));
    return {frame_.time_at(std::floor(inside)), frame_.time_at(std::floor(inside) + 1)};
}

void GraphCanvas::mouseReleaseEvent(QMouseEvent* event) {
    const QPointF point = event->position();
    const Drag ended = std::exchange(drag_, Drag::None);
    const bool moved = (point - pressed_at_).manhattanLength() > QApplication::startDragDistance();
    run([&] {
        if (ended == Drag::Area)
            end_area(point);
        else if (ended == Drag::Time && !moved && controls_.cursors().shown &&
                 zone_of(point) == Zone::Plot)
            controls_.put_cursor(controls_.cursors().active, pixel_column(point.x()));
        update_graph();
    });
    show_pointer(point);
}

void GraphCanvas::end_area(const QPointF& point) {
    band_.hide();
    const QRect area =
        QRect(pressed_at_.toPoint(), point.toPoint()).normalized().intersected(frame_.area);
    if (area.width() < SmallestArea || area.height() < SmallestArea) return;
    controls_.show_area({frame_.time_at(area.left()), frame_.time_at(area.right())},
                        {frame_.value_at(area.bottom()), frame_.value_at(area.top())});
}

void GraphCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    const Zone zone = zone_of(event->position());
    run([&] {
        if (zone == Zone::ValueAxis)
            controls_.cmdAutoscale_Click();
        else if (zone != Zone::Other)
            controls_.cmdAll_Click();
        update_graph();
    });
}

void GraphCanvas::leaveEvent(QEvent* event) {
    if (legend_->set_hovered(-1)) replot_all();
    QCustomPlot::leaveEvent(event);
}

void GraphCanvas::show_pointer(const QPointF& point) {
    const Zone zone = zone_of(point);
    if (legend_->entry_at(point) >= 0)
        setCursor(Qt::PointingHandCursor);
    else if (cursors_->cursor_near(point) >= 0 && drag_ != Drag::Time)
        setCursor(Qt::SplitHCursor);
    else if (zone == Zone::ValueAxis)
        setCursor(Qt::SizeVerCursor);
    else if (drag_ == Drag::Time)
        setCursor(Qt::ClosedHandCursor);
    else
        unsetCursor();
}

bool GraphCanvas::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QCustomPlot::event(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    const int entry = legend_->entry_at(help->pos());
    const auto& names = page_.picture().legend;
    if (entry >= 0 && entry < static_cast<int>(names.size()))
        QToolTip::showText(
            help->globalPos(),
            to_qt(names[static_cast<std::size_t>(entry)]) + "\nClick to hide or show", this);
    else
        QToolTip::hideText();
    return true;
}

void GraphCanvas::keyPressEvent(QKeyEvent* event) {
    static constexpr struct {
        int key;
        GraphKey means;
    } Keys[] = {{Qt::Key_Left, GraphKey::Left},       {Qt::Key_Right, GraphKey::Right},
                {Qt::Key_PageUp, GraphKey::PageLeft}, {Qt::Key_PageDown, GraphKey::PageRight},
                {Qt::Key_Up, GraphKey::Up},           {Qt::Key_Down, GraphKey::Down},
                {Qt::Key_Plus, GraphKey::ZoomIn},     {Qt::Key_Equal, GraphKey::ZoomIn},
                {Qt::Key_Minus, GraphKey::ZoomOut},   {Qt::Key_F, GraphKey::Follow},
                {Qt::Key_End, GraphKey::Follow},      {Qt::Key_Space, GraphKey::Pause},
                {Qt::Key_Home, GraphKey::All},        {Qt::Key_X, GraphKey::OtherCursor}};
    for (const auto& row : Keys)
        if (row.key == event->key()) {
            run([&] {
                controls_.key(row.means);
                update_graph();
            });
            return;
        }
    QCustomPlot::keyPressEvent(event);
}

}  // namespace kavorix
