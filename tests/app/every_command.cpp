// Every menu item and every button of the main window on a whole station in virtual time: each does
// something, and none that asks leaves a trace when the operator backs out.

#include <gtest/gtest.h>

#include "app/desk.h"
#include "base/text.h"
#include "logging/csv_dialog.h"
#include "logging/log_setup.h"
#include "platform/virtual_event_loop.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"
#include "support/scripted_driver.h"
#include "ui/card/interface_settings.h"

namespace kavorix::test {
namespace {

using Lines = std::vector<std::string>;

constexpr auto Card = static_cast<std::int16_t>(0xC800);

class NoMemory : public SystemInfo {
    std::uint64_t available_memory() const override { return 0; }
};

// An operator who fills in every window that opens and then accepts it, or cancels it.
class Operator : public Windows, public PodSetupWindows {
  public:
    explicit Operator(ScriptedDialogs& dialogs) : dialogs_(dialogs) {}

    bool accepts = true;
    Lines opened;

    void show_about(const AboutBox&) override { opened.emplace_back("frmAbout"); }
    void show_stream0(Stream0View&) override { opened.emplace_back("frmStrm0"); }
    void show_stream1(Stream1View&) override { opened.emplace_back("frmStrm1"); }
    void show_stream2(Stream2View&) override { opened.emplace_back("frmStrm2"); }
    void show_stream3(Stream3View&) override { opened.emplace_back("frmStrm3"); }
    void show_guide(std::string_view page) override {
        opened.push_back("guide: " + std::string(page));
    }
    void close_graph() override {}
    void show_graph() override { opened.emplace_back("frmGraph"); }

    void show_status(StatusView& view) override {
        opened.emplace_back("frmViewStat");
        view.cmdOK_Click();
    }
    void show_interface_settings(InterfaceSettingsDialog& dialog) override {
        opened.emplace_back("frmConfigAdap");
        dialog.screen.cboUserPollRate.select_code(500);
        dialog.screen.chkPower.checked = true;
        finish(dialog);
    }
    void show_tx_command(TxCommandDialog& dialog) override {
        opened.emplace_back("frmTxCmd");
        dialog.screen.txtTxCmd.text = "en";
        dialog.txtTxCmd_Change();
        if (accepts) dialog.cmdSend_Click();
        dialog.cmdCancel_Click();
    }
    void show_select_channels(SelectChannelsDialog& dialog) override {
        opened.emplace_back("frmSelChan");
        dialog.screen.chkChan[18].checked = true;
        dialog.chkChan_Click(18);
        finish(dialog);
    }
    void show_log_setup(LogSetup& dialog) override {
        opened.emplace_back("frmLogFile");
        dialogs_.choose("/logs/new.DAT");
        dialog.cmdFile_Click();
        dialog.screen.txtFileComment.text = "night";
        finish(dialog);
    }
    void show_csv_conversion(CsvDialog& dialog) override {
        opened.emplace_back("frmCSVConv");
        dialogs_.choose("/logs/scans.DAT");
        dialog.cmdOpen_Click();
        dialog.cmdAddAll_Click();
        dialog.cmdSelectAll_Click();
        dialogs_.choose("/logs/scans.CSV");
        if (accepts) dialog.cmdConvert_Click();
        dialog.cmdClose_Click();
    }
    void show_csv_progress(CsvProgress&, bool open) override {
        if (open) opened.emplace_back("frmCSVProg");
    }
    void show_graph_setup(GraphSetup& dialog) override {
        opened.emplace_back("frmQCSetup");
        dialog.screen.chkChan[0].checked = true;
        dialog.chkChan_Click(0);
        dialog.screen.txtTitle.text = "Oven";
        if (accepts) dialog.cmdOK_Click();
    }
    void show_pod_setup(PodSetup& dialog) override {
        opened.emplace_back("frmConfigZAV");
        dialog.screen.chkSetup.checked = true;
        dialog.chkSetup_Click();
        dialogs_.answer(Answer::No);  // the change is not kept
        if (accepts)
            dialog.cmdOK_Click();
        else
            dialog.unload_request();
    }
    void show_copy_channel(CopyChannel&) override {}
    void show_channel_view(ChannelView&) override {}
    void show_unit_conversion(UnitConversion&) override {}
    void show_post_linearisation(PostLinearisation&) override {}
    void show_user_thermocouple(UserThermocouple&) override {}
    void show_alarm_limits(AlarmLimits&) override {}
    void show_alarm_groups(AlarmGroups&) override {}

  private:
    template <class Dialog>
    void finish(Dialog& dialog) {
        if (accepts)
            dialog.cmdOK_Click();
        else
            dialog.cmdCancel_Click();
    }

