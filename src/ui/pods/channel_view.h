#pragma once

// The channel configuration view `frmViewChan`: every channel of a pod in a table.

#include <array>
#include <string>
#include <vector>

#include "model/records.h"
#include "platform/controls.h"

namespace kavorix {

// The settings of a channel as texts; empty where it has none.
struct ChannelTexts {
    std::string number;  // "05"
    std::string mode;    // catalogue text
    std::string range;   // catalogue text; "6 Pole with Ch. 3" where channel 3 uses this one, too
    std::string label;
    std::string unit;
    std::string mx_c;                  // "2x+0.5"
    std::array<std::string, 3> extra;  // strain settings, or sample rate and time-out
};
ChannelTexts channel_texts(const PodConfig& pod, int slot);

struct ChannelViewScreen {
    std::string caption;
    // The headings of the columns; A and B are their first and second lines.
    Label lblChan{"Chan"};
    Label lblMode{"Mode"};
    Label lblRange{"Range"};
    Label lblLabel{"Label"};
    Label lblUnits{"Units"};
    Label lblMx_c{"Mx+c"};
    Label lblExtra1A;
    Label lblExtra1B;
    Label lblExtra2A;
    Label lblExtra2B;
    Label lblExtra3A;
    Label lblExtra3B;
    Grid grdChannel;  // its headings are those of the labels, lines apart by LF; "" for no column
    Button cmdOK{"OK", "Close this view"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("grdChannel", grdChannel);
        visit("cmdOK", cmdOK);
    }
};

class ChannelView {
  public:
    // `pod_number`: 1..50, for the caption.
    ChannelView(const PodConfig& pod, int pod_number);

    ChannelViewScreen screen;

    bool closed() const { return closed_; }
    void cmdOK_Click() { closed_ = true; }

  private:
    void head_extra_columns(std::int16_t type);

    bool closed_ = false;
};

}  // namespace kavorix
