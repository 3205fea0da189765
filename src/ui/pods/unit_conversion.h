#pragma once

// The dialog `frmMx_c`: the unit conversion y = Mx + c of a channel and its choice of a
// post-linearisation equation.

#include <array>
#include <string>
#include <string_view>

#include "base/trap.h"
#include "model/records.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "ui/pods/sub_dialog.h"

namespace kavorix {

struct UnitConversionScreen {
    std::string caption = "Unit Conversion";
    Label lblMValue{"&M:"};
    TextField txtMValue;
    Label lblCValue{"&C:"};
    TextField txtCValue;
    Label lblMx_cValue;
    std::array<OptionButton, 3> PostLinOp{{{"&None"}, {"Equation &1"}, {"Equation &2"}}};
    Button cmdOK{"OK", "Store the conversion"};
    Button cmdCancel{"Cancel", "Close without storing"};
    std::string focus;  // control that is to get the focus, if any

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblMValue", lblMValue);
        visit("txtMValue", txtMValue);
        visit("lblCValue", lblCValue);
        visit("txtCValue", txtCValue);
        visit("lblMx_cValue", lblMx_cValue);
        visit("PostLinOp", PostLinOp);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

// Leaving a field: `next` is the control that gets the focus; false = the focus returns.
class UnitConversion : public SubDialog {
  public:
    UnitConversion(PodConfig& pod, int slot, Dialogs& dialogs, FailureReporter& failures);

    UnitConversionScreen screen;

    bool txtMValue_LostFocus(std::string_view next);
    bool txtCValue_LostFocus(std::string_view next);
    // A text was changed by a key: the formula follows.
    void txtValue_Change();
    void PostLinOp_Click(int entry);
    void cmdOK_Click();

  private:
    void select_equation(int entry);
    std::int16_t selected_equation() const;
    bool check(const TextField& field, std::string_view letter, std::string_view next);
    bool complete();
    bool require(std::string_view message);

    PodConfig& pod_;
    ChannelConfig& channel_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
};

}  // namespace kavorix
