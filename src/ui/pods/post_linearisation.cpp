#include "ui/pods/post_linearisation.h"

namespace kavorix {

PostLinearisation::PostLinearisation(PodConfig& pod, Dialogs& dialogs, FailureReporter& failures)
    : PolynomialDialog(screen, "frmPost", dialogs, failures), pod_(pod) {
    show(pod.PostLinEquation[0].Coeff, pod.PostLinEquation[1].Coeff);
}

// An equation is on as soon as other coefficients than it had were accepted.
void PostLinearisation::store_equation(PostLinEquation& equation, const Polynomial6& coefficients) {
    if (equation.Coeff == coefficients) return;
    equation.Coeff = coefficients;
    equation.Enabled = TableOn;
    mark_changed();
}

void PostLinearisation::cmdOK_Click() {
    handler("cmdOK_Click", [&] {
        Polynomial6 first{};
        Polynomial6 second{};
        if (!read(first, second)) return;
        store_equation(pod_.PostLinEquation[0], first);
        store_equation(pod_.PostLinEquation[1], second);
        close();
    });
}

}  // namespace kavorix
