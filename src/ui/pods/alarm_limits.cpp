#include "ui/pods/alarm_limits.h"

#include "base/text.h"
#include "model/channel_rules.h"
#include "model/runtime.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

namespace {

std::string indexed(std::string_view name, int row) {
    return std::string(name) + "_" + std::to_string(row);
}

}  // namespace

AlarmLimits::AlarmLimits(PodConfig& pod, int slot, Dialogs& dialogs, FailureReporter& failures)
    : pod_(pod), slot_(slot), dialogs_(dialogs), failures_(failures) {
    screen.lblChannel.caption = "Channel Number: " + std::to_string(slot + 1);
    show_row(HighRow, pod.Channel[at(slot)].HighAlarm);
    show_row(LowRow, pod.Channel[at(slot)].LowAlarm);
}

void AlarmLimits::show_row(int row, const AlarmLimit& alarm) {
    const bool enabled = alarm.Enabled == 1;
    screen.chkEnableAlarm[at(row)].checked = enabled;
    screen.txtAlarmLimit[at(row)].text = enabled ? exact_text(alarm.Limit) : "";
    screen.txtHisteresisLimit[at(row)].text = enabled ? exact_text(alarm.Hysteresis) : "";
    enable_row(row);
}

void AlarmLimits::enable_row(int row) {
    const bool enabled = screen.chkEnableAlarm[at(row)].checked;
    screen.lblAlarmLimit[at(row)].enabled = enabled;
    screen.txtAlarmLimit[at(row)].enabled = enabled;
    screen.lblHisteresisLimit[at(row)].enabled = enabled;
    screen.txtHisteresisLimit[at(row)].enabled = enabled;
}

void AlarmLimits::chkEnableAlarm_Click(int row) {
    trapped(failures_, "frmAlarm/chkEnableAlarm_Click", [&] { enable_row(row); });
}

bool AlarmLimits::txtAlarmLimit_LostFocus(int row, std::string_view next) {
    return trapped(failures_, "frmAlarm/txtAlarmLimit_LostFocus", [&] {
        const std::string_view text = trim(screen.txtAlarmLimit[at(row)].text);
        if (next == CancelButton || text.empty() || single_of(text)) return true;
        return refuse(dialogs_, "Alarm Limit must be a number");
    });
}

bool AlarmLimits::txtHisteresisLimit_LostFocus(int row, std::string_view next) {
    return trapped(failures_, "frmAlarm/txtHisteresisLimit_LostFocus", [&] {
        const std::string_view text = trim(screen.txtHisteresisLimit[at(row)].text);
        if (next == CancelButton || text.empty()) return true;
        if (const auto value = single_of(text); value && *value >= 0) return true;
        return refuse(dialogs_, "Hysteresis Limit must be a positive number");
    });
}

bool AlarmLimits::require(TextField& field, std::string_view name, int row,
                          std::string_view message) {
    if (!trim(field.text).empty()) return true;
    screen.focus = indexed(name, row);
    return refuse(dialogs_, message);
}

bool AlarmLimits::complete(int row) {
    if (!screen.chkEnableAlarm[at(row)].checked) return true;
    const bool high = row == HighRow;
    return require(screen.txtAlarmLimit[at(row)], "txtAlarmLimit", row,
                   high ? "Hight Alarm limit Rrequired if alarm is enabled"
                        : "Low Alarm limit Rrequired if alarm is enabled") &&
           require(screen.txtHisteresisLimit[at(row)], "txtHisteresisLimit", row,
                   high ? "High Alarm Histeresis Limit required if alarm is enabled"
                        : "Low Alarm Histeresis Limit required if alarm is enabled") &&
           txtAlarmLimit_LostFocus(row, "cmdOK") && txtHisteresisLimit_LostFocus(row, "cmdOK");
}

AlarmLimits::Entered AlarmLimits::entered(int row) const {
    return {screen.chkEnableAlarm[at(row)].checked,
            single_of(trim(screen.txtAlarmLimit[at(row)].text)).value_or(0.0F),
            single_of(trim(screen.txtHisteresisLimit[at(row)].text)).value_or(0.0F)};
}

void AlarmLimits::cmdOK_Click() {
    trapped(failures_, "frmAlarm/cmdOK_Click", [&] {
        if (!complete(HighRow) || !complete(LowRow)) return;
        const Entered high = entered(HighRow);
        const Entered low = entered(LowRow);
        if (high.enabled && low.enabled && !(high.limit > low.limit)) {
            screen.focus = indexed("txtAlarmLimit", HighRow);
            refuse(dialogs_, "High Alarm must be greater than Low Alarm");
            return;
        }
        store_alarm(pod_.Channel[at(slot_)].HighAlarm, HighRow);
        store_alarm(pod_.Channel[at(slot_)].LowAlarm, LowRow);
        close();
    });
}

void AlarmLimits::store_alarm(AlarmLimit& alarm, int row) {
    const Entered now = entered(row);
    if (now.enabled) {
        store(alarm.Limit, now.limit);
        store(alarm.Hysteresis, now.hysteresis);
    }
    const bool was_enabled = alarm.Enabled == 1;
    store(alarm.Enabled, static_cast<std::int16_t>(now.enabled ? 1 : 0));
    if (was_enabled && !now.enabled) leave_groups(pod_, slot_);
}

}  // namespace kavorix
