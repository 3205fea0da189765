#pragma once

// What the dialogs with two polynomials have in common: six fields each, checked when they are
// left, and a formula that follows them.

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "base/trap.h"
#include "model/records.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "ui/pods/polynomial.h"
#include "ui/pods/sub_dialog.h"

namespace kavorix {

using CoefficientFields = std::array<TextField, Coefficients>;

struct PolynomialFields {
    CoefficientFields txtCoeff;   // of the first polynomial
    CoefficientFields txtbCoeff;  // of the second
    Label lblapoly;
    Label lblbpoly;
    Button cmdOK{"OK", "Store the coefficients"};
    Button cmdCancel{"Cancel", "Close without storing"};

    template <class Visit>
    void each_field(Visit&& visit) {
        visit("txtCoeff", txtCoeff);
        visit("txtbCoeff", txtbCoeff);
        visit("lblapoly", lblapoly);
        visit("lblbpoly", lblbpoly);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

// Leaving a field: `next` is the control that gets the focus; false = the focus returns.
class PolynomialDialog : public SubDialog {
  public:
    bool txtCoeff_LostFocus(int index, std::string_view next);
    bool txtbCoeff_LostFocus(int index, std::string_view next);

    // A text was changed by a key: the formula follows as far as the texts are numbers.
    void txtCoeff_Change();
    void txtbCoeff_Change();

    // The polynomials as they stand in the fields; what is no number counts as 0.
    Coefficients6 first() const { return entered(fields_.txtCoeff); }
    Coefficients6 second() const { return entered(fields_.txtbCoeff); }

  protected:
    // `form`: name of the dialog in trace names.
    PolynomialDialog(PolynomialFields& fields, std::string form, Dialogs& dialogs,
                     FailureReporter& failures);
    ~PolynomialDialog() = default;

    void show(const Polynomial6& first, const Polynomial6& second);

    // Both polynomials as singles. False, after a message, when a field holds no number.
    bool read(Polynomial6& first, Polynomial6& second);

    template <class Action>
    auto handler(std::string_view name, Action&& action) {
        return trapped(failures_, form_ + "/" + std::string(name), std::forward<Action>(action));
    }

  private:
    bool check(const TextField& field, std::string_view next);
    bool read(const CoefficientFields& fields, Polynomial6& polynomial);
    static Coefficients6 entered(const CoefficientFields& fields);

    PolynomialFields& fields_;
    std::string form_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
};

}  // namespace kavorix
