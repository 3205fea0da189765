#include "ui/qt/main/pod_display.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"
#include "ui/qt/main/pictures.h"
#include "ui/qt/main/pod_accessible.h"

namespace kavorix {

namespace {

constexpr double CardRadius = 8;
constexpr double TileRadius = 6;
constexpr double ChangeRadius = 4.5;  // of the dot at a pod that has something to be transmitted
constexpr QColor ChangeColour(0xE0, 0x8A, 0x00);
constexpr const char* NotTransmitted = "configuration not transmitted";

PodTile tile_of(const MainScreen& screen, int pod) {
    const auto column = at(pod % PodsPerStrip);
    PodTile tile{pod < PodsPerStrip ? screen.picZAVNum1[column] : screen.picZAVNum2[column],
                 screen.img_ZAV[Pod::at_index(pod)],
                 screen.lblZAVType[Pod::at_index(pod)],
                 {}};
    for (int stream = 0; stream < StreamCount; ++stream)
        tile.streams[at(stream)] = screen.lblStrm(stream)[Pod::at_index(pod)];
    return tile;
}

// Compared without making a PodTile, because this is asked at every turn of the event loop.
bool same(const PodTile& tile, const MainScreen& screen, int pod) {
    const auto column = at(pod % PodsPerStrip);
    for (int stream = 0; stream < StreamCount; ++stream)
        if (tile.streams[at(stream)] != screen.lblStrm(stream)[Pod::at_index(pod)]) return false;
    return tile.icon == screen.img_ZAV[Pod::at_index(pod)] &&
           tile.type == screen.lblZAVType[Pod::at_index(pod)] &&
           tile.number ==
               (pod < PodsPerStrip ? screen.picZAVNum1[column] : screen.picZAVNum2[column]);
}

bool selected(const PodTile& tile) {
    return tile.icon.visible && picture_traits(tile.icon.picture).selected;
}

QString pod_number(int pod) {
    return QString::fromStdString(two_digits(pod + 1));
}

}  // namespace

struct PodDisplay::Inks {
    explicit Inks(const PodDisplay& display)
        : palette(display.palette()),
          signal(signal_colours(palette)),
          text(palette.color(QPalette::WindowText)),
          small(display.font()),
          bold(display.font()),
          geometry(display.geometry_now()) {
        small.setPointSizeF(small.pointSizeF() * 0.9);
        bold.setPointSizeF(bold.pointSizeF() * 0.95);
        bold.setBold(true);
    }

    QPalette palette;
    SignalColours signal;
    QColor text;
    QFont small;
    QFont bold;
    PodGeometry geometry;
};

PodDisplay::PodDisplay(QWidget* parent) : QWidget(parent) {
    install_pod_accessibility();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize PodDisplay::minimumSizeHint() const {
    return PodGeometry::minimum_size(expanded_, fontMetrics().height());
}

void PodDisplay::show_screen(const MainScreen& screen) {
    const bool row_names_changed =
        row_names_[0] != screen.lbl1Strm || row_names_[1] != screen.lbl2Strm;
    if (expanded_ != screen.expanded || row_names_changed) {
        row_names_ = {screen.lbl1Strm, screen.lbl2Strm};
        expanded_ = screen.expanded;
        updateGeometry();
        update();
    }
    for (int pod = 0; pod < MaxZavs; ++pod) {
        PodTile& tile = tiles_[at(pod)];
        if (same(tile, screen, pod)) continue;
        const PodTile before = std::exchange(tile, tile_of(screen, pod));
        update_tile(pod);
        announce(pod, before);
    }
}

void PodDisplay::update_tile(int pod) {
    if (pod >= 0) update(geometry_now().tile(pod).toAlignedRect().adjusted(-1, -1, 1, 1));
}

// Tells screen readers.
void PodDisplay::announce(int pod, const PodTile& before) const {
    if (!QAccessible::isActive()) return;
    auto* const self = const_cast<PodDisplay*>(this);
    if (selected(before) != selected(tile(pod))) {
        QAccessible::State state;
        state.selected = true;
        QAccessibleStateChangeEvent event(self, state);
        event.setChild(pod);
        QAccessible::updateAccessibility(&event);
    }
    QAccessibleEvent event(self, QAccessible::NameChanged);
    event.setChild(pod);
    QAccessible::updateAccessibility(&event);
}

QString PodDisplay::spoken_name(int pod) const {
    const PodTile& shown = tile(pod);
    if (!shown.icon.visible) return "ZAV " + pod_number(pod) + ", no pod";
    QString name = "ZAV " + pod_number(pod);
    if (shown.type.visible && !shown.type.caption.empty()) name += ", " + to_qt(shown.type.caption);
    name += ", " + to_qt(picture_words(shown.icon.picture));
    return shown.icon.differs ? name + ", " + NotTransmitted : name;
}

QString PodDisplay::tip(int pod) const {
    const PodTile& shown = tile(pod);
    if (!shown.icon.visible) return "ZAV " + pod_number(pod) + "\nNo pod found here";
    const QString text =
        to_qt(shown.icon.tool_tip.empty() ? "ZAV " + two_digits(pod + 1) : shown.icon.tool_tip);
    return shown.icon.differs ? text + u'\n' + NotTransmitted : text;
}

bool PodDisplay::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const PodGeometry geometry = geometry_now();
    const int pod = geometry.pod_at(help->pos());
    if (pod < 0)
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tip(pod), this, geometry.tile(pod).toAlignedRect());
    return true;
}

