#include "base/signal.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kavorix {
namespace {

// What listeners were told: "a1 b1".
struct SignalTest : testing::Test {
    Signal<int> signal;
    std::string heard;
    std::function<void(int)> hears(const std::string& name) {
        return [this, name](int value) { heard += name + std::to_string(value) + " "; };
    }
};

TEST_F(SignalTest, TellsItsSubscribersInTheOrderOfSubscription) {
    const Subscription a = signal.subscribe(hears("a"));
    signal.always(hears("b"));
    const Subscription c = signal.subscribe(hears("c"));
    signal(1);
    signal(2);
    EXPECT_EQ(heard, "a1 b1 c1 a2 b2 c2 ");
}

TEST_F(SignalTest, ASubscriptionEndsWhenItIsDestroyedReplacedOrEnded) {
    Subscription ended = signal.subscribe(hears("a"));
    Subscription replaced = signal.subscribe(hears("b"));
    { const Subscription destroyed = signal.subscribe(hears("c")); }
    ended.end();
    replaced = signal.subscribe(hears("d"));
    Subscription moved = std::move(replaced);
    signal(1);
    EXPECT_EQ(heard, "d1 ");
}

TEST_F(SignalTest, WhoEndsInsideAListenerIsToldNoMore) {
    Subscription later;
    Subscription self = signal.subscribe([&](int value) {
        hears("a")(value);
        self.end();
        later.end();
    });
    later = signal.subscribe(hears("b"));
    const Subscription last = signal.subscribe(hears("c"));
    signal(1);
    signal(2);
    EXPECT_EQ(heard, "a1 c1 c2 ");
}

TEST_F(SignalTest, WhoSubscribesInsideAListenerIsToldFromTheNextTimeOn) {
    std::vector<Subscription> added;
    signal.always([&](int value) {
        hears("a")(value);
        for (int i = 0; value == 1 && i < 100; ++i) added.push_back(signal.subscribe(hears("b")));
    });
    signal(1);
    EXPECT_EQ(heard, "a1 ");
    added.resize(1);
    signal(2);
    EXPECT_EQ(heard, "a1 a2 b2 ");
}

TEST_F(SignalTest, AListenerMaySetOffTheSignalAndEndOthersMeanwhile) {
    Subscription b;
    signal.always([&](int value) {
        hears("a")(value);
        if (value == 1) signal(2);
        if (value == 2) b.end();
    });
    b = signal.subscribe(hears("b"));
    signal.always(hears("c"));
    signal(1);
    EXPECT_EQ(heard, "a1 a2 c2 c1 ");
}

TEST_F(SignalTest, AListenerThatThrowsLeavesTheSignalUsable) {
    Subscription throwing = signal.subscribe([](int) { throw 1; });
    signal.always(hears("a"));
    EXPECT_THROW(signal(1), int);
    throwing.end();
    signal(2);
    EXPECT_EQ(heard, "a2 ");
}

TEST(Subscription, MayOutliveTheSignal) {
    auto signal = std::make_optional<Signal<>>();
    Subscription subscription = signal->subscribe([] {});
    signal.reset();
    subscription.end();
}

}  // namespace
}  // namespace kavorix
