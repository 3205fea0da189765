#include "ui/qt/graph/graph_spin_field.h"

#include <QLineEdit>

namespace kavorix {

SpinField::SpinField(QWidget* parent) : QAbstractSpinBox(parent) {
    lineEdit()->setAlignment(Qt::AlignRight);
}

void SpinField::set_up(const char* field_name, std::function<void(int)> on_step) {
    lineEdit()->setObjectName(field_name);
    lineEdit()->setAccessibleName(accessibleName());
    on_step_ = std::move(on_step);
}

void SpinField::stepBy(int steps) {
    if (on_step_) on_step_(steps);
}

}  // namespace kavorix
