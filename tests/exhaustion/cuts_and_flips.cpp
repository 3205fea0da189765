// Every length that a log can be cut to inside a block, and every bit of a log's block and of
// configuration files turned. The tests take samples at a stride; KAVORIX_EXHAUST=1 in the
// environment takes all.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "config/config_writer.h"
#include "logging/csv_converter.h"
#include "logging/log_contents.h"
#include "support/log_rig.h"
#include "support/memory_files.h"
#include "support/random_config.h"

namespace kavorix::test {
namespace {

const std::string Path = "/logs/a.DAT";

// The step from one case to the next; 1 when all are asked for.
std::size_t stride(std::size_t sampled) {
    return std::getenv("KAVORIX_EXHAUST") ? 1 : sampled;
}

// A scan log of one run whose first block is full and whose second one is begun.
class FullBlock : public testing::Test {
  protected:
    FullBlock() {
        MemoryFiles files;
        LogRig rig(files);
        rig.run_time.Log.ScanFileName = Path;
        rig.add_pod(1, "8S");
        rig.add_pod(7, "7S");
        rig.log.Start_Log_File(ScanLog);
        header_ = files.content(Path).size();
        for (int record = 0; header_ + BlockSize + 100 > files.content(Path).size(); ++record) {
            rig.give(1, std::vector<float>(32, static_cast<float>(record)));
            rig.give(7, std::vector<float>(10, static_cast<float>(-record) / 8));
            rig.write(ScanLog);
        }
        rig.log.Stop_Log_File(ScanLog);
        whole_ = files.content(Path);
        records_ = read(whole_).records;
        text_ = convert(whole_).text;
    }

    static LogRead read(const std::string& bytes) {
        constexpr std::size_t Buffer = 8192;
        MemoryFiles files;
        files.put(Path, bytes);
        return read_log(files, Path, Buffer);
    }

    struct Converted {
        CsvResult result;
        std::string text;
    };
    class Unwatched : public CsvWatcher {
        void progress(int) override {}
        bool go_on() override { return true; }
        bool go_on_with_wrong_dates() override { return true; }
    };
    static Converted convert(const std::string& bytes) {
        MemoryFiles files;
        files.put(Path, bytes);
        const auto log = files.open(Path, OpenMode::Read);
        CsvPlan plan;
        plan.Pods = read_log_contents(*log).Pods;
        plan.Selection = select_all(plan.Pods);
        Unwatched watcher;
        Converted converted;
        converted.result =
            CsvConverter(
                *log, [&](std::string_view text) { converted.text += text; }, plan, watcher)
                .convert();
        return converted;
    }

    // The records of `found` that are those of the whole log, from the first on.
    std::size_t unharmed(const std::vector<RecordRead>& found) const {
        std::size_t same = 0;
        while (same < found.size() && same < records_.size() && found[same] == records_[same])
            ++same;
        return same;
    }

    static constexpr std::size_t RecordEntries = DataHeadEntries + 1 + 32 + 1 + 10;
    static constexpr std::size_t RecordsOfBlock = BlockLimit / RecordEntries;

