#include "support/scripted_driver.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "base/text.h"

namespace kavorix::test {

namespace {

std::string printable(std::string_view bytes) {
    std::string result;
    for (const char c : bytes)
        if (c >= ' ' && c <= '~') {
            result += c;
        } else {
            std::string number = hex16(static_cast<unsigned char>(c));
            if (number.size() < 2) number.insert(number.begin(), '0');
            result += "<" + number + ">";
        }
    return result;
}

std::string place(std::int16_t pod, std::int16_t stream) {
    return std::to_string(pod) + "/" + std::to_string(stream);
}

bool asks_for_status(std::string_view command) {
    return command == "ST" || command.ends_with(";ST");
}

}  // namespace

Reply scan(std::vector<float> values, std::vector<std::int16_t> codes) {
    Reply reply;
    reply.count = static_cast<std::int16_t>(values.size());
    codes.resize(values.size());
    reply.values = std::move(values);
    reply.codes = std::move(codes);
    return reply;
}

Reply single(float first, float second, std::int16_t code) {
    Reply reply;
    reply.count = 2;
    reply.values = {first, second};
    reply.codes = {code};
    return reply;
}

Reply text(std::string bytes) {
    Reply reply;
    reply.text = std::move(bytes);
    return reply;
}

Reply failure(std::int16_t status) {
    Reply reply;
    reply.status = status;
    return reply;
}

ScriptedPod& ScriptedDriver::add_pod(int number, std::string ident) {
    pod(number).present = true;
    pod(number).ident = std::move(ident);
    return pod(number);
}

std::vector<std::string> ScriptedDriver::recorded(const std::string& beginning) const {
    std::vector<std::string> texts;
    for (const DriverCall& call : calls)
        if (call.text.starts_with(beginning)) texts.push_back(call.text);
    return texts;
}

std::vector<std::string> ScriptedDriver::timed(const std::string& beginning) const {
    std::vector<std::string> texts;
    for (const DriverCall& call : calls)
        if (call.text.starts_with(beginning))
            texts.push_back(std::to_string(call.time_ms) + " " + call.text);
    return texts;
}

template <class Describe>
void ScriptedDriver::record(Describe&& describe) {
    if (!recording) return;
    calls.push_back({now(), describe()});
    // A copy: the action may call the driver.
    if (at_call_) at_call_(DriverCall(calls.back()));
}

// What waits on a stream now; null when nothing does.
const Reply* ScriptedDriver::next(std::int16_t number, std::int16_t stream) {
    const auto s = static_cast<std::size_t>(stream);
    const ScriptedPod& from = pod(number);
    if (!from.waiting[s].empty() && from.waiting[s].front().ready_ms <= now())
        return &from.waiting[s].front();
    if (from.feed[s] && from.feed[s]->next_ms <= now()) return &from.feed[s]->reply;
    return nullptr;
}

void ScriptedDriver::taken(std::int16_t number, std::int16_t stream) {
    const auto s = static_cast<std::size_t>(stream);
    ScriptedPod& from = pod(number);
    if (!from.waiting[s].empty() && from.waiting[s].front().ready_ms <= now())
        from.waiting[s].pop_front();
    else if (from.feed[s])
        from.feed[s]->next_ms += from.feed[s]->period_ms;
}

std::int16_t ScriptedDriver::Zav_Connect(std::int16_t address) {
    record([&] { return "Connect " + hex16(address); });
    const auto card = cards.find(address);
    return card == cards.end() ? std::int16_t{-1} : card->second;
}

std::int16_t ScriptedDriver::Zav_Init(std::span<std::int16_t, MaxZavs> present,
                                      std::int16_t handle) {
    record([&] {
        return "Init " + std::to_string(handle) + " probing " +
               std::to_string(std::count(present.begin(), present.end(), 1));
    });
    if (init_status != 0) {
        std::fill(present.begin(), present.end(), present_mark);
        return init_status;
    }
    for (std::size_t i = 0; i < pods_.size(); ++i)
        present[i] = pods_[i].present && present[i] == 1 ? std::int16_t{1} : present_mark;
    return 0;
}

void ScriptedDriver::Zav_Disconnect(std::int16_t handle) {
    record([&] { return "Disconnect " + std::to_string(handle); });
}

std::int16_t ScriptedDriver::Zav_Tx(std::int16_t number, std::string_view command, std::int16_t) {
    ++sends;
    record([&] { return "Tx " + std::to_string(number) + " " + printable(command); });
    ScriptedPod& to = pod(number);
    if (!to.present) return 1;
    if (to.tx_status == 0 && asks_for_status(command) && !to.ident.empty()) {
        Reply reply = text(to.ident);
        reply.ready_ms = now() + to.reply_ms;
        to.waiting[TextStream].push_back(reply);
    }
    return to.tx_status;
}

std::int16_t ScriptedDriver::Zav_Test(std::int16_t number, std::int16_t stream, std::int16_t) {
    ++tests;
    record([&] { return "Test " + place(number, stream); });
    const ScriptedPod& from = pod(number);
    if (const auto fixed = from.test[static_cast<std::size_t>(stream)]) return *fixed;
    if (!from.present) return -1;
    return next(number, stream) ? 1 : 0;
}

std::int16_t ScriptedDriver::Zav_String(std::int16_t number, std::int16_t stream,
                                        std::span<char> buffer, std::int16_t) {
    ++reads;
    record([&] { return "String " + place(number, stream) + " " + std::to_string(buffer.size()); });
    if (!pod(number).present) return 1;
    const Reply* reply = next(number, stream);
    if (!reply) return pod(number).idle_status;
    std::copy_n(reply->text.begin(), std::min(reply->text.size(), buffer.size()), buffer.begin());
    const std::int16_t status = reply->status;
    taken(number, stream);
    return status;
}

std::int16_t ScriptedDriver::Zav_Numeric(std::int16_t number, std::int16_t stream,
                                         std::int16_t& count, std::span<float> values,
                                         std::span<std::int16_t> codes, std::int16_t) {
    ++reads;
    record([&] { return "Numeric " + place(number, stream) + " " + std::to_string(count); });
    if (!pod(number).present) return 1;
    const Reply* reply = next(number, stream);
    if (!reply) return pod(number).idle_status;
    count = reply->count;
    std::copy_n(reply->values.begin(), std::min(reply->values.size(), values.size()),
                values.begin());
    std::copy_n(reply->codes.begin(), std::min(reply->codes.size(), codes.size()), codes.begin());
    const std::int16_t status = reply->status;
    taken(number, stream);
    return status;
}

std::array<std::int16_t, 4> ScriptedDriver::Zav_ValToByte(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    std::array<std::int16_t, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::int16_t>((bits >> (24 - 8 * i)) & 0xFF);
    return bytes;
}

void ScriptedDriver::Zav_DLLVersion(std::span<char, 34> out) {
    record([] { return std::string("DLLVersion"); });
    std::copy_n(version.begin(), std::min(version.size(), out.size()), out.begin());
}

void ScriptedDriver::Zav_PowerOff(std::int16_t handle) {
    record([&] { return "PowerOff " + std::to_string(handle); });
}

void ScriptedDriver::Zav_DLLDelay(std::int16_t milliseconds) {
    record([&] { return "DLLDelay " + std::to_string(milliseconds); });
}

}  // namespace kavorix::test
