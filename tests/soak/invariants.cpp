#include "soak/invariants.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "app/verify.h"
#include "base/text.h"
#include "config/config_writer.h"
#include "support/log_rig.h"

namespace kavorix::soak {

namespace {

constexpr std::array Texts = {
    RuleText{Rule::OnlySelectedPodsAreCommanded, "only selected pods are commanded",
             "a command that reaches a pod that nobody chose changes a measurement unnoticed"},
    RuleText{Rule::RemovedPodsAreNotPolled, "removed pods are not polled",
             "asking a pod that failed again and again holds up all the others"},
    RuleText{Rule::PollTableAgrees, "the poll table holds the pods that answered and did not fail",
             "a pod that silently leaves the table is no longer measured"},
    RuleText{Rule::SelectionAgrees, "the selection is what the operator chose",
             "every command goes by it"},
    RuleText{Rule::ErrorsAddUp, "the counters count every failure once",
             "the operator judges the link by them, and the exit keeps the log by them"},
    RuleText{Rule::ErrorLogTellsEveryError, "the error log has a line for every counted error",
             "it is all that is left of an error after the run"},
    RuleText{Rule::LoggedValuesAreTheTwins, "logged values are what the pods produced, scaled",
             "the log is what the station is there for"},
    RuleText{Rule::LogTimesGoOn, "log times go on with the tick count from the first record's time",
             "a wall clock that is set must not tear or mix up a log"},
    RuleText{Rule::LogsStayWhole, "every record that was written can be read later, in order",
             "a later run, a kill or a failing disk must not take what was promised"},
    RuleText{Rule::LoggingGoesOn, "while it polls, a running scan log gets its records",
             "a log that stands still looks like one that runs"},
    RuleText{Rule::PollingGoesOn, "the poll timer, once started, asks the pods tick by tick",
             "an unattended station that stops polling has lost everything from then on"},
    RuleText{Rule::FilesConvert, "every log converts, a row for each scan or event",
             "the binary log is of no use to anybody by itself"},
    RuleText{Rule::FailedLoadChangesNothing, "a file that does not load changes no configuration",
             "half a configuration measures wrong values"},
    RuleText{Rule::SavedFilesLoadBack, "a loaded file is written again as it was",
             "a configuration must survive its file"},
    RuleText{Rule::FailedSaveKeepsTheOldFile, "a file is the old one or the whole new one",
             "a disk that fills up must not cost the configuration"},
    RuleText{Rule::PodsHoldWhatWasSent, "after a transmission without errors the pods hold it",
             "what the pods read out of the commands is what they measure by"},
    RuleText{Rule::NothingSeriousHappens, "the program does not stop by itself",
             "but for a failing disk nothing that pods or operators do may end it"},
    RuleText{Rule::ScreenShowsTheState, "icons and panels show the state",
             "the operator knows nothing else of it"},
    RuleText{Rule::NothingStaysBusy, "nothing stays busy when an action is done",
             "a station that waits for ever cannot be used"},
    RuleText{Rule::RecordsStayInRange, "every stored number is within its range",
             "a number from a pod or a file that goes beyond breaks something far away"},
    RuleText{Rule::AStartIsFresh, "a start begins anew",
             "what an earlier run left behind must not work on in the next"},
    RuleText{Rule::CallsComeToAnEnd, "every action ends",
             "a pod that always has an answer must not hold up the station"},
    RuleText{Rule::MemoryStaysBounded, "memory does not grow while the station runs",
             "a run of months must not end for want of memory"},
    RuleText{Rule::MemoryComesBack, "no memory is left when everything is closed",
             "what is lost in each run adds up"},
    RuleText{Rule::RunsRepeat, "the same seed gives the same run",
             "a failure that cannot be repeated cannot be repaired"},
};
constexpr bool in_order() {
    for (std::size_t i = 0; i < Texts.size(); ++i)
        if (Texts[i].rule != static_cast<Rule>(i)) return false;
    return true;
}
static_assert(in_order(), "a text for each rule, in the order of the enumeration");

constexpr long long Day_ms = 24LL * 3600 * 1000;
constexpr int PollingSlack_ms = 1500;  // five silent waits of a strain gauge and some
constexpr std::uint64_t DigestFactor = 1099511628211U;

std::string zav(int pod) {
    return "ZAV " + two_digits(pod + 1);
}

std::string between(std::string_view what, long long expected, long long found) {
    return std::string(what) + ": " + std::to_string(expected) + " expected, " +
           std::to_string(found) + " found";
}

// A reading as a log has it, in the arithmetic of this file.
float rounded(float value) {
    constexpr float Whole = 16777216.0F;  // from here on singles have no fraction
    if (!(std::fabs(value) < Whole)) return value;
    const long double millionths = std::round(static_cast<long double>(value) * 1e6L);
    return static_cast<float>(millionths / 1e6L);
}

bool same_single(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b)) || (a == 0 && b == 0);
}