    std::size_t header_ = 0;
    std::string whole_;
    std::vector<RecordRead> records_;
    std::string text_;
};

TEST_F(FullBlock, CutAtAnyLengthKeepsTheRecordsBefore) {
    ASSERT_EQ(whole_.size(), header_ + 2 * BlockSize);
    ASSERT_GT(records_.size(), RecordsOfBlock);
    for (std::size_t length = header_; length < header_ + BlockSize; length += stride(211)) {
        const std::string bytes = whole_.substr(0, length);
        const LogRead log = read(bytes);
        const std::size_t whole =
            std::min((length - header_) / (RecordEntries * EntrySize), RecordsOfBlock);
        ASSERT_EQ(log.records.size(), whole) << length;
        ASSERT_EQ(unharmed(log.records), whole) << length;
        const Converted csv = convert(bytes);
        ASSERT_EQ(csv.result.Rows, whole) << length;
        ASSERT_EQ(csv.text, text_.substr(0, csv.text.size())) << length;
        ASSERT_TRUE(csv.result.End == CsvEnd::Done || csv.result.Position <= length) << length;
    }
}

// What one bit does: the records in front of it stay, nothing is made up behind the end of the
// file, and where the converter stops it says at which byte.
TEST_F(FullBlock, WithAnyBitTurnedKeepsTheRecordsBeforeIt) {
    std::string bytes = whole_;
    for (std::size_t bit = 0; bit < BlockSize * 8; bit += stride(3989)) {
        const std::size_t place = header_ + bit / 8;
        const char before = bytes[place];
        bytes[place] = static_cast<char>(before ^ (1 << bit % 8));
        const LogRead log = read(bytes);
        const std::size_t in_front = (place - header_) / (RecordEntries * EntrySize);
        ASSERT_GE(unharmed(log.records), std::min(in_front, RecordsOfBlock)) << bit;
        const Converted csv = convert(bytes);
        ASSERT_LE(csv.result.Position, bytes.size()) << bit;
        ASSERT_LE(csv.result.Rows, records_.size() + 1) << bit;
        if (csv.result.End == CsvEnd::Damaged || csv.result.End == CsvEnd::CutShort) {
            ASSERT_GE(csv.result.Position + RecordEntries * EntrySize, place) << bit;
        }
        bytes[place] = before;
    }
}

TEST_F(FullBlock, WithAnyBitOfItsHeaderTurnedCanStillBeRead) {
    std::string bytes = whole_;
    for (std::size_t bit = 0; bit < header_ * 8; bit += stride(37)) {
        const char before = bytes[bit / 8];
        bytes[bit / 8] = static_cast<char>(before ^ (1 << bit % 8));
        ASSERT_LE(read(bytes).end_position, bytes.size()) << bit;
        ASSERT_LE(convert(bytes).result.Position, bytes.size()) << bit;
        bytes[bit / 8] = before;
    }
}

const InterfaceSettings Card{0, static_cast<std::int16_t>(0xC800), 1000, 0};

// Loads `text` with each bit turned: it loads and is written back the same, or every message names
// a line and the configuration is the one before.
void turn_bits(const std::string& text, const PodConfigs& configs, std::size_t step) {
    const auto configuration = std::make_unique<Configuration>();
    const Connected connected = station_for(Card, configs);
    const auto before = std::make_unique<PodConfigs>();
    default_ZAV_config((*before)[2], Type8S, 1);
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    std::string turned = text;
    ASSERT_EQ(load_configuration(text, connected, *configuration,
                                 [](const LoadMessage&) { return true; }),
              LoadOutcome::Loaded);
    for (std::size_t bit = 0; bit < text.size() * 8; bit += step) {
        char& byte = turned[bit / 8];
        byte = static_cast<char>(byte ^ (1 << bit % 8));
        configuration->ZavConfig = *before;
        configuration->Interface = {};
        std::size_t messages = 0;
        const LoadOutcome outcome =
            load_configuration(turned, connected, *configuration, [&](const LoadMessage& message) {
                EXPECT_TRUE(message.line >= 2 && message.line <= lines + 2) << bit;
                EXPECT_FALSE(message.text.empty()) << bit;
                ++messages;
                return true;
            });
        ASSERT_EQ(outcome == LoadOutcome::Errors, messages > 0) << bit;
        if (outcome != LoadOutcome::Loaded) {
            ASSERT_TRUE(configuration->ZavConfig == *before) << bit;
        } else {
            const std::string written =
                config_text(configuration->Interface, configuration->ZavConfig, {});
            load_configuration(written, connected, *configuration,
                               [](const LoadMessage&) { return true; });
        }
        byte = static_cast<char>(byte ^ (1 << bit % 8));
    }
}

TEST(ConfigurationFile, OfEveryTypeWithAnyBitTurnedLoadsOrNamesTheLines) {
    RandomConfig random(7);
    PodConfigs configs;
    for (std::int16_t type = Type7R; type <= Type7W; ++type) configs[at(type)] = random.pod(type);
    turn_bits(config_text(Card, configs, {}), configs, stride(401));
}

TEST(ConfigurationFile, OfAFullNetworkWithBitsTurnedLoadsOrNamesTheLines) {
    const PodConfigs configs = full_network();
    const std::string text = config_text(Card, configs, {});
    // All bits of it take half a day; the test of every type has every kind of line.
    turn_bits(text, configs, text.size() * 8 / 60);
}

}  // namespace
}  // namespace kavorix::test
