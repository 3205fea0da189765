#include "link/discovery.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/program_name.h"
#include "base/text.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

constexpr int ReplyTime_ms = 500;  // a pod's share of the wait for status replies
constexpr int ReplyRetry_ms = 5;   // pause after a round in which no reply came
constexpr std::int16_t PollTick_ms = 100;
constexpr std::int16_t StartPollRate_ms = 1000;

// Channels of a pod by the type code of its status reply.
std::int16_t channels_of(std::string_view type_code) {
    return type_code == "7S" ? 10 : type_code == "8S" ? 32 : 20;
}

}  // namespace

Discovery::Discovery(const Surroundings& surroundings)
    : with_(surroundings), link_(with_.run_time.Link), status_(with_.run_time.Status) {
    tmrTimeOut_ = with_.loop.make_timer([this] { link_.RepliesOutstanding = 0; });
}

void Discovery::Form_Load(Files& files, const std::string& ini_path) {
    trapped(with_.failures, "frmMain/Form_Load", [&] {
        with_.dialogs.set_pointer(Pointer::Busy);
        const auto excluded =
            parse_exclude_addresses(GetINIData(files, ini_path, "Exclude Addresses", "Address"));
        if (!excluded) {
            with_.dialogs.message_box("Error reading 'KAVORIX.INI' file. *** Exiting *** ",
                                      box::Exclamation, ProgramName);
            throw ProgramEnded{1};
        }
        link_.ExcludeAddresses = *excluded;
        with_.error_log.open();
        with_.driver.Zav_DLLVersion(link_.DllVersion);
        with_.configuration.Interface.PollRate = StartPollRate_ms;
        link_.PollTick = PollTick_ms;

        std::int16_t address = FirstCardAddress;
        if (ConnectToCard(address, link_.PollTick, 0) == 1) identify_pods();
        with_.dialogs.set_pointer(Pointer::Default);
    });
}

void Discovery::identify_pods() {
    GetStatus(0, link_.PollTable.InPollTable);
    DispZAVS();
    link_.ZavSelected.clear();
}

std::int16_t Discovery::ConnectToCard(std::int16_t& address, std::int16_t pollRate,
                                      std::int16_t single) {
    return trapped(with_.failures, "KAVORIX/ConnectToCard", [&]() -> std::int16_t {
        const auto& excluded = link_.ExcludeAddresses;
        with_.dialogs.show_wait_message(
            " Searching for Interface Card and Connected ZAV(s).   Please wait...");
        bool found = false;
        while (address <= LastCardAddress) {
            if (std::find(excluded.begin(), excluded.end(), address) == excluded.end()) {
                found = LocateCard(address) == 1;
                if (found || single != 0) break;
            }
            address = static_cast<std::int16_t>(address + CardAddressStep);
        }
        with_.dialogs.show_wait_message("");
        if (!found) {
            report_no_card(address);
            return 0;
        }

        Initialise();
        link_.Card = CardSearch::Found;
        if (single == 1) with_.configuration.Interface.PollRate = pollRate;
        with_.configuration.Interface.CardAddress = address;
        with_.dialogs.set_pointer(Pointer::Default);
        with_.dialogs.message_box("Connected to Interface Card at Address: " + hex16(address),
                                  box::Information, ProgramName);
        with_.dialogs.set_pointer(Pointer::Busy);
        with_.dialogs.repaint();
        return 1;
    });
}

void Discovery::report_no_card(std::int16_t address) {
    with_.dialogs.beep();
    with_.dialogs.set_pointer(Pointer::Default);
    if (hex16(address) == "E000") {
        with_.dialogs.Msg_Box("No Interface Cards were found", box::Exclamation, ProgramName);
        Initialise();
        link_.Card = CardSearch::NoneFound;
    } else {
        with_.dialogs.Msg_Box("No Interface Card found at Address: " + hex16(address),
                              box::Exclamation, ProgramName);
    }
}

std::int16_t Discovery::LocateCard(std::int16_t address) {
    return trapped(with_.failures, "KAVORIX/LocateCard", [&]() -> std::int16_t {
        const std::int16_t handle = with_.driver.Zav_Connect(address);
        if (handle < 0) return 0;
        std::array<std::int16_t, MaxZavs> present{};
        present.fill(1);
        if (with_.driver.Zav_Init(present, handle) != 0) {
            with_.driver.Zav_Disconnect(handle);
            return 0;
        }
        InterfaceSettings& card = with_.configuration.Interface;
        if (handle > 0) with_.driver.Zav_Disconnect(card.CardHandle);
        card.CardHandle = handle;
        for (const Pod pod : all_pods())
            link_.PollTable.InPollTable.set(pod, present[at(pod.index())] == 1);
        return 1;
    });
}

