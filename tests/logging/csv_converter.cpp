#include "logging/csv_converter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "support/dat_builder.h"
#include "support/memory_files.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int32_t Date = 20260105;
const std::string LogPath = "/logs/a.DAT";
const std::string CsvPath = "/logs/a.CSV";

class RecordingWatcher : public CsvWatcher {
  public:
    void progress(int percent) override { percents.push_back(percent); }
    bool go_on() override { return ++looks != stop_at; }
    bool go_on_with_wrong_dates() override {
        ++questions;
        return wrong_dates_accepted;
    }

    std::vector<int> percents;
    int looks = 0;
    int stop_at = 0;  // number of the look that stops
    int questions = 0;
    bool wrong_dates_accepted = true;
};

struct Converted {
    CsvResult result;
    std::string text;
    std::vector<std::string> lines;  // without their ends

    std::string line(std::size_t index) const { return index < lines.size() ? lines[index] : ""; }
    // The lines behind file name, comment, heading, labels and units.
    std::vector<std::string> rows() const {
        return lines.size() < 5 ? std::vector<std::string>()
                                : std::vector(lines.begin() + 5, lines.end());
    }
};

class CsvConverterTest : public testing::Test {
  protected:
    Converted convert(const std::string& log) {
        files.put(LogPath, log);
        const auto in = files.open(LogPath, OpenMode::Read);
        plan.CsvPath = CsvPath;
        plan.Pods = read_log_contents(*in).Pods;
        plan.Selection = select_all(plan.Pods);
        if (choose) choose(plan.Selection);
        const auto out = files.open(CsvPath, OpenMode::Create);
        Converted converted;
        const auto write = [&](std::string_view text) { out->write(text); };
        converted.result = CsvConverter(*in, write, plan, watcher).convert();
        converted.text = files.content(CsvPath);
        std::istringstream text(converted.text);
        for (std::string line; std::getline(text, line);) {
            EXPECT_THAT(line, testing::EndsWith("\r"));
            converted.lines.push_back(line.substr(0, line.size() - 1));
        }
        return converted;
    }

    MemoryFiles files;
    CsvPlan plan;
    RecordingWatcher watcher;
    std::function<void(CsvSelection&)> choose;
};

TEST_F(CsvConverterTest, AScanLogAsAWhole) {
    DatBuilder log;
    log.run(ScanLog, "Kiln 4", Date,
            {{3, "7R", {{"Inlet", "degC"}, {" Outlet \"B\"", " "}}}, {12, "8S", {{"", "mV"}}}});
    log.data(134502496, {3, 1.5F, -2, 12, 100})
        .data(134503504, {3, 1E-5F, ErrorReading})
        .data(134504496, {12, 1E7F})
        .data(134505504, {})
        .filler(100);
    EXPECT_EQ(convert(log.bytes).text,
              "\"/logs/a.CSV\"\r\n"
              "\"Kiln 4\"\r\n"
              "\"DATE\",\"TIME\",\"MILLISECOND\",\"ZAV3/Ch1\",\"ZAV3/Ch2\",\"ZAV12/Ch1\"\r\n"
              ",,,\"Inlet\",\"Outlet \"\"B\"\"\",\"\"\r\n"
              ",,,\"degC\",\"\",\"mV\"\r\n"
              "\"05-01-26\",\"13:45:02\",496,1.5,-2,100\r\n"
              "\"05-01-26\",\"13:45:03\",504,0.00001,,\r\n"
              "\"05-01-26\",\"13:45:04\",496,,,1E+07\r\n"
              "\"05-01-26\",\"13:45:05\",504,,,\r\n");
}

