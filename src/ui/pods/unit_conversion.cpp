#include "ui/pods/unit_conversion.h"

#include "base/text.h"
#include "model/catalogue.h"
#include "model/runtime.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

UnitConversion::UnitConversion(PodConfig& pod, int slot, Dialogs& dialogs,
                               FailureReporter& failures)
    : pod_(pod), channel_(pod.Channel[at(slot)]), dialogs_(dialogs), failures_(failures) {
    screen.txtMValue.text = exact_text(channel_.MValue);
    screen.txtCValue.text = exact_text(channel_.CValue);
    screen.lblMx_cValue.caption = screen.txtMValue.text + "x+" + screen.txtCValue.text;
    const bool universal = is_universal_type(pod.TypeCode);
    for (OptionButton& option : screen.PostLinOp)
        option.enabled = supports_linearisation(pod.TypeCode, slot);
    if (universal) select_equation(channel_.PostLin);
}

void UnitConversion::select_equation(int entry) {
    for (int i = 0; i < static_cast<int>(screen.PostLinOp.size()); ++i)
        screen.PostLinOp[at(i)].selected = i == entry;
}

std::int16_t UnitConversion::selected_equation() const {
    for (std::int16_t i = 1; i < static_cast<std::int16_t>(screen.PostLinOp.size()); ++i)
        if (screen.PostLinOp[at(i)].selected) return i;
    return 0;
}

void UnitConversion::PostLinOp_Click(int entry) {
    trapped(failures_, "frmMx_c/PostLinOp_Click", [&] {
        if (!screen.PostLinOp[at(entry)].enabled) return;
        const bool defined = entry == 0 || pod_.PostLinEquation[at(entry - 1)].Enabled == TableOn;
        select_equation(defined ? entry : 0);
    });
}

bool UnitConversion::txtMValue_LostFocus(std::string_view next) {
    return trapped(failures_, "frmMx_c/txtMValue_LostFocus",
                   [&] { return check(screen.txtMValue, "M", next); });
}

bool UnitConversion::txtCValue_LostFocus(std::string_view next) {
    return trapped(failures_, "frmMx_c/txtCValue_LostFocus",
                   [&] { return check(screen.txtCValue, "C", next); });
}

bool UnitConversion::check(const TextField& field, std::string_view letter, std::string_view next) {
    if (next == CancelButton) return true;
    const std::string_view text = trim(field.text);
    if (!text.empty() && !single_of(text))
        return refuse(dialogs_, "Value Entered for '" + std::string(letter) + "' must be a Number");
    txtValue_Change();
    return true;
}

void UnitConversion::txtValue_Change() {
    const std::string m(trim(screen.txtMValue.text));
    const std::string c(trim(screen.txtCValue.text));
    screen.lblMx_cValue.caption = m.empty() || c.empty() ? "" : m + "x + " + c;
}

bool UnitConversion::require(std::string_view message) {
    screen.focus = "txtMValue";
    return refuse(dialogs_, message);
}

// Both values or none.
bool UnitConversion::complete() {
    const bool m = !trim(screen.txtMValue.text).empty();
    const bool c = !trim(screen.txtCValue.text).empty();
    if (m && !c) return require("'C' Value Required if 'M' has been Specified");
    if (c && !m) return require("'M' Value Required if 'C' has been Specified");
    return check(screen.txtMValue, "M", "cmdOK") && check(screen.txtCValue, "C", "cmdOK");
}

void UnitConversion::cmdOK_Click() {
    trapped(failures_, "frmMx_c/cmdOK_Click", [&] {
        if (!complete()) return;
        // Without values the conversion is the identity.
        store(channel_.MValue, single_of(trim(screen.txtMValue.text)).value_or(1.0F));
        store(channel_.CValue, single_of(trim(screen.txtCValue.text)).value_or(0.0F));
        store(channel_.PostLin, selected_equation());
        close();
    });
}

}  // namespace kavorix
