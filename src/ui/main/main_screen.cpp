#include "ui/main/main_screen.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "platform/files.h"

namespace kavorix {

namespace {

constexpr int MostBars = 11;

Colour family_colour(std::string_view type_code) {
    if (type_code.starts_with('8')) return Colour::LightGrey;
    if (type_code == "7V" || type_code == "7W") return Colour::White;
    return Colour::Silver;
}

// The picture of a pod: selected or not.
Picture IconReverse(const RunTime& run_time, Pod pod) {
    constexpr std::array Pictures = {Picture::img1ZAV,  Picture::imgZAV,    Picture::img1ZAV_D,
                                     Picture::imgZAV_D, Picture::img1ZAV_E, Picture::img1LOG,
                                     Picture::imgLOG,   Picture::img1LOG_D, Picture::imgLOG_D};
    const IconState state = icon_state(run_time, pod);
    if (state == IconState::Resting && run_time.Status[pod].OutOfOrder) return Picture::img1ZAV_E;
    return Pictures[static_cast<std::size_t>(state)];
}

std::string tip(Pod pod, const PodStatus& status) {
    const std::string number = "ZAV " + two_digits(pod.number()) + "\n";
    if (!status.connected()) return number + "No status reply";
    const PodTypeRow& type = pod_type(GetZAVTypeCode(status.type_code()));
    return number + std::string(status.ident()) +
           (type.type == NoDevice ? "" : "\n" + std::string(type.description));
}

void show_pod(const RunTime& run_time, Pod pod, MainScreen& screen) {
    const PodStatus& status = run_time.Status[pod];
    for (int stream = 0; stream < StreamCount; ++stream)
        screen.lblStrm(stream)[pod].caption =
            status.StreamMarked[at(stream)] ? std::string(1, static_cast<char>('0' + stream)) : "-";
    Label& type = screen.lblZAVType[pod];
    type.visible = status.Found && status.connected();
    if (!status.Found) return;
    screen.img_ZAV[pod] = {IconReverse(run_time, pod), true, tip(pod, status),
                           run_time.Link.NotTransmitted.has(pod)};
    if (!type.visible) return;
    type.caption = status.type_code();
    type.fore = Colour::Black;
    type.back = family_colour(status.type_code());
}

void show_number_strips(MainScreen& screen) {
    for (int i = 0; i < 25; ++i) {
        screen.picZAVNum1[at(i)] = two_digits(i + 1);
        screen.picZAVNum2[at(i)] = two_digits(i + 26);
    }
}

// The pods and the interface.
void ClearScreen(const RunTime& run_time, const Configuration& configuration, MainScreen& screen) {
    show_number_strips(screen);
    for (const Pod pod : all_pods()) show_pod(run_time, pod, screen);
    for (int stream = 0; stream < StreamCount; ++stream)
        screen.lbl1Strm[at(stream)].caption = screen.lbl2Strm[at(stream)].caption =
            std::to_string(stream);
    if (run_time.Link.Card != CardSearch::Found) return;
    screen.img_4A = {run_time.Link.InterfaceSelected ? Picture::img4A : Picture::img14A, true,
                     "Interface card at " + hex16(configuration.Interface.CardAddress)};
}

Label load_panel(const PollState& poll) {
    Label panel;
    if (!poll.LoadPercent) return panel;
    const double percent = *poll.LoadPercent;
    panel.fore = percent >= 90 ? Colour::Red : percent >= 75 ? Colour::Yellow : Colour::Black;
    const int bars = std::clamp(round_half_even(percent / 10), 0, MostBars);
    panel.caption = fixed(percent, 0) + "% " + std::string(at(bars), '|');
    return panel;
}

// The status panels.
void StatusRefresh(const RunTime& run_time, const Configuration& configuration,
                   MainScreen& screen) {
    constexpr std::array Faults = {"", "Tx ERROR", "Rx ERROR", "ZAV ERROR"};
    if (run_time.Link.Card == CardSearch::Found)
        screen.pnlStatus.caption = "Card " + hex16(configuration.Interface.CardAddress);
    if (run_time.Link.ContScanning) screen.pnlContScan.caption = "CONT SCAN";
    screen.pnlErr.caption = Faults[static_cast<std::size_t>(run_time.Reports.LastFault)];
    if (run_time.Poll.PollStarted)
        screen.pnlPollCnt.caption = std::to_string(run_time.Poll.PollCount);
    screen.pnlBars = load_panel(run_time.Poll);
    for (int stream = 0; stream < StreamCount; ++stream)
        screen.pnlButton[at(stream)].caption = "Stream " + std::to_string(stream);
}

// Which commands and menus can be used.
void CheckItems(const RunTime& run_time, MainScreen& screen) {
    const StationState state = station_state(run_time);
    for (const CommandRow& row : command_rows())
        screen.command(row.id) = {all_hold(row.conditions(), state),
                                  row.checked != nullptr && row.checked(run_time)};
    std::transform(menu_bar().begin(), menu_bar().end(), screen.Menus.begin(),
                   [&](const MenuRow& menu) { return all_hold(menu.conditions(), state); });
}

std::string title(const Configuration& configuration) {
    std::string text(MainCaption);
    if (!configuration.ConfigFileName.empty())
        text += " - " + from_utf8_lossy(name_of(configuration.ConfigFileName));
    if (configuration.ConfigChanged == 1) text += " *";
    return text;
}

}  // namespace

IconState icon_state(const RunTime& run_time, Pod pod) {
    const PodStatus& status = run_time.Status[pod];
    if (status.Removed) return IconState::Removed;
    const bool logged = run_time.Log.running() && status.marked_for_log();
    const int state = static_cast<int>(logged ? IconState::LoggingResting : IconState::Resting) +
                      (status.DataArrived ? 2 : 0) + (run_time.Link.ZavSelected.has(pod) ? 1 : 0);
    return static_cast<IconState>(state);
}

MainScreen main_screen(const RunTime& run_time, const Configuration& configuration) {
    MainScreen screen;
    const Message& message = run_time.Reports.Message;
    screen.caption = title(configuration);
    screen.lblMsg.caption = message.Text;
    screen.lblMsg.fore = message.Severity == Severity::Error ? Colour::Red : Colour::Blue;
    screen.expanded = run_time.Options.Expanded;
    ClearScreen(run_time, configuration, screen);
    StatusRefresh(run_time, configuration, screen);
    CheckItems(run_time, screen);
    return screen;
}

}  // namespace kavorix