TEST_F(CsvConverterTest, OnlySelectedChannelsOfSelectedPodsBecomeColumns) {
    choose = [](CsvSelection& selection) {
        selection.ChannelSelected[2] = {0, 1, 1};
        selection.PodSelected.remove(Pod::numbered(5));
        selection.ChannelSelected[8][0] = 0;
    };
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(3, 4), logged_pod(5, 2), logged_pod(9, 2)});
    log.data(1, {3, 31, 32, 33, 34, 5, 51, 52, 9, 91, 92});
    const Converted csv = convert(log.bytes);
    EXPECT_EQ(csv.line(2),
              "\"DATE\",\"TIME\",\"MILLISECOND\",\"ZAV3/Ch2\",\"ZAV3/Ch3\",\"ZAV9/Ch2\"");
    EXPECT_EQ(csv.line(3), ",,,\"L2\",\"L3\",\"L2\"");
    EXPECT_THAT(csv.rows(), ElementsAre("\"05-01-26\",\"00:00:00\",001,32,33,92"));
}

TEST_F(CsvConverterTest, NothingSelectedLeavesTheTimes) {
    choose = [](CsvSelection& selection) { selection = {}; };
    DatBuilder log;
    log.run(ScanLog, "c", Date, {logged_pod(3, 2)}).data(10203004, {3, 1, 2});
    EXPECT_EQ(convert(log.bytes).text,
              "\"/logs/a.CSV\"\r\n\"c\"\r\n\"DATE\",\"TIME\",\"MILLISECOND\"\r\n,,\r\n,,\r\n"
              "\"05-01-26\",\"01:02:03\",004\r\n");
}

TEST_F(CsvConverterTest, TheTimeIsTheSingleWrittenWithNineDigits) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {});
    for (const float time : {0.0F, 7.0F, 59999.0F, 1E7F, 134502500.0F, 235959999.0F})
        log.data(time, {});
    EXPECT_THAT(convert(log.bytes).rows(),
                ElementsAre("\"05-01-26\",\"00:00:00\",000", "\"05-01-26\",\"00:00:00\",007",
                            "\"05-01-26\",\"00:00:59\",999", "\"05-01-26\",\"01:00:00\",000",
                            "\"05-01-26\",\"13:45:02\",496", "\"05-01-26\",\"23:59:60\",000"));
}

TEST_F(CsvConverterTest, ADecreasingTimeIsTheNextDay) {
    DatBuilder log;
    log.run(ScanLog, "", 20240228, {});
    log.data(235958000, {}).data(235959008, {}).data(100, {}).data(100, {}).data(99, {});
    EXPECT_THAT(convert(log.bytes).rows(),
                ElementsAre("\"28-02-24\",\"23:59:58\",000", "\"28-02-24\",\"23:59:59\",008",
                            "\"29-02-24\",\"00:00:00\",100", "\"29-02-24\",\"00:00:00\",100",
                            "\"01-03-24\",\"00:00:00\",099"));
    EXPECT_EQ(watcher.questions, 0);
}

TEST_F(CsvConverterTest, ALaterRunForgetsTheTimeOfTheOneBefore) {
    DatBuilder log;
    log.run(ScanLog, "one", 20260105, {}).data(235959008, {}).filler(3);
    log.run(ScanLog, "two", 20260106, {}).data(80000000, {});
    const Converted csv = convert(log.bytes);
    EXPECT_EQ(csv.line(5), "\"05-01-26\",\"23:59:59\",008");
    EXPECT_EQ(csv.line(6), "\"two\"");
    EXPECT_EQ(csv.line(10), "\"06-01-26\",\"08:00:00\",000");
}

TEST_F(CsvConverterTest, ADayThatIsNoneCannotBeCountedOn) {
    DatBuilder log;
    log.run(ScanLog, "", 20261399, {}).data(2, {}).data(1, {}).data(0, {});
    EXPECT_THAT(convert(log.bytes).rows(),
                ElementsAre("\"99-13-26\",\"00:00:00\",002", "\"99-13-26\",\"00:00:00\",001",
                            "\"99-13-26\",\"00:00:00\",000"));
    EXPECT_EQ(watcher.questions, 1);

    watcher.wrong_dates_accepted = false;
    const Converted stopped = convert(log.bytes);
    EXPECT_EQ(stopped.result.End, CsvEnd::Stopped);
    EXPECT_THAT(stopped.rows(), ElementsAre("\"99-13-26\",\"00:00:00\",002"));
}

