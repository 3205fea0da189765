// The worked examples of docs/log-format.md are what the writer writes.

#include <gtest/gtest.h>

#include <charconv>
#include <sstream>
#include <string>

#include "support/log_rig.h"
#include "support/memory_files.h"

namespace kavorix::test {
namespace {

struct Example {
    std::string bytes;
    bool offsets_right = true;  // those at the beginnings of its lines
};

// The lines between "```NAME" and "```": an offset, two blanks, bytes, perhaps "*" and a count, two
// blanks and an explanation.
Example example(const std::string& name) {
    const auto files = make_host_files();
    std::istringstream page(read_all(*files, KAVORIX_SOURCE_DIR "/docs/log-format.md"));
    Example found;
    std::string line;
    while (std::getline(page, line) && line != "```" + name) {
    }
    while (std::getline(page, line) && line != "```") {
        found.offsets_right =
            found.offsets_right && std::stoul(line.substr(0, 4), nullptr, 16) == found.bytes.size();
        std::istringstream rest(line.substr(6, line.find("  ", 6) - 6));
        std::string bytes;
        std::size_t times = 1;
        for (std::string word; rest >> word;) {
            if (word[0] == '*') {
                times = std::stoul(word.substr(1));
            } else {
                bytes += static_cast<char>(std::stoul(word, nullptr, 16));
            }
        }
        for (; times > 0; --times) found.bytes += bytes;
    }
    return found;
}

TEST(LogExample, AScanLogIsAsThePageShowsIt) {
    MemoryFiles files;
    LogRig rig(files);
    rig.add_pod(3, "7S");
    rig.run_time.Log.ScanComment = "Kiln";
    rig.channel(3, 1).Label = "Inlet";
    for (int channel = 1; channel <= 10; ++channel) rig.channel(3, channel).Unit = "V";
    rig.log.Start_Log_File(ScanLog);
    rig.give(3, {1.5F, -2.0F, 0.1235494F, 99.0F, 0, 0, 0, 0, 0, 0});
    rig.status(3).ResultCode[3] = 129;
    rig.write(ScanLog, 0);
    rig.log.Stop_Log_File(ScanLog);
    const Example scan = example("scan");
    EXPECT_TRUE(scan.offsets_right);
    EXPECT_EQ(scan.bytes.size(), files.content("/logs/scan.DAT").size());
    EXPECT_TRUE(scan.bytes == files.content("/logs/scan.DAT"));
}

TEST(LogExample, AnEventRecordIsAsThePageShowsIt) {
    MemoryFiles files;
    LogRig rig(files);
    rig.add_pod(4, "8R");
    rig.log.Start_Log_File(EventLog);
    const std::size_t header = files.content("/logs/event.DAT").size();
    rig.give_events(4, {{19, 5, 13, 45, 1, 7, 2, 1, 0}, {3, 5, 13, 45, 1, 990, 59, 0, 1}});
    rig.write(EventLog, 0);
    rig.log.Stop_Log_File(EventLog);
    const Example event = example("event");
    EXPECT_TRUE(event.offsets_right);
    EXPECT_EQ(event.bytes.size(), 44u);
    EXPECT_TRUE(event.bytes == files.content("/logs/event.DAT").substr(header, event.bytes.size()));
}

}  // namespace
}  // namespace kavorix::test