void PodDisplay::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    pressed_ = geometry_now().pod_at(event->position());
    if (pressed_ >= 0) go_to(pressed_);
}

void PodDisplay::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const int pod = std::exchange(pressed_, -1);
    if (pod >= 0 && pod == geometry_now().pod_at(event->position()) && on_click) on_click(pod);
}

void PodDisplay::mouseMoveEvent(QMouseEvent* event) {
    hover(geometry_now().pod_at(event->position()));
}

void PodDisplay::contextMenuEvent(QContextMenuEvent* event) {
    const bool keyboard = event->reason() == QContextMenuEvent::Keyboard;
    const int pod = keyboard ? current_ : geometry_now().pod_at(event->pos());
    if (pod < 0 || !on_menu) return;
    go_to(pod);
    on_menu(pod, keyboard ? mapToGlobal(geometry_now().icon(pod).center().toPoint())
                          : event->globalPos());
}

void PodDisplay::leaveEvent(QEvent*) {
    hover(-1);
}

void PodDisplay::hover(int pod) {
    if (pod == hovered_) return;
    update_tile(std::exchange(hovered_, pod));
    update_tile(hovered_);
}

void PodDisplay::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left:
            return go_to(pod_after(current_, Step::Left));
        case Qt::Key_Right:
            return go_to(pod_after(current_, Step::Right));
        case Qt::Key_Up:
            return go_to(pod_after(current_, Step::Up));
        case Qt::Key_Down:
            return go_to(pod_after(current_, Step::Down));
        case Qt::Key_Home:
            return go_to(pod_after(current_, Step::First));
        case Qt::Key_End:
            return go_to(pod_after(current_, Step::Last));
        case Qt::Key_Space:
            if (on_click && !event->isAutoRepeat()) on_click(current_);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void PodDisplay::go_to(int pod) {
    if (pod == current_) return;
    update_tile(std::exchange(current_, pod));
    update_tile(current_);
    if (!QAccessible::isActive() || !hasFocus()) return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(current_);
    QAccessible::updateAccessibility(&event);
}

void PodDisplay::focusInEvent(QFocusEvent*) {
    update_tile(current_);
}

void PodDisplay::focusOutEvent(QFocusEvent*) {
    update_tile(current_);
}

void PodDisplay::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Inks inks(*this);
    paint_ground(painter, event->region(), inks);
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (event->region().intersects(inks.geometry.tile(pod).toAlignedRect()))
            paint_tile(painter, pod, inks);
}

// Single pods lie on the plain ground of their card; only when more is to be painted, the cards
// with their edges are drawn.
void PodDisplay::paint_ground(QPainter& painter, const QRegion& region, const Inks& inks) const {
    const auto plain = [&](const QRect& part) {
        for (int strip = 0; strip < StripCount; ++strip) {
            QRectF inside = inks.geometry.card(strip).adjusted(1, CardRadius, -1, -CardRadius);
            inside.setLeft(inks.geometry.row_name(strip, 0).right());
            if (inside.contains(part)) return true;
        }
        return false;
    };
    if (std::all_of(region.begin(), region.end(), plain)) {
        for (const QRect& part : region) painter.fillRect(part, inks.signal.panel);
        return;
    }
    painter.fillRect(region.boundingRect(), inks.palette.color(QPalette::Window));
    for (int strip = 0; strip < StripCount; ++strip) paint_card(painter, strip, inks);
}

