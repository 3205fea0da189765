#pragma once

// Ties the widgets of a window to the fields of a control record, by object name and in both
// directions. A window is then its .ui file, a record and a few handlers:
//
//     Ui::frmStrm0 ui;  ui.setupUi(this);
//     binder_.bind(view.screen);
//     binder_.on_click("cmdExit", [this] { close(); });

#include <QObject>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/grid_source.h"
#include "ui/qt/kit/mirrors.h"

class QAbstractButton;
class QAction;
class QListWidget;
class QWidget;

namespace kavorix {

// One field and its widget.
class Binding {
  public:
    virtual ~Binding() = default;
    // Shows the field when it differs from what was last shown; `anew`: in any case.
    virtual void refresh(bool anew) = 0;
};

// The record is shown whenever the program is about to wait (Mirrors). What the operator enters is
// in the record before any handler runs. Which widget a field can have:
//     Button        a push or tool button            CheckBox  a check box or checkable group
//     OptionButton  a radio button                   TextField a line edit
//     ListBox       a combo box or list              Label     a label, StatusPanel or, for the
//     text
//                                                              in it, a progress bar
//     Frame         a group box or any widget        Grid, GridSource  a table view
//     MenuItem      an action
// An empty tool tip in a record leaves the one of the .ui file. Elements of an array have the names
// NAME_0, NAME_1 and so on. A name without a widget of the right kind throws std::logic_error.
class Binder : public QObject, public Mirror {
  public:
    // Both outlive the binder.
    Binder(Mirrors& mirrors, QWidget& form);
    ~Binder() override;

    template <class Record>
    void bind(Record& record) {
        record.each([this](std::string_view name, auto& field) { this->add(name, field); });
    }

    void add(std::string_view name, Button& field);
    void add(std::string_view name, CheckBox& field);
    void add(std::string_view name, OptionButton& field);
    void add(std::string_view name, TextField& field);
    void add(std::string_view name, ListBox& field);
    void add(std::string_view name, Label& field);
    void add(std::string_view name, Frame& field);
    void add(std::string_view name, Grid& field);
    void add(std::string_view name, GridSource& field);
    void add(QAction& action, MenuItem& field);
    template <class Field, std::size_t Count>
    void add(std::string_view name, std::array<Field, Count>& fields) {
        for (std::size_t i = 0; i < Count; ++i)
            add(std::string(name) + '_' + std::to_string(i), fields[i]);
    }

    // A button, check box or radio button was clicked, by mouse, accelerator or Enter. When the
    // focus stands in a field with a check (on_leave), the check comes first, and a refusal is the
    // end of the click.
    void on_click(std::string_view name, std::function<void()> handler);
    // The operator chose an entry of a list, be it the one that was chosen already: its index.
    void on_choose(std::string_view name, std::function<void(int)> handler);
    // The operator changed a text.
    void on_edit(std::string_view name, std::function<void()> handler);
    // The focus left a field for another widget of the window, whose name is given. False: the
    // focus returns to the field. Not asked while the whole window loses the focus.
    void on_leave(std::string_view name, std::function<bool(std::string_view next)> handler);
    void on_double_click(std::string_view name, std::function<void()> handler);

    void refresh() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& widget(std::string_view name) const;
    template <class Widget>
    Widget& find(std::string_view name) const;
    void keep(std::unique_ptr<Binding> binding);
    void on_choose_in(QListWidget& list, const std::function<void(int)>& chosen);
    void run(const std::function<void()>& handler) { mirrors_.loop().dispatch(handler); }
    void focus_moved(QWidget* from, QWidget* to);
    bool may_leave_for(QWidget& target);

    Mirrors& mirrors_;
    QWidget& form_;
    std::vector<std::unique_ptr<Binding>> bindings_;
    std::map<QObject*, std::function<bool(std::string_view)>> checks_;
    std::map<QObject*, std::function<void()>> double_clicks_;
    QMetaObject::Connection focus_changes_;
    qint64 palette_ = 0;  // key of the palette last shown
    bool checking_ = false;
    QObject* refused_ = nullptr;  // a widget that must not get the press that was to focus it
};

}  // namespace kavorix
