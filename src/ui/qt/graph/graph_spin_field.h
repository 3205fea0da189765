#pragma once

#include <QAbstractSpinBox>
#include <functional>

namespace kavorix {

// A text field with spin buttons whose steps are the business of the dialog's rules.
class SpinField : public QAbstractSpinBox {
    Q_OBJECT

  public:
    explicit SpinField(QWidget* parent = nullptr);

    // The name under which the text is found, and what a step up (1) or down (-1) does.
    void set_up(const char* field_name, std::function<void(int)> on_step);

    void stepBy(int steps) override;

  protected:
    StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }

  private:
    std::function<void(int)> on_step_;
};

}  // namespace kavorix
