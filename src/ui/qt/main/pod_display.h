#pragma once

// The pod display of the main window: the number strips, the pod icons with their type labels and,
// on the expanded screen, the stream indicator rows. One widget that paints what changed.

#include <QWidget>
#include <array>
#include <functional>
#include <optional>

#include "ui/main/main_screen.h"
#include "ui/qt/main/pod_geometry.h"

namespace kavorix {

// Everything that is shown of one pod.
struct PodTile {
    std::string number;
    Icon icon;
    Label type;
    std::array<Label, StreamCount> streams;
    bool operator==(const PodTile&) const = default;
};

class PodDisplay : public QWidget {
    Q_OBJECT

  public:
    explicit PodDisplay(QWidget* parent = nullptr);

    // Shows what the record says, repainting only the pods that changed.
    void show_screen(const MainScreen& screen);

    // Called with the pod index 0..49 when a position is clicked, or toggled by the keyboard.
    std::function<void(int pod)> on_click;

    // Called with a pod index and a place on the screen when a menu of that pod is asked for.
    std::function<void(int pod, const QPoint& place)> on_menu;

    const PodTile& tile(int pod) const { return tiles_[static_cast<std::size_t>(pod)]; }
    bool expanded() const { return expanded_; }
    int current_pod() const { return current_; }  // where the keyboard is
    PodGeometry geometry_now() const { return {size(), expanded_, fontMetrics().height()}; }

    // "ZAV 03, 7V, selected, data arrived"
    QString spoken_name(int pod) const;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override { return minimumSizeHint(); }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    struct Inks;
    void paint_ground(QPainter& painter, const QRegion& region, const Inks& inks) const;
    void paint_card(QPainter& painter, int strip, const Inks& inks) const;
    void paint_tile(QPainter& painter, int pod, const Inks& inks) const;
    void paint_frame(QPainter& painter, int pod, const Inks& inks) const;
    void paint_change(QPainter& painter, int pod, const Inks& inks) const;
    void paint_type(QPainter& painter, int pod, const Inks& inks) const;
    void paint_indicator(QPainter& painter, int pod, int stream, const Inks& inks) const;
    void update_tile(int pod);
    void announce(int pod, const PodTile& before) const;
    void go_to(int pod);
    void hover(int pod);
    QString tip(int pod) const;

    std::array<PodTile, MaxZavs> tiles_;
    std::array<std::array<Label, StreamCount>, StripCount> row_names_;
    bool expanded_ = false;
    int current_ = 0;
    int hovered_ = -1;
    int pressed_ = -1;
};

}  // namespace kavorix
