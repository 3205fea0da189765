#include "link/link_errors.h"

#include <algorithm>
#include <string>

#include "base/text.h"

namespace kavorix {

void LinkErrors::RxTxErr(Pod pod, LinkFault kind, AfterFault after) {
    if (kind != LinkFault::Other) tell(pod, kind);
    PodStatus& status = status_[pod];
    if (after == AfterFault::Removed) {
        status.Removed = true;
        link_.PollTable.InPollTable.remove(pod);
        link_.ScanState[pod] = ScanState::Idle;
    }
    ++link_.ErrorCount;
    ++link_.SessionErrorCount;
    status.ErrorFlag = true;
    ++link_.Interruptions[pod];
    link_.ZavSelected.remove(pod);
    link_.Triggered.remove(pod);
    update_cont_scanning(link_);
}

void LinkErrors::tell(Pod pod, LinkFault kind) {
    const bool transmit = kind == LinkFault::Transmit;
    const std::string text =
        std::string(transmit ? " ERROR! - Transmit Error (ZAV:" : " ERROR! - Receive Error (ZAV:") +
        two_digits(pod.number());
    message_line_.DispMsg(text + ")", Severity::Error);
    error_log_.write_line(text + "  Interface:" + hex16(card_.CardAddress) + ")");
    reports_.LastFault = transmit ? Fault::Transmit : Fault::Receive;
}

void update_cont_scanning(LinkState& link) {
    link.ContScanning = std::find(link.ScanState.begin(), link.ScanState.end(),
                                  ScanState::ContinuouslyScanning) != link.ScanState.end();
}

PodSet StandingPods::now() const {
    PodSet standing;
    for (const Pod pod : pods_)
        if (has(pod)) standing.add(pod);
    return standing;
}

}  // namespace kavorix
