#include "graphs/graph_setup.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "base/program_name.h"
#include "base/text.h"
#include "graphs/legend.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

constexpr int HighestHour = 23;
constexpr int HighestMinute = 59;
constexpr std::string_view TrendTitle = "Trend Graph";
constexpr std::string_view BarTitle = "Bar Graph";

int whole_value(const TextField& field, int highest) {
    return std::clamp(round_half_even(numeric_value(field.text)), 0, highest);
}

std::string pod_entry(Pod pod, const PodStatus& status) {
    const PodTypeRow& type = pod_type(GetZAVTypeCode(status.type_code()));
    return two_digits(pod.number()) + " - " +
           std::string(type.type == NoDevice ? status.type_code() : type.description);
}

}  // namespace

int wrapped_step(int value, int steps, int lowest, int highest) {
    const int count = highest - lowest + 1;
    const int position = (value - lowest + steps) % count;
    return lowest + (position < 0 ? position + count : position);
}

GraphSetup::GraphSetup(const Surroundings& surroundings) : with_(surroundings) {}

void GraphSetup::Form_Load() {
    trapped(with_.failures, "frmQCSetup/Form_Load", [&] {
        chosen_ = with_.graph.TrendSelected;
        show_settings();
        show_type();
        show_pods();
        show_count();
    });
}

void GraphSetup::show_settings() {
    const GraphSettings& settings = with_.graph.Settings;
    const bool bar = settings.Type == BarGraph;
    screen.optBar.selected = bar;
    screen.optTrend.selected = !bar;
    screen.chkGridLines.checked = !bar && settings.GridLines;
    const bool default_title = settings.Title == "TrendGraph" || settings.Title == BarTitle;
    screen.txtTitle.text = !default_title ? settings.Title : bar ? BarTitle : TrendTitle;
    screen.txtXTitle.text = settings.XTitle;
    screen.txtYTitle.text = settings.YTitle;
    screen.txtHours.text = std::to_string(settings.Hours);
    screen.txtMinutes.text = std::to_string(settings.Minutes);
    screen.txtPosVal.text = shortest(settings.YMaximum);
    screen.txtNegVal.text = shortest(settings.YMinimum);
}

// What belongs to trends alone can be used for a trend alone.
void GraphSetup::show_type() {
    const bool trend = screen.optTrend.selected;
    screen.chkGridLines.enabled = trend;
    for (Label* label :
         {&screen.lblTimeSpan, &screen.lblHours, &screen.lblMinutes, &screen.lblXTitle})
        label->enabled = trend;
    for (TextField* field : {&screen.txtHours, &screen.txtMinutes, &screen.txtXTitle})
        field->enabled = trend;
}

void GraphSetup::show_pods() {
    screen.cboZAV.entries.clear();
    for (const Pod pod : with_.link.ZavSelected)
        screen.cboZAV.entries.push_back({pod_entry(pod, with_.status[pod]), pod.index()});
    screen.cboZAV.index = screen.cboZAV.entries.empty() ? -1 : 0;
    show_channels();
}

int GraphSetup::viewed_pod() const {
    return screen.cboZAV.code(-1);
}

void GraphSetup::show_channels() {
    const int pod = viewed_pod();
    for (int channel = 0; channel < MaxChannels; ++channel) {
        CheckBox& box = screen.chkChan[at(channel)];
        box.visible = pod >= 0 && channel < with_.status[at(pod)].Channels;
        if (!box.visible) continue;
        const std::string& label = with_.pods[at(pod)].Channel[at(channel)].Label;
        box.caption = two_digits(channel + 1) + (label.empty() ? "" : "  " + label);
        box.checked = chosen_[at(pod)][at(channel)] == 1;
    }
}

int GraphSetup::count() const {
    return static_cast<int>(graphed_channels(chosen_).size());
}

void GraphSetup::show_count() {
    screen.frmChan.caption = std::to_string(count());
}

void GraphSetup::cboZAV_Click(int list_index) {
    trapped(with_.failures, "frmQCSetup/cboZAV_Click", [&] {
        if (list_index < 0 || list_index >= static_cast<int>(screen.cboZAV.entries.size())) return;
        screen.cboZAV.index = list_index;
        show_channels();
    });
}

void GraphSetup::chkChan_Click(int channel) {
    trapped(with_.failures, "frmQCSetup/chkChan_Click", [&] {
        const int pod = viewed_pod();
        if (pod < 0) return;
        chosen_[at(pod)][at(channel)] = screen.chkChan[at(channel)].checked ? 1 : 0;
        show_count();
    });
}

