#include "link/command_link.h"

#include <string>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

constexpr int TokenDelay_ms = 10;
constexpr int ContinuousTriggerDelay_ms = 1000;
constexpr int HaltDelay_ms = 3000;
constexpr int ResetDelay_ms = 500;

// Takes a command string apart into the tokens that are sent.
class Tokeniser {
  public:
    enum class Result { Token, End, UnclosedQuote };

    Tokeniser(std::string_view text, Driver& driver, std::array<std::int16_t, 4>& ieee_bytes)
        : text_(text), driver_(driver), ieee_bytes_(ieee_bytes) {}

    // The next token that is not empty. What stands after the last ";" is no token.
    Result next(std::string& token) {
        token.clear();
        while (position_ < text_.size()) {
            const char c = text_[position_++];
            if (c == ';') {
                if (!token.empty()) return Result::Token;
            } else if (c == '\'') {
                if (!append_number(token)) return Result::UnclosedQuote;
            } else {
                append(token, {&c, 1});
            }
        }
        return Result::End;
    }

  private:
    static void append(std::string& token, std::string_view bytes) {
        token = trim(std::string(token));
        token += bytes;
    }

    bool append_number(std::string& token) {
        const auto closing = text_.find('\'', position_);
        if (closing == std::string_view::npos) return false;
        ieee_bytes_ =
            driver_.Zav_ValToByte(leading_single(text_.substr(position_, closing - position_)));
        std::string bytes;
        for (const std::int16_t value : ieee_bytes_) bytes += static_cast<char>(value & 0xFF);
        append(token, bytes);
        position_ = closing + 1;
        return true;
    }

    std::string_view text_;
    Driver& driver_;
    std::array<std::int16_t, 4>& ieee_bytes_;
    std::size_t position_ = 0;
};

}  // namespace

struct CommandLink::Call {
    bool failed = false;
    int first_request_pod = -1;
};

CommandLink::CommandLink(const Surroundings& surroundings) : with_(surroundings) {
    tmrTransmit_ = with_.loop.make_timer([this] {
        with_.run_time.Link.TransmitDelayDone = true;
        tmrTransmit_->stop();
    });
}

void CommandLink::TXString() {
    if (transmitting_) {
        with_.message_line.DispMsg(" Transmission in Progress - Command not Sent", Colour::Red);
        return;
    }
    struct Transmitting {
        bool& flag;
        explicit Transmitting(bool& f) : flag(f) { flag = true; }
        ~Transmitting() { flag = false; }
    } const guard(transmitting_);
    trapped(with_.failures, "TX/TXString", [&] { transmit(); });
}

void CommandLink::transmit() {
    LinkState& link = with_.run_time.Link;
    with_.message_line.DispMsg(" Transmitting Command String", Colour::Blue);
    with_.dialogs.set_pointer(Pointer::Busy);
    reached_ = link.ZavSelected;

    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (link.ZavSelected[at(pod)] != 1 || with_.configuration.ZavConfig[at(pod)].ContScan != 1)
            continue;
        link.ScanState[at(pod)] = ContinuousCommanded;
        with_.driver.Zav_Tx(static_cast<std::int16_t>(pod + 1), "CO",
                            with_.configuration.Interface.CardHandle);
    }

    // A copy: an operator command may assign the next command string while this one waits.
    const std::string text = link.CommandString;
    Tokeniser tokens(text, with_.driver, link.IeeeBytes);
    Call call;
    std::string token;
    auto result = tokens.next(token);
    for (; result == Tokeniser::Result::Token; result = tokens.next(token)) send_token(token, call);
    if (result == Tokeniser::Result::UnclosedQuote) {
        with_.dialogs.beep();
        with_.dialogs.Msg_Box("IEEE Error in command string", box::Information, ProgramName);
    }

    if (!call.failed) with_.message_line.DispMsg("", Colour::Blue);
    update_cont_scanning();
    if (link.ContScanning == 1) with_.main_window.ConfigItems(0);
    with_.screen.pnlContScan.caption = link.ContScanning == 1 ? "CONT SCAN" : "";
    if (!with_.tmrPoll.running()) {
        with_.run_time.Poll.PollStarted = 0;
        with_.tmrPoll.start(link.PollTick);
    }
    with_.dialogs.set_pointer(Pointer::Default);
}

