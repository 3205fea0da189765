#include "ui/pods/copy_channel.h"

#include <algorithm>

#include "base/program_name.h"
#include "base/text.h"
#include "model/channel_rules.h"
#include "model/runtime.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

CopyChannel::CopyChannel(PodConfig& pod, int source, Dialogs& dialogs, FailureReporter& failures)
    : pod_(pod), source_(source), dialogs_(dialogs), failures_(failures) {
    screen.caption = "Copy Channel " + std::to_string(source + 1) + " to:-";
    for (int slot = 0; slot < static_cast<int>(screen.chkChannel.size()); ++slot) {
        CheckBox& box = screen.chkChannel[at(slot)];
        box.caption = std::to_string(slot + 1);
        box.visible = slot < pod.NumChannels;
        box.enabled = box.visible && can_copy_channel(pod, source, slot);
    }
}

void CopyChannel::tick_all(bool ticked) {
    for (CheckBox& box : screen.chkChannel)
        if (box.enabled) box.checked = ticked;
}

void CopyChannel::cmdSelectAll_Click() {
    trapped(failures_, "frmCopyChan/cmdSelectAll_Click", [&] { tick_all(true); });
}

void CopyChannel::cmdDeSelectAll_Click() {
    trapped(failures_, "frmCopyChan/cmdDeSelectAll_Click", [&] { tick_all(false); });
}

bool CopyChannel::any_ticked() const {
    return std::any_of(screen.chkChannel.begin(), screen.chkChannel.end(),
                       [](const CheckBox& box) { return box.checked; });
}

bool CopyChannel::confirmed() {
    return dialogs_.message_box("Overwrite Selected Channel(s) with Channel Configuration " +
                                    two_digits(source_ + 1) + "?",
                                box::YesNo | box::Question, ProgramName) == Answer::Yes;
}

void CopyChannel::cmdOK_Click() {
    trapped(failures_, "frmCopyChan/cmdOK_Click", [&] {
        if (!any_ticked()) {
            refuse(dialogs_,
                   "No Channel(s) Selected for Copying.\n\nSelect 1 or more Channels, or Cancel.");
            return;
        }
        if (confirmed()) {
            for (int slot = 0; slot < pod_.NumChannels; ++slot)
                if (screen.chkChannel[at(slot)].checked) copy_channel(pod_, source_, slot);
            mark_changed();
        }
        close();
    });
}

}  // namespace kavorix
