#pragma once

// The modal windows around the interface card and the link: `frmConfigAdap`, `frmViewStat`,
// `frmTxCmd` and `frmSelChan`. Each call shows one over another window and returns when its rules
// say that it is closed; events flow.

#include "ui/interface_settings.h"
#include "ui/qt/mirrors.h"
#include "ui/select_channels.h"
#include "ui/status_view.h"
#include "ui/tx_command.h"

class QWidget;

namespace kavorix {

void run_form(InterfaceSettingsDialog& rules, Mirrors& mirrors, QWidget* over);
void run_form(StatusView& rules, Mirrors& mirrors, QWidget* over);
void run_form(TxCommandDialog& rules, Mirrors& mirrors, QWidget* over);
void run_form(SelectChannelsDialog& rules, Mirrors& mirrors, QWidget* over);

}  // namespace kavorix