TEST_F(CsvConverterTest, PodsOfAllRunsAreColumnsInOrderOfAppearance) {
    DatBuilder log;
    log.run(ScanLog, "one", Date, {logged_pod(5, 1)}).data(1, {5, 50}).filler(2);
    log.run(ScanLog, "two", Date, {logged_pod(3, 2), logged_pod(5, 2)})
        .data(2, {3, 31, 32, 5, 51, 52})
        .data(3, {5, 53, 54});
    const Converted csv = convert(log.bytes);
    const std::string heading =
        "\"DATE\",\"TIME\",\"MILLISECOND\",\"ZAV5/Ch1\",\"ZAV5/Ch2\",\"ZAV3/Ch1\",\"ZAV3/Ch2\"";
    EXPECT_THAT(
        csv.lines,
        ElementsAre("\"/logs/a.CSV\"", "\"one\"", heading, ",,,\"L1\",\"\",\"\",\"\"",
                    ",,,\"V\",\"\",\"\",\"\"", "\"05-01-26\",\"00:00:00\",001,50,,,", "\"two\"",
                    heading, ",,,\"L1\",\"L2\",\"L1\",\"L2\"", ",,,\"V\",\"V\",\"V\",\"V\"",
                    "\"05-01-26\",\"00:00:00\",002,51,52,31,32",
                    "\"05-01-26\",\"00:00:00\",003,53,54,,"));
}

// A record uses exactly its count of singles: with fewer, with more, with pods that the run does
// not name, or in another order, none of its values can be trusted.
TEST_F(CsvConverterTest, ARecordThatDoesNotAddUpMakesTheFileCorrupt) {
    const std::vector<std::vector<float>> wrong = {{3, 1},
                                                   {3, 1, 2, 5},
                                                   {3, 1, 2, 5, 1, 2},
                                                   {5, 1, 2},
                                                   {3, 1, 2, 9},
                                                   {3, 1, 2, 7, 1, 2, 3},
                                                   {7, 3, 2, 1},
                                                   {5, 1, 2, 3, 3, 1, 2},
                                                   {3, 1, 2, 3, 1, 2},
                                                   {3, 1, 2, 5, 1, 2, 3, 5}};
    for (const auto& values : wrong) {
        DatBuilder log;
        log.run(ScanLog, "", Date, {logged_pod(3, 2), logged_pod(5, 3)});
        log.data(1, {3, 1, 2, 5, 1, 2, 3});
        const std::size_t position = log.bytes.size();
        log.data(2, values).filler(20);
        const CsvResult result = convert(log.bytes).result;
        EXPECT_EQ(result.End, CsvEnd::Corrupt) << testing::PrintToString(values);
        EXPECT_EQ(result.Position, position);
    }
}

// Read on behind it, the rows of all else are there.
TEST_F(CsvConverterTest, SalvageGoesOnWithTheNextRecordOrRunThatMakesSense) {
    plan.Salvage = true;
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(3, 2)}).data(1, {3, 1, 2}).data(2, {3, 1, 2, 5});
    log.data(3, {3, 3, 4}).singles({DataMarker, 4, 1E9F, 3, 3, 3});
    log.data(5, {3, 5, 6}).data(6, {3, 5, 6}).filler(3);
    log.run(ScanLog, "", Date, {logged_pod(4, 1), logged_pod(4, 1)}).data(7, {4, 1});
    log.bytes += "xyz";  // the last run stands at an odd place
    log.run(ScanLog, "", Date, {logged_pod(3, 2)}).data(8, {3, 7, 8});
    const CsvResult result = convert(log.bytes).result;
    EXPECT_EQ(result.End, CsvEnd::Done);
    EXPECT_FALSE(result.whole());
    EXPECT_EQ(result.Rows, 5u);
    EXPECT_EQ(result.DamagedParts, 3u);
    // One record, another and what looks like one, a configuration with its record and the rest.
    EXPECT_EQ(result.Skipped, 7 * EntrySize + 6 * EntrySize + (10 + 2 * 26 + 5 * EntrySize + 3));
}

