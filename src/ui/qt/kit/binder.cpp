#include "ui/qt/kit/binder.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QRadioButton>
#include <QTableView>
#include <stdexcept>
#include <utility>

#include "ui/qt/kit/bindings.h"

namespace kavorix {

Binder::Binder(Mirrors& mirrors, QWidget& form) : mirrors_(mirrors), form_(form) {
    mirrors_.add(*this);
    focus_changes_ =
        QObject::connect(qApp, &QApplication::focusChanged, this,
                         [this](QWidget* from, QWidget* to) { focus_moved(from, to); });
}

Binder::~Binder() {
    mirrors_.remove(*this);
}

QWidget& Binder::widget(std::string_view name) const {
    return find<QWidget>(name);
}

template <class Widget>
Widget& Binder::find(std::string_view name) const {
    auto* const found = form_.findChild<Widget*>(
        QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    if (!found)
        throw std::logic_error(form_.objectName().toStdString() + " has no " +
                               Widget::staticMetaObject.className() + " \"" + std::string(name) +
                               '"');
    return *found;
}

void Binder::keep(std::unique_ptr<Binding> binding) {
    binding->refresh(true);
    bindings_.push_back(std::move(binding));
}

void Binder::add(std::string_view name, Button& field) {
    keep(make_binding(find<QAbstractButton>(name), field));
}

void Binder::add(std::string_view name, CheckBox& field) {
    if (auto* const group = qobject_cast<QGroupBox*>(&widget(name)))
        keep(make_binding(*group, field));
    else
        keep(make_binding(find<QAbstractButton>(name), field));
}

void Binder::add(std::string_view name, OptionButton& field) {
    keep(make_binding(find<QRadioButton>(name), field));
}

void Binder::add(std::string_view name, TextField& field) {
    keep(make_binding(find<QLineEdit>(name), field));
}

void Binder::add(std::string_view name, ListBox& field) {
    if (auto* const list = qobject_cast<QListWidget*>(&widget(name)))
        keep(make_binding(*list, field));
    else
        keep(make_binding(find<QComboBox>(name), field));
}

void Binder::add(std::string_view name, Label& field) {
    keep(make_binding(widget(name), field));
}

void Binder::add(std::string_view name, Frame& field) {
    keep(make_binding(widget(name), field));
}

void Binder::add(std::string_view name, Grid& field) {
    keep(make_binding(find<QTableView>(name), field));
}

void Binder::add(std::string_view name, GridSource& field) {
    keep(make_binding(find<QTableView>(name), field));
}

void Binder::add(QAction& action, MenuItem& field) {
    keep(make_binding(action, field));
}

void Binder::refresh() {
    const qint64 palette = QApplication::palette().cacheKey();
    const bool anew = std::exchange(palette_, palette) != palette;
    for (const auto& binding : bindings_) binding->refresh(anew);
}

void Binder::on_click(std::string_view name, std::function<void()> handler) {
    auto& button = find<QAbstractButton>(name);
    connect(&button, &QAbstractButton::clicked, this,
            [this, &button, handler = std::move(handler)] {
                if (may_leave_for(button)) run(handler);
            });
}

void Binder::on_choose(std::string_view name, std::function<void(int)> handler) {
    const auto chosen = [this, handler = std::move(handler)](int index) {
        run([&] { handler(index); });
    };
    if (auto* const list = qobject_cast<QListWidget*>(&widget(name)))
        on_choose_in(*list, chosen);
    else
        connect(&find<QComboBox>(name), &QComboBox::activated, this, chosen);
}

// A press of the mouse makes another row the current one, or says that it is the same again.
void Binder::on_choose_in(QListWidget& list, const std::function<void(int)>& chosen) {
    const auto announced = std::make_shared<bool>(false);  // by the event that is being handled
    connect(&list, &QListWidget::currentRowChanged, this, [this, chosen, announced](int row) {
        if (row < 0) return;
        *announced = true;
        mirrors_.loop().call_later(0, [announced] { *announced = false; });
        chosen(row);
    });
    connect(&list, &QListWidget::itemPressed, this, [&list, chosen, announced] {
        if (!std::exchange(*announced, false)) chosen(list.currentRow());
    });
}

void Binder::on_edit(std::string_view name, std::function<void()> handler) {
    connect(&find<QLineEdit>(name), &QLineEdit::textEdited, this,
            [this, handler = std::move(handler)] { run(handler); });
}

void Binder::on_leave(std::string_view name, std::function<bool(std::string_view)> handler) {
    checks_[&widget(name)] = std::move(handler);
}

void Binder::on_double_click(std::string_view name, std::function<void()> handler) {
    QWidget& target = widget(name);
    double_clicks_[&target] = std::move(handler);
    target.installEventFilter(this);
    // Areas that scroll get the mouse's events inside.
    if (auto* const area = qobject_cast<QAbstractScrollArea*>(&target)) {
        double_clicks_[area->viewport()] = double_clicks_[&target];
        area->viewport()->installEventFilter(this);
    }
}

void Binder::focus_moved(QWidget* from, QWidget* to) {
    const auto check = checks_.find(from);
    if (checking_ || check == checks_.end() || !to || to->window() != form_.window()) return;
    checking_ = true;
    bool allowed = false;
    run([&] { allowed = check->second(to->objectName().toStdString()); });
    if (!allowed) {
        from->setFocus(Qt::OtherFocusReason);
        if (auto* const edit = qobject_cast<QLineEdit*>(from)) edit->selectAll();
        // The press of the mouse that moved the focus is yet to come.
        refused_ = to;
        to->installEventFilter(this);
        mirrors_.loop().call_later(0, [this, alive = QPointer<Binder>(this)] {
            if (alive) refused_ = nullptr;
        });
    }
    checking_ = false;
}

// Accelerators and Enter click a button without moving the focus to it.
bool Binder::may_leave_for(QWidget& target) {
    QWidget* const focused = form_.window()->focusWidget();
    if (!focused || focused == &target || checks_.find(focused) == checks_.end()) return true;
    target.setFocus(Qt::ShortcutFocusReason);
    return form_.window()->focusWidget() == &target;
}

bool Binder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && watched == refused_) {
        refused_ = nullptr;
        return true;
    }
    if (event->type() == QEvent::MouseButtonDblClick)
        if (const auto found = double_clicks_.find(watched); found != double_clicks_.end()) {
            run(found->second);
            return true;
        }
    return QObject::eventFilter(watched, event);
}

}  // namespace kavorix