void add_to_digest(std::uint64_t& digest, float single) {
    const auto bits = std::isnan(single) ? 0x7FC00000U : std::bit_cast<std::uint32_t>(single);
    digest = (digest ^ bits) * DigestFactor;
}

bool selected_picture(Picture picture) {
    return picture == Picture::imgZAV || picture == Picture::imgZAV_D ||
           picture == Picture::imgLOG || picture == Picture::imgLOG_D;
}

}  // namespace

const RuleText& text_of(Rule rule) {
    return Texts[static_cast<std::size_t>(rule)];
}

void Invariants::broken(Rule rule, const std::string& what) {
    if (!breach) breach = Breach{rule, what};
}

// ---- what happens ----

void Invariants::connected(std::span<const std::int16_t, MaxZavs> present) {
    for (int pod = 0; pod < MaxZavs; ++pod) {
        KnownPod fresh;
        fresh.base = known.pods[at(pod)].base;
        fresh.polled = present[at(pod)] == 1;
        known.pods[at(pod)] = fresh;
    }
    known.all_selected = false;
    known.errors = 0;
    known.polling = false;
}

void Invariants::work_begins() {
    for (int pod = 0; pod < MaxZavs; ++pod) addressed[at(pod)] = known.pods[at(pod)].selected;
}

void Invariants::transmission_begins() {
    if (!several) work_begins();
    // The timer starts at its end; from then on the pods are asked.
    if (!known.polling) known.last_test_ms = -1;
    known.polling = true;
}

void Invariants::command_sent(int pod, std::string_view command) {
    expect(addressed[at(pod)], Rule::OnlySelectedPodsAreCommanded,
           zav(pod) + (known.pods[at(pod)].selected ? ", selected meanwhile," : "") +
               " was sent \"" + std::string(command) + "\"");
}

void Invariants::status_asked(int pod) {
    expect(known.pods[at(pod)].polled, Rule::OnlySelectedPodsAreCommanded,
           zav(pod) + " was asked for its status");
}

void Invariants::tested(int pod) {
    known.last_test_ms = world.loop->elapsed_ms();
    expect(known.pods[at(pod)].polled, Rule::RemovedPodsAreNotPolled, zav(pod) + " was polled");
}

void Invariants::error_line(const std::string& line) {
    ++known.session_errors;
    ++known.errors;
    known.new_log_lines += line + "\r\n";
}

void Invariants::link_error(int pod, bool receive, bool removed) {
    KnownPod& of = known.pods[at(pod)];
    of.in_error = true;
    of.selected = addressed[at(pod)] = false;
    if (removed) of.polled = false;
    char line[80];
    std::snprintf(line, sizeof line, " ERROR! - %s Error (ZAV:%02d  Interface:%s)",
                  receive ? "Receive" : "Transmit", pod + 1,
                  hex16(configuration().Interface.CardAddress).c_str());
    error_line(line);
}

void Invariants::scan_read(int pod, int count, std::span<const float> values,
                           std::span<const std::int16_t> codes) {
    constexpr int Pending = 13;
    constexpr int NotTaken = 127;
    KnownPod& of = known.pods[at(pod)];
    of.count = std::clamp(count, 0, MaxChannels);
    for (int channel = 0; channel < MaxChannels; ++channel) {
        of.codes[at(channel)] = codes[at(channel)];
        if (channel >= of.count) continue;
        const int error = codes[at(channel)] - 128;
        if (error <= 0) {
            const ChannelConfig& config = configuration().ZavConfig[at(pod)].Channel[at(channel)];
            const float value = std::fabs(values[at(channel)]) < 2.7E-19F ? 0 : values[at(channel)];
            of.values[at(channel)] = value * config.MValue + config.CValue;
        } else if (error != Pending && error != NotTaken) {
            error_line(error_log_line(
                static_cast<std::int16_t>(pod + 1), static_cast<std::int16_t>(channel + 1),
                static_cast<std::int16_t>(error), configuration().Interface.CardAddress));
        }
    }
}

// ---- logs ----

