#include "ui/pods/user_thermocouple.h"

#include "model/catalogue.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

int table_number(std::int16_t mode) {
    return mode == UserTable2Mode ? 2 : 1;
}

}  // namespace

UserThermocouple::UserThermocouple(PodConfig& pod, std::int16_t mode, Dialogs& dialogs,
                                   FailureReporter& failures)
    : PolynomialDialog(screen, "frmCoeff", dialogs, failures),
      table_(pod.UserTherm[at(table_number(mode) - 1)]) {
    screen.frmUserTherm.caption = "User Thermocouple: " + std::to_string(table_number(mode));
    show(table_.Polynomial, table_.InversePoly);
}

// The table is on as soon as other coefficients than it had were accepted.
void UserThermocouple::cmdOK_Click() {
    handler("cmdOK_Click", [&] {
        UserTherm entered = table_;
        if (!read(entered.Polynomial, entered.InversePoly)) return;
        if (entered != table_) {
            entered.Enabled = TableOn;
            store(table_, entered);
        }
        close();
    });
}

}  // namespace kavorix
