#pragma once

// The pod configuration dialog `frmConfigZAV` on the screen.

#include <string>

#include "ui/pods/channel_overview.h"
#include "ui/pods/pod_setup.h"
#include "ui/qt/kit/modal_form.h"
#include "ui/qt/kit/window_memory.h"
#include "ui_frmConfigZAV.h"

namespace kavorix {

// Gives the focus to the control that rules ask it for, once the record is on the screen.
class FocusMirror : public Mirror {
  public:
    // `wanted`: the name of the control; emptied when it has the focus. All of it outlives this.
    FocusMirror(Mirrors& mirrors, QWidget& form, std::string& wanted);
    ~FocusMirror() override;
    FocusMirror(const FocusMirror&) = delete;
    FocusMirror& operator=(const FocusMirror&) = delete;

    void refresh() override;

  private:
    Mirrors& mirrors_;
    QWidget& form_;
    std::string& wanted_;
};

class PodSetupWindow : public ModalForm<Ui::frmConfigZAV>, private Mirror {
  public:
    PodSetupWindow(PodSetup& dialog, Mirrors& mirrors, const WindowMemory& memory);
    ~PodSetupWindow() override;

    // Returns when the dialog is closed.
    void run(QWidget* over);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void refresh() override;
    void make_room();
    void bind_pod();
    void bind_channel();
    void bind_groups();
    void bind_table();
    void choose_row(int row);

    PodSetup& dialog_;
    Mirrors& mirrors_;
    const WindowMemory& memory_;
    ChannelOverview overview_;
    FocusMirror focus_;
};

}  // namespace kavorix