void Invariants::log_opened(const std::string& path) {
    if (path.ends_with(".DAT")) known.logs[path].begun = false;
}

// The channels of each pod by a run's header, whose marker is not looked at.
static std::array<std::int16_t, MaxZavs> channels_in(std::string_view header) {
    std::array<std::int16_t, MaxZavs> channels{};
    const auto word = [&](std::size_t place) {
        return read_field<std::int16_t>(header.data() + place);
    };
    std::size_t place = 8 + at(word(6)) + 8;
    const int pods = word(place);
    place += 2;
    for (int pod = 0; pod < pods; ++pod) {
        channels[at(word(place) - 1)] = word(place + 4);
        place += 6 + at(word(place + 4)) * 20;
    }
    return channels;
}

void Invariants::log_written(const std::string& path, std::uint64_t offset,
                             std::string_view bytes) {
    if (!path.ends_with(".DAT") || bytes.size() <= EntrySize) return;
    KnownLog& log = known.logs[path];
    const auto marker = read_field<float>(bytes.data());
    if (!log.begun) {
        if (marker != UnfinishedMarker) return;
        const int kind = read_field<std::int16_t>(bytes.data() + 4);
        log.mixed = log.mixed || (log.runs > 0 && log.kind != kind);
        log.kind = kind;
        log.channels = channels_in(bytes);
        log.begun = true;
        ++log.runs;
        log.block_at = log.next_at = offset + bytes.size();
    } else if (is_pending_marker(marker)) {
        record_completed(path, offset);
    }
}

float Invariants::expected_time() {
    const std::uint32_t tick = world.loop->tick_count();
    const long long passed = static_cast<std::int32_t>(tick - known.clock_tick);
    const bool carried_on =
        known.clock_started && tick != 0 && passed >= 0 && known.day_ms + passed < 2 * Day_ms;
    if (carried_on) {
        known.day_ms = (known.day_ms + passed) % Day_ms;
    } else {
        const WallTime now = world.loop->wall_time();
        known.day_ms = ((now.hour * 60 + now.minute) * 60LL + now.second) * 1000 + 500;
    }
    known.clock_started = true;
    known.clock_tick = tick;
    const long long s = known.day_ms / 1000;
    return static_cast<float>((s / 3600 * 10000 + s / 60 % 60 * 100 + s % 60) * 1000 +
                              known.day_ms % 1000);
}

std::vector<float> Invariants::expected_scan(const KnownLog& log) {
    std::vector<float> values;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        KnownPod& of = known.pods[at(pod)];
        if (!of.log_scans || !of.new_scan) continue;
        of.new_scan = false;
        values.push_back(static_cast<float>(pod + 1));
        for (int channel = 0; channel < log.channels[at(pod)]; ++channel)
            values.push_back(channel >= of.count || of.codes[at(channel)] > 128
                                 ? std::bit_cast<float>(0x8000000AU)
                                 : rounded(of.values[at(channel)]));
    }
    return values;
}

std::vector<float> Invariants::expected_events(KnownLog& log) {
    std::vector<float> values;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        KnownPod& of = known.pods[at(pod)];
        if (!of.log_events || !of.new_events) continue;
        of.new_events = false;
        values.push_back(static_cast<float>(pod + 1));
        values.push_back(static_cast<float>(of.events.size()) - 1);
        for (const EventEntry& e : of.events) {
            values.push_back(static_cast<float>((e.EvDay * 100 + e.EvMonth) * 100 + e.EvChannel));
            values.push_back(static_cast<float>((e.EvHour * 100 + e.EvMinute) * 100 + e.EvSecond));
            values.push_back(
                static_cast<float>(e.EvMillisecond * 100 + e.EvLevel * 10 + e.EvState));
        }
        // The text file has the channels that the log's header names.
        const int channels = run_time().Status[at(pod)].type_code() == "8R" ? 20 : MaxChannels;
        for (const EventEntry& e : of.events)
            if (e.EvChannel >= 1 && e.EvChannel <= channels) ++log.events;
    }
    return values;
}

