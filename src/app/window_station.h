#pragma once

// A station in its windows: everything between the toolkit and the records, in the order in which
// it has to come and go. Needs a QApplication.

#include <memory>
#include <string>

#include "app/desk.h"
#include "app/network.h"
#include "ui/qt/kit/qt_dialogs.h"
#include "ui/qt/kit/qt_event_loop.h"
#include "ui/qt/kit/window_memory.h"
#include "ui/qt/main/main_window.h"
#include "ui/qt/main/qt_windows.h"
#include "ui/qt/pods/pod_setup_windows.h"

namespace kavorix {

class WindowStation {
  public:
    // Throws UnusableInput.
    explicit WindowStation(const CommonOptions& options);

    // Shows the main window; the station starts as soon as events flow.
    void show();

    QtEventLoop loop;

  private:
    CompareHeld compare_held();

    Mirrors mirrors_;
    QtDialogs dialogs_;
    std::unique_ptr<Files> files_;
    std::string directory_;

  public:
    const std::unique_ptr<Driver> driver;

  private:
    std::unique_ptr<SystemInfo> system_info_;

  public:
    Station station;

  private:
    WindowMemory memory_;
    QtWindows windows_;
    QtPodSetupWindows pod_setup_windows_;

  public:
    Desk desk;
    QtMainWindow window;
};

}  // namespace kavorix