TEST_F(CsvConverterTest, AnEventLogAsAWhole) {
    DatBuilder log;
    log.run(EventLog, "Doors", Date, {logged_pod(4, 2), logged_pod(8, 20)});
    log.data(80000496, {4, 1, 50102, 81502, 701, 50101, 81503, 99910, 8, 0, 60120, 235959, 11})
        .data(80001496, {8, -1})
        .data(80001504, {})
        .filler(9);
    choose = [](CsvSelection& selection) {
        for (std::size_t channel = 2; channel < 19; ++channel)
            selection.ChannelSelected[7][channel] = 0;
    };
    const Converted csv = convert(log.bytes);
    EXPECT_EQ(csv.line(1), "\"Doors\"");
    EXPECT_THAT(csv.rows(), ElementsAre("\"05-01-2026\",\"08:15:02\",007,,\"Lo to Hi\"",
                                        "\"05-01-2026\",\"08:15:03\",999,\"Low\"",
                                        "\"06-01-2026\",\"23:59:59\",000,,,,,\"High\""));
    EXPECT_EQ(csv.result.Rows, 3u);
}

TEST_F(CsvConverterTest, TheTextOfAnEventFollowsItsLastTwoDigits) {
    const struct {
        float rest;
        const char* text;
    } rows[] = {{12300, "123,\"Hi to Lo\""}, {12301, "123,\"Lo to Hi\""}, {12310, "123,\"Low\""},
                {12311, "123,\"High\""},     {0, "000,\"Hi to Lo\""},     {99929, "999,\"High\""}};
    for (const auto& row : rows) {
        DatBuilder log;
        log.run(EventLog, "", Date, {logged_pod(1, 1)}).data(0, {1, 0, 10101, 0, row.rest});
        EXPECT_THAT(convert(log.bytes).rows(),
                    ElementsAre(std::string("\"01-01-2026\",\"00:00:00\",") + row.text));
    }
}

TEST_F(CsvConverterTest, EventsOfChannelsWithoutAColumnAreSkipped) {
    choose = [](CsvSelection& selection) { selection.ChannelSelected[0][0] = 0; };
    DatBuilder log;
    log.run(EventLog, "", Date, {logged_pod(1, 2)});
    log.data(0, {1, 1, 10101, 1, 1, 10102, 2, 2, 9, 0, 10102, 3, 3});
    log.data(0, {1, 2, 10100, 1, 1, 10133, 2, 2, 10199, 3, 3});
    EXPECT_THAT(convert(log.bytes).rows(),
                ElementsAre("\"01-01-2026\",\"00:00:02\",000,\"Lo to Hi\""));
}

// Year by pod: what one pod has dated says nothing about another but where its first event belongs.
TEST_F(CsvConverterTest, TheYearOfAnEventFollowsItsPod) {
    choose = [](CsvSelection& selection) { selection.ChannelSelected[0][1] = 0; };
    const struct {
        std::int32_t start;
        std::vector<std::array<int, 3>> events;  // pod, month, year
    } rows[] = {
        {20251230, {{1, 12, 2025}, {1, 1, 2026}, {1, 12, 2026}, {1, 1, 2027}}},
        {20251230, {{1, 12, 2025}, {1, 1, 2026}, {2, 12, 2025}, {2, 1, 2026}, {1, 2, 2026}}},
        {20251230, {{1, 1, 2026}, {2, 1, 2026}, {3, 12, 2025}, {1, 1, 2026}, {3, 1, 2026}}},
        {20260102, {{1, 12, 2025}, {1, 1, 2026}}},
        {20260630, {{1, 12, 2026}, {2, 11, 2026}, {3, 1, 2027}}},
        {20260730, {{1, 1, 2026}, {2, 7, 2026}}},
        {20260105, {{1, 0, 2026}, {1, 13, 2026}, {1, 5, 2026}, {1, 0, 2026}, {1, 4, 2027}}},
    };
    for (const auto& row : rows) {
        DatBuilder log;
        log.run(EventLog, "", row.start, {logged_pod(1, 2), logged_pod(2, 1), logged_pod(3, 1)});
        std::vector<std::string> expected;
        for (const auto& [pod, month, year] : row.events) {
            log.data(0,
                     {static_cast<float>(pod), 0, static_cast<float>(150001 + month * 100), 0, 0});
            expected.push_back("\"15-" + std::string(month < 10 ? "0" : "") +
                               std::to_string(month) + "-" + std::to_string(year));
        }
        std::vector<std::string> dates;
        for (const std::string& line : convert(log.bytes).rows())
            dates.push_back(line.substr(0, 11));
        EXPECT_EQ(dates, expected) << row.start;
    }
    // An event without a column counts, too.
    DatBuilder log;
    log.run(EventLog, "", 20251230, {logged_pod(1, 2)});
    log.data(0, {1, 2, 311202, 3, 0, 10102, 4, 0, 10201, 5, 0});
    EXPECT_THAT(convert(log.bytes).rows(), ElementsAre(testing::StartsWith("\"01-02-2026\"")));
}