void Invariants::record_completed(const std::string& path, std::uint64_t offset) {
    KnownLog& log = known.logs[path];
    const std::string& content = world.files->content(path);
    const auto single = [&](std::size_t n) {
        const std::size_t from = offset + n * sizeof(float);
        return from + sizeof(float) <= content.size() ? read_field<float>(&content[from]) : -1.0F;
    };
    const std::string place = path + ", record " + std::to_string(log.records + 1) + ": ";
    const bool next_block = offset > log.next_at && (offset - log.block_at) % BlockSize == 0;
    expect(offset == log.next_at || next_block, Rule::LogsStayWhole,
           place + between("position", static_cast<long long>(log.next_at),
                           static_cast<long long>(offset)));
    expect(single(0) == DataMarker || is_pending_marker(single(0)), Rule::LogsStayWhole,
           place + "no marker");
    const float time = expected_time();
    expect(
        single(1) == time, Rule::LogTimesGoOn,
        place + between("time", static_cast<long long>(time), static_cast<long long>(single(1))));
    const std::vector<float> values =
        log.kind == ScanLog ? expected_scan(log) : expected_events(log);
    const auto count = static_cast<long long>(single(2));
    expect(count == static_cast<long long>(values.size()), Rule::LoggedValuesAreTheTwins,
           place + between("count", static_cast<long long>(values.size()), count));
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!same_single(single(3 + i), values[i])) {
            broken(Rule::LoggedValuesAreTheTwins, place + "value " + std::to_string(i) + ": " +
                                                      std::to_string(values[i]) + " expected, " +
                                                      std::to_string(single(3 + i)) + " found");
            break;
        }
    for (std::size_t i = 1; i < 3 + values.size(); ++i) add_to_digest(log.digest, single(i));
    log.next_at = offset + (3 + values.size()) * sizeof(float);
    ++log.records;
    if (log.kind == ScanLog) known.last_record_ms = world.loop->elapsed_ms();
}

void Invariants::check_log(const std::string& path) {
    if (!world.files->has(path)) return;
    const KnownLog& log = known.logs[path];
    const test::LogRead read = test::read_log(*world.files, path);
    std::uint64_t digest = KnownLog{}.digest;
    for (const test::RecordRead& record : read.records) {
        add_to_digest(digest, record.time);
        add_to_digest(digest, static_cast<float>(record.values.size()));
        for (const float value : record.values) add_to_digest(digest, value);
    }
    expect(
        static_cast<int>(read.records.size()) == log.records, Rule::LogsStayWhole,
        path + ": " + between("records", log.records, static_cast<long long>(read.records.size())));
    expect(digest == log.digest, Rule::LogsStayWhole, path + ": other values than were written");
}

// The rows of a text file against what the log holds.
void Invariants::check_conversion(const std::string& path, bool all_columns) {
    constexpr int LinesOfARun = 4;
    const KnownLog& log = known.logs[path];
    if (log.mixed || !all_columns) return;
    const std::string csv = path.substr(0, path.size() - 3) + "CSV";
    if (!world.files->has(csv)) return broken(Rule::FilesConvert, path + ": no text file");
    const std::string& text = world.files->content(csv);
    const auto lines = std::count(text.begin(), text.end(), '\n');
    const int rows = log.kind == ScanLog ? log.records : log.events;
    expect(lines == 1 + log.runs * LinesOfARun + rows, Rule::FilesConvert,
           csv + ": " + between("lines", 1 + log.runs * LinesOfARun + rows, lines));
}

// ---- configurations ----

