#include "link/command_link.h"

#include <optional>
#include <string>

#include "base/numbers.h"
#include "base/program_name.h"
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
    StandingPods pods;
    bool failed = false;
    std::optional<Pod> first_request_pod;
};

CommandLink::CommandLink(const Surroundings& surroundings)
    : with_(surroundings), link_(with_.run_time.Link), status_(with_.run_time.Status) {
    tmrTransmit_ = with_.loop.make_timer([this] {
        link_.TransmitDelayDone = true;
        tmrTransmit_->stop();
    });
}

PodSet CommandLink::TXString() {
    return send(link_.CommandString, link_.ZavSelected);
}

PodSet CommandLink::send(std::string_view text, const PodSet& pods) {
    if (transmitting_) {
        with_.message_line.DispMsg(" Transmission in Progress - Command not Sent", Severity::Error);
        return {};
    }
    struct Transmitting {
        bool& flag;
        explicit Transmitting(bool& f) : flag(f) { flag = true; }
        ~Transmitting() { flag = false; }
    } const guard(transmitting_);
    const Sending sending(link_);
    // Copies: both may be the state's own, which the operator changes while this waits.
    return trapped(with_.failures, "TX/TXString", [&, command = std::string(text), targets = pods] {
        link_.CommandString = command;
        return transmit(command, targets);
    });
}

PodSet CommandLink::transmit(const std::string& text, const PodSet& pods) {
    with_.message_line.DispMsg(" Transmitting Command String", Severity::Progress);
    with_.dialogs.set_pointer(Pointer::Busy);
    Call call{StandingPods(pods, link_), false, {}};
    command_continuous_mode(pods);

    Tokeniser tokens(text, with_.driver, link_.IeeeBytes);
    std::string token;
    auto result = tokens.next(token);
    for (; result == Tokeniser::Result::Token; result = tokens.next(token)) send_token(token, call);
    if (result == Tokeniser::Result::UnclosedQuote) {
        with_.dialogs.beep();
        with_.dialogs.Msg_Box("IEEE Error in command string", box::Information, ProgramName);
    }

    if (!call.failed) with_.message_line.DispMsg("", Severity::Progress);
    update_cont_scanning(link_);
    with_.polling.start();
    with_.dialogs.set_pointer(Pointer::Default);
    return call.pods.now();
}

void CommandLink::command_continuous_mode(const PodSet& pods) {
    for (const Pod pod : pods) {
        if (with_.configuration.ZavConfig[pod].ContScan != 1) continue;
        link_.ScanState[pod] = ScanState::ContinuousCommanded;
        with_.driver.Zav_Tx(pod.number(), "CO", card_handle());
    }
}

void CommandLink::send_token(const std::string& token, Call& call) {
    int delay_ms = TokenDelay_ms;
    for (const Pod pod : call.pods.now()) {
        if (with_.driver.Zav_Tx(pod.number(), token, card_handle()) == 1) {
            with_.errors.RxTxErr(pod, LinkFault::Transmit, AfterFault::Removed);
            call.failed = true;
        } else if (const int own_delay_ms = note_sent(pod, token, call); own_delay_ms > 0) {
            delay_ms = own_delay_ms;
        }
    }
    wait_transmit_delay(delay_ms);
}

// What a token that a pod has got changes. Returns the delay that it needs, 0 when it needs none of
// its own.
int CommandLink::note_sent(Pod pod, const std::string& token, Call& call) {
    ScanState& state = link_.ScanState[pod];
    if (token == "TR" && state == ScanState::ContinuousCommanded) {
        state = ScanState::ContinuouslyScanning;
        return ContinuousTriggerDelay_ms;
    }
    if (token == "HA" || token == "RE") {
        state = ScanState::Idle;
        return token == "HA" ? HaltDelay_ms : ResetDelay_ms;
    }
    if (token.starts_with("IN") || token.starts_with("ME")) note_request(pod, token, call);
    return 0;
}

void CommandLink::note_request(Pod pod, const std::string& token, Call& call) {
    if (!call.first_request_pod) {
        link_.FirstPodInputRequests.clear();
        call.first_request_pod = pod;
        for (PodStatus& status : status_) {
            status.SingleNew.fill(false);
            status.SinglePending.fill(false);
        }
        // The kinds of the answers that are thus never shown.
        for (std::string& kinds : link_.RequestKinds) kinds.clear();
        link_.RequestCount = 1;
    } else {
        ++link_.RequestCount;
    }
    if (token.starts_with("IN") && pod == call.first_request_pod)
        link_.FirstPodInputRequests += token + ";";
    link_.StreamRequests[pod] += token + ";";
    const double channel = leading_value(middle(token, 3));
    if (channel >= 1 && channel < MaxChannels + 1)
        status_[pod].SinglePending[static_cast<std::size_t>(channel) - 1] = true;
}

void CommandLink::wait_transmit_delay(int delay_ms) {
    bool& done = link_.TransmitDelayDone;
    done = false;
    tmrTransmit_->start(delay_ms);
    with_.loop.wait_until([&] { return done; });
}

}  // namespace kavorix
