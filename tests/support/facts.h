#pragma once

// What a station knows of its pods, in words: "polled: 1 5 50; selected: 5; errors: 1", each part
// only when there is something to say.

#include <string>

#include "model/runtime.h"

namespace kavorix::test {

inline std::string facts(const RunTime& run_time) {
    std::string text;
    const auto say = [&](const char* what, const std::string& value) {
        if (!value.empty()) text += (text.empty() ? "" : "; ") + std::string(what) + value;
    };
    const auto pods = [](const auto& is_one) {
        std::string numbers;
        for (const Pod pod : all_pods())
            if (is_one(pod)) numbers += " " + std::to_string(pod.number());
        return numbers;
    };
    const auto in = [&](const PodSet& set) { return pods([&](Pod pod) { return set.has(pod); }); };
    const auto flagged = [&](bool PodStatus::*flag) {
        return pods([&](Pod pod) { return run_time.Status[pod].*flag; });
    };
    const LinkState& link = run_time.Link;
    const auto scan = [&](ScanState state) {
        return pods([&](Pod pod) { return link.ScanState[pod] == state; });
    };
    constexpr const char* Faults[] = {"", " transmit", " receive", " pod"};

    say("polled:", in(link.PollTable.InPollTable));
    say("selected:", in(link.ZavSelected));
    say("triggered:", in(link.Triggered));
    say("commanded:", scan(ScanState::ContinuousCommanded));
    say("scanning:", scan(ScanState::ContinuouslyScanning));
    say("continuous", link.ContScanning ? "!" : "");
    say("removed:", flagged(&PodStatus::Removed));
    say("out of order:", flagged(&PodStatus::OutOfOrder));
    say("in error:", flagged(&PodStatus::ErrorFlag));
    say("message:", run_time.Reports.Message.Text);
    say("fault:", Faults[static_cast<int>(run_time.Reports.LastFault)]);
    if (link.SessionErrorCount > 0) say("errors: ", std::to_string(link.SessionErrorCount));
    return text;
}

}  // namespace kavorix::test