namespace {

// Without the line that says when it was made, and without scan period and integration time: a pod
// that takes none of them has 0 after a load, whatever the dialog gave it while it was not there.
std::string statements_of(std::string_view file) {
    std::string kept;
    for (bool first = true; !file.empty(); first = false) {
        const auto end = std::min(file.find('\n'), file.size() - 1) + 1;
        const std::string_view line = file.substr(0, end);
        if (!first && !line.starts_with("SP") && !line.starts_with("FR")) kept += line;
        file.remove_prefix(end);
    }
    return kept;
}

// The first line that differs, as it is in both.
std::string first_difference(std::string_view a, std::string_view b) {
    const auto [at, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    const auto line_around = [](std::string_view text, std::size_t place) {
        const auto begin = text.rfind('\n', place) + 1;
        return std::string(text.substr(begin, text.find('\r', place) - begin));
    };
    if (at == a.end() && other == b.end()) return {};
    const auto place = static_cast<std::size_t>(at - a.begin());
    return "\"" + line_around(a, place) + "\" has become \"" + line_around(b, place) + "\"";
}

}  // namespace

std::string Invariants::configuration_as_written() const {
    return config_text(configuration().Interface, configuration().ZavConfig, WallTime{});
}

void Invariants::check_saved_files() {
    for (const std::string& path : world.files->paths()) {
        if (!path.ends_with(".CFG")) continue;
        const std::string& now = world.files->content(path);
        const auto before = files_before_.find(path);
        if (before != files_before_.end() && before->second == now) continue;
        const std::string written = configuration_as_written();
        const std::string other = first_difference(statements_of(written), statements_of(now));
        expect(other.empty(), Rule::FailedSaveKeepsTheOldFile, path + ": " + other);
    }
}

void Invariants::check_loaded_file() {
    const std::string& path = configuration().ConfigFileName;
    // Files from elsewhere may say the same in other words.
    if (path.starts_with("/data/damaged") || path.starts_with("/data/prepared")) return;
    const std::string written = configuration_as_written();
    const std::string other =
        first_difference(statements_of(world.files->content(path)), statements_of(written));
    expect(other.empty(), Rule::SavedFilesLoadBack, path + ": " + other);
}

void Invariants::transmitted(const PodSet& pods) {
    const sim::Network* network = world.cards->network(configuration().Interface.CardHandle);
    if (!network || world.cards->resets()) return;
    PodSet sent;
    for (const Pod pod : pods)
        if (GetZAVTypeCode(run_time().Status[pod].type_code()) ==
            configuration().ZavConfig[pod].TypeCode)
            sent.add(pod);
    // No statement switches off what an earlier configuration has switched on; and a file may give
    // a pod more channels than its type has.
    for (const std::string& found : verify_pods(configuration().ZavConfig, *network, sent))
        if (!found.ends_with("does not exist in the pod") &&
            found.find(": configured off, held on") == std::string::npos)
            broken(Rule::PodsHoldWhatWasSent, found);
}

// ---- after every action ----

void Invariants::after_start() {
    known.log_compared = 0;
    const LinkState& link = run_time().Link;
    expect(link.ZavSelected.empty() && link.SessionErrorCount == known.session_errors &&
               !run_time().Log.running() && run_time().Log.ScanFileName.empty() &&
               configuration().ConfigChanged == 0 && configuration().ConfigFileName.empty(),
           Rule::AStartIsFresh, "something is left of the run before");
    const std::string header =
        general_date(known.started) + "\r\n\r\n---- KAVORIX Error file ----\r\n\r\n";
    const std::string path = "/station/ERR_LOG.TXT";
    if (!known.disk_failed) {
        const bool there = world.files->has(path);
        expect(there && world.files->content(path).starts_with(header), Rule::AStartIsFresh,
               "the error log does not begin anew");
        known.log_compared = header.size();
    }
    after_action();
}

void Invariants::after_action() {
    if (!world.station) return;
    compare_link();
    compare_error_log();
    compare_screen();
    compare_ranges();
    check_times();
}

void Invariants::compare_error_log() {
    if (known.disk_failed) return;
    const std::string path = "/station/ERR_LOG.TXT";
    if (!world.files->has(path))
        return broken(Rule::ErrorLogTellsEveryError, "there is no error log");
    const std::string_view text = world.files->content(path);
    const std::string_view added = text.substr(std::min(text.size(), known.log_compared));
    const auto first = [](std::string_view lines) { return lines.substr(0, lines.find('\r')); };
    expect(added == known.new_log_lines, Rule::ErrorLogTellsEveryError,
           "expected are " + std::to_string(known.new_log_lines.size()) + " bytes from \"" +
               std::string(first(known.new_log_lines)) + "\" on, found " +
               std::to_string(added.size()) + " from \"" + std::string(first(added)) + "\" on");
    known.log_compared = text.size();
    known.new_log_lines.clear();
}

void Invariants::compare_link() {
    const LinkState& link = run_time().Link;
    bool scanning = false;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const KnownPod& of = known.pods[at(pod)];
        scanning = scanning || link.ScanState[at(pod)] == ScanState::ContinuouslyScanning;
        expect(link.PollTable.InPollTable.has(Pod::at_index(pod)) == of.polled,
               Rule::PollTableAgrees, zav(pod) + (of.polled ? " is missing" : " is in the table"));
        expect(link.ZavSelected.has(Pod::at_index(pod)) == of.selected, Rule::SelectionAgrees,
               zav(pod) + (of.selected ? " is not selected" : " is selected"));
        expect(run_time().Status[at(pod)].ErrorFlag == of.in_error, Rule::ErrorsAddUp,
               zav(pod) + (of.in_error ? " has no error flag" : " has an error flag"));
    }
    expect(link.ErrorCount == known.errors, Rule::ErrorsAddUp,
           between("errors since the connection", known.errors, link.ErrorCount));
    expect(link.SessionErrorCount == known.session_errors, Rule::ErrorsAddUp,
           between("errors since the start", known.session_errors, link.SessionErrorCount));
    expect(link.ContScanning == scanning, Rule::ScreenShowsTheState, "continuous scanning");
}

