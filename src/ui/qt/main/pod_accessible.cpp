#include "ui/qt/main/pod_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <array>
#include <optional>

#include "ui/qt/kit/qt_text.h"
#include "ui/qt/main/pictures.h"
#include "ui/qt/main/pod_display.h"

namespace kavorix {

namespace {

// One pod position.
class TileAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    TileAccessible(PodDisplay& display, int pod) : display_(display), pod_(pod) {}

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return display_.window()->windowHandle(); }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&display_);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return display_.spoken_name(pod_);
        if (kind == QAccessible::Description) return to_qt(display_.tile(pod_).icon.tool_tip);
        return {};
    }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        const QRect tile = display_.geometry_now().tile(pod_).toAlignedRect();
        return {display_.mapToGlobal(tile.topLeft()), tile.size()};
    }

    QAccessible::State state() const override {
        const Icon& icon = display_.tile(pod_).icon;
        QAccessible::State state;
        state.selectable = state.focusable = true;
        state.disabled = !icon.visible;
        state.selected = icon.visible && picture_traits(icon.picture).selected;
        state.focused = display_.hasFocus() && display_.current_pod() == pod_;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {toggleAction()}; }
    void doAction(const QString& name) override {
        if (name == toggleAction() && display_.on_click) display_.on_click(pod_);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {"Space"}; }

  private:
    PodDisplay& display_;
    int pod_;
};

class DisplayAccessible : public QAccessibleWidget {
  public:
    explicit DisplayAccessible(PodDisplay& display)
        : QAccessibleWidget(&display, QAccessible::List, "ZAV icons"), display_(display) {}
    ~DisplayAccessible() override {
        for (const auto& id : ids_)
            if (id) QAccessible::deleteAccessibleInterface(*id);
    }

    int childCount() const override { return MaxZavs; }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= MaxZavs) return nullptr;
        auto& id = ids_[static_cast<std::size_t>(index)];
        if (!id) id = QAccessible::registerAccessibleInterface(new TileAccessible(display_, index));
        return QAccessible::accessibleInterface(*id);
    }

    int indexOfChild(const QAccessibleInterface* tile) const override {
        for (int i = 0; i < MaxZavs; ++i) {
            const auto& id = ids_[static_cast<std::size_t>(i)];
            if (id && QAccessible::accessibleInterface(*id) == tile) return i;
        }
        return -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        return child(display_.geometry_now().pod_at(display_.mapFromGlobal(QPoint(x, y))));
    }

    QAccessibleInterface* focusChild() const override {
        return display_.hasFocus() ? child(display_.current_pod()) : nullptr;
    }

  private:
    PodDisplay& display_;
    mutable std::array<std::optional<QAccessible::Id>, MaxZavs> ids_;
};

QAccessibleInterface* make_accessible(const QString&, QObject* object) {
    auto* const display = qobject_cast<PodDisplay*>(object);
    return display ? new DisplayAccessible(*display) : nullptr;
}

}  // namespace

void install_pod_accessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(make_accessible);
        return true;
    }();
    static_cast<void>(installed);
}

}  // namespace kavorix
