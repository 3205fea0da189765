#include "ui/qt/kit/bindings.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QToolTip>
#include <type_traits>

#include "ui/qt/kit/grid_model.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/status_panel.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

// A property of a group box in a .ui file: the words around the caption, which stands for %1.
constexpr auto CaptionFormat = "captionFormat";

template <class Field>
void show_state(QWidget& widget, const Field& field) {
    widget.setEnabled(field.enabled);
    // Only what was hidden by its own record, not what its window hides.
    if (widget.isHidden() == field.visible) widget.setVisible(field.visible);
}

void show_caption(QAbstractButton& widget, const std::string& caption) {
    const QString text = to_qt(caption);
    if (widget.text() != text) widget.setText(text);  // keeps the accelerator alive
}

void show_field(QAbstractButton& widget, const Button& field) {
    show_caption(widget, field.caption);
    if (!field.tool_tip.empty()) widget.setToolTip(to_qt(field.tool_tip));
    show_state(widget, field);
}

void show_field(QAbstractButton& widget, const CheckBox& field) {
    if (!field.caption.empty()) show_caption(widget, field.caption);
    widget.setChecked(field.checked);
    show_state(widget, field);
}

void show_field(QGroupBox& widget, const CheckBox& field) {
    if (!field.caption.empty()) widget.setTitle(to_qt(field.caption));
    widget.setChecked(field.checked);
    show_state(widget, field);
}

void show_field(QRadioButton& widget, const OptionButton& field) {
    if (!field.caption.empty()) show_caption(widget, field.caption);
    // The toolkit keeps one button of a group chosen; only the group's record says otherwise.
    const bool exclusive = widget.autoExclusive();
    if (!field.selected) widget.setAutoExclusive(false);
    widget.setChecked(field.selected);
    widget.setAutoExclusive(exclusive);
    show_state(widget, field);
}

void show_field(QLineEdit& widget, const TextField& field) {
    const QString text = to_qt(field.text);
    if (widget.text() != text) widget.setText(text);
    show_state(widget, field);
}

QString entry_text(const QComboBox& widget, int index) {
    return widget.itemText(index);
}

QString entry_text(const QListWidget& widget, int index) {
    return widget.item(index)->text();
}

template <class Widget>
bool same_entries(const Widget& widget, const ListBox& field) {
    if (widget.count() != static_cast<int>(field.entries.size())) return false;
    for (int i = 0; i < widget.count(); ++i)
        if (entry_text(widget, i) != to_qt(field.entries[static_cast<std::size_t>(i)].text))
            return false;
    return true;
}

void show_field(QComboBox& widget, const ListBox& field) {
    if (!same_entries(widget, field)) {
        widget.clear();
        for (const ListEntry& entry : field.entries) widget.addItem(to_qt(entry.text));
    }
    widget.setCurrentIndex(field.index < widget.count() ? field.index : -1);
    show_state(widget, field);
}

// What the record says is not announced as a choice of the operator.
void show_field(QListWidget& widget, const ListBox& field) {
    const QSignalBlocker quiet(widget);
    if (!same_entries(widget, field)) {
        widget.clear();
        for (const ListEntry& entry : field.entries) widget.addItem(to_qt(entry.text));
    }
    widget.setCurrentRow(field.index < widget.count() ? field.index : -1);
    show_state(widget, field);
}

void show_label_text(QLabel& widget, const Label& field) {
    widget.setTextFormat(Qt::PlainText);
    widget.setText(to_qt(field.caption));
    QPalette palette = QApplication::palette();
    const bool own_ground = field.back != Colour::Automatic;
    if (own_ground)
        palette.setColor(QPalette::Window, QColor::fromRgb(static_cast<QRgb>(field.back)));
    // Text on a ground of its own does not follow the theme.
    if (own_ground && (field.fore == Colour::Automatic || field.fore == Colour::Black))
        palette.setColor(QPalette::WindowText, Qt::black);
    else if (field.fore != Colour::Automatic)
        palette.setColor(QPalette::WindowText, text_colour(field.fore, QApplication::palette()));
    widget.setAutoFillBackground(own_ground);
    widget.setPalette(palette);
}