void PodDisplay::paint_card(QPainter& painter, int strip, const Inks& inks) const {
    painter.setPen(QPen(inks.signal.line, 1));
    painter.setBrush(inks.signal.panel);
    painter.drawRoundedRect(inks.geometry.card(strip).adjusted(0.5, 0.5, -0.5, -0.5), CardRadius,
                            CardRadius);
    const int first = strip * PodsPerStrip;
    painter.setFont(inks.small);
    painter.setPen(inks.signal.faint);
    const auto name = [&](QRectF row, const QString& text) {
        row.setLeft(inks.geometry.row_name(strip, 0).left());
        row.setWidth(inks.geometry.row_name(strip, 0).width());
        painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter, text);
    };
    name(inks.geometry.number(first), "ZAV");
    name(inks.geometry.type(first), "Type");
    if (!expanded_) return;
    for (int stream = 0; stream < StreamCount; ++stream) {
        const Label& row = row_names_[at(strip)][at(stream)];
        if (row.visible && !row.caption.empty())
            name(inks.geometry.row_name(strip, stream), "Stream " + to_qt(row.caption));
    }
}

void PodDisplay::paint_tile(QPainter& painter, int pod, const Inks& inks) const {
    const PodTile& shown = tile(pod);
    paint_frame(painter, pod, inks);
    painter.setFont(shown.icon.visible ? inks.bold : inks.small);
    painter.setPen(shown.icon.visible ? inks.text : inks.signal.faint);
    painter.drawText(inks.geometry.number(pod), Qt::AlignCenter, to_qt(shown.number));
    const QRectF icon = inks.geometry.icon(pod);
    if (shown.icon.visible) {
        paint_picture(painter, icon, shown.icon.picture, inks.palette);
        if (shown.icon.differs) paint_change(painter, pod, inks);
    } else {
        painter.setPen(QPen(inks.signal.line, 1, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        const double inset = icon.width() * 0.22;
        painter.drawRoundedRect(icon.adjusted(inset, inset, -inset, -inset), 4, 4);
    }
    paint_type(painter, pod, inks);
    if (!expanded_) return;
    for (int stream = 0; stream < StreamCount; ++stream)
        paint_indicator(painter, pod, stream, inks);
}

void PodDisplay::paint_frame(QPainter& painter, int pod, const Inks& inks) const {
    const QRectF frame = inks.geometry.tile(pod).adjusted(1, 0, -1, 0);
    if (selected(tile(pod))) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(blend(inks.signal.panel, inks.signal.selected, 0.16));
        painter.drawRoundedRect(frame, TileRadius, TileRadius);
    } else if (pod == hovered_ && tile(pod).icon.visible) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(blend(inks.signal.panel, inks.text, 0.07));
        painter.drawRoundedRect(frame, TileRadius, TileRadius);
    }
    if (pod == current_ && hasFocus()) {
        painter.setPen(QPen(inks.signal.selected, 1.6));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(frame.adjusted(0.8, 0.8, -0.8, -0.8), TileRadius, TileRadius);
    }
}

void PodDisplay::paint_change(QPainter& painter, int pod, const Inks& inks) const {
    painter.setPen(QPen(inks.signal.panel, 1.5));
    painter.setBrush(ChangeColour);
    painter.drawEllipse(inks.geometry.icon(pod).topRight() + QPointF(-4, 4), ChangeRadius,
                        ChangeRadius);
}

void PodDisplay::paint_type(QPainter& painter, int pod, const Inks& inks) const {
    const Label& type = tile(pod).type;
    if (!type.visible || type.caption.empty()) return;
    const QRectF box = inks.geometry.type(pod);
    const bool own_ground = type.back != Colour::Automatic;
    if (own_ground) {
        const QColor ground = QColor::fromRgb(static_cast<QRgb>(type.back));
        painter.setPen(QPen(blend(ground, Qt::black, 0.35), 1));
        painter.setBrush(ground);
        painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    }
    painter.setFont(inks.bold);
    painter.setPen(own_ground ? QColor(0x14, 0x18, 0x1E) : text_colour(type.fore, inks.palette));
    painter.drawText(box, Qt::AlignCenter, to_qt(type.caption));
}

// "-" for nothing yet; anything else is what arrived.
void PodDisplay::paint_indicator(QPainter& painter, int pod, int stream, const Inks& inks) const {
    const Label& label = tile(pod).streams[at(stream)];
    if (!label.visible || !tile(pod).icon.visible) return;
    const QRectF box = inks.geometry.indicator(pod, stream);
    const bool arrived = !label.caption.empty() && label.caption != "-";
    if (arrived) {
        QRectF lamp(0, 0, 22, 16);
        lamp.moveCenter(box.center());
        painter.setPen(QPen(inks.signal.data, 1.2));
        painter.setBrush(blend(inks.signal.panel, inks.signal.data, 0.22));
        painter.drawRoundedRect(lamp, 4, 4);
    }
    painter.setFont(arrived ? inks.bold : inks.small);
    painter.setPen(arrived ? inks.text : inks.signal.faint);
    painter.drawText(box, Qt::AlignCenter, to_qt(label.caption));
}

}  // namespace kavorix