// Fields of a pod clock that is no clock give numbers of more digits: the first ones count.
TEST_F(CsvConverterTest, LongEventFieldsAreCutBehind) {
    DatBuilder log;
    log.run(EventLog, "", Date, {logged_pod(1, 1)});
    log.data(0, {1, 0, 1050101, 1234567, 165010});
    EXPECT_THAT(convert(log.bytes).rows(), ElementsAre());
    DatBuilder other;
    other.run(EventLog, "", Date, {logged_pod(1, 10)});
    other.data(0, {1, 0, 1050101, 1234567, 165010});
    EXPECT_THAT(convert(other.bytes).rows(),
                ElementsAre("\"10-50-2026\",\"12:34:56\",165,,,,,,,,,,\"Lo to Hi\""));
}

TEST_F(CsvConverterTest, ALogCutShortKeepsTheRowsBefore) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {logged_pod(3, 2)}).data(1, {3, 1, 2});
    const std::size_t position = log.bytes.size();
    log.data(2, {3, 1, 2});
    const Converted csv = convert(log.bytes.substr(0, log.bytes.size() - 1));
    EXPECT_EQ(csv.result.End, CsvEnd::CutShort);
    EXPECT_EQ(csv.result.Position, position);
    EXPECT_EQ(csv.result.Rows, 1u);
    EXPECT_THAT(csv.rows(), ElementsAre("\"05-01-26\",\"00:00:00\",001,1,2"));
}

TEST_F(CsvConverterTest, ADamagedRecordEndsItWithTheRowsBefore) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<std::vector<float>> scans = {
        {3, nan, 0},  {3, -1, 0},    {3, 1E9F, 0},  {3, 1, nan},
        {3, 1, 0.5F}, {3, 1, 16379}, {3, 1, 1E30F}, {3, 1, std::numeric_limits<float>::infinity()}};
    const std::vector<std::vector<float>> events = {
        {3, 0, 1, 3},           // the pod's last event is missing
        {3, 0, 4, 3, 0, 1, 1},  // one single short of an event
        {3, 0, 5, 3, nan, 1, 1, 1},
        {3, 0, 5, 3, 1E30F, 1, 1, 1},
        {3, 0, 5, 3, 0, -1, 1, 1},
        {3, 0, 5, 3, 0, 1, nan, 1},
        {3, 0, 5, 3, 0, 1, 1, 1E9F}};
    for (const std::int16_t kind : {ScanLog, EventLog})
        for (const auto& record : kind == ScanLog ? scans : events) {
            SCOPED_TRACE(testing::PrintToString(record));
            DatBuilder log;
            log.run(kind, "", Date, {logged_pod(3, 2)}).data(1, {});
            const std::size_t position = log.bytes.size();
            log.singles(record).filler(20);
            const CsvResult result = convert(log.bytes).result;
            EXPECT_EQ(result.End, CsvEnd::Damaged);
            EXPECT_EQ(result.Position, position);
        }
}

