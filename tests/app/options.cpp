#include "app/options.h"

#include <gtest/gtest.h>

namespace kavorix::test {

using std::chrono::milliseconds;

TEST(PodList, TakesNumbersAndSpans) {
    struct Case {
        const char* text;
        std::vector<int> pods;
    };
    for (const Case& c : {Case{"3", {3}}, Case{"1-5,7", {1, 2, 3, 4, 5, 7}},
                          Case{"50, 49", {49, 50}}, Case{"2,2,1-2", {1, 2}}, Case{"07", {7}}})
        EXPECT_EQ(parse_pod_list(c.text), c.pods) << c.text;
}

TEST(PodList, RefusesEverythingElse) {
    for (const char* text :
         {"", ",", "0", "51", "5-3", "1-", "-1", "a", "1;2", "1-51", "1,,2", "3x"})
        EXPECT_EQ(parse_pod_list(text), std::nullopt) << text;
}

TEST(Duration, TakesUnitsAndPlainSeconds) {
    struct Case {
        const char* text;
        long long ms;
    };
    for (const Case& c : {Case{"90", 90'000}, Case{"90s", 90'000}, Case{"250ms", 250},
                          Case{"1.5m", 90'000}, Case{"2h", 7'200'000}, Case{"7d", 604'800'000}})
        EXPECT_EQ(parse_duration(c.text), milliseconds(c.ms)) << c.text;
}

TEST(Duration, RefusesWhatIsNoTime) {
    for (const char* text : {"", "s", "0", "-5s", "1x", "1e99d", "nan", "0.1ms"})
        EXPECT_EQ(parse_duration(text), std::nullopt) << text;
}

}  // namespace kavorix::test
