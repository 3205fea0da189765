#pragma once

// The pod configuration dialog and those it opens, on the screen.

#include <QPointer>
#include <QWidget>

#include "ui/pods/pod_setup.h"
#include "ui/qt/kit/mirrors.h"
#include "ui/qt/kit/window_memory.h"

namespace kavorix {

class QtPodSetupWindows : public PodSetupWindows {
  public:
    // All of it outlives the windows.
    QtPodSetupWindows(Mirrors& mirrors, Dialogs& dialogs, const WindowMemory& memory);

    void set_main_window(QWidget* window) { main_window_ = window; }

    void show_pod_setup(PodSetup& dialog) override;
    void show_copy_channel(CopyChannel& dialog) override;
    void show_channel_view(ChannelView& view) override;
    void show_unit_conversion(UnitConversion& dialog) override;
    void show_post_linearisation(PostLinearisation& dialog) override;
    void show_user_thermocouple(UserThermocouple& dialog) override;
    void show_alarm_limits(AlarmLimits& dialog) override;
    void show_alarm_groups(AlarmGroups& dialog) override;

  private:
    template <class UiForm, class Rules>
    void show_polynomials(Rules& dialog);
    QWidget* front() const;

    Mirrors& mirrors_;
    Dialogs& dialogs_;
    const WindowMemory& memory_;
    QPointer<QWidget> main_window_;
};

}  // namespace kavorix
