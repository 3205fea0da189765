#include "ui/pods/polynomial_dialog.h"

#include "base/numbers.h"
#include "base/text.h"
#include "model/runtime.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

PolynomialDialog::PolynomialDialog(PolynomialFields& fields, std::string form, Dialogs& dialogs,
                                   FailureReporter& failures)
    : fields_(fields), form_(std::move(form)), dialogs_(dialogs), failures_(failures) {}

void PolynomialDialog::show(const Polynomial6& first, const Polynomial6& second) {
    for (int i = 0; i < Coefficients; ++i) {
        fields_.txtCoeff[at(i)].text = exact_text(first[at(i)]);
        fields_.txtbCoeff[at(i)].text = exact_text(second[at(i)]);
    }
    txtCoeff_Change();
    txtbCoeff_Change();
}

Coefficients6 PolynomialDialog::entered(const CoefficientFields& fields) {
    Coefficients6 values{};
    for (int i = 0; i < Coefficients; ++i) values[at(i)] = numeric_value(fields[at(i)].text);
    return values;
}

bool PolynomialDialog::check(const TextField& field, std::string_view next) {
    if (next == CancelButton || single_of(field.text)) return true;
    return refuse(dialogs_, "Coefficient must be a number");
}

bool PolynomialDialog::txtCoeff_LostFocus(int index, std::string_view next) {
    return handler("txtCoeff_LostFocus", [&] {
        if (!check(fields_.txtCoeff[at(index)], next)) return false;
        txtCoeff_Change();
        return true;
    });
}

bool PolynomialDialog::txtbCoeff_LostFocus(int index, std::string_view next) {
    return handler("txtbCoeff_LostFocus", [&] {
        if (!check(fields_.txtbCoeff[at(index)], next)) return false;
        txtbCoeff_Change();
        return true;
    });
}

void PolynomialDialog::txtCoeff_Change() {
    fields_.lblapoly.caption = formula(first());
}

void PolynomialDialog::txtbCoeff_Change() {
    fields_.lblbpoly.caption = formula(second());
}

bool PolynomialDialog::read(const CoefficientFields& fields, Polynomial6& polynomial) {
    for (int i = 0; i < Coefficients; ++i) {
        const auto value = single_of(trim(fields[at(i)].text));
        if (!value) return refuse(dialogs_, "Coefficient must be a number");
        polynomial[at(i)] = *value;
    }
    return true;
}

bool PolynomialDialog::read(Polynomial6& first, Polynomial6& second) {
    return read(fields_.txtCoeff, first) && read(fields_.txtbCoeff, second);
}

}  // namespace kavorix
