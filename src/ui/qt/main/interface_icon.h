#pragma once

#include <QAbstractButton>

#include "ui/main/main_screen.h"

namespace kavorix {

// The interface icon `img_4A` of the main window.
class InterfaceIcon : public QAbstractButton {
    Q_OBJECT

  public:
    explicit InterfaceIcon(QWidget* parent = nullptr);

    void show_icon(const Icon& icon);

    QSize sizeHint() const override { return {52, 48}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Icon shown_;
};

}  // namespace kavorix