TEST_F(CsvConverterTest, WhatIsNoMarkerIsPassedOver) {
    DatBuilder log;
    log.singles({5, -1, 0}).run(ScanLog, "", Date, {logged_pod(3, 1)});
    log.singles({0, 7, 2.5F}).data(1, {3, 1}).singles({4, 4, 4}).data(2, {3, 2});
    files.put(LogPath, log.bytes);
    EXPECT_THAT(convert(log.bytes.substr(12)).rows(),
                ElementsAre("\"05-01-26\",\"00:00:00\",001,1", "\"05-01-26\",\"00:00:00\",002,2"));
}

TEST_F(CsvConverterTest, ProgressIsToldAtEveryNewPercent) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {});
    while (log.bytes.size() < 120) log.data(1, {});
    while (log.bytes.size() < 100000) log.data(1, {});
    convert(log.bytes);
    ASSERT_EQ(watcher.percents.size(), 101u);
    for (int percent = 0; percent <= 100; ++percent)
        EXPECT_EQ(watcher.percents[static_cast<std::size_t>(percent)], percent);
}

TEST_F(CsvConverterTest, StoppingKeepsTheRowsUpToTheCurrentRecord) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {});
    for (int i = 1; i <= 9; ++i) log.data(static_cast<float>(i), {});
    for (int helpers = 0; helpers <= 2; ++helpers) {
        plan.Helpers = helpers;
        watcher = {};
        watcher.stop_at = 2 + 3;  // header and configuration are looked at as well
        const Converted csv = convert(log.bytes);
        EXPECT_EQ(csv.result.End, CsvEnd::Stopped);
        EXPECT_EQ(csv.result.Rows, 3u);
        EXPECT_THAT(csv.rows(),
                    ElementsAre("\"05-01-26\",\"00:00:00\",001", "\"05-01-26\",\"00:00:00\",002",
                                "\"05-01-26\",\"00:00:00\",003"));
    }
}

TEST_F(CsvConverterTest, AFailingDiskIsThrown) {
    DatBuilder log;
    log.run(ScanLog, "", Date, {});
    for (int i = 0; i < 100; ++i) log.data(1, {});
    for (int helpers = 0; helpers <= 1; ++helpers) {
        plan.Helpers = helpers;
        files.space = 200;
        EXPECT_THROW(convert(log.bytes), std::system_error);
        files.space.reset();
    }
}

// The conversion as it is described, one single after the other.
std::string plain_conversion(const std::string& log, const std::vector<CsvColumn>& columns) {
    std::string csv = "\"/logs/a.CSV\"\r\n";
    std::size_t at_byte = 0;
    const auto next = [&] {
        const auto value = read_field<float>(log.data() + at_byte);
        at_byte += 4;
        return value;
    };
    std::vector<LoggedPod> pods;
    while (at_byte < log.size()) {
        const float marker = next();
        if (marker == 1) {
            at_byte += 4;  // an empty comment
            csv += "\"\"\r\n" + csv_heading(columns);
        } else if (marker == 2) {
            const auto count = read_field<std::int16_t>(log.data() + at_byte + 4);
            at_byte += 6;
            pods.clear();
            for (int i = 0; i < count; ++i) {
                const auto number = read_field<std::int16_t>(log.data() + at_byte);
                const auto channels = read_field<std::int16_t>(log.data() + at_byte + 4);
                pods.push_back(logged_pod(number, channels));
                at_byte += 6 + static_cast<std::size_t>(channels) * 20;
            }
            csv += csv_labels(columns, pods);
        } else if (marker == 3) {
            csv += "\"05-01-26\",\"00:00:0" + general(next() / 1000) + "\",000";
            const float count = next();
            float read = 1;
            float pending = next();
            for (const LoggedPod& pod : pods) {
                if (pending == static_cast<float>(pod.Number) && read < count) {
                    for (std::size_t channel = 1; channel <= pod.Channels.size(); ++channel) {
                        const float value = next();
                        for (const CsvColumn& column : columns)
                            if (column.Pod == pod.Number && at(column.Channel) == channel)
                                csv += std::bit_cast<std::uint32_t>(value) == ErrorReadingBits
                                           ? ","
                                           : "," + general(value);
                    }
                    read += static_cast<float>(pod.Channels.size());
                    if (read != count) {
                        pending = next();
                        ++read;
                    }
                } else {
                    for (const CsvColumn& column : columns)
                        if (column.Pod == pod.Number) csv += ",";
                }
            }
            csv += "\r\n";
        }
    }
    return csv;
}