    ScriptedDialogs& dialogs_;
};

// A station with a digital pod at 3, which is selected, and a universal one at 8.
class Scene {
  public:
    Scene() {
        driver.cards[Card] = 0;
        driver.add_pod(3, "8RCA 0F 1.00");
        driver.add_pod(8, "7VJA 0F 1.00");
        desk.graph.page.set_printing({[this] { operating.opened.emplace_back("printer"); }, {}});
        station.start();
        desk.main_window.img_ZAV_Click(Pod::numbered(3));
        initial_ = station.configuration.ZavConfig;
    }

    // What happens counts from here on.
    void forget() {
        station.run_time.Reports.Message.Text.clear();
        dialogs.take_boxes();
        dialogs.requests.clear();
        operating.opened.clear();
        driver.calls.clear();
    }
    void run(Command command) {
        EXPECT_TRUE(desk.main_window.available(command));
        try {
            desk.main_window.run(command);
        } catch (const ProgramEnded&) {
            operating.opened.emplace_back("end");
        }
    }

    // What was opened, asked and sent, in that order.
    Lines seen() const {
        Lines lines = operating.opened;
        for (const ShownBox& box : dialogs.boxes) lines.push_back("box: " + box.text);
        for (const FileRequest& request : dialogs.requests)
            lines.push_back("file: " + request.title);
        const Lines sent = driver.recorded("Tx");
        lines.insert(lines.end(), sent.begin(), sent.end());
        return lines;
    }
    // What a command may change, as "NAME: VALUE".
    Lines state() const;

    VirtualEventLoop loop;
    ScriptedDriver driver{loop};
    ScriptedDialogs dialogs;
    MemoryFiles files;
    NoMemory memory;
    Operator operating{dialogs};
    Station station{{driver, loop, dialogs, files, {"/station", true}}};
    Desk desk{{station, operating, operating, memory, {}}};

