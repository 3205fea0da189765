// The checks of the text fields of the pod configuration dialog.

#include <cmath>

#include "base/numbers.h"
#include "base/text.h"
#include "ui/pods/field_checks.h"
#include "ui/pods/pod_setup.h"

namespace kavorix {

namespace {

// Range of the external reference temperature in whole degrees, both ends included.
struct TemperatureRange {
    double lowest;
    double highest;
    std::string_view too_low;
    std::string_view too_high;
};
constexpr TemperatureRange Fahrenheit = {
    -22, 177, "External temperature too low. For Fahrenheit must be -22 or above.",
    "External temperature too high. For Fahrenheit must be 177 or below."};
constexpr TemperatureRange Centigrade = {
    -30, 80, "External temperature too low. For Centigrade must be -30 or above.",
    "External temperature too high. For Centigrade must be 80 or below."};

}  // namespace

void PodSetup::optAmbTemp_Click() {
    handler("optAmbTemp_Click", [&] {
        if (!screen.optAmbTemp.enabled) return;
        screen.optAmbTemp.selected = true;
        screen.optExtTemp.selected = false;
        store(rules_.pod().AmbTemp, std::int16_t{1});
        screen.txtExtTemp.text.clear();
        screen.txtExtTemp.enabled = false;
    });
}

void PodSetup::optExtTemp_Click() {
    handler("optExtTemp_Click", [&] {
        if (!screen.optExtTemp.enabled) return;
        screen.optAmbTemp.selected = false;
        screen.optExtTemp.selected = true;
        store(rules_.pod().AmbTemp, std::int16_t{0});
        screen.txtExtTemp.enabled = true;
        screen.focus = "txtExtTemp";
    });
}

bool PodSetup::leave_text(TextField& field, std::string& stored, std::size_t longest,
                          std::string_view too_long) {
    if (!field.enabled) return true;
    const std::string text(trim(field.text));
    if (text.size() > longest) return refuse(with_.dialogs, too_long);
    store(stored, text);
    field.text = text;
    return true;
}

bool PodSetup::txtLabel_LostFocus(std::string_view) {
    return handler("txtLabel_LostFocus", [&] {
        return leave_text(screen.txtLabel, rules_.channel().Label, MaxLabel,
                          "Label too long: Max 15 characters");
    });
}

bool PodSetup::txtUnit_LostFocus(std::string_view) {
    return handler("txtUnit_LostFocus", [&] {
        return leave_text(screen.txtUnit, rules_.channel().Unit, MaxUnit,
                          "Unit too long - Max 5 Characters");
    });
}

std::string_view PodSetup::limit_broken(double degrees) const {
    const TemperatureRange& range = rules_.pod().DegF == 1 ? Fahrenheit : Centigrade;
    if (degrees < range.lowest) return range.too_low;
    if (degrees > range.highest) return range.too_high;
    return {};
}

bool PodSetup::txtExtTemp_LostFocus(std::string_view next) {
    return handler("txtExtTemp_LostFocus", [&] {
        TextField& field = screen.txtExtTemp;
        if (!field.enabled || next == "optAmbTemp" || next == CancelButton) return true;
        if (!is_numeric(field.text))
            return refuse(with_.dialogs, "External temperature must be a numeric value.");
        const double degrees = std::round(numeric_value(field.text));
        if (const auto message = limit_broken(degrees); !message.empty())
            return refuse(with_.dialogs, message);
        float& stored = rules_.pod().ExtTemp;
        field.text = rounded_text(degrees);
        // A stored temperature with decimals is left alone while its whole degrees stand here.
        if (field.text != rounded_text(static_cast<double>(stored)))
            store(stored, static_cast<float>(degrees));
        return true;
    });
}

bool PodSetup::txtSWWatchTime_LostFocus(std::string_view) {
    return handler("txtSWWatchTime_LostFocus", [&] {
        TextField& field = screen.txtSWWatchTime;
        if (!field.enabled) return true;
        if (!is_numeric(field.text))
            return refuse(with_.dialogs, "Software Watch-Dog Timeout must be a number");
        const double time = std::round(numeric_value(field.text));
        if (time < 1)
            return refuse(with_.dialogs,
                          "Software Watch-Dog Timeout value too low: Range = 1 or above");
        if (time > 255)
            return refuse(with_.dialogs,
                          "Software Watch-Dog Timeout value too high: Range = 255 or less");
        store(rules_.pod().SWWatchTime, static_cast<std::int16_t>(time));
        field.text = rounded_text(time);
        return true;
    });
}

bool PodSetup::leave_strain_field(const StrainField& strain) {
    if (!strain.field.enabled) return true;
    const std::string_view text = trim(strain.field.text);
    if (text.empty()) return refuse(with_.dialogs, strain.missing);
    const auto entered = single_of(text);
    if (!entered) return refuse(with_.dialogs, strain.not_a_number);
    const std::string shown = six_decimals(*entered);
    // What the pod measured has more decimals than are shown; they stay until another value is
    // entered.
    if (shown != six_decimals(strain.value)) store(strain.value, *single_of(shown));
    strain.field.text = shown;
    return true;
}

bool PodSetup::txtGaugeFactor_LostFocus(std::string_view) {
    return handler("txtGaugeFactor_LostFocus", [&] {
        return leave_strain_field(
            {screen.txtGaugeFactor,
             rules_.pod().Strain[at(rules_.state.selected_channel)].GaugeFactor,
             "Gauge Factor must be a entered", "Gauge Factor must be a number"});
    });
}

bool PodSetup::txtOffset_LostFocus(std::string_view) {
    return handler("txtOffset_LostFocus", [&] {
        return leave_strain_field({screen.txtOffset,
                                   rules_.pod().Strain[at(rules_.state.selected_channel)].Offset,
                                   "Offset must be entered", "Offset must be a number"});
    });
}

bool PodSetup::txtInitialVolt_LostFocus(std::string_view) {
    return handler("txtInitialVolt_LostFocus", [&] {
        return leave_strain_field(
            {screen.txtInitialVolt,
             rules_.pod().Strain[at(rules_.state.selected_channel)].InitialVolt,
             "Initial Volt must be a entered", "Initial Volt must be a number"});
    });
}

}  // namespace kavorix