void GraphSetup::optTrend_Click() {
    trapped(with_.failures, "frmQCSetup/optTrend_Click", [&] { choose_type(TrendGraph); });
}

void GraphSetup::optBar_Click() {
    trapped(with_.failures, "frmQCSetup/optBar_Click", [&] { choose_type(BarGraph); });
}

void GraphSetup::choose_type(std::int16_t type) {
    const bool bar = type == BarGraph;
    screen.optBar.selected = bar;
    screen.optTrend.selected = !bar;
    std::string& title = screen.txtTitle.text;
    if (title.empty() || title == (bar ? TrendTitle : BarTitle))
        title = bar ? BarTitle : TrendTitle;
    show_type();
}

void GraphSetup::spinHours(int steps) {
    const int hours = whole_value(screen.txtHours, HighestHour);
    screen.txtHours.text = std::to_string(wrapped_step(hours, steps, 0, HighestHour));
}

void GraphSetup::spinMinutes(int steps) {
    const int minutes = whole_value(screen.txtMinutes, HighestMinute);
    screen.txtMinutes.text = std::to_string(wrapped_step(minutes, steps, 0, HighestMinute));
}

bool GraphSetup::txtHours_LostFocus(std::string_view next) {
    return check_whole(screen.txtHours, HighestHour, "Hours must be a whole number from 0 to 23",
                       next);
}

bool GraphSetup::txtMinutes_LostFocus(std::string_view next) {
    return check_whole(screen.txtMinutes, HighestMinute,
                       "Minutes must be a whole number from 0 to 59", next);
}

bool GraphSetup::txtPosVal_LostFocus(std::string_view next) {
    return check_number(screen.txtPosVal, "+ Val must be a number", next);
}

bool GraphSetup::txtNegVal_LostFocus(std::string_view next) {
    return check_number(screen.txtNegVal, "- Val must be a number", next);
}

bool GraphSetup::check_whole(const TextField& field, int highest, std::string_view text,
                             std::string_view next) {
    if (next == "cmdCancel") return true;
    const double value = numeric_value(field.text);
    return is_numeric(field.text) && value >= 0 && value <= highest &&
                   value == round_half_even(value)
               ? true
               : refuse_field(text);
}

bool GraphSetup::check_number(const TextField& field, std::string_view text,
                              std::string_view next) {
    return next == "cmdCancel" || is_numeric(field.text) ? true : refuse_field(text);
}

bool GraphSetup::refuse(std::string_view text) {
    with_.dialogs.message_box(text, box::Exclamation, ProgramName);
    return false;
}

bool GraphSetup::refuse_field(std::string_view text) {
    with_.dialogs.beep();
    return refuse(text);
}

void GraphSetup::cmdPrinterSetup_Click() {
    with_.printer_setup();
}

bool GraphSetup::cmdOK_Click() {
    return trapped(with_.failures, "frmQCSetup/cmdOK_Click", [&] {
        if (!accepted()) return false;
        store();
        return true;
    });
}

bool GraphSetup::accepted() {
    if (count() > MaxGraphChannels)
        return refuse("Maximum of 16 Channels Exceeded - De-Select Channel(s)");
    if (whole_value(screen.txtHours, HighestHour) == 0 &&
        whole_value(screen.txtMinutes, HighestMinute) == 0)
        return refuse("ERROR:  - A Time Period must be Entered");
    if (!(numeric_value(screen.txtPosVal.text) > numeric_value(screen.txtNegVal.text)))
        return refuse("Y Axis Range ERROR:  + Val must be GREATER than - Val");
    return true;
}

void GraphSetup::store() {
    GraphSettings& settings = with_.graph.Settings;
    const bool bar = screen.optBar.selected;
    settings.Hours = whole_value(screen.txtHours, HighestHour);
    settings.Minutes = whole_value(screen.txtMinutes, HighestMinute);
    settings.Type = bar ? BarGraph : TrendGraph;
    settings.GridLines = !bar && screen.chkGridLines.checked;
    settings.Title = screen.txtTitle.text;
    settings.XTitle = screen.txtXTitle.text;
    settings.YTitle = screen.txtYTitle.text;
    settings.YMaximum = numeric_value(screen.txtPosVal.text);
    settings.YMinimum = numeric_value(screen.txtNegVal.text);
    with_.graph.TrendSelected = chosen_;
    with_.graph.GraphsSetUp = count() > 0;
}

}  // namespace kavorix
