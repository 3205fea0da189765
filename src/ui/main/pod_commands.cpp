#include "ui/main/pod_commands.h"

#include "base/program_name.h"

#include <array>

namespace kavorix {

namespace {

constexpr std::size_t DiscardedReplyLength = 10;

}  // namespace

PodSet PodCommands::send(std::string_view command_string) {
    return with_.command_link.send(command_string, link_.ZavSelected);
}

void PodCommands::send_and_await(std::string_view command_string) {
    const PodSet reached = send(command_string);
    link_.Triggered = link_.Triggered | (reached & link_.PollTable.InPollTable);
}

void PodCommands::halt() {
    const PodSet reached = send("HA;");
    // What the pods still had to give has been read while the halt was waited for.
    link_.Triggered = link_.Triggered - reached;
}

void PodCommands::transmit_config() {
    with_.transmission.transmit_config(link_.ZavSelected);
}

bool PodCommands::confirmed(std::string_view text) {
    return with_.dialogs.Msg_Box(text, box::OkCancel | box::Question, ProgramName) == Answer::Ok;
}

// The default configuration of the type that is connected.
void PodCommands::set_default_config(Pod pod, std::int16_t setModes) {
    default_ZAV_config(with_.configuration.ZavConfig[pod], GetZAVTypeCode(status_[pod].type_code()),
                       setModes);
}

void PodCommands::delete_configurations() {
    if (!confirmed("Configurations for the Selected ZAV(s) will be Deleted")) return;
    with_.message_line.DispMsg(" Configuration(s) Deleted", Severity::Progress);
    for (const Pod pod : link_.ZavSelected) set_default_config(pod, 0);
}

void PodCommands::default_cont_scan() {
    if (!confirmed("Selected ZAV(s) will be Set to:  'Default, Continuous Scan'")) return;
    for (const Pod pod : link_.ZavSelected) {
        set_default_config(pod, 1);
        with_.configuration.ZavConfig[pod].ContScan = 1;
        with_.configuration.ZavConfig[pod].Setup = 1;
    }
    for (const Pod pod : send("RE;SE;CO;")) with_.sent.note(pod);
    with_.configuration.ConfigChanged = 1;
}

void PodCommands::clear_errors() {
    with_.message_line.DispMsg("", Severity::Progress);
    for (const Pod pod : all_pods()) {
        const PodStatus& status = status_[pod];
        const bool shown_out_of_order = status.OutOfOrder && !link_.ZavSelected.has(pod);
        if (status.Removed || status.ErrorFlag || shown_out_of_order) clear_pod_error(pod);
    }
    with_.run_time.Reports.LastFault = Fault::None;
    with_.dialogs.message_box(
        "You will need to re-transmit the configuration to the ZAV(s) which had errors.",
        box::Information, "Clear ZAV Errors");
}

void PodCommands::clear_pod_error(Pod pod) {
    std::array<char, DiscardedReplyLength> discarded{};
    for (std::int16_t stream = 0; stream < StreamCount; ++stream)
        with_.driver.Zav_String(pod.number(), stream, discarded,
                                with_.configuration.Interface.CardHandle);
    PodStatus& status = status_[pod];
    status.ErrorFlag = status.Removed = status.OutOfOrder = status.DataArrived = false;
    link_.PollTable.InPollTable.add(pod);
    link_.ZavSelected.remove(pod);
    ++link_.Interruptions[pod];
    with_.sent.forget(pod);
}

void PodCommands::look_for_changes() {
    for (const Pod pod : all_pods())
        link_.NotTransmitted.set(pod, status_[pod].Found && with_.sent.differs(pod));
}

}  // namespace kavorix
