#include "model/pods.h"

#include <gtest/gtest.h>

#include <vector>

namespace kavorix {
namespace {

const Pod One = Pod::numbered(1);
const Pod Five = Pod::numbered(5);
const Pod Fifty = Pod::numbered(50);

template <class Pods>
std::vector<int> numbers(const Pods& pods) {
    std::vector<int> result;
    for (const Pod pod : pods) result.push_back(pod.number());
    return result;
}

TEST(Pod, CountsFromOneItsIndexFromZero) {
    EXPECT_EQ(Fifty.index(), 49);
    EXPECT_EQ(Fifty.number(), 50);
    EXPECT_EQ(Fifty, Pod::at_index(49));
    EXPECT_LT(One, Five);
    const std::vector<int> all = numbers(all_pods());
    ASSERT_EQ(all.size(), 50u);
    for (int i = 0; i < 50; ++i) EXPECT_EQ(all[at(i)], i + 1);
}

TEST(PodArray, HoldsItsValuesUnderPodAndIndex) {
    PodArray<int> values;
    values[Fifty] = 7;
    EXPECT_EQ(values[49], 7);
    EXPECT_EQ(*(values.end() - 1), 7);
    values.fill(3);
    EXPECT_EQ(values[One] + values[Fifty], 6);
    EXPECT_EQ(values.size(), 50u);
}

TEST(PodSet, SaysWhetherSomethingChanged) {
    PodSet set;
    EXPECT_TRUE(set.empty());
    EXPECT_TRUE(set.add(Five));
    EXPECT_FALSE(set.add(Five));
    EXPECT_FALSE(set.set(One, false));
    EXPECT_TRUE(set.has(Five));
    EXPECT_FALSE(set.has(One));
    EXPECT_TRUE(set.remove(Five));
    EXPECT_FALSE(set.remove(Five));
    EXPECT_EQ(set, PodSet{});
}

TEST(PodSet, IteratesInAscendingOrder) {
    EXPECT_EQ(numbers(PodSet{Fifty, One, Five}), (std::vector<int>{1, 5, 50}));
    EXPECT_EQ(numbers(PodSet{}), std::vector<int>{});
    EXPECT_EQ(numbers(PodSet::all()), numbers(all_pods()));
    EXPECT_EQ(PodSet::all().count(), 50);
}

TEST(PodSet, IsCutJoinedAndSubtracted) {
    const PodSet low{One, Five};
    const PodSet high{Five, Fifty};
    EXPECT_EQ(low & high, PodSet{Five});
    EXPECT_EQ(low | high, (PodSet{One, Five, Fifty}));
    EXPECT_EQ(low - high, PodSet{One});
    EXPECT_EQ(numbers(PodSet::all() - low).front(), 2);
}

TEST(PodSet, AMemberMayBeRemovedOnTheWay) {
    PodSet set{One, Five, Fifty};
    std::vector<int> seen;
    for (const Pod pod : set) {
        seen.push_back(pod.number());
        if (pod == One) set.remove(Five);
    }
    EXPECT_EQ(seen, (std::vector<int>{1, 50}));
}

}  // namespace
}  // namespace kavorix
