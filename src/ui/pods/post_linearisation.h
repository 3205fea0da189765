#pragma once

// The dialog `frmPost`: the two post-linearisation equations of a pod.

#include "ui/pods/polynomial_dialog.h"

namespace kavorix {

struct PostLinearisationScreen : PolynomialFields {
    std::string caption = "Post Linearisation Equations";
    Label lblHeading{"Enter coefficients for 5th order polynomials"};
    Frame fmeEquation1{"Equation 1"};
    Frame fmeEquation2{"Equation 2"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblHeading", lblHeading);
        visit("fmeEquation1", fmeEquation1);
        visit("fmeEquation2", fmeEquation2);
        each_field(visit);
    }
};

class PostLinearisation : public PolynomialDialog {
  public:
    PostLinearisation(PodConfig& pod, Dialogs& dialogs, FailureReporter& failures);

    PostLinearisationScreen screen;

    void cmdOK_Click();

  private:
    void store_equation(PostLinEquation& equation, const Polynomial6& coefficients);

    PodConfig& pod_;
};

}  // namespace kavorix