void Discovery::Initialise() {
    trapped(with_.failures, "KAVORIX/Initialise", [&] {
        with_.polling.stop();
        tmrTimeOut_->stop();

        link_.ZavSelected.clear();
        link_.AllSelected = false;
        link_.InterfaceSelected = false;
        link_.Triggered.clear();
        link_.ScanState.fill(ScanState::Idle);
        link_.ContScanning = false;
        link_.ErrorCount = 0;
        link_.OperationsEnabled = false;
        for (std::string& requests : link_.StreamRequests) requests.clear();
        for (std::string& kinds : link_.RequestKinds) kinds.clear();
        for (std::uint32_t& interruptions : link_.Interruptions) ++interruptions;

        with_.run_time.Reports.LastFault = Fault::None;
        with_.run_time.Graph.Settings = GraphSettings{};
        PollState& poll = with_.run_time.Poll;
        poll.PollStarted = false;
        poll.LoadPercent.reset();
        poll.LastEvent.fill(-1);
        poll.EventPending = false;

        for (PodStatus& status : status_) {
            status = PodStatus{};
            status.PeakMin.fill(NoPeakMin);
            status.PeakMax.fill(NoPeakMax);
            status.Ident.fill(' ');
            status.Ident[0] = 'N';
            status.Ident[1] = 'C';
        }
        for (PodConfig& pod : with_.configuration.ZavConfig) default_ZAV_config(pod, NoDevice, 0);
    });
}

PodSet Discovery::GetStatus(std::int16_t mode, const PodSet& pods) {
    return trapped(with_.failures, "KAVORIX/GetStatus", [&, asked = pods] {
        const Sending sending(link_);
        const std::string_view command = mode == 0 ? "RE;ST" : "ST";
        link_.RepliesOutstanding = 0;
        link_.AwaitingReply.clear();
        for (const Pod pod : asked)
            if (ask_for_status(pod, command)) {
                link_.AwaitingReply.add(pod);
                ++link_.RepliesOutstanding;
            }
        PodSet replied = link_.AwaitingReply;

        if (link_.RepliesOutstanding > 0)
            tmrTimeOut_->start(link_.RepliesOutstanding * ReplyTime_ms);
        while (link_.RepliesOutstanding > 0) {
            bool any = false;
            for (const Pod pod : link_.AwaitingReply) {
                if (link_.RepliesOutstanding <= 0) break;
                if (!read_status(pod)) continue;
                --link_.RepliesOutstanding;
                any = true;
            }
            if (!any) with_.loop.process_events(ReplyRetry_ms);
        }
        tmrTimeOut_->stop();
        // A command that the operator gave meanwhile may have kept this loop from reading until the
        // time was up: what came in time counts, so every pod still awaited is asked once more.
        for (const Pod pod : all_pods()) {
            if (!link_.AwaitingReply.has(pod) || read_status(pod)) continue;
            link_.AwaitingReply.remove(pod);
            replied.remove(pod);
            with_.errors.RxTxErr(pod, LinkFault::Receive, AfterFault::Polled);
        }
        return replied;
    });
}

bool Discovery::ask_for_status(Pod pod, std::string_view command) {
    const auto status =
        with_.driver.Zav_Tx(pod.number(), command, with_.configuration.Interface.CardHandle);
    if (status == 1) with_.errors.RxTxErr(pod, LinkFault::Transmit, AfterFault::Polled);
    return status == 0;
}

bool Discovery::read_status(Pod pod) {
    PodStatus& status = status_[pod];
    if (with_.driver.Zav_String(pod.number(), TextStream, status.Ident,
                                with_.configuration.Interface.CardHandle) != 0)
        return false;
    link_.AwaitingReply.remove(pod);
    status.Channels = channels_of(status.type_code());
    return true;
}

void Discovery::DispZAVS() {
    trapped(with_.failures, "KAVORIX/DispZAVS", [&] {
        for (const Pod pod : link_.PollTable.InPollTable) {
            PodStatus& status = status_[pod];
            const std::string_view code = status.type_code();
            default_ZAV_config(with_.configuration.ZavConfig[pod], GetZAVTypeCode(code), 0);
            status.Found = true;
            status.OutOfOrder = code == "7X" || code == "7Y" || status.ErrorFlag;
        }
        if (link_.PollTable.InPollTable.empty())
            with_.dialogs.message_box(
                "KAVORIX could not find any ZAV(s) Connected to Interface Card", box::Information,
                ProgramName);
        else
            link_.OperationsEnabled = true;
    });
}

}  // namespace kavorix
