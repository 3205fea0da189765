#pragma once

// The progress window of a conversion, `frmCSVProg`, and its module CSVPROG.

#include <cstdint>
#include <string>

#include "platform/controls.h"

namespace kavorix {

struct CsvProgressScreen {
    std::string caption = "Conversion in progress";
    Label picProgress;  // the percentage, centred
    Button cmdCancel{"&Cancel", "Stop after the current record; the rows so far are kept"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("picProgress", picProgress);
        visit("cmdCancel", cmdCancel);
    }
};

class CsvProgress {
  public:
    CsvProgressScreen screen;

    // Percent of the log that is read, 0..100: for a bar behind the number.
    int percent() const { return percent_; }
    bool cancelled() const { return cancelled_; }

    // A conversion begins.
    void restart() {
        cancelled_ = false;
        Update_Progress(0);
    }
    void Update_Progress(int percent) {
        percent_ = percent;
        screen.picProgress.caption = std::to_string(percent) + "%";
    }
    void cmdCancel_Click() { cancelled_ = true; }

  private:
    int percent_ = 0;
    bool cancelled_ = false;
};

}  // namespace kavorix
