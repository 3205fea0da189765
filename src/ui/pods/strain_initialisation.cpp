#include "ui/pods/strain_initialisation.h"

#include <array>
#include <cmath>

#include "base/text.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

namespace {

constexpr int Tries = 5;
constexpr std::int16_t WaitMs = 100;

// More replies than a pod can have pending: what goes on longer is a driver out of order.
constexpr int MostPending = 1000;

}  // namespace

StrainInitialisation::StrainInitialisation(Driver& driver, Dialogs& dialogs, RunTime& run_time,
                                           Pod pod, int channel, std::int16_t card_handle)
    : driver_(driver),
      dialogs_(dialogs),
      run_time_(run_time),
      pod_(pod),
      channel_(channel),
      card_handle_(card_handle) {}

std::optional<StrainReply> StrainInitialisation::warn(std::string_view text) {
    refuse(dialogs_, text);
    return std::nullopt;
}

std::optional<StrainReply> StrainInitialisation::receive_error() {
    return warn("Receive Error from ZAV. 'Initial volt' and 'offset' not set");
}

StrainInitialisation::Data StrainInitialisation::test() {
    const std::int16_t result = driver_.Zav_Test(pod_.number(), RequestStream, card_handle_);
    if (result == -1) return Data::Error;
    return result == 1 ? Data::Waiting : Data::None;
}

// False when the driver or the pod says that the values are none.
bool StrainInitialisation::read(StrainReply& reply) {
    std::array<float, 2> values{};
    std::int16_t code = 0;
    std::int16_t count = 2;
    const std::int16_t status =
        driver_.Zav_Numeric(pod_.number(), RequestStream, count, values, {&code, 1}, card_handle_);
    reply = {values[0], values[1]};
    return status != 1 && code <= HighestValidCode && std::isfinite(values[0]) &&
           std::isfinite(values[1]);
}

// Every reply that goes unread here takes its request along, so that those that follow are told
// apart as before.
bool StrainInitialisation::discard_pending() {
    std::string& requests = run_time_.Link.StreamRequests[pod_];
    for (int i = 0; i < MostPending; ++i) {
        const Data data = test();
        if (data != Data::Waiting) return data == Data::None;
        StrainReply discarded;
        read(discarded);
        const auto end = requests.find(';');
        requests.erase(0, end == std::string::npos ? end : end + 1);
    }
    return false;
}

StrainInitialisation::Data StrainInitialisation::wait_for_reply() {
    Data data = Data::None;
    for (int i = 0; i < Tries && data == Data::None; ++i) {
        driver_.Zav_DLLDelay(WaitMs);
        data = test();
    }
    return data;
}

std::optional<StrainReply> StrainInitialisation::run() {
    if (run_time_.Status[pod_].type_code() != "7S")
        return warn("The ZAV connected is not of type '7S'.");
    if (!discard_pending()) return receive_error();
    const std::string command = "IN" + two_digits(channel_);
    if (driver_.Zav_Tx(pod_.number(), command, card_handle_) == 1)
        return warn("Transmit Error. 'Initial volt' and 'offset' not set");
    const Data data = wait_for_reply();
    if (data == Data::None) return warn("ZAV not responding. 'Initial volt' and 'offset' not set");
    StrainReply reply;
    if (data == Data::Error || !read(reply)) return receive_error();
    return reply;
}

}  // namespace kavorix
