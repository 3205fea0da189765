// Any bytes as what a driver brings on the four streams of two pods: the poll cycle takes them, a
// pod is either polled or counted as failed, and every record stays in its ranges.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/rig.h"

namespace {

using namespace kavorix;
using test::Reply;

void check(bool holds) {
    if (!holds) std::abort();
}

// Hands out the input piece by piece; zeros behind its end.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : left_(data), size_(size) {}

    bool empty() const { return size_ == 0; }
    std::string bytes(std::size_t wanted) {
        const std::size_t count = std::min(wanted, size_);
        const std::string taken(reinterpret_cast<const char*>(left_), count);
        left_ += count;
        size_ -= count;
        return taken;
    }
    template <class Number>
    Number number() {
        Number value{};
        const std::string taken = bytes(sizeof value);
        std::memcpy(&value, taken.data(), taken.size());
        return value;
    }

  private:
    const std::uint8_t* left_;
    std::size_t size_;
};

Reply reply(Input& input) {
    const auto kind = input.number<std::uint8_t>();
    if (kind < 16) return test::failure(input.number<std::int16_t>());
    if (kind < 128) return test::text(input.bytes(input.number<std::uint8_t>()));
    Reply numbers = test::scan({}, {});
    for (int i = kind % 40; i > 0; --i) {
        numbers.values.push_back(input.number<float>());
        numbers.codes.push_back(input.number<std::int16_t>());
    }
    numbers.count = input.number<std::uint8_t>() < 200 ? static_cast<std::int16_t>(kind % 40)
                                                       : input.number<std::int16_t>();
    return numbers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    test::Rig rig;
    rig.driver.recording = false;
    rig.station({{1, "7VJA 0F 1.00"}, {2, "8RCA 0F 1.00"}});
    rig.select({1, 2});
    rig.trigger({1, 2});
    rig.start_polling();
    while (!input.empty()) {
        const auto where = input.number<std::uint8_t>();
        rig.driver.pod(1 + where % 2).waiting[where / 2 % StreamCount].push_back(reply(input));
        if (where > 100) rig.loop.run_for(100);
    }
    rig.loop.run_for(1500);
    int failed = 0;
    for (const int pod : {1, 2}) {
        const PodStatus& status = rig.status(pod);
        check(rig.polled(pod) || status.ErrorFlag);
        failed += rig.polled(pod) ? 0 : 1;
    }
    check(rig.run_time.Link.PollTable.NumInPoll() == 2 - failed);
    return 0;
}