void CommandLink::send_token(const std::string& token, Call& call) {
    LinkState& link = with_.run_time.Link;
    int delay_ms = TokenDelay_ms;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        if (link.ZavSelected[at(pod)] != 1) reached_[at(pod)] = 0;
        if (reached_[at(pod)] != 1) continue;
        const auto status = with_.driver.Zav_Tx(static_cast<std::int16_t>(pod + 1), token,
                                                with_.configuration.Interface.CardHandle);
        if (status == 1) {
            RxTxErr(pod, 0, 1);
            call.failed = true;
        } else if (token == "TR" && link.ScanState[at(pod)] == ContinuousCommanded) {
            link.ScanState[at(pod)] = ContinuouslyScanning;
            delay_ms = ContinuousTriggerDelay_ms;
        } else if (token == "HA") {
            link.ScanState[at(pod)] = Idle;
            delay_ms = HaltDelay_ms;
        } else if (token == "RE") {
            link.ScanState[at(pod)] = Idle;
            delay_ms = ResetDelay_ms;
        } else if (token.starts_with("IN") || token.starts_with("ME")) {
            note_request(pod, token, call);
        }
    }
    wait_transmit_delay(delay_ms);
}

void CommandLink::note_request(int pod, const std::string& token, Call& call) {
    LinkState& link = with_.run_time.Link;
    if (call.first_request_pod < 0) {
        link.FirstPodInputRequests.clear();
        call.first_request_pod = pod;
        for (PodStatus& status : with_.run_time.Status) {
            status.SingleNew.fill(0);
            status.SinglePending.fill(0);
        }
        // The kinds of the answers that are thus never shown.
        for (std::string& kinds : with_.run_time.Poll.RequestKinds) kinds.clear();
        link.RequestCount = 1;
    } else {
        ++link.RequestCount;
    }
    if (token.starts_with("IN") && pod == call.first_request_pod)
        link.FirstPodInputRequests += token + ";";
    link.StreamRequests[at(pod)] += token + ";";
    const double channel = leading_value(middle(token, 3));
    if (channel >= 1 && channel < MaxChannels + 1)
        with_.run_time.Status[at(pod)].SinglePending[static_cast<std::size_t>(channel) - 1] = 1;
}

void CommandLink::wait_transmit_delay(int delay_ms) {
    bool& done = with_.run_time.Link.TransmitDelayDone;
    done = false;
    tmrTransmit_->start(delay_ms);
    with_.loop.wait_until([&] { return done; });
}

void CommandLink::RxTxErr(int podIndex, std::int16_t kind, std::int16_t remove) {
    LinkState& link = with_.run_time.Link;
    PodStatus& status = with_.run_time.Status[at(podIndex)];
    if (kind == 0 || kind == 1) {
        const std::string text = std::string(kind == 0 ? " ERROR! - Transmit Error (ZAV:"
                                                       : " ERROR! - Receive Error (ZAV:") +
                                 two_digits(podIndex + 1);
        with_.message_line.DispMsg(text + ")", Colour::Red);
        with_.error_log.write_line(
            text + "  Interface:" + hex16(with_.configuration.Interface.CardAddress) + ")");
        with_.screen.pnlErr.caption = kind == 0 ? "Tx ERROR" : "Rx ERROR";
    }
    if (remove == 1) {
        with_.screen.img_ZAV[at(podIndex)].picture = Picture::img1ZAV_E;
        status.IconState = Removed;
        // A selected pod need not be in the poll table (it failed before): the count must not fall
        // twice.
        if (std::exchange(link.PollTable.InPollTable[at(podIndex)], std::int16_t{0}) == 1)
            --link.PollTable.NumInPoll;
        link.ScanState[at(podIndex)] = Idle;
    }
    ++link.ErrorCount;
    ++link.SessionErrorCount;
    status.ErrorFlag = 1;
    reached_[at(podIndex)] = 0;
    if (std::exchange(link.ZavSelected[at(podIndex)], std::int16_t{0}) == 1) {
        --link.NumSelected;
        if (remove != 1) with_.main_window.IconReverse(podIndex);
    }
    link.Triggered[at(podIndex)] = 0;
    update_cont_scanning();
    if (link.ContScanning == 0) with_.screen.pnlContScan.caption.clear();
    with_.main_window.CheckItems();
}

void CommandLink::update_cont_scanning() {
    LinkState& link = with_.run_time.Link;
    link.ContScanning = 0;
    for (const std::int16_t state : link.ScanState)
        if (state == ContinuouslyScanning) link.ContScanning = 1;
}

}  // namespace kavorix
