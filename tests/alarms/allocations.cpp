// A tick without a transition takes no memory.

#include <gtest/gtest.h>

#include <cmath>

#include "alarms/desk_rig.h"
#include "support/counted_memory.h"

namespace kavorix::test {
namespace {

TEST(AlarmDesk, WithoutATransitionNothingIsAllocated) {
    const auto delayed = [](AlarmRule& of) { of.on_delay_s = 60; };
    DeskRig rig({rule("1/1/high", 1, delayed), rule("1/2/rate", 1), rule("1/3/digital", 0),
                 rule("1/1/invalid"), rule("1/stale", 60), rule("1/lost"), rule("1/4/high", 1),
                 rule("50/1/low", 1), rule("50/lost")});
    const std::vector<float> quiet = {0, 0, 1, 5}, delaying = {2, 0.5F, 1, 5};
    const std::vector<float> unread = {2, NAN, 1, 5};
    const std::vector<std::int16_t> valid(4), pending = {0, 128 + 13, 0, 0};
    rig.desk->reading(0, quiet, valid, rig.now);
    rig.desk->pod_lost(49, rig.now);
    rig.desk->acknowledge("1/4/high", rig.ann, rig.now);
    const std::size_t before = allocations;
    for (int second = 0; second < 20; ++second) {
        rig.pass(1000);
        rig.desk->reading(0, second % 2 == 0 ? quiet : delaying, valid, rig.now);
        rig.desk->reading(0, unread, pending, rig.now);
        rig.desk->pod_lost(49, rig.now);
        rig.desk->station(AlarmKind::DiskFilling, false, rig.now);
    }
    EXPECT_EQ(allocations, before);
    rig.desk->reading(0, std::vector<float>{0, 0, 0, 5}, valid, rig.now);
    EXPECT_GT(allocations, before);
}

}  // namespace
}  // namespace kavorix::test
