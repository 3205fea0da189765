#include "link/discovery.h"

#include <algorithm>
#include <string>

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

Colour family_colour(std::string_view type_code) {
    if (type_code.starts_with('8')) return Colour::LightGrey;
    if (type_code == "7V" || type_code == "7W") return Colour::White;
    return Colour::Silver;
}

}  // namespace

Discovery::Discovery(const CommandLink::Surroundings& surroundings, CommandLink& link,
                     Configuration& configuration)
    : with_(surroundings), link_(link), configuration_(configuration) {
    tmrTimeOut_ = with_.loop.make_timer([this] { with_.run_time.Link.RepliesOutstanding = 0; });
}

void Discovery::Form_Load(Files& files, const std::string& ini_path) {
    trapped(with_.failures, "frmMain/Form_Load", [&] {
        LinkState& link = with_.run_time.Link;
        with_.dialogs.set_pointer(Pointer::Busy);
        const auto excluded =
            parse_exclude_addresses(GetINIData(files, ini_path, "Exclude Addresses", "Address"));
        if (!excluded) {
            with_.dialogs.message_box("Error reading 'KAVORIX.INI' file. *** Exiting *** ",
                                      box::Exclamation, ProgramName);
            throw ProgramEnded{1};
        }
        link.ExcludeAddresses = *excluded;
        with_.error_log.open();
        with_.driver.Zav_DLLVersion(link.DllVersion);
        show_number_strips();
        with_.main_window.ClearScreen();
        with_.main_window.StatusRefresh();
        configuration_.Interface.PollRate = StartPollRate_ms;
        link.PollTick = PollTick_ms;

        std::int16_t address = FirstCardAddress;
        if (ConnectToCard(address, link.PollTick, 0) == 1) {
            link.ZavSelected = link.PollTable.InPollTable;
            GetStatus(0);
            DispZAVS();
            link.ZavSelected.fill(0);
            link.NumSelected = 0;
            with_.main_window.CheckItems();
        }
        with_.dialogs.set_pointer(Pointer::Default);
    });
}

std::int16_t Discovery::ConnectToCard(std::int16_t& address, std::int16_t pollRate,
                                      std::int16_t single) {
    return trapped(with_.failures, "KAVORIX/ConnectToCard", [&]() -> std::int16_t {
        const auto& excluded = with_.run_time.Link.ExcludeAddresses;
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
        with_.main_window.ClearScreen();
        if (single == 1) configuration_.Interface.PollRate = pollRate;
        configuration_.Interface.CardAddress = address;
        with_.dialogs.set_pointer(Pointer::Default);
        with_.dialogs.message_box("Connected to Interface Card at Address: " + hex16(address),
                                  box::Information, ProgramName);
        with_.dialogs.set_pointer(Pointer::Busy);
        with_.screen.img_4A.visible = true;
        with_.screen.img_4A.picture =
            with_.run_time.Link.InterfaceSelected == 1 ? Picture::img4A : Picture::img14A;
        with_.screen.img_4A.tool_tip = "Interface card at " + hex16(address);
        with_.dialogs.repaint();
        with_.main_window.StatusRefresh();
        return 1;
    });
}

void Discovery::report_no_card(std::int16_t address) {
    with_.dialogs.beep();
    with_.dialogs.set_pointer(Pointer::Default);
    if (hex16(address) == "E000") {
        with_.dialogs.Msg_Box("No Interface Cards were found", box::Exclamation, ProgramName);
        Initialise();
        with_.main_window.ConfigItems(0);
    } else {
        with_.dialogs.Msg_Box("No Interface Card found at Address: " + hex16(address),
                              box::Exclamation, ProgramName);
    }
}

std::int16_t Discovery::LocateCard(std::int16_t address) {
    return trapped(with_.failures, "KAVORIX/LocateCard", [&]() -> std::int16_t {
        PodFlags& present = with_.run_time.Link.PollTable.InPollTable;
        const PodFlags before = present;
        present.fill(1);
        const std::int16_t handle = with_.driver.Zav_Connect(address);
        if (handle < 0) {
            present = before;
            return 0;
        }
        if (with_.driver.Zav_Init(present, handle) != 0) {
            with_.driver.Zav_Disconnect(handle);
            present = before;
            return 0;
        }
        if (handle > 0) with_.driver.Zav_Disconnect(configuration_.Interface.CardHandle);
        configuration_.Interface.CardHandle = handle;
        return 1;
    });
}

void Discovery::Initialise() {
    trapped(with_.failures, "KAVORIX/Initialise", [&] {
        with_.tmrPoll.stop();
        tmrTimeOut_->stop();

        LinkState& link = with_.run_time.Link;
        link.ZavSelected.fill(0);
        link.NumSelected = 0;
        link.AllSelected = 0;
        link.InterfaceSelected = 0;
        link.PollTable.NumInPoll = 0;
        link.Triggered.fill(0);
        link.ScanState.fill(Idle);
        link.ContScanning = 0;
        link.ErrorCount = 0;
        for (std::string& requests : link.StreamRequests) requests.clear();
        for (std::string& kinds : with_.run_time.Poll.RequestKinds) kinds.clear();
        with_.run_time.Poll.LastEvent.fill(-1);
        with_.run_time.Poll.EventPending = 0;

        for (PodStatus& status : with_.run_time.Status) {
            status = PodStatus{};
            status.PeakMin.fill(NoPeakMin);
            status.PeakMax.fill(NoPeakMax);
            status.Ident.fill(' ');
            status.Ident[0] = 'N';
            status.Ident[1] = 'C';
        }
        for (PodConfig& pod : configuration_.ZavConfig) default_ZAV_config(pod, NoDevice, 0);
        with_.run_time.Graph.Settings = GraphSettings{};
        enable_operations(false);
    });
}

