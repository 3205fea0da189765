#pragma once

// The stream-0 view `frmStrm0` on the screen.

#include <QDialog>
#include <memory>

#include "ui/qt/binder.h"
#include "ui/qt/window_memory.h"
#include "ui/stream0_view.h"

namespace Ui {
class frmStrm0;
}

namespace kavorix {

// Loads the view when it is shown and unloads it when it is closed.
class Stream0Window : public QDialog {
  public:
    Stream0Window(Stream0View& view, Mirrors& mirrors, const WindowMemory& memory);
    ~Stream0Window() override;

    // Opens the window, or brings it to the front, on the pods that are selected now.
    void open_view();

  private:
    void unload();

    Stream0View& view_;
    Mirrors& mirrors_;
    const WindowMemory& memory_;
    std::unique_ptr<Ui::frmStrm0> ui_;
    std::unique_ptr<Binder> binder_;
    bool loaded_ = false;
};

}  // namespace kavorix