void show_field(QWidget& widget, const Label& field) {
    if (auto* const panel = qobject_cast<StatusPanel*>(&widget)) {
        panel->show_label(field);
    } else if (auto* const label = qobject_cast<QLabel*>(&widget)) {
        show_label_text(*label, field);
        show_state(widget, field);
    } else if (auto* const bar = qobject_cast<QProgressBar*>(&widget)) {
        bar->setFormat(to_qt(field.caption));
        show_state(widget, field);
    }
}

void show_field(QWidget& widget, const Frame& field) {
    if (auto* const box = qobject_cast<QGroupBox*>(&widget); box && !field.caption.empty()) {
        const QString format = box->property(CaptionFormat).toString();
        const QString caption = to_qt(field.caption);
        box->setTitle(format.isEmpty() ? caption : format.arg(caption));
    }
    show_state(widget, field);
}

// Shows a field; the widgets' own changes come back through take().
template <class Widget, class Field>
class FieldBinding : public Binding {
  public:
    FieldBinding(Widget& widget, Field& field) : widget_(widget), field_(field) {}

    void refresh(bool anew) override {
        if (!anew && field_ == shown_) return;
        shown_ = field_;
        showing_ = true;
        show_field(widget_, field_);
        showing_ = false;
    }

  protected:
    // Stores what the operator entered, unless it is this binding that changes the widget.
    template <class Change>
    void take(Change&& change) {
        if (showing_) return;
        change(field_);
        change(shown_);
    }

    Widget& widget_;
    Field& field_;
    Field shown_;
    bool showing_ = false;
};

class CheckBinding : public FieldBinding<QAbstractButton, CheckBox> {
  public:
    CheckBinding(QAbstractButton& widget, CheckBox& field) : FieldBinding(widget, field) {
        QObject::connect(&widget, &QAbstractButton::toggled, &widget, [this](bool checked) {
            take([=](CheckBox& box) { box.checked = checked; });
        });
    }
};

class GroupCheckBinding : public FieldBinding<QGroupBox, CheckBox> {
  public:
    GroupCheckBinding(QGroupBox& widget, CheckBox& field) : FieldBinding(widget, field) {
        QObject::connect(&widget, &QGroupBox::toggled, &widget, [this](bool checked) {
            take([=](CheckBox& box) { box.checked = checked; });
        });
    }
};

class OptionBinding : public FieldBinding<QRadioButton, OptionButton> {
  public:
    OptionBinding(QRadioButton& widget, OptionButton& field) : FieldBinding(widget, field) {
        QObject::connect(&widget, &QRadioButton::toggled, &widget, [this](bool selected) {
            take([=](OptionButton& option) { option.selected = selected; });
        });
    }
};

class TextBinding : public FieldBinding<QLineEdit, TextField> {
  public:
    TextBinding(QLineEdit& widget, TextField& field) : FieldBinding(widget, field) {
        // Edited comes before changed, and before the handlers that want to know of edits.
        QObject::connect(&widget, &QLineEdit::textEdited, &widget, [this] { changed(); });
        QObject::connect(&widget, &QLineEdit::textChanged, &widget, [this] { changed(); });
    }

  private:
    void changed() {
        const std::optional<std::string> stored = from_qt(widget_.text());
        if (stored)
            take([&](TextField& field) { field.text = *stored; });
        else
            refuse();
    }

    void refuse() {
        const int kept = static_cast<int>(to_qt(field_.text).size());
        const int cursor =
            widget_.cursorPosition() - static_cast<int>(widget_.text().size()) + kept;
        {
            const QSignalBlocker quiet(widget_);
            widget_.setText(to_qt(field_.text));
        }
        widget_.setCursorPosition(std::clamp(cursor, 0, kept));
        QApplication::beep();
        QToolTip::showText(widget_.mapToGlobal(QPoint(0, widget_.height())),
                           "Only characters of the Windows-1252 character set can be stored.",
                           &widget_);
    }
};

