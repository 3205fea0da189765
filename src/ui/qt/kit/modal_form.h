#pragma once

// Modal dialogs over rules without a toolkit. A dialog is its .ui file and its handlers:
//
//     ModalForm<Ui::frmCopyChan> form(mirrors, rules.screen);
//     form.binder.on_click("cmdOK", [&] { rules.cmdOK_Click(); });
//     form.run(over, [&] { return rules.closed(); }, [&] { rules.cmdCancel_Click(); });

#include <QDialog>
#include <functional>

#include "ui/qt/kit/binder.h"

namespace kavorix {

class ModalWindow : public QDialog {
  public:
    explicit ModalWindow(Mirrors& mirrors) : mirrors_(mirrors) {}

    // Shows the window over another until `closed` is true; events flow. Closing it otherwise than
    // by its buttons (Esc, the window's own button) only calls `unload_request`.
    void run(QWidget* over, const std::function<bool()>& closed,
             std::function<void()> unload_request);

    // The same without waiting: shows the window, for whoever hides or destroys it.
    void open_over(QWidget* over, std::function<void()> unload_request);

    void reject() override;

  private:
    Mirrors& mirrors_;
    std::function<void()> unload_request_;
    bool asking_ = false;
};

// `UiForm`: the class made of the .ui file.
template <class UiForm>
class ModalForm : public ModalWindow {
  public:
    template <class Record>
    ModalForm(Mirrors& mirrors, Record& record) : ModalWindow(mirrors), binder(mirrors, *this) {
        ui.setupUi(this);
        binder.bind(record);
    }

    UiForm ui;
    Binder binder;
};

}  // namespace kavorix