std::string random_log(std::mt19937& random) {
    DatBuilder log;
    std::vector<LoggedPod> pods;
    for (std::int16_t pod = 1; pod <= 50; ++pod)
        if (random() % 5 == 0) pods.push_back(logged_pod(pod, static_cast<int>(random() % 33)));
    log.run(ScanLog, "", Date, pods);
    for (int record = 0; record < 2000; ++record) {
        std::vector<float> values;
        for (const LoggedPod& pod : pods) {
            if (random() % 4 == 0 || pod.Channels.empty()) continue;
            values.push_back(pod.Number);
            for (std::size_t i = 0; i < pod.Channels.size(); ++i)
                values.push_back(random() % 20 == 0
                                     ? ErrorReading
                                     : std::bit_cast<float>(static_cast<std::uint32_t>(random())));
        }
        if (!values.empty()) log.data(static_cast<float>(record / 250 * 1000), values);
        if (random() % 20 == 0) log.filler(random() % 50);
    }
    return log.bytes;
}

TEST_F(CsvConverterTest, WritesWhatThePlainConversionWritesWhateverTheBuffersAndHelpers) {
    std::mt19937 random(5);
    for (int round = 0; round < 4; ++round) {
        const std::string log = random_log(random);
        choose = [seed = random()](CsvSelection& selection) {
            std::mt19937 of_selection(static_cast<std::uint32_t>(seed));
            for (const Pod pod : all_pods())
                if (of_selection() % 4 == 0) selection.PodSelected.remove(pod);
            for (auto& pod : selection.ChannelSelected)
                for (auto& selected : pod)
                    if (of_selection() % 2 == 0) selected = 0;
        };
        plan.BufferSize = DatReader::DefaultBufferSize;
        plan.Helpers = 0;
        const std::string csv = convert(log).text;
        EXPECT_TRUE(csv == plain_conversion(log, csv_columns(plan.Pods, plan.Selection)));
        const struct {
            std::size_t buffer_size;
            int helpers;
        } ways[] = {{1, 0}, {7, 1}, {4096, 2}, {1000003, 5}};
        for (const auto& way : ways) {
            plan.BufferSize = way.buffer_size;
            plan.Helpers = way.helpers;
            EXPECT_TRUE(convert(log).text == csv) << way.buffer_size << " " << way.helpers;
        }
    }
}

// Every prefix of a small log converts, keeps whole rows and says why it ended.
TEST_F(CsvConverterTest, EveryPrefixOfALogConvertsOrReports) {
    DatBuilder scans;
    scans.run(ScanLog, "Kiln", Date, {logged_pod(3, 2), logged_pod(7, 1)});
    scans.data(1, {3, 1, 2, 7, 3}).data(2, {7, 1}).filler(4);
    scans.run(ScanLog, "Next", Date, {logged_pod(7, 3)}).data(3, {7, 1, 2, 3});
    DatBuilder events;
    events.run(EventLog, "Door", Date, {logged_pod(1, 1)});
    events.data(1, {1, 1, 10101, 1, 1, 10101, 2, 2}).filler(2).data(1, {1, -1});
    for (const std::string& log : {scans.bytes, events.bytes}) {
        const std::string whole = convert(log).text;
        for (std::size_t length = 0; length < log.size(); ++length) {
            const Converted csv = convert(log.substr(0, length));
            EXPECT_NE(csv.result.End, CsvEnd::Corrupt) << length;
            EXPECT_NE(csv.result.End, CsvEnd::Damaged) << length;
            EXPECT_LE(csv.result.Position, length);
        }
        // The columns are those of the whole log, as long as all headers are there.
        const Converted last = convert(log.substr(0, log.size() - 1));
        EXPECT_EQ(last.result.End, CsvEnd::CutShort);
        EXPECT_EQ(whole.substr(0, last.text.size()), last.text);
    }
}

}  // namespace
}  // namespace kavorix::test
