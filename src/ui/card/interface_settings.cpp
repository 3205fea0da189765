#include "ui/card/interface_settings.h"

#include <algorithm>
#include <array>

#include "base/numbers.h"
#include "base/program_name.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "model/log_intervals.h"

namespace kavorix {

namespace {

constexpr std::array<std::uint16_t, 9> Addresses = {0xC800, 0xCA00, 0xCB00, 0xCC00, 0xCD00,
                                                    0xCE00, 0xCF00, 0xD000, 0xDF00};

// "2 seconds", "1 minute", "1 hour".
std::string interval_text(std::int32_t interval_ms) {
    std::int32_t n = interval_ms / 1000;
    std::string unit = " second";
    if (n > 59) {
        n /= 60;
        unit = " minute";
    }
    if (n > 59) {
        n = 1;
        unit = " hour";
    }
    return std::to_string(n) + unit + (n > 1 ? "s" : "");
}

// The interval that keeps the number of polls per log entry; one that cannot be logged at when
// there is none.
std::int32_t derived_interval(std::int32_t old_interval_ms, std::int16_t old_rate_ms,
                              std::int16_t rate_ms) {
    if (old_rate_ms <= 0) return 0;
    return round_half_even(static_cast<double>(old_interval_ms) / old_rate_ms) * rate_ms;
}

}  // namespace

void InterfaceSettingsDialog::Form_Load() {
    trapped(with_.failures, "frmConfigAdap/Form_Load", [&] {
        const InterfaceSettings& card = configuration_.Interface;
        for (const std::uint16_t address : Addresses) {
            const auto code = static_cast<std::int16_t>(address);
            screen.cboBaseAddr.entries.push_back({hex16(code), code});
        }
        screen.cboBaseAddr.select_code(card.CardAddress);
        for (const std::int16_t rate : poll_rates())
            screen.cboUserPollRate.entries.push_back({std::to_string(rate), rate});
        screen.cboUserPollRate.select_code(card.PollRate);
        screen.chkPower.checked = card.PowerOn == 1;
    });
}

void InterfaceSettingsDialog::cmdOK_Click() {
    trapped(with_.failures, "frmConfigAdap/cmdOK_Click", [&] {
        InterfaceSettings& card = configuration_.Interface;
        const auto rate = static_cast<std::int16_t>(screen.cboUserPollRate.code(card.PollRate));
        const auto address = static_cast<std::int16_t>(screen.cboBaseAddr.code(card.CardAddress));
        if (address != card.CardAddress && excluded(address)) return;
        card.PowerOn = screen.chkPower.checked ? 1 : 0;
        const std::int32_t interval_ms = with_.run_time.Log.ScanIntervalChoice;
        follow_poll_rate(rate);
        if (address == card.CardAddress) {
            card.PollRate = rate;
            closed_ = true;
        } else if (may_connect() && save_changes()) {
            closed_ = connect(address, rate);
        }
        // The rate that it was to follow has not come about.
        if (!closed_) with_.run_time.Log.ScanIntervalChoice = interval_ms;
    });
}

// The operator is told when the settings file excludes the address.
bool InterfaceSettingsDialog::excluded(std::int16_t address) {
    const auto& addresses = with_.run_time.Link.ExcludeAddresses;
    if (std::find(addresses.begin(), addresses.end(), address) == addresses.end()) return false;
    with_.dialogs.beep();
    with_.dialogs.Msg_Box(
        "Cannot Connect:   Address " + hex16(address) + " is excluded in KAVORIX.INI",
        box::Exclamation, ProgramName);
    return true;
}

void InterfaceSettingsDialog::follow_poll_rate(std::int16_t rate) {
    std::int32_t& interval_ms = with_.run_time.Log.ScanIntervalChoice;
    const std::int16_t old_rate = configuration_.Interface.PollRate;
    if (rate == old_rate || interval_ms == 0) return;
    const std::int32_t derived_ms = derived_interval(interval_ms, old_rate, rate);
    if (is_log_interval(derived_ms)) {
        interval_ms = derived_ms;
        with_.dialogs.message_box(
            "Interval for logging scans has been changed to " + interval_text(derived_ms) + ".",
            box::Information, ProgramName);
    } else {
        with_.dialogs.message_box(
            "A new interval for logging scans can not be derived from the new Poll Rate.\n"
            "Log interval set to Poll Rate.",
            box::Exclamation, ProgramName);
        interval_ms = 0;
    }
}

// A connection starts the station's state anew: nothing may be using it.
bool InterfaceSettingsDialog::may_connect() {
    const RunTime& run_time = with_.run_time;
    const bool scanning_or_logging = run_time.Link.ContScanning || run_time.Log.running();
    if (!scanning_or_logging && run_time.Link.Sending == 0) return true;
    with_.dialogs.beep();
    with_.dialogs.Msg_Box(scanning_or_logging
                              ? "Cannot Connect:   Continuous Scanning/Logging in Progress"
                              : "Cannot Connect:   Transmission in Progress",
                          box::Exclamation, ProgramName);
    return false;
}

bool InterfaceSettingsDialog::save_changes() {
    if (configuration_.ConfigChanged != 1) return true;
    const Answer answer = with_.dialogs.Msg_Box(
        "Changes to the Configuration made but not Saved.\n\n"
        "Save Changes before Connecting to new Interface?",
        box::YesNoCancel | box::Question, ProgramName);
    // A cancelled file dialog leaves the changes unsaved without being reported as abandoned.
    if (answer == Answer::Yes) return with_.save_file(0) == 0 && configuration_.ConfigChanged == 0;
    if (answer == Answer::No) configuration_.ConfigChanged = 0;
    return answer == Answer::No;
}

bool InterfaceSettingsDialog::connect(std::int16_t address, std::int16_t rate) {
    const Sending sending(with_.run_time.Link);
    with_.dialogs.set_pointer(Pointer::Busy);
    const bool connected = with_.discovery.ConnectToCard(address, rate, 1) == 1;
    if (connected) {
        with_.message_line.DispMsg(" Polling Stopped", Severity::Progress);
        with_.discovery.identify_pods();
        configuration_.Interface.PollRate = rate;
    }
    with_.dialogs.set_pointer(Pointer::Default);
    return connected;
}

}  // namespace kavorix
