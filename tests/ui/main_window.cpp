// What the main window's commands do to the pods, to the selection and to the screen, and what may
// come in between while they wait.

#include "station_script.h"

namespace kavorix::test {
namespace {

struct Scene {
    const char* what;
    const char* script;
    const char* told;
};

const Scene Scenes[] = {
    {"a trigger goes to the selected pods", "click 1 50; press Trigger; tell triggered message",
     "1 TR; 50 TR; triggered 1 50; "},
    {"a pod that fails is no longer selected, polled or awaited",
     "click 1 50; pod 50 fails; press Trigger; tell selected polled triggered icons message panel",
     "1 TR; 50 TR; selected 1; polled 1 5; triggered 1; icons selected resting error; "
     " ERROR! - Transmit Error (ZAV:50); panel Tx ERROR"},
    {"a pod in continuous mode scans from its trigger on, and is not configured meanwhile",
     "click 1; pod 1 scans; choose Trigger; tell scanning buttons",
     "1 CO; 1 TR; CONT SCAN; buttons Trig Halt Default SelectAll Clear"},
    {"a halt gives the configuration commands back",
     "click 1; pod 1 scans; press Trigger; pod 1 does not scan; now; press Halt; "
     "tell triggered scanning buttons",
     "1000 ms: 1 HA; triggered none; ; buttons Trig Halt Transmit Config Default SelectAll Clear"},
    {"transmit sends every pod its own configuration, if it is for its type",
     "click 5 50; pod 50 is another type; press Transmit; tell selected",
     "5 SP<00><00><00><00>; 10 ms: 5 CH1MO000; \"ZAV type does not match the configuration ZAV "
     "type for ZAV number 50.\n\nConfiguration for this ZAV will not be transmitted.\"; "
     "selected 5 50"},
    {"config opens the pod or the interface, whichever is selected",
     "press Config; click 1; press Config; click 5; press Config; click card; press Config",
     "pod setup; \"More than 1 ZAV Icon Selected for Configuration\"; interface settings"},
    {"select all is a toggle of its own",
     "press Select/De-Select All; tell selected; click 5 50; press Select/De-Select All; "
     "tell selected",
     "selected 1 5 50; selected none"},
    {"select all leaves out what was removed",
     "pod 5 is silent; polling; wait 100 ms; press Select/De-Select All; tell selected icons",
     "selected 1 50; icons selected error selected"},
    {"a click toggles a pod, elsewhere it does nothing",
     "click 1; click 5 1; click 2 49; tell selected icons; click 5; tell buttons",
     "selected 5; icons resting selected resting; buttons Default SelectAll Clear"},
    {"the interface is selected by its icon", "click card; tell buttons; click card; tell buttons",
     "buttons Transmit Config Default SelectAll Clear; buttons Default SelectAll Clear"},
    {"clear puts failed pods back and takes note of what was reported",
     "click 1 50; pod 1 fails; press Trigger; pod 1 heals; now; press Clear; "
     "tell selected polled icons message panel marked",
     "\"You will need to re-transmit the configuration to the ZAV(s) which had errors.\"; "
     "selected 50; polled 1 5 50; icons resting resting selected; ; panel ; marked 1"},
    {"clear leaves pods without errors alone", "click 1; press Clear; tell selected marked",
     "\"You will need to re-transmit the configuration to the ZAV(s) which had errors.\"; "
     "selected 1; marked none"},
    {"a pod that is out of order says so until it is cleared",
     "pod 50 is out of order; tell icons; click 50; tell icons; click 50; tell icons; press Clear; "
     "tell icons",
     "icons resting resting error; icons resting resting selected; icons resting resting error; "
     "\"You will need to re-transmit the configuration to the ZAV(s) which had errors.\"; "
     "icons resting resting resting"},
    {"the menu of a pod is about the selection, or about that pod alone",
     "click 1 5; menu of 5; tell selected; menu of 50; tell selected; menu of 20; tell selected",
     "selected 1 5; selected 50; selected 50"},
    {"delete asks first",
     "click 1 50; pod 1 is relabelled; answer cancel ok; choose Delete; tell message; "
     "choose Delete; tell message marked",
     "\"Configurations for the Selected ZAV(s) will be Deleted\"; ; "
     "\"Configurations for the Selected ZAV(s) will be Deleted\";  Configuration(s) Deleted; "
     "marked 1 50"},
    {"default continuous scan asks, sets up and sends",
     "click 50; answer cancel ok; choose Default Cont Scan; choose Default Cont Scan; "
     "tell marked title",
     "\"Selected ZAV(s) will be Set to:  'Default, Continuous Scan'\"; "
     "\"Selected ZAV(s) will be Set to:  'Default, Continuous Scan'\"; 50 CO; 50 RE; "
     "500 ms: 50 SE; 510 ms: 50 CO; marked none; KAVORIXER *"},
    {"what was changed since it was sent is marked, until it is sent",
     "click 1; pod 1 is edited; pod 50 is edited; pod 5 is relabelled; press Config; tell marked",
     "pod setup; marked 1 50"},
    {"what was sent is marked no longer",
     "click 1; pod 1 is edited; pod 50 is edited; press Transmit; now; tell marked", "marked 50"},
    {"what is not available does nothing", "press Trigger; choose Halt; choose Delete", ""},
    {"a link failure takes the commands away",
     "click 1; pod 1 is silent; polling; wait 100 ms; tell buttons message panel; "
     "press the error panel; tell panel",
     "buttons Default SelectAll Clear;  ERROR! - Receive Error (ZAV:01); panel Rx ERROR; panel "},
    {"a panel opens its view for selected pods",
     "press the panel Stream 0; click 1; press the panel Stream 0", "stream 0"},
    {"the window stays until the operator is sure",
     "answer cancel ok; press the window's cross; press the window's cross",
     "\"Are you sure you wish to Exit KAVORIX\"; \"Are you sure you wish to Exit KAVORIX\"; "
     "the program ends"},

    // While something waits.
    {"a pod that fails in the halt delay leaves the rest of it alone",
     "click 1 5; polling; after 1000 ms pod 5 is silent; after 1500 ms tell selected buttons; "
     "press Halt; tell selected polled triggered panel",
     "1 HA; 5 HA; selected 1; buttons Default SelectAll Clear; selected 1; polled 1 50; "
     "triggered none; panel Rx ERROR"},
    {"nothing else is sent inside a transmission",
     "click 1; after 500 ms press Trigger; after 500 ms press Transmit; "
     "after 500 ms choose Delete; press Halt",
     "1 HA"},
    {"exit declined in a delay goes on with the transmission",
     "click 1; after 1000 ms press the window's cross; answer cancel; press Halt; tell selected",
     "1 HA; \"Are you sure you wish to Exit KAVORIX\"; selected 1"},
    {"exit in a delay ends the program at once",
     "click 1 5; after 1000 ms choose Exit KAVORIXER; answer ok; press Halt; wait 9000 ms",
     "1 HA; 5 HA; \"Are you sure you wish to Exit KAVORIX\"; the program ends"},
    {"a pod selected in the trigger delay is not taken for triggered",
     "click 1; pod 1 scans; after 500 ms click 50; press Trigger; tell selected triggered",
     "1 CO; 1 TR; selected 1 50; triggered 1"},
    {"the selection is the operator's while configurations are sent",
     "click 1 5; after 5 ms click 1 50; press Transmit; tell selected",
     "1 SP<00><00><00><00>; 10 ms: 1 KA0; 20 ms: 1 FR0; 30 ms: 1 UN0; 40 ms: 1 AM; 50 ms: 1 TC0; "
     "60 ms: 1 CH1MO000; 70 ms: 5 SP<00><00><00><00>; 80 ms: 5 CH1MO000; selected 5 50"},
    {"a pod that fails before its turn gets no configuration, cleared or not",
     "click 5 50; pod 5 is long; polling; after 50 ms pod 50 is silent; "
     "after 150 ms pod 50 heals; after 200 ms press Clear; press Transmit; now; "
     "tell selected polled",
     "selected 5; polled 1 5 50"},
};

TEST(MainWindowScenes, ComeAsTold) {
    for (const Scene& scene : Scenes)
        EXPECT_EQ(StationScript().play(scene.script), scene.told) << scene.what;
}

// A pod as it is known, and the icon that tells it.
TEST(MainScreen, AnIconTellsWhatIsKnownOfItsPod) {
    struct Row {
        const char* known;
        Picture picture;
    };
    const Row rows[] = {
        {"", Picture::img1ZAV},
        {"selected", Picture::imgZAV},
        {"data", Picture::img1ZAV_D},
        {"selected data", Picture::imgZAV_D},
        {"out-of-order", Picture::img1ZAV_E},
        {"out-of-order selected", Picture::imgZAV},
        {"removed", Picture::img1ZAV_E},
        {"removed selected data marked logging", Picture::img1ZAV_E},
        {"marked", Picture::img1ZAV},
        {"logging data", Picture::img1ZAV_D},
        {"marked logging", Picture::img1LOG},
        {"marked logging selected", Picture::imgLOG},
        {"marked logging data", Picture::img1LOG_D},
        {"marked logging selected data", Picture::imgLOG_D},
    };
    for (const Row& row : rows)
        for (const int number : {1, 50}) {
            const Pod pod = Pod::numbered(number);
            const auto known = [&](const char* word) {
                return (" " + std::string(row.known) + " ").find(" " + std::string(word) + " ") !=
                       std::string::npos;
            };
            RunTime run_time;
            PodStatus& status = run_time.Status[pod];
            status.Found = true;
            status.DataArrived = known("data");
            status.OutOfOrder = known("out-of-order");
            status.Removed = known("removed");
            status.LogEvents = known("marked");
            run_time.Log.EventLogging = known("logging");
            run_time.Link.ZavSelected.set(pod, known("selected"));
            EXPECT_EQ(main_screen(run_time, {}).img_ZAV[pod].picture, row.picture) << row.known;
        }
}

TEST(MainScreen, ThePanelsTellTheCycleAndTheCard) {
    RunTime run_time;
    Configuration configuration;
    const MainScreen empty = main_screen(run_time, configuration);
    EXPECT_EQ(empty.pnlStatus.caption + empty.pnlPollCnt.caption + empty.pnlBars.caption, "");
    EXPECT_FALSE(empty.img_4A.visible);

    run_time.Link.Card = CardSearch::Found;
    configuration.Interface.CardAddress = C800;
    run_time.Poll.PollStarted = true;
    run_time.Poll.PollCount = 123456;
    const MainScreen shown = main_screen(run_time, configuration);
    EXPECT_EQ(shown.pnlStatus.caption, "Card C800");
    EXPECT_EQ(shown.pnlPollCnt.caption, "123456");
    EXPECT_EQ(shown.img_4A.tool_tip, "Interface card at C800");

    struct Load {
        double percent;
        const char* caption;
        Colour colour;
    };
    for (const Load& load :
         {Load{10, "10% |", Colour::Black}, Load{74, "74% |||||||", Colour::Black},
          Load{75, "75% ||||||||", Colour::Yellow}, Load{89, "89% |||||||||", Colour::Yellow},
          Load{90, "90% |||||||||", Colour::Red}, Load{400, "400% |||||||||||", Colour::Red}}) {
        run_time.Poll.LoadPercent = load.percent;
        const Label panel = main_screen(run_time, configuration).pnlBars;
        EXPECT_EQ(panel.caption, load.caption);
        EXPECT_EQ(panel.fore, load.colour) << load.percent;
    }
}

TEST(MainScreen, APodOnTheScreenHasItsTypeItsTipAndItsStreams) {
    UiRig rig;
    rig.station({{1, "8RCN 0F 1.00"}, {5, "7WJA 0F 1.00"}, {49, "7SBA 0F 1.00"}, {50, ""}});
    rig.status(5).StreamMarked = {true, false, true, false};
    const MainScreen screen = rig.screen();
    struct Row {
        int pod;
        const char* type;
        Colour family;
        std::string tip;
        const char* streams;
    };
    for (const Row& row :
         {Row{1, "8R", Colour::LightGrey, "ZAV 01\n8RCN 0F 1.00\n8R Digital I/O", "----"},
          Row{5, "7W", Colour::White, "ZAV 05\n7WJA 0F 1.00\n7W Universal ZAV 500V", "0-2-"},
          Row{49, "7S", Colour::Silver, "ZAV 49\n7SBA 0F 1.00\n7S Solid State 6 Pole", "----"}}) {
        const Pod pod = Pod::numbered(row.pod);
        EXPECT_EQ(screen.lblZAVType[pod], (Label{row.type, Colour::Black, row.family, true, true}));
        EXPECT_EQ(screen.img_ZAV[pod].tool_tip, row.tip);
        std::string streams;
        for (int stream = 0; stream < StreamCount; ++stream)
            streams += screen.lblStrm(stream)[pod].caption;
        EXPECT_EQ(streams, row.streams);
    }
    EXPECT_EQ(screen.img_ZAV[Pod::numbered(50)].tool_tip, "ZAV 50\nNo status reply");
    EXPECT_FALSE(screen.lblZAVType[Pod::numbered(50)].visible);
    EXPECT_FALSE(screen.img_ZAV[Pod::numbered(2)].visible);
    EXPECT_EQ(screen.picZAVNum1[0] + screen.picZAVNum1[24], "0125");
    EXPECT_EQ(screen.picZAVNum2[0] + screen.picZAVNum2[24], "2650");
}

TEST(MainScreen, TheTitleNamesTheFileAndItsChanges) {
    const auto title = [](const char* file, std::int16_t changed) {
        Configuration configuration;
        configuration.ConfigFileName = file;
        configuration.ConfigChanged = changed;
        return main_screen(RunTime{}, configuration).caption;
    };
    EXPECT_EQ(title("", 0), "KAVORIXER");
    EXPECT_EQ(title("", 1), "KAVORIXER *");
    EXPECT_EQ(title("/plant/Kiln 4.CFG", 0), "KAVORIXER - Kiln 4.CFG");
    EXPECT_EQ(title("/plant/Kiln 4.CFG", 1), "KAVORIXER - Kiln 4.CFG *");
}

TEST(MainWindowOptions, AreCheckedInTheirMenu) {
    UiRig rig;
    rig.station({{50, "7VJA 0F 1.00"}});
    const auto checked = [&] {
        std::string text;
        const MainScreen screen = rig.screen();
        for (const Command command : {Command::DefaultScreen, Command::ExpandScreen,
                                      Command::Stream3AutoClear, Command::TransmitReminder})
            text += screen.command(command).checked ? "x" : "-";
        return text;
    };
    EXPECT_EQ(checked(), "x--x");
    rig.main_window.run(Command::ExpandScreen);
    EXPECT_EQ(checked(), "-x-x");
    rig.main_window.run(Command::DefaultExpand);
    rig.main_window.run(Command::TransmitReminder);
    EXPECT_EQ(checked(), "x---");
    rig.status(50).StreamSeen.fill(true);
    rig.status(50).StreamMarked.fill(true);
    rig.main_window.run(Command::Stream3AutoClear);
    EXPECT_EQ(checked(), "x-x-");
    EXPECT_EQ(rig.status(50).StreamSeen, (StreamFlags{true, true, true, false}));
    EXPECT_EQ(rig.status(50).StreamMarked, (StreamFlags{true, true, true, false}));
    rig.main_window.run(Command::DefaultScreen);
    EXPECT_EQ(checked(), "x-x-");
}

// A failure names the handler that met it: a button's own, a menu's, an icon's.
TEST(MainWindowFailures, AreReportedUnderTheHandlersName) {
    const auto location = [](auto&& act) {
        UiRig rig;
        rig.station({{50, "7VJA 0F 1.00"}});
        rig.click({50});
        for (const CommandRow& row : command_rows())
            rig.main_window.on(row.id, [] { throw std::runtime_error("why"); });
        rig.run_time.Log.ScanFileName = "scan.DAT";
        EXPECT_THROW(act(rig.main_window), ProgramEnded);
        const std::string text = rig.dialogs.boxes.at(0).text;
        const auto begin = text.find(" at ") + 4;
        return text.substr(begin, text.find('\n') - begin);
    };
    for (const ButtonRow& row : buttons())
        EXPECT_EQ(location([&](MainWindow& window) { window.press(row); }),
                  "frmMain/" + std::string(row.name) + "_Click");
    struct Row {
        Command command;
        const char* name;
    };
    for (const Row& row :
         {Row{Command::OpenFile, "mnuConfigItem"}, Row{Command::Exit, "mnuConfigItem"},
          Row{Command::Trigger, "mnuOperateItem"}, Row{Command::ViewStream0, "mnuViewItem"},
          Row{Command::ViewStatus, "mnuViewItem"}, Row{Command::StartScanLog, "mnuLoggingItem"},
          Row{Command::GraphSetup, "mnuTrendItem"}, Row{Command::SelectAll, "mnuOptionsItem"},
          Row{Command::PrinterSetup, "mnuUtilitiesItem"}, Row{Command::Guide, "mnuGuide"},
          Row{Command::Keys, "mnuKeys"}, Row{Command::About, "mnuAbout"}})
        EXPECT_EQ(location([&](MainWindow& window) { window.run(row.command); }),
                  "frmMain/" + std::string(row.name) + "_Click");
    EXPECT_EQ(location([](MainWindow& window) { window.pnlButton_DblClick(3); }),
              "frmMain/pnlButton_DblClick");
}

}  // namespace
}  // namespace kavorix::test