void Discovery::enable_operations(bool enabled) {
    with_.run_time.Link.OperationsEnabled = enabled ? 1 : 0;
    with_.main_window.CheckItems();
}

void Discovery::GetStatus(std::int16_t mode) {
    trapped(with_.failures, "KAVORIX/GetStatus", [&] {
        LinkState& link = with_.run_time.Link;
        const std::string_view command = mode == 0 ? "RE;ST" : "ST";
        link.RepliesOutstanding = 0;
        link.AwaitingReply.fill(0);
        for (int pod = 0; pod < MaxZavs; ++pod)
            if (link.ZavSelected[at(pod)] == 1 && ask_for_status(pod, command)) {
                link.AwaitingReply[at(pod)] = 1;
                ++link.RepliesOutstanding;
            }

        if (link.RepliesOutstanding > 0) tmrTimeOut_->start(link.RepliesOutstanding * ReplyTime_ms);
        while (link.RepliesOutstanding > 0) {
            bool any = false;
            for (int pod = 0; pod < MaxZavs && link.RepliesOutstanding > 0; ++pod)
                if (link.AwaitingReply[at(pod)] == 1 && read_status(pod)) {
                    --link.RepliesOutstanding;
                    any = true;
                }
            if (!any) with_.loop.process_events(ReplyRetry_ms);
        }
        tmrTimeOut_->stop();
        // A command that the operator gave meanwhile may have kept this loop from reading until the
        // time was up: what came in time counts, so every pod still awaited is asked once more.
        for (int pod = 0; pod < MaxZavs; ++pod)
            if (link.AwaitingReply[at(pod)] == 1 && !read_status(pod)) {
                link.AwaitingReply[at(pod)] = 0;
                link_.RxTxErr(pod, 1, 0);
            }
    });
}

bool Discovery::ask_for_status(int pod, std::string_view command) {
    const auto status = with_.driver.Zav_Tx(static_cast<std::int16_t>(pod + 1), command,
                                            configuration_.Interface.CardHandle);
    if (status == 1) link_.RxTxErr(pod, 0, 0);
    return status == 0;
}

bool Discovery::read_status(int pod) {
    PodStatus& status = with_.run_time.Status[at(pod)];
    if (with_.driver.Zav_String(static_cast<std::int16_t>(pod + 1), TextStream, status.Ident,
                                configuration_.Interface.CardHandle) != 0)
        return false;
    with_.run_time.Link.AwaitingReply[at(pod)] = 0;
    status.Channels = channels_of(status.type_code());
    return true;
}

void Discovery::DispZAVS() {
    trapped(with_.failures, "KAVORIX/DispZAVS", [&] {
        PollTable& table = with_.run_time.Link.PollTable;
        show_number_strips();
        table.NumInPoll = 0;
        for (int pod = 0; pod < MaxZavs; ++pod) {
            if (table.InPollTable[at(pod)] != 1) continue;
            ++table.NumInPoll;
            show_pod(pod);
        }
        if (table.NumInPoll == 0)
            with_.dialogs.message_box(
                "KAVORIX could not find any ZAV(s) Connected to Interface Card", box::Information,
                ProgramName);
        else
            enable_operations(true);
    });
}

void Discovery::show_pod(int pod) {
    const PodStatus& status = with_.run_time.Status[at(pod)];
    const std::string code(status.type_code());
    const std::int16_t type = GetZAVTypeCode(code);
    default_ZAV_config(configuration_.ZavConfig[at(pod)], type, 0);

    const bool in_error = code == "7X" || code == "7Y" || status.ErrorFlag == 1;
    Icon& icon = with_.screen.img_ZAV[at(pod)];
    icon.visible = true;
    icon.picture = in_error ? Picture::img1ZAV_E : Picture::img1ZAV;
    icon.tool_tip = "ZAV " + two_digits(pod + 1);
    Label& label = with_.screen.lblZAVType[at(pod)];
    label.visible = status.connected();
    label.caption = status.connected() ? code : "";
    label.fore = Colour::Black;
    label.back = family_colour(code);
    if (status.connected())
        icon.tool_tip += "\n" + std::string(status.ident()) +
                         (type == NoDevice ? "" : "\n" + std::string(pod_type(type).description));
    else
        icon.tool_tip += "\nNo status reply";
}

void Discovery::show_number_strips() {
    for (int i = 0; i < 25; ++i) {
        with_.screen.picZAVNum1[at(i)] = two_digits(i + 1);
        with_.screen.picZAVNum2[at(i)] = two_digits(i + 26);
    }
}

}  // namespace kavorix
