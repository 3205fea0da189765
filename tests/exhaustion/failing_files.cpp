// Every operation on files that a save, a load, a log and a conversion ask for fails, each once and
// from then on, for several reasons, writes half done or not at all: the program reports it, names
// the file, and keeps what was there.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "config/config_files.h"
#include "config/config_writer.h"
#include "link/discovery.h"
#include "logging/csv_dialog.h"
#include "platform/virtual_event_loop.h"
#include "support/faulty_files.h"
#include "support/log_rig.h"
#include "support/memory_files.h"
#include "support/recording_failures.h"
#include "support/scripted_dialogs.h"

namespace kavorix::test {
namespace {

struct Fault {
    int spared = 0;
    std::errc reason = std::errc::io_error;
    bool for_ever = false;
    bool short_writes = false;
};

std::string describe(const Fault& fault) {
    return "operation " + std::to_string(fault.spared) + ", error " +
           std::to_string(static_cast<int>(fault.reason)) + (fault.for_ever ? ", for ever" : "") +
           (fault.short_writes ? ", short writes" : "");
}

// Runs `work` with each fault that can befall it; `work` makes its files anew each time and uses
// those it is given. The number of faults.
int with_every_fault(const std::function<void(MemoryFiles&, FaultyFiles&, const Fault*)>& work) {
    int operations = 0;
    {
        MemoryFiles files;
        FaultyFiles disk(files);
        work(files, disk, nullptr);
        operations = disk.operations();
    }
    int faults = 0;
    for (int spared = 0; spared < operations; ++spared)
        for (const std::errc reason :
             {std::errc::no_space_on_device, std::errc::permission_denied, std::errc::io_error})
            for (const int kind : {0, 1, 2, 3}) {
                const Fault fault{spared, reason, kind % 2 == 1, kind / 2 == 1};
                SCOPED_TRACE(describe(fault));
                MemoryFiles files;
                FaultyFiles disk(files);
                disk.short_writes = fault.short_writes;
                disk.fail_operation(spared, reason, fault.for_ever);
                work(files, disk, &fault);
                EXPECT_GT(disk.operations(), spared);
                ++faults;
            }
    return faults;
}

// True when the program went on to its end.
bool survives(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const ProgramEnded&) {
        return false;
    }
}

void expect_report(const RecordingFailures& failures, const Fault& fault,
                   const std::string& location, const std::vector<std::string>& names) {
    ASSERT_EQ(failures.reports.size(), 1u);
    const std::string& report = failures.reports.front();
    EXPECT_EQ(report.rfind(std::to_string(static_cast<int>(fault.reason)) + " " + location, 0), 0u)
        << report;
    EXPECT_TRUE(std::any_of(names.begin(), names.end(), [&](const std::string& name) {
        return report.find(name) != std::string::npos;
    })) << report;
}

// A station with one configured pod, as far as configuration files need it.
struct ConfigStation {
    explicit ConfigStation(Files& files)
        : config_files(
              {configuration, status, dialogs, files, loop, message_line, failures, "/station"}) {
        configuration.ConfigFileName = "/data/a.CFG";
        configuration.Interface.CardAddress = FirstCardAddress;
        status[2].Ident = {'8', 'S', 'F', 'A', ' ', '0', 'F', ' ', '1', '.', '0', '0'};
        default_ZAV_config(configuration.ZavConfig[2], Type8S, 1);
    }
    std::unique_ptr<Configuration> configuration_owner = std::make_unique<Configuration>();
    Configuration& configuration = *configuration_owner;
    std::unique_ptr<PodStatuses> status_owner = std::make_unique<PodStatuses>();
    PodStatuses& status = *status_owner;
    ScriptedDialogs dialogs;
    VirtualEventLoop loop;
    Message line;
    MessageLine message_line{line, dialogs};
    RecordingFailures failures;
    ConfigFiles config_files;
};

TEST(EveryFault, OfASaveLeavesTheOldFileOrTheWholeNewOne) {
    const int faults =
        with_every_fault([](MemoryFiles& files, FaultyFiles& disk, const Fault* fault) {
            files.put("/data/a.CFG", "the old file");
            ConfigStation station(disk);
            station.configuration.ConfigChanged = 1;
            EXPECT_TRUE(survives([&] { station.config_files.save_file(0); }));
            const bool saved = !station.config_files.save_failure();
            const std::string text =
                config_text(station.configuration.Interface, station.configuration.ZavConfig,
                            station.loop.wall_time());
            const std::string& now = files.content("/data/a.CFG");
            EXPECT_TRUE(now == text || (!saved && now == "the old file")) << now;
            if (!fault) return;
            EXPECT_EQ(station.configuration.ConfigChanged, saved ? 0 : 1);
            EXPECT_EQ(station.configuration.ConfigFileName, "/data/a.CFG");
            EXPECT_EQ(station.dialogs.boxes.size(), saved ? 0u : 1u);
            if (!fault->for_ever) {
                EXPECT_EQ(files.paths(), std::vector<std::string>{"/data/a.CFG"});
            }
        });
    EXPECT_GT(faults, 50);
}

TEST(EveryFault, OfALoadLeavesTheConfigurationOrLoadsIt) {
    const int faults =
        with_every_fault([](MemoryFiles& files, FaultyFiles& disk, const Fault* fault) {
            ConfigStation station(disk);
            auto wanted = std::make_unique<Configuration>();
            default_ZAV_config(wanted->ZavConfig[2], Type8S, 0);
            wanted->ZavConfig[2].Channel[4].Label = "Inlet";
            files.put("/data/b.CFG",
                      config_text(station.configuration.Interface, wanted->ZavConfig, {}));
            const auto before = std::make_unique<PodConfigs>(station.configuration.ZavConfig);
            station.dialogs.choose("/data/b.CFG");
            const bool loaded = survives([&] { station.config_files.open_file(); });
            EXPECT_EQ(station.configuration.ZavConfig == *before, !loaded);
            EXPECT_EQ(station.configuration.ConfigFileName, loaded ? "/data/b.CFG" : "/data/a.CFG");
            if (fault && !loaded)
                expect_report(station.failures, *fault, "confact/open_file", {"/data/b.CFG"});
        });
    EXPECT_GT(faults, 20);
}

TEST(EveryFault, OfALoadWithErrorsLeavesTheConfiguration) {
    const int faults =
        with_every_fault([](MemoryFiles& files, FaultyFiles& disk, const Fault* fault) {
            ConfigStation station(disk);
            files.put("/data/b.CFG", "KAVORIX ZAV CONFIGURATION FILE\r\nXX1;\r\nYY2;\r\n");
            const auto before = std::make_unique<PodConfigs>(station.configuration.ZavConfig);
            station.dialogs.choose("/data/b.CFG");
            station.dialogs.answer(Answer::No);
            const bool went_on = survives([&] { station.config_files.open_file(); });
            EXPECT_EQ(station.configuration.ZavConfig, *before);
            EXPECT_EQ(station.configuration.ConfigFileName, "/data/a.CFG");
            if (fault && !went_on)
                expect_report(station.failures, *fault, "confact/open_file", {"/data/b."});
        });
    EXPECT_GT(faults, 80);
}

TEST(EveryFault, OfALogLeavesEveryRecordThatWasWritten) {
    const int faults =
        with_every_fault([](MemoryFiles& files, FaultyFiles& disk, const Fault* fault) {
            int written = 0;
            auto rig = std::make_unique<LogRig>(disk);
            rig->add_pod(3, "7S");
            const bool stopped = survives([&] {
                for (int run = 0; run < 2; ++run) {
                    rig->log.Start_Log_File(ScanLog);
                    for (int record = 0; record < 3; ++record) {
                        rig->give(3, std::vector<float>(10, static_cast<float>(written + 1)));
                        rig->write(ScanLog);
                        ++written;
                    }
                    rig->log.Stop_Log_File(ScanLog);
                }
            });
            const auto read = [&] {
                return files.has("/logs/scan.DAT") ? read_log(files, "/logs/scan.DAT") : LogRead{};
            };
            // The record that failed may be there, but then as a whole.
            const LogRead log = read();
            const auto found = static_cast<int>(log.records.size());
            ASSERT_TRUE(found == written || (!stopped && found == written + 1))
                << found << " of " << written << testing::PrintToString(rig->failures.reports);
            for (int i = 0; i < found; ++i)
                EXPECT_EQ(log.records[at(i)].values, [&] {
                    std::vector<float> values(11, static_cast<float>(i + 1));
                    values[0] = 3;
                    return values;
                }());
            if (!fault) return;
            if (!stopped) expect_report(rig->failures, *fault, "LOGFILE/", {"/logs"});

            // The next program goes on with the file.
            rig.reset();
            disk.heal();
            LogRig next(disk);
            next.add_pod(3, "7S");
            next.log.Start_Log_File(ScanLog);
            next.give(3, std::vector<float>(10, 100.0F));
            next.write(ScanLog);
            next.log.Stop_Log_File(ScanLog);
            EXPECT_EQ(read().records.size(), at(found + 1));
            EXPECT_EQ(read().end, DatItem::End);
        });
    EXPECT_GT(faults, 150);
}

TEST(EveryFault, OfAConversionIsToldAndLeavesTheLog) {
    std::string log;
    {
        MemoryFiles files;
        LogRig rig(files);
        rig.add_pod(3, "7S");
        rig.log.Start_Log_File(ScanLog);
        for (int record = 0; record < 3; ++record) {
            rig.give(3, std::vector<float>(10, 1.5F));
            rig.write(ScanLog);
        }
        rig.log.Stop_Log_File(ScanLog);
        log = files.content("/logs/scan.DAT");
    }
    const int faults =
        with_every_fault([&](MemoryFiles& files, FaultyFiles& disk, const Fault* fault) {
            files.put("/logs/scan.DAT", log);
            VirtualEventLoop loop;
            ScriptedDialogs dialogs;
            RecordingFailures failures;
            CsvDialog dialog({disk, loop, dialogs, failures, [](bool) {}});
            dialog.Form_Load();
            dialogs.choose("/logs/scan.DAT");
            const bool went_on = survives([&] {
                dialog.cmdOpen_Click();
                dialog.cmdConvert_Click();
            });
            EXPECT_EQ(files.content("/logs/scan.DAT"), log);
            if (!fault) {
                EXPECT_TRUE(files.has("/logs/scan.CSV"));
                return;
            }
            if (!went_on) return expect_report(failures, *fault, "frmCSVConv/", {"/logs/scan."});
            // It was told, unless the text is there as a whole.
            if (dialogs.boxes.empty()) {
                EXPECT_TRUE(files.has("/logs/scan.CSV"));
                EXPECT_EQ(dialog.screen.lblStatus.caption, "3 rows written to /logs/scan.CSV");
            } else {
                EXPECT_EQ(dialogs.boxes.size(), 1u);
                EXPECT_NE(dialogs.boxes.front().text.find("/logs"), std::string::npos)
                    << dialogs.boxes.front().text;
            }
        });
    EXPECT_GT(faults, 100);
}

}  // namespace
}  // namespace kavorix::test
