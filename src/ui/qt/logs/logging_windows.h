#pragma once

// The windows of logging: set-up `frmLogFile`, conversion `frmCSVConv`, its progress `frmCSVProg`.

#include <memory>

#include "logging/csv_dialog.h"
#include "logging/csv_progress.h"
#include "logging/log_setup.h"
#include "ui/qt/kit/mirrors.h"

class QWidget;

namespace kavorix {

// Modal over a window until the rules say closed.
void run_log_setup(Mirrors& mirrors, LogSetup& rules, QWidget* over);
void run_csv_conversion(Mirrors& mirrors, CsvDialog& rules, QWidget* over);

// In front of all other windows as long as it lives. A conversion lets events flow but never waits
// for them, so this window sees to it that the screen follows the records meanwhile.
class CsvProgressWindow {
  public:
    CsvProgressWindow(Mirrors& mirrors, CsvProgress& rules, QWidget* over);
    ~CsvProgressWindow();

  private:
    class Form;
    std::unique_ptr<Form> form_;
    std::unique_ptr<Timer> screen_timer_;
};

}  // namespace kavorix
