#pragma once

// The modal windows around the interface card and the link: `frmConfigAdap`, `frmViewStat`,
// `frmTxCmd` and `frmSelChan`. Each call shows one over another window and returns when its rules
// say that it is closed; events flow.

#include "ui/card/interface_settings.h"
#include "ui/card/status_view.h"
#include "ui/card/tx_command.h"
#include "ui/qt/kit/mirrors.h"
#include "ui/streams/select_channels.h"

class QWidget;

namespace kavorix {

void run_form(InterfaceSettingsDialog& rules, Mirrors& mirrors, QWidget* over);
void run_form(StatusView& rules, Mirrors& mirrors, QWidget* over);
void run_form(TxCommandDialog& rules, Mirrors& mirrors, QWidget* over);
void run_form(SelectChannelsDialog& rules, Mirrors& mirrors, QWidget* over);

}  // namespace kavorix