  private:
    PodConfigs initial_;
};

std::string numbers_of(const PodSet& pods) {
    std::string text;
    for (const Pod pod : pods) text += ' ' + two_digits(pod.number());
    return text;
}

Lines Scene::state() const {
    const RunTime& now = station.run_time;
    const Configuration& config = station.configuration;
    const MainScreen screen = desk.main_window.screen();
    Lines lines = {
        "message:" + now.Reports.Message.Text,
        "error panel: " + screen.pnlErr.caption,
        "selected:" + numbers_of(now.Link.ZavSelected),
        "polled:" + numbers_of(now.Link.PollTable.InPollTable),
        "triggered:" + numbers_of(now.Link.Triggered),
        "card: " + hex16(config.Interface.CardAddress),
        "poll rate: " + std::to_string(config.Interface.PollRate),
        "power: " + std::to_string(config.Interface.PowerOn),
        "changed: " + std::to_string(config.ConfigChanged),
        "configuration file: " + config.ConfigFileName,
        "scan log: " + now.Log.ScanFileName + " " + now.Log.ScanComment,
        "event log: " + now.Log.EventFileName + " " + now.Log.EventComment,
        "scans logged: " + std::to_string(now.Log.ScanLogging),
        "events logged: " + std::to_string(now.Log.EventLogging),
        "graph: " + now.Graph.Settings.Title + " " + std::to_string(now.Graph.GraphsSetUp),
        "graph shown: " + std::to_string(now.Graph.TrendRunning),
        "auto clear: " + std::to_string(now.Poll.Stream3AutoClear),
        "expanded: " + std::to_string(screen.expanded),
        "reminder: " + std::to_string(now.Options.TransmitReminder),
        "files:",
        "configured:",
    };
    for (const std::string& path : files.paths()) lines[lines.size() - 2] += ' ' + path;
    PodSet configured;
    for (const Pod pod : all_pods()) configured.set(pod, config.ZavConfig[pod] != initial_[pod]);
    lines.back() += numbers_of(configured);
    return lines;
}

// Lines of `after` that `before` has not.
Lines changes(const Lines& before, const Lines& after) {
    Lines lines;
    for (std::size_t i = 0; i < after.size(); ++i)
        if (before[i] != after[i]) lines.push_back(after[i]);
    return lines;
}

using Step = void (*)(Scene&);

void nothing(Scene&) {}
void ok(Scene& scene) {
    scene.dialogs.answer(Answer::Ok);
}
void cancel(Scene& scene) {
    scene.dialogs.answer(Answer::Cancel);
}
void no_file(Scene& scene) {
    scene.dialogs.choose(std::nullopt);
}
void cfg_file(Scene& scene) {
    scene.dialogs.choose("/station/a.CFG");
}
void no_then_ok(Scene& scene) {
    scene.dialogs.answer(Answer::No);
    ok(scene);
}
void configured(Scene& scene) {
    scene.station.configuration.ZavConfig[2].Setup = 1;
}
void unsaved(Scene& scene) {
    scene.station.configuration.ConfigChanged = 1;
}
void saved(Scene& scene) {
    configured(scene);
    cfg_file(scene);
    scene.run(Command::SaveAs);
    scene.station.configuration.ZavConfig[2].Setup = 0;
}
void pod_failed(Scene& scene) {
    scene.driver.pod(8).tx_status = 1;
    scene.desk.main_window.img_ZAV_Click(Pod::numbered(8));
    scene.run(Command::Trigger);
}
void logs_set_up(Scene& scene) {
    scene.station.run_time.Log.ScanFileName = "/logs/scans.DAT";
    scene.station.run_time.Log.EventFileName = "/logs/events.DAT";
    scene.station.run_time.Status[2].LogScan = true;
    scene.station.run_time.Status[2].LogEvents = true;
}
void logging(Scene& scene) {
    logs_set_up(scene);
    scene.run(Command::StartBothLogs);
}
void logged(Scene& scene) {
    logging(scene);
    scene.run(Command::StopBothLogs);
}
void graph_set_up(Scene& scene) {
    scene.station.run_time.Graph.TrendSelected[2][0] = true;
    scene.station.run_time.Graph.GraphsSetUp = true;
}
void expanded(Scene& scene) {
    scene.run(Command::ExpandScreen);
}

struct Case {
    Command command;
    Lines happens;  // what is opened, asked and sent, then what is another than before
    Step prepare = nothing;
    Step accept = nothing;    // how what is asked is answered
    Step back_out = nullptr;  // likewise; null: nothing is asked
};

const std::string Reminder =
    "box: The new configuration must now be transmitted to the ZAV by clicking the 'Transmit' "
    "button. To disable this reminder toggle 'Transmit Config Reminder' in the 'Options' menu.";
const std::string ConfigurationChanged =
    "message: Configuration Changed - must be Transmitted to take Effect";
const Lines PodSetUp = {"frmConfigZAV", Reminder, ConfigurationChanged, "changed: 1",
                        "configured: 03"};
const Lines Saved = {"file: Save ZAV Configuration As", "message: Configuration file Saved",
                     "configuration file: /station/a.CFG",
                     "files: /station/ERR_LOG.TXT /station/a.CFG"};

const std::vector<Case> Cases = {
    {Command::InterfaceCard,
     {"frmConfigAdap", "poll rate: 500", "power: 1"},
     nothing,
     nothing,
     nothing},
    {Command::ZavSetup, PodSetUp, nothing, nothing, nothing},
    {Command::OpenFile,
     {"file: Open ZAV Configuration",
      "message: Configuration file Loaded - must be Transmitted to take Effect", "configured: 03"},
     saved,
     cfg_file,
     no_file},
    {Command::Save, Saved, nothing, cfg_file, no_file},
    {Command::SaveAs, Saved, nothing, cfg_file, no_file},
    {Command::TransmitConfig, {"Tx 3 SP<00><00><00><00>"}},
    {Command::Delete,
     {"box: Configurations for the Selected ZAV(s) will be Deleted",
      "message: Configuration(s) Deleted", "configured:"},
     configured,
     ok,
     cancel},
    {Command::DefaultContScan,
     {"box: Selected ZAV(s) will be Set to:  'Default, Continuous Scan'", "Tx 3 CO", "Tx 3 RE",
      "Tx 3 SE", "Tx 3 CO", "changed: 1", "configured: 03"},
     nothing,
     ok,
     cancel},
    {Command::Exit,
     {"end", "box: Configuration changes made but not saved.\n\nSave changes?",
      "box: Are you sure you wish to Exit KAVORIX", "files:"},
     unsaved,
     no_then_ok,
     cancel},
    {Command::Trigger, {"Tx 3 TR", "triggered: 03"}},
    {Command::Halt, {"Tx 3 HA"}},
    {Command::ClearEventCounter, {"frmSelChan", "Tx 3 CL19"}, nothing, nothing, nothing},
    {Command::EventCaptureOn, {"Tx 3 EV1"}},
    {Command::EventCaptureOff, {"Tx 3 EV0"}},
    {Command::TxCommand, {"frmTxCmd", "Tx 3 EN", "triggered: 03"}, nothing, nothing, nothing},
    {Command::ViewStream0, {"frmStrm0"}},
    {Command::ViewStream1, {"frmStrm1"}},
    {Command::ViewStream2, {"frmStrm2"}},
    {Command::ViewStream3, {"frmStrm3"}},
    {Command::ViewStatus, {"frmViewStat", "Tx 3 ST"}},
    {Command::SetupScanLog,
     {"frmLogFile", "file: Log File", "scan log: /logs/new.DAT night"},
     nothing,
     nothing,
     nothing},
    {Command::SetupEventLog,
     {"frmLogFile", "file: Log File", "event log: /logs/new.DAT night"},
     nothing,
     nothing,
     nothing},
    {Command::StartScanLog,
     {"scans logged: 1", "files: /logs/scans.DAT /logs/scans.DAT.sum /station/ERR_LOG.TXT"},
     logs_set_up},
    {Command::StartEventLog,
     {"events logged: 1", "files: /logs/events.DAT /logs/events.DAT.sum /station/ERR_LOG.TXT"},
     logs_set_up},
    {Command::StartBothLogs,
     {"scans logged: 1", "events logged: 1",
      "files: /logs/events.DAT /logs/events.DAT.sum /logs/scans.DAT /logs/scans.DAT.sum "
      "/station/ERR_LOG.TXT"},
     logs_set_up},
    {Command::StopScanLog, {"scans logged: 0"}, logging},
    {Command::StopEventLog, {"events logged: 0"}, logging},
    {Command::StopBothLogs, {"scans logged: 0", "events logged: 0"}, logging},
    {Command::GraphSetup, {"frmQCSetup", "graph: Oven 1"}, nothing, nothing, nothing},
    {Command::ViewGraph, {"frmGraph", "graph shown: 1"}, graph_set_up},
    {Command::DefaultScreen, {"expanded: 0"}, expanded},
    {Command::ExpandScreen, {"expanded: 1"}},
    {Command::SelectAll, {"selected: 03 08"}},
    {Command::Stream3AutoClear, {"auto clear: 1"}},
    {Command::TransmitReminder, {"reminder: 0"}},
    {Command::ConvertLogFile,
     {"frmCSVConv", "frmCSVProg", "file: Open ZAV Log File",
      "files: /logs/events.DAT /logs/events.DAT.sum /logs/scans.CSV /logs/scans.DAT "
      "/logs/scans.DAT.sum /station/ERR_LOG.TXT"},
     logged,
     nothing,
     nothing},
    {Command::PrinterSetup, {"printer"}},
    {Command::Guide, {"guide: index"}},
    {Command::Keys, {"guide: keys"}},
    {Command::About, {"frmAbout"}},
    {Command::Configure, PodSetUp, nothing, nothing, nothing},
    {Command::DefaultExpand, {"expanded: 1"}},
    {Command::ClearErrors,
     {"box: You will need to re-transmit the configuration to the ZAV(s) which had errors.",
      "error panel: ", "polled: 03 08"},
     pod_failed},
};

TEST(EveryCommand, StandsInTheTable) {
    for (int command = 1; command <= static_cast<int>(LastCommand); ++command)
        EXPECT_EQ(Cases[at(command - 1)].command, static_cast<Command>(command));
}

TEST(EveryCommand, DoesWhatItSays) {
    for (const Case& each : Cases) {
        SCOPED_TRACE(static_cast<int>(each.command));
        Scene scene;
        each.prepare(scene);
        scene.forget();
        const Lines before = scene.state();
        each.accept(scene);
        scene.run(each.command);
        Lines happened = scene.seen();
        const Lines changed = changes(before, scene.state());
        happened.insert(happened.end(), changed.begin(), changed.end());
        if (each.command == Command::TransmitConfig) {
            EXPECT_EQ(happened.size(), 61U);  // a scan period, and three statements a channel
            happened.resize(1);
        }
        EXPECT_EQ(happened, each.happens);
    }
}

TEST(EveryCommand, LeavesNoTraceWhenTheOperatorBacksOut) {
    for (const Case& each : Cases) {
        if (!each.back_out) continue;
        SCOPED_TRACE(static_cast<int>(each.command));
        Scene scene;
        each.prepare(scene);
        scene.forget();
        const Lines before = scene.state();
        scene.operating.accepts = false;
        each.back_out(scene);
        scene.run(each.command);
        EXPECT_EQ(scene.seen().front(),
                  each.happens.front() == "end" ? each.happens[1] : each.happens.front());
        EXPECT_EQ(scene.driver.recorded("Tx"), Lines{});
        EXPECT_EQ(changes(before, scene.state()), Lines{});
    }
}

}  // namespace
}  // namespace kavorix::test
