#pragma once

// How each kind of field is shown on its widget and read from it. Used by Binder alone.

#include <memory>

#include "ui/qt/kit/binder.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QRadioButton;
class QTableView;

namespace kavorix {

class StatusPanel;

std::unique_ptr<Binding> make_binding(QAbstractButton& widget, Button& field);
std::unique_ptr<Binding> make_binding(QAbstractButton& widget, CheckBox& field);
std::unique_ptr<Binding> make_binding(QGroupBox& widget, CheckBox& field);
std::unique_ptr<Binding> make_binding(QRadioButton& widget, OptionButton& field);
std::unique_ptr<Binding> make_binding(QLineEdit& widget, TextField& field);
std::unique_ptr<Binding> make_binding(QComboBox& widget, ListBox& field);
std::unique_ptr<Binding> make_binding(QListWidget& widget, ListBox& field);
std::unique_ptr<Binding> make_binding(QWidget& widget, Label& field);
std::unique_ptr<Binding> make_binding(QWidget& widget, Frame& field);
std::unique_ptr<Binding> make_binding(QTableView& widget, Grid& field);
std::unique_ptr<Binding> make_binding(QTableView& widget, GridSource& field);
std::unique_ptr<Binding> make_binding(QAction& action, MenuItem& field);

}  // namespace kavorix
