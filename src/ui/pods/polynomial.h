#pragma once

// Polynomials of the 5th order as the dialogs show them.

#include <array>
#include <string>

#include "model/records.h"

namespace kavorix {

// Coefficient i multiplies x^i.
using Coefficients6 = std::array<double, Coefficients>;

// The value at x, in double precision.
double value_at(const Coefficients6& coefficients, double x);

// "1.5E3x^3+2x^1+0.5": the terms from the highest power down, those that are zero left out; empty
// when all are. Coefficients below 0.01 and from 1000 on are shown with an exponent and one to
// three decimals, others with up to four decimals.
std::string formula(const Coefficients6& coefficients);

// A coefficient as formula() shows it.
std::string coefficient_text(double value);

// The lowest and the highest value of a polynomial over `from`..`to`, a little apart when it is
// constant. Values beyond the range of a double are left out; 0 to 1 when all are.
struct PolynomialRange {
    double lowest = 0;
    double highest = 1;
};
PolynomialRange value_range(const Coefficients6& coefficients, double from, double to);

}  // namespace kavorix
