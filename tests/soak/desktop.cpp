#include "soak/desktop.h"

#include <algorithm>

#include "logging/csv_dialog.h"
#include "logging/log_setup.h"
#include "ui/card/interface_settings.h"
#include "ui/pods/alarm_groups.h"
#include "ui/pods/alarm_limits.h"
#include "ui/pods/copy_channel.h"
#include "ui/pods/post_linearisation.h"
#include "ui/pods/unit_conversion.h"
#include "ui/pods/user_thermocouple.h"

namespace kavorix::soak {

namespace {

constexpr int LongestBox_ms = 2000;

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

}  // namespace

// ---- boxes and files ----

Answer Desktop::message_box(std::string_view text, int flags, std::string_view) {
    if (contains(text, "will stop")) {
        hands_.rules.known.serious = true;
        hands_.tell("[" + std::string(text) + "]");
        if (!hands_.disk.struck())
            hands_.rules.broken(Rule::NothingSeriousHappens, std::string(text));
        return Answer::Ok;
    }
    // A box of the poll cycle holds it up for as long as it is open.
    const bool in_tick = contains(text, "Stream 1: Detected");
    ++hands_.modal;
    if (hands_.may_pass_time && !in_tick && hands_.rules.world.loop && hands_.dice->chance(30))
        hands_.rules.world.loop->run_for(hands_.dice->number(1, LongestBox_ms));
    --hands_.modal;
    return answer(text, flags);
}

Answer Desktop::Msg_Box(std::string_view text, int flags, std::string_view title) {
    ++hands_.boxes;
    if ((flags & box::ButtonMask) == box::Ok) return Answer::Ok;
    return message_box(text, flags, title);
}

Answer Desktop::answer(std::string_view text, int flags) {
    Dice& dice = *hands_.dice;
    const bool wanted = hands_.leaving || !contains(text, "Exit");
    const bool yes = wanted && dice.chance(80);
    switch (flags & box::ButtonMask) {
        case box::Ok:
            return Answer::Ok;
        case box::OkCancel:
            return yes ? Answer::Ok : Answer::Cancel;
        case box::YesNo:
            return yes ? Answer::Yes : Answer::No;
        default:
            return dice.chance(15) ? Answer::Cancel : dice.chance(50) ? Answer::Yes : Answer::No;
    }
}

std::vector<std::string> Desktop::files_like(const std::string& extension) const {
    std::vector<std::string> found;
    for (const std::string& path : hands_.rules.world.files->paths())
        if (path.ends_with("." + extension)) found.push_back(path);
    return found;
}

std::optional<std::string> Desktop::choose_file_to_open(const FileRequest& request) {
    if (!hands_.open_next.empty()) return std::exchange(hands_.open_next, {});
    const auto files = files_like(request.default_extension);
    if (files.empty() || hands_.dice->chance(5)) return std::nullopt;
    return hands_.dice->pick(files);
}

std::optional<std::string> Desktop::choose_file_to_save(const FileRequest& request) {
    constexpr int Names = 4;
    Dice& dice = *hands_.dice;
    if (dice.chance(5)) return std::nullopt;
    if (dice.chance(3)) return "/data/notes.txt";
    const bool config = request.default_extension == "CFG";
    return "/data/" + std::string(config ? "config" : "log") + std::to_string(dice.below(Names)) +
           "." + request.default_extension;
}

// ---- windows of the main menu ----

void OperatorWindows::show_interface_settings(InterfaceSettingsDialog& dialog) {
    const Modal modal(hands_);
    auto& screen = dialog.screen;
    for (int tries = 0; tries < 3 && !dialog.closed(); ++tries) {
        if (dice().chance(70))
            screen.cboUserPollRate.index =
                dice().below(static_cast<int>(screen.cboUserPollRate.entries.size()));
        if (dice().chance(30))
            screen.cboBaseAddr.select_code(dice().pick(hands_.rules.world.cards->addresses()));
        if (dice().chance(5))
            screen.cboBaseAddr.index =
                dice().below(static_cast<int>(screen.cboBaseAddr.entries.size()));
        if (dice().chance(20)) screen.chkPower.checked = !screen.chkPower.checked;
        hands_.tell("rate " + std::to_string(screen.cboUserPollRate.code()) + " card " +
                    std::to_string(screen.cboBaseAddr.code()));
        if (dice().chance(15)) break;
        hands_.witness.begin_query();
        dialog.cmdOK_Click();
        hands_.witness.end_query();
    }
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_status(StatusView& view) {
    hands_.witness.end_query();
    view.cmdOK_Click();
}

void OperatorWindows::show_tx_command(TxCommandDialog& dialog) {
    static const std::vector<std::string> Commands = {
        "ME1",    "me5;ME6;ME7", "IN3",  "ST",   "RE", "SE",      "CO",    "TR",  "HA",
        "SP'2.5", "HL1'-0.5'",   ";;",   "CL19", "XX", "ME99",    "ME",    "IN",  "EV1",
        "AR0",    "CM110;CR10",  "ME32", "ME0",  "?",  "'1E400'", "  ME2", "ME2A"};
    const Modal modal(hands_);
    for (int count = dice().number(1, 3); count > 0; --count) {
        std::string text = dice().pick(Commands);
        if (dice().chance(10)) text[0] = static_cast<char>(dice().number(1, 255));
        dialog.screen.txtTxCmd.text = text;
        dialog.txtTxCmd_Change();
        hands_.tell("\"" + text + "\"");
        dialog.cmdSend_Click();
    }
    dialog.history_older();
    dialog.history_newer();
    dialog.cmdCancel_Click();
}

void OperatorWindows::show_select_channels(SelectChannelsDialog& dialog) {
    const Modal modal(hands_);
    if (dice().chance(10)) dialog.cmdAll_Click();
    if (!dialog.screen.cboZav.entries.empty() && dice().chance(30))
        dialog.cboZav_Click(dice().below(static_cast<int>(dialog.screen.cboZav.entries.size())));
    for (int channel = 0; channel < MaxChannels; ++channel) {
        CheckBox& box = dialog.screen.chkChan[at(channel)];
        if (!box.visible || !dice().chance(20)) continue;
        box.checked = !box.checked;
        dialog.chkChan_Click(channel);
    }
    if (dialog.screen.cmdOK.enabled && dice().chance(85)) dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_log_setup(LogSetup& rules) {
    const Modal modal(hands_);
    const bool scans = rules.screen.caption == "Scan Log File";
    rules.cmdFile_Click();
    if (dice().chance(5)) rules.cmdClear_Click();
    rules.screen.txtFileComment.text = dice().chance(50) ? "Soak \xA9 run" : "";
    if (scans && dice().chance(60))
        rules.screen.cboInterval.index =
            dice().below(static_cast<int>(rules.screen.cboInterval.entries.size()));
    if (dice().chance(10)) return rules.cmdCancel_Click();
    rules.cmdOK_Click();
    for (KnownPod& pod : hands_.rules.known.pods)
        (scans ? pod.log_scans : pod.log_events) = pod.selected;
    const LogState& log = hands_.station().run_time.Log;
    hands_.tell(scans ? log.ScanFileName + " every " + std::to_string(log.ScanIntervalChoice)
                      : log.EventFileName);
}

void OperatorWindows::show_csv_conversion(CsvDialog& rules) {
    const Modal modal(hands_);
    rules.cmdOpen_Click();
    const std::string path = rules.screen.lblFile.caption;
    hands_.tell(path);
    bool all = true;
    rules.cmdAddAll_Click();
    if (dice().chance(30)) {
        rules.lstConvert_Click(dice().below(3));
        rules.cmdRemove_Click();
        rules.cmdDeSelectAll_Click();
        all = false;
    }
    all = all && rules.screen.lstFile.entries.empty();
    rules.cmdConvert_Click();
    const bool written = contains(rules.screen.lblStatus.caption, "rows written");
    if (written && !hands_.disk.struck() && hands_.rules.known.logs.contains(path))
        hands_.rules.check_conversion(path, all);
    rules.cmdClose_Click();
}

void OperatorWindows::show_graph_setup(GraphSetup& rules) {
    const Modal modal(hands_);
    auto& screen = rules.screen;
    if (!screen.cboZAV.entries.empty())
        rules.cboZAV_Click(dice().below(static_cast<int>(screen.cboZAV.entries.size())));
    for (int i = 0; i < 4; ++i) {
        const int channel = dice().below(MaxChannels);
        if (!screen.chkChan[at(channel)].visible) continue;
        screen.chkChan[at(channel)].checked = !screen.chkChan[at(channel)].checked;
        rules.chkChan_Click(channel);
    }
    if (dice().chance(30)) rules.optBar_Click();
    if (dice().chance(30)) rules.optTrend_Click();
    rules.spinHours(dice().number(-3, 3));
    rules.spinMinutes(dice().number(-3, 3));
    if (dice().chance(90)) rules.cmdOK_Click();
}

// ---- the pod configuration dialog ----

std::string OperatorWindows::number() {
    constexpr std::array Special = {"", "x", "-1", "1E39", "0", "1,000", " 7 ", "300", "1E-30"};
    if (dice().chance(10)) return dice().pick(Special);
    return std::to_string(dice().number(-1000, 1000)) + "." + std::to_string(dice().below(100));
}

void OperatorWindows::choose(ListBox& list, const std::function<void()>& handler) {
    if (!list.enabled || list.entries.empty()) return;
    list.index = dice().below(static_cast<int>(list.entries.size()));
    handler();
}

void OperatorWindows::type(TextField& field, const std::string& text,
                           const std::function<bool()>& leave) {
    if (!field.enabled) return;
    const std::string before = field.text;
    field.text = text;
    if (leave()) return;
    field.text = before.empty() ? "20" : before;
    if (leave()) return;
    field.text = "20";
    leave();
}

void OperatorWindows::change_pod(PodSetup& d) {
    auto& s = d.screen;
    const auto flip = [&](CheckBox& box, void (PodSetup::*handler)()) {
        if (!box.enabled) return;
        box.checked = !box.checked;
        (d.*handler)();
    };
    switch (dice().below(14)) {
        case 0:
            return choose(s.cboScanPeriod, [&] { d.cboScanPeriod_Click(); });
        case 1:
            return flip(s.chkContScan, &PodSetup::chkContScan_Click);
        case 2:
            return flip(s.chkSetup, &PodSetup::chkSetup_Click);
        case 3:
            return choose(s.cboIntegration, [&] { d.cboIntegration_Click(); });
        case 4:
            return type(s.txtLabel, "Label " + std::to_string(dice().below(99)),
                        [&] { return d.txtLabel_LostFocus("cmdOK"); });
        case 5:
            return type(s.txtUnit, "u\xB2", [&] { return d.txtUnit_LostFocus("cmdOK"); });
        case 6:
            return s.cmdMx_c.enabled ? d.cmdMx_c_Click() : void();
        case 7:
            return s.cmdAlarm.enabled ? d.cmdAlarm_Click() : void();
        case 8:
            return s.cmdCopyChan.enabled ? d.cmdCopyChan_Click() : void();
        case 9:
            hands_.witness.direct(true);
            hands_.may_pass_time = false;
            if (s.cmdInitialise.enabled) d.cmdInitialise_Click();
            hands_.may_pass_time = true;
            hands_.witness.direct(false);
            return;
        case 10:
            return choose(s.cboRange, [&] { d.cboRange_Click(); });
        case 11:
            return s.cmdUndo.enabled ? d.cmdUndo_Click() : void();
        default:
            choose(s.cboChannel, [&] { d.cboChannel_Click(); });
            return choose(s.cboChanMode, [&] { d.cboChanMode_Click(); });
    }
}

void OperatorWindows::show_pod_setup(PodSetup& dialog) {
    const Modal modal(hands_);
    if (dialog.screen.cboZAVNo.enabled)
        choose(dialog.screen.cboZAVNo, [&] { dialog.cboZAVNo_Click(); });
    if (dice().chance(20)) dialog.cmdDefault_Click();
    for (int count = dice().number(1, 12); count > 0; --count) change_pod(dialog);
    if (dice().chance(15)) dialog.unload_request();
    for (int tries = 0; tries < 3 && !dialog.closed(); ++tries) dialog.cmdOK_Click();
    for (int tries = 0; tries < 20 && !dialog.closed(); ++tries) dialog.unload_request();
    hands_.tell(dialog.closed() ? "closed" : "left open");
}

void OperatorWindows::show_copy_channel(CopyChannel& dialog) {
    for (CheckBox& box : dialog.screen.chkChannel) box.checked = box.enabled && dice().chance(15);
    dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_unit_conversion(UnitConversion& dialog) {
    dialog.screen.txtMValue.text = number();
    dialog.screen.txtCValue.text = number();
    dialog.PostLinOp_Click(dice().below(3));
    dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_post_linearisation(PostLinearisation& dialog) {
    for (TextField& field : dialog.screen.txtCoeff) field.text = number();
    dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_user_thermocouple(UserThermocouple& dialog) {
    for (TextField& field : dialog.screen.txtCoeff) field.text = number();
    dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_alarm_limits(AlarmLimits& dialog) {
    for (const int row : {HighRow, LowRow}) {
        dialog.screen.chkEnableAlarm[at(row)].checked = dice().chance(60);
        dialog.chkEnableAlarm_Click(row);
        dialog.screen.txtAlarmLimit[at(row)].text = number();
        dialog.screen.txtHisteresisLimit[at(row)].text = number();
    }
    dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

void OperatorWindows::show_alarm_groups(AlarmGroups& dialog) {
    dialog.cmdSelectAll_Click();
    dialog.cmdOK_Click();
    if (!dialog.closed()) dialog.cmdCancel_Click();
}

}  // namespace kavorix::soak
