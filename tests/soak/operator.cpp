#include "soak/operator.h"

#include <algorithm>

#include "config/config_writer.h"

namespace kavorix::soak {

namespace {

// Sets something for as long as it lives.
template <class Value>
class Setting {
  public:
    Setting(Value& value, Value now) : value_(value), before_(std::exchange(value, now)) {}
    ~Setting() { value_ = before_; }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

  private:
    Value& value_;
    Value before_;
};

void look_at(GridSource& view) {
    const int columns = static_cast<int>(view.headings().size());
    std::size_t length = static_cast<std::size_t>(view.layout() % 2);
    for (const int row : view.take_changed_rows())
        if (row < view.row_count()) length += view.cell(row, 0).text.size();
    for (int row = 0; row < view.row_count(); row += 7)
        for (int column = 0; column < columns; ++column)
            length += view.cell(row, column).text.size();
    static_cast<void>(length);
}

}  // namespace

void Operator::perform(const Action& action, std::string& told) {
    Dice dice(action.seed);
    told = name_of(action.kind);
    const Setting<Dice*> own(hands_.dice, &dice);
    const Setting<std::string*> telling(hands_.told, &told);
    disturbed_ = action.meanwhile_after_ms > 0;
    if (disturbed_)
        hands_.rules.world.loop->call_later(action.meanwhile_after_ms, [this, action, &told] {
            if (hands_.modal > 0 || hands_.told != &told) return;
            Dice other(action.seed + 1);
            const Setting<Dice*> others(hands_.dice, &other);
            told += " {meanwhile, after " + std::to_string(action.meanwhile_after_ms) +
                    " ms: " + std::string(name_of(action.meanwhile));
            act(action.meanwhile);
            told += "}";
        });
    act(action.kind);
    look_at_views();
    hands_.told = nullptr;
}

void Operator::run(Command command) {
    hands_.desk().main_window.run(command);
}

void Operator::act(ActionKind kind) {
    constexpr std::array Views = {Command::ViewStream0, Command::ViewStream1, Command::ViewStream2,
                                  Command::ViewStream3};
    switch (kind) {
        case ActionKind::Wait:
            return wait();
        case ActionKind::ClickPods:
            return click_pods();
        case ActionKind::SelectAll:
            return select_all();
        case ActionKind::Trigger:
            return run(Command::Trigger);
        case ActionKind::Halt:
            return run(Command::Halt);
        case ActionKind::DefaultContScan:
            return run(Command::DefaultContScan);
        case ActionKind::SetUpPod:
            return run(Command::ZavSetup);
        case ActionKind::Transmit:
            return transmit();
        case ActionKind::TypeCommand:
            return run(Command::TxCommand);
        case ActionKind::SaveConfiguration:
            return save();
        case ActionKind::OpenConfiguration:
            return open();
        case ActionKind::DeleteConfigurations:
            return run(Command::Delete);
        case ActionKind::InterfaceCard:
            return set_up_card();
        case ActionKind::ViewStatus:
            return view_status();
        case ActionKind::OpenView:
            return run(dice().pick(Views));
        case ActionKind::CloseView:
            return close_view();
        case ActionKind::WorkInView:
            return work_in_view();
        case ActionKind::SetUpLog:
            return run(dice().chance(65) ? Command::SetupScanLog : Command::SetupEventLog);
        case ActionKind::StartLog:
            return start_log();
        case ActionKind::StopLog:
            return stop_log();
        case ActionKind::ConvertLog:
            return run(Command::ConvertLogFile);
        case ActionKind::Graph:
            return graph();
        case ActionKind::ClearErrors:
            return clear_errors();
        case ActionKind::Events:
            return events();
        case ActionKind::Options:
            return options();
        case ActionKind::SetWallClock:
            return set_wall_clock();
        case ActionKind::DiskTrouble:
            return trouble_disk();
        case ActionKind::ExitAndStart:
            return leave();
        case ActionKind::KillAndStart:
            throw Killed{};
    }
}

void Operator::wait() {
    const int kind = dice().below(100);
    const int ms = kind < 50   ? dice().number(10, 3000)
                   : kind < 90 ? dice().number(3000, 60000)
                               : dice().number(60000, 600000);
    hands_.tell(std::to_string(ms) + " ms");
    hands_.rules.world.loop->run_for(ms);
}

void Operator::click_pods() {
    MainWindow& window = hands_.desk().main_window;
    std::vector<int> shown;
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (run_time().Status[at(pod)].Found) shown.push_back(pod);
    for (int count = dice().number(1, 5); count > 0 && !shown.empty(); --count) {
        const int pod = dice().chance(3) ? dice().below(MaxZavs) : dice().pick(shown);
        hands_.tell(std::to_string(pod + 1));
        hands_.rules.click(pod);
        window.img_ZAV_Click(Pod::at_index(pod));
    }
    if (dice().chance(10)) window.img_4A_Click();
}

void Operator::select_all() {
    if (available(Command::SelectAll)) hands_.rules.select_all();
    run(Command::SelectAll);
}

// Where nothing else came in between, the pods must hold what they were sent.
void Operator::transmit() {
    if (!available(Command::TransmitConfig)) return;
    const std::int32_t errors = hands_.rules.known.session_errors;
    PodSet chosen;
    for (const Pod pod : all_pods())
        chosen.set(pod, hands_.rules.known.pods[at(pod.index())].selected);
    {
        hands_.rules.work_begins();
        const Setting<bool> sending(hands_.rules.several, true);
        run(Command::TransmitConfig);
    }
    if (!disturbed_ && errors == hands_.rules.known.session_errors)
        hands_.rules.transmitted(chosen);
}

void Operator::save() {
    if (!available(Command::Save)) return;
    const bool as = dice().chance(40);
    const auto contents = [&] {
        std::map<std::string, std::string> found;
        for (const std::string& path : hands_.rules.world.files->paths())
            if (path.ends_with(".CFG")) found[path] = hands_.rules.world.files->content(path);
        return found;
    };
    hands_.rules.remember_files(contents());
    run(as ? Command::SaveAs : Command::Save);
    hands_.tell(hands_.station().configuration.ConfigFileName);
    hands_.rules.check_saved_files();
}

// A file to load: one that was saved, or one that something happened to.
void Operator::prepare_file() {
    test::MemoryFiles& files = *hands_.rules.world.files;
    const Configuration& now = hands_.station().configuration;
    std::string text =
        config_text(now.Interface, now.ZavConfig, hands_.rules.world.loop->wall_time());
    const int kind = dice().below(10);
    if (kind < 3) return;  // any of those that are there
    if (kind >= 5)
        for (int changes = dice().number(1, 4); changes > 0; --changes) {
            const auto place =
                static_cast<std::size_t>(dice().below(static_cast<int>(text.size())));
            switch (dice().below(5)) {
                case 0:
                    text[place] = static_cast<char>(dice().below(256));
                    break;
                case 1:
                    text.resize(place + 1);
                    break;
                case 2:
                    text.insert(place, 1, static_cast<char>('0' + dice().below(10)));
                    break;
                case 3:
                    text.erase(place, 1);
                    break;
                default: {
                    const auto line = text.find('\n', place);
                    if (line != std::string::npos) text.insert(line + 1, text.substr(place, 20));
                }
            }
        }
    hands_.open_next = dice().chance(50) ? "/data/prepared.CFG" : "/data/damaged.CFG";
    files.put(hands_.open_next, text);
    hands_.tell(kind < 5 ? "good" : "bad");
}

void Operator::open() {
    if (!available(Command::OpenFile)) return;
    prepare_file();
    const PodConfigs before = hands_.station().configuration.ZavConfig;
    run_time().Reports.Message = {};
    hands_.rules.remember_files({});
    run(Command::OpenFile);
    hands_.open_next.clear();
    const bool loaded = run_time().Reports.Message.Text.starts_with(" Configuration file Loaded");
    hands_.tell(loaded ? "loaded " + hands_.station().configuration.ConfigFileName : "not loaded");
    if (loaded)
        hands_.rules.check_loaded_file();
    else
        hands_.rules.expect(hands_.station().configuration.ZavConfig == before,
                            Rule::FailedLoadChangesNothing, "the configuration is another one");
}

void Operator::set_up_card() {
    run(Command::InterfaceCard);
}

void Operator::view_status() {
    if (!available(Command::ViewStatus)) return;
    hands_.witness.begin_query();
    run(Command::ViewStatus);
    hands_.witness.end_query();
}

void Operator::close_view() {
    Desk& desk = hands_.desk();
    const auto& open = run_time().Poll.ViewOpen;
    if (open[ReadingStream] && dice().chance(40)) desk.stream0.unload();
    if (open[RequestStream] && dice().chance(40)) desk.stream1.unload();
    if (open[EventStream] && dice().chance(40)) desk.stream2.unload();
    if (open[TextStream] && dice().chance(40)) desk.stream3.unload();
}

void Operator::work_in_view() {
    Desk& desk = hands_.desk();
    const auto& open = run_time().Poll.ViewOpen;
    if (open[ReadingStream] && dice().chance(60)) {
        Stream0View& view = desk.stream0;
        if (dice().chance(40)) view.cmdToggle_Click();
        view.cboView_Click(dice().below(static_cast<int>(view.screen.cboView.entries.size())));
        if (dice().chance(20)) view.cmdMin_Click();
        if (dice().chance(20)) view.cmdMax_Click();
        if (dice().chance(20) && view.screen.cmdSelChan.enabled) view.cmdSelChan_Click();
    }
    if (open[RequestStream] && dice().chance(60)) {
        Stream1View& view = desk.stream1;
        view.screen.chkInit.checked = dice().chance(50);
        if (dice().chance(30)) view.chkRequested_Click();
        if (dice().chance(60)) view.cmdSelChan_Click();
        if (dice().chance(40) && view.screen.cmdMeasure.enabled) view.cmdMeasure_Click();
    }
    if (open[EventStream] && dice().chance(60)) {
        Stream2View& view = desk.stream2;
        view.cboView_Click(dice().below(static_cast<int>(view.screen.cboView.entries.size())));
    }
}

// With everything that a log needs to get records, most of the time.
void Operator::start_log() {
    const int which = dice().below(3);
    if (dice().chance(70)) {
        if (run_time().Link.NumSelected() == 0) select_all();
        if (run_time().Log.ScanFileName.empty()) run(Command::SetupScanLog);
        run(Command::Trigger);
    }
    const Command command = which == 0   ? Command::StartScanLog
                            : which == 1 ? Command::StartEventLog
                                         : Command::StartBothLogs;
    if (!available(command)) return;
    Known& known = hands_.rules.known;
    const LogState& log = run_time().Log;
    known.last_record_ms = hands_.rules.world.loop->elapsed_ms();
    if (command != Command::StartEventLog) known.logging[ScanLog] = true;
    if (command != Command::StartScanLog) known.logging[EventLog] = true;
    const int boxes = hands_.boxes;
    run(command);
    // A file that nothing can be added to is refused with a box.
    if (hands_.boxes > boxes) {
        known.logging[ScanLog] = log.ScanLogging;
        known.logging[EventLog] = log.EventLogging;
    }
    known.interval_ms = log.ScanIntervalChoice;
    hands_.tell(std::string(known.logging[ScanLog] ? log.ScanFileName + " " : "") +
                (known.logging[EventLog] ? log.EventFileName : ""));
}

void Operator::stop_log() {
    const int which = dice().below(3);
    const Command command = which == 0   ? Command::StopScanLog
                            : which == 1 ? Command::StopEventLog
                                         : Command::StopBothLogs;
    if (!available(command)) return;
    Known& known = hands_.rules.known;
    if (command != Command::StopEventLog) known.logging[ScanLog] = false;
    if (command != Command::StopScanLog) known.logging[EventLog] = false;
    run(command);
    if (command != Command::StopEventLog) hands_.rules.check_log(run_time().Log.ScanFileName);
    if (command != Command::StopScanLog) hands_.rules.check_log(run_time().Log.EventFileName);
}

void Operator::graph() {
    const int which = dice().below(4);
    if (which == 0) return run(Command::GraphSetup);
    if (which == 1 && hands_.desk().graph.live.exists()) {
        hands_.desk().graph.live.unload_request();
        return;
    }
    run(Command::GraphSetup);
    run(Command::ViewGraph);
}

void Operator::clear_errors() {
    if (!available(Command::ClearErrors)) return;
    hands_.rules.errors_cleared();
    run(Command::ClearErrors);
}

void Operator::events() {
    constexpr std::array Commands = {Command::EventCaptureOn, Command::EventCaptureOn,
                                     Command::EventCaptureOff, Command::ClearEventCounter};
    run(dice().pick(Commands));
}

void Operator::options() {
    constexpr std::array Commands = {
        Command::DefaultScreen,    Command::ExpandScreen, Command::Stream3AutoClear,
        Command::TransmitReminder, Command::About,        Command::DefaultExpand};
    run(dice().pick(Commands));
}

void Operator::set_wall_clock() {
    constexpr long long Hour_ms = 3'600'000;
    VirtualEventLoop& loop = *hands_.rules.world.loop;
    const long long by = dice().chance(50) ? (dice().chance(50) ? Hour_ms : -Hour_ms)
                                           : dice().number(-26 * 60, 26 * 60) * 60'000LL;
    hands_.tell("by " + std::to_string(by / 60'000) + " min");
    loop.set_wall_time(add_milliseconds(loop.wall_time(), by));
}

void Operator::trouble_disk() {
    constexpr std::array Reasons = {std::errc::no_space_on_device, std::errc::permission_denied,
                                    std::errc::io_error};
    const int spared = dice().below(40);
    hands_.disk.short_writes = dice().chance(50);
    hands_.disk.fail_operation(spared, dice().pick(Reasons), dice().chance(30));
    hands_.tell("after " + std::to_string(spared) + " operations");
}

void Operator::leave() {
    const Setting<bool> leaving(hands_.leaving, dice().chance(85));
    if (dice().chance(75)) {
        Known& known = hands_.rules.known;
        for (const Command stop : {Command::StopScanLog, Command::StopEventLog}) {
            if (!available(stop)) continue;
            known.logging[stop == Command::StopScanLog ? ScanLog : EventLog] = false;
            run(stop);
        }
        for (int clicks = 0; clicks < 2 && run_time().Link.ContScanning; ++clicks) {
            select_all();
            run(Command::Halt);
        }
    }
    hands_.desk().main_window.unload_request();
}

void Operator::look_at_views() {
    Desk& desk = hands_.desk();
    const auto& open = run_time().Poll.ViewOpen;
    if (open[ReadingStream]) look_at(desk.stream0);
    if (open[RequestStream]) look_at(desk.stream1);
    if (open[EventStream]) look_at(desk.stream2);
    if (open[TextStream]) look_at(desk.stream3);
}

}  // namespace kavorix::soak