// `changed`: the widget's signal of another current entry.
template <class Widget, auto changed>
class ListBinding : public FieldBinding<Widget, ListBox> {
  public:
    ListBinding(Widget& widget, ListBox& field) : FieldBinding<Widget, ListBox>(widget, field) {
        QObject::connect(&widget, changed, &widget, [this](int index) {
            this->take([=](ListBox& list) { list.index = index; });
        });
    }
};

class GridBinding : public Binding {
  public:
    GridBinding(QTableView& view, GridSource& source) : view_(view), model_(source) {
        view.setModel(&model_);
    }
    ~GridBinding() override { view_.setModel(nullptr); }

    void refresh(bool) override { model_.refresh(); }

  private:
    QTableView& view_;
    GridModel model_;
};

class GridRecordBinding : public Binding {
  public:
    GridRecordBinding(QTableView& view, const Grid& grid) : source_(grid), table_(view, source_) {}
    void refresh(bool anew) override { table_.refresh(anew); }

  private:
    GridRecordSource source_;
    GridBinding table_;
};

class ActionBinding : public Binding {
  public:
    ActionBinding(QAction& action, MenuItem& field) : action_(action), field_(field) {}

    void refresh(bool anew) override {
        // A click has already changed the check mark; what holds is the record.
        if (!anew && field_ == shown_ && action_.isChecked() == (field_.checked && checkable()))
            return;
        shown_ = field_;
        action_.setText(to_qt(field_.caption));
        action_.setEnabled(field_.enabled);
        if (checkable()) action_.setChecked(field_.checked);
    }

  private:
    bool checkable() const { return action_.isCheckable(); }

    QAction& action_;
    MenuItem& field_;
    MenuItem shown_;
};

}  // namespace

std::unique_ptr<Binding> make_binding(QAbstractButton& widget, Button& field) {
    return std::make_unique<FieldBinding<QAbstractButton, Button>>(widget, field);
}
std::unique_ptr<Binding> make_binding(QAbstractButton& widget, CheckBox& field) {
    return std::make_unique<CheckBinding>(widget, field);
}
std::unique_ptr<Binding> make_binding(QGroupBox& widget, CheckBox& field) {
    return std::make_unique<GroupCheckBinding>(widget, field);
}
std::unique_ptr<Binding> make_binding(QRadioButton& widget, OptionButton& field) {
    return std::make_unique<OptionBinding>(widget, field);
}
std::unique_ptr<Binding> make_binding(QLineEdit& widget, TextField& field) {
    return std::make_unique<TextBinding>(widget, field);
}
std::unique_ptr<Binding> make_binding(QComboBox& widget, ListBox& field) {
    return std::make_unique<ListBinding<QComboBox, &QComboBox::currentIndexChanged>>(widget, field);
}
std::unique_ptr<Binding> make_binding(QListWidget& widget, ListBox& field) {
    return std::make_unique<ListBinding<QListWidget, &QListWidget::currentRowChanged>>(widget,
                                                                                       field);
}
std::unique_ptr<Binding> make_binding(QWidget& widget, Label& field) {
    return std::make_unique<FieldBinding<QWidget, Label>>(widget, field);
}
std::unique_ptr<Binding> make_binding(QWidget& widget, Frame& field) {
    return std::make_unique<FieldBinding<QWidget, Frame>>(widget, field);
}
std::unique_ptr<Binding> make_binding(QTableView& widget, Grid& field) {
    return std::make_unique<GridRecordBinding>(widget, field);
}
std::unique_ptr<Binding> make_binding(QTableView& widget, GridSource& field) {
    return std::make_unique<GridBinding>(widget, field);
}
std::unique_ptr<Binding> make_binding(QAction& action, MenuItem& field) {
    return std::make_unique<ActionBinding>(action, field);
}

}  // namespace kavorix
