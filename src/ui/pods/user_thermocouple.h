#pragma once

// The dialog `frmCoeff`: the linearisation table of a user thermocouple.

#include "ui/pods/polynomial_dialog.h"

namespace kavorix {

struct UserThermocoupleScreen : PolynomialFields {
    std::string caption = "User Thermocouple Linearisation";
    Frame frmUserTherm;
    Label lblUserPolynomial{"User Polynomial"};
    Label lblInversePolynomial{"Inverse Polynomial"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("frmUserTherm", frmUserTherm);
        visit("lblUserPolynomial", lblUserPolynomial);
        visit("lblInversePolynomial", lblInversePolynomial);
        each_field(visit);
    }
};

class UserThermocouple : public PolynomialDialog {
  public:
    // `mode`: of the selected channel, 39 for table 1 or 30 for table 2.
    UserThermocouple(PodConfig& pod, std::int16_t mode, Dialogs& dialogs,
                     FailureReporter& failures);

    UserThermocoupleScreen screen;

    void cmdOK_Click();

  private:
    UserTherm& table_;
};

}  // namespace kavorix
