#include "logging/channel_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kavorix {
namespace {

const std::vector<PodOnFile> Pods = {{3, "7S", 10, {}}, {12, "8S", 32, {}}};

// The columns as "pod/channel" texts.
std::vector<std::string> named(std::string_view text) {
    const ChannelList list = parse_channel_list(text, Pods);
    EXPECT_EQ(list.Complaint, "") << text;
    std::vector<std::string> names;
    for (const CsvColumn& column : csv_columns(Pods, list.Selection))
        names.push_back(std::to_string(column.Pod) + "/" + std::to_string(column.Channel));
    return names;
}

TEST(ChannelList, NamesChannelsRangesAndWholePods) {
    using testing::ElementsAre;
    EXPECT_THAT(named("3/4"), ElementsAre("3/4"));
    EXPECT_THAT(named("3/1-3,3/7"), ElementsAre("3/1", "3/2", "3/3", "3/7"));
    EXPECT_THAT(named("12/32, 3/10 ,3/9-10"), ElementsAre("3/9", "3/10", "12/32"));
    EXPECT_THAT(named("3/*"), testing::SizeIs(10));
    EXPECT_THAT(named("12/*,3/2-2"), testing::SizeIs(33));
}

TEST(ChannelList, SaysWhatIsWrong) {
    const struct {
        const char* text;
        const char* complaint;
    } rows[] = {
        {"", "No channel is named"},
        {"  ", "No channel is named"},
        {"3/1,,3/2", "\"\" does not begin with a pod number and \"/\""},
        {"x/1", "\"x/1\" does not begin with a pod number and \"/\""},
        {"/1", "\"/1\" does not begin with a pod number and \"/\""},
        {"4/1", "\"4/1\" names a pod that is not in the log"},
        {"99999999999/1", "\"99999999999/1\" does not begin with a pod number and \"/\""},
        {"3", "\"3\" names no channel, range of channels or \"*\""},
        {"3/", "\"3/\" names no channel, range of channels or \"*\""},
        {"3/a", "\"3/a\" names no channel, range of channels or \"*\""},
        {"3/5-2", "\"3/5-2\" names no channel, range of channels or \"*\""},
        {"3/1-x", "\"3/1-x\" names no channel, range of channels or \"*\""},
        {"3/0", "\"3/0\" names a channel that the pod does not have"},
        {"3/11", "\"3/11\" names a channel that the pod does not have"},
        {"3/1-11", "\"3/1-11\" names a channel that the pod does not have"},
        {"3/-1", "\"3/-1\" names no channel, range of channels or \"*\""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(parse_channel_list(row.text, Pods).Complaint, row.complaint) << row.text;
}

}  // namespace
}  // namespace kavorix