void Invariants::compare_screen() {
    const MainScreen screen = world.desk->main_window.screen();
    const LinkState& link = run_time().Link;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const KnownPod& of = known.pods[at(pod)];
        const Icon& icon = screen.img_ZAV[Pod::at_index(pod)];
        if (!icon.visible) continue;
        if (of.in_error && !of.polled)
            expect(icon.picture == Picture::img1ZAV_E, Rule::ScreenShowsTheState,
                   zav(pod) + " was removed and does not show it");
        if (icon.picture != Picture::img1ZAV_E)
            expect(selected_picture(icon.picture) == of.selected, Rule::ScreenShowsTheState,
                   zav(pod) + (of.selected ? " is selected" : " is not selected") +
                       " and does not show it");
    }
    expect((screen.pnlContScan.caption == "CONT SCAN") == link.ContScanning,
           Rule::ScreenShowsTheState, "the panel of continuous scanning");
    expect(link.Sending == 0 && !run_time().Log.LogBusy && link.AwaitingReply.empty(),
           Rule::NothingStaysBusy, "a transmission, a record or a status query");
}

void Invariants::compare_ranges() {
    const PollState& poll = run_time().Poll;
    const LogState& log = run_time().Log;
    const auto within = [this](long long value, long long low, long long high, const char* what) {
        expect(value >= low && value <= high, Rule::RecordsStayInRange,
               std::string(what) + " is " + std::to_string(value));
    };
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const PodStatus& status = run_time().Status[at(pod)];
        within(status.ChannelCount, 0, MaxChannels, "ChannelCount");
        within(status.Channels, 0, MaxChannels, "Channels");
        within(poll.LastEvent[at(pod)], -1, EventTableSize - 1, "LastEvent");
        within(configuration().ZavConfig[at(pod)].TypeCode, NoDevice, Type7W, "TypeCode");
        within(configuration().ZavConfig[at(pod)].NumChannels, 0, ChannelSlots, "NumChannels");
        const KnownPod& of = known.pods[at(pod)];
        expect(status.LogScan == of.log_scans && status.LogEvents == of.log_events,
               Rule::SelectionAgrees, zav(pod) + " is marked otherwise for the logs");
    }
    within(poll.ViewedZav.index(), 0, MaxZavs - 1, "ViewedZav");
    within(configuration().Interface.PollRate, 100, 10000, "PollRate");
    within(log.ScanIndex, -1, BlockEntries - 1, "ScanIndex");
    within(log.EventIndex, -1, BlockEntries - 1, "EventIndex");
    expect(log.ScanLogging == known.logging[ScanLog] && log.EventLogging == known.logging[EventLog],
           Rule::LoggingGoesOn, "a log is started or stopped by itself");
}

void Invariants::check_times() {
    const bool any = std::any_of(known.pods.begin(), known.pods.end(),
                                 [](const KnownPod& pod) { return pod.polled; });
    const long long now = world.loop->elapsed_ms();
    if (!known.polling || !any) {
        known.last_test_ms = -1;
        known.last_record_ms = now;
        return;
    }
    // The poll timer starts when the first transmission has ended, after its delays.
    if (known.last_test_ms < 0) known.last_test_ms = known.last_record_ms = now;
    expect(now - known.last_test_ms <= PollingSlack_ms, Rule::PollingGoesOn,
           "no pod was asked for " + std::to_string(now - known.last_test_ms) + " ms");
    const std::int32_t rate = configuration().Interface.PollRate;
    const long long longest = std::max(known.interval_ms, rate) + rate + PollingSlack_ms;
    if (known.logging[ScanLog])
        expect(now - known.last_record_ms <= longest, Rule::LoggingGoesOn,
               "no scan was logged for " + std::to_string(now - known.last_record_ms) + " ms");
}

void Invariants::after_end(bool exited) {
    for (const auto& [path, log] : known.logs) check_log(path);
    if (exited && !known.disk_failed)
        expect(world.files->has("/station/ERR_LOG.TXT") == (known.session_errors != 0),
               Rule::ErrorLogTellsEveryError, "the error log at the exit");
    const auto logs = known.logs;
    const bool serious = known.serious;
    known = {};
    known.logs = logs;
    known.serious = serious;
}

}  // namespace kavorix::soak
