#include "ui/qt/kit/modal_form.h"

#include <utility>

#include "ui/qt/kit/window_placing.h"

namespace kavorix {

void ModalWindow::run(QWidget* over, const std::function<bool()>& closed,
                      std::function<void()> unload_request) {
    open_over(over, std::move(unload_request));
    mirrors_.loop().wait_until(closed);
    hide();
}

void ModalWindow::open_over(QWidget* over, std::function<void()> unload_request) {
    unload_request_ = std::move(unload_request);
    setWindowModality(Qt::ApplicationModal);
    show_over(*this, over);
}

void ModalWindow::reject() {
    if (asking_ || !unload_request_) return;
    asking_ = true;
    mirrors_.loop().dispatch(unload_request_);
    asking_ = false;
}

}  // namespace kavorix
