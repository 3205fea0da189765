#include "ui/pods/channel_view.h"

#include "base/numbers.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "model/channel_rules.h"
#include "model/runtime.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

namespace {

// The text of an option without its command in brackets: "20Hz (RA1)" is "20Hz".
std::string without_command(std::string_view text) {
    return std::string(trim(text.substr(0, text.find('('))));
}

std::string option_text(std::span<const Option> list, std::int16_t code) {
    for (const Option& option : list)
        if (option.code == code) return without_command(option.text);
    return {};
}

// Frequencies are measured over a gate time, periods over a number of periods, unless a sample rate
// is chosen.
std::string default_sample_rate(const ChannelConfig& channel) {
    constexpr std::array<std::string_view, 4> Gates = {"10ms", "100ms", "1s", "10s"};
    constexpr std::array<std::string_view, 4> Periods = {"1 prd", "10 prds", "100 prds",
                                                         "1000 prds"};
    const auto range = static_cast<std::size_t>(channel.Range);
    if (channel.Mode == FrequencyMode && range < Gates.size()) return std::string(Gates[range]);
    if (channel.Mode == PeriodsMode && range < Periods.size()) return std::string(Periods[range]);
    return option_text(sample_rates(), 0);
}

std::string sample_rate(const PodConfig& pod, int slot) {
    const std::int16_t code = pod.SampleRate[at(slot)];
    return code == 0 ? default_sample_rate(pod.Channel[at(slot)])
                     : option_text(sample_rates(), code);
}

bool shows_sampling(std::int16_t type, std::int16_t mode) {
    return type == Type8R || (is_universal_type(type) && has_sampling(mode));
}

std::array<std::string, 3> extra_texts(const PodConfig& pod, int slot) {
    const std::int16_t mode = pod.Channel[at(slot)].Mode;
    if (is_strain_mode(mode)) {
        const StrainSettings& strain = pod.Strain[at(slot)];
        return {six_decimals(strain.GaugeFactor), six_decimals(strain.Offset),
                six_decimals(strain.InitialVolt)};
    }
    if (shows_sampling(pod.TypeCode, mode))
        return {sample_rate(pod, slot), option_text(timeouts(true), pod.Timeout[at(slot)]), {}};
    return {};
}

}  // namespace

ChannelTexts channel_texts(const PodConfig& pod, int slot) {
    const ChannelConfig& channel = pod.Channel[at(slot)];
    ChannelTexts texts;
    texts.number = two_digits(slot + 1);
    texts.mode = mode_text(channel.Mode);
    if (channel.Mode == 0) {
        if (is_paired(pod, slot)) texts.range = "6 Pole with Ch. " + std::to_string(slot);
        return texts;
    }
    texts.range = range_text(channel.Mode, pod.TypeCode, slot + 1, channel.Range);
    texts.label = trim(channel.Label);
    texts.unit = trim(channel.Unit);
    texts.mx_c = general(channel.MValue) + "x+" + general(channel.CValue);
    texts.extra = extra_texts(pod, slot);
    return texts;
}

ChannelView::ChannelView(const PodConfig& pod, int pod_number) {
    screen.caption =
        "ZAV " + two_digits(pod_number) + " - " + std::string(pod_type(pod.TypeCode).description);
    head_extra_columns(pod.TypeCode);
    const auto two_lines = [](const Label& first, const Label& second) {
        return second.caption.empty() ? first.caption : first.caption + "\n" + second.caption;
    };
    screen.grdChannel.headings = {screen.lblChan.caption,
                                  screen.lblMode.caption,
                                  screen.lblRange.caption,
                                  screen.lblLabel.caption,
                                  screen.lblUnits.caption,
                                  screen.lblMx_c.caption,
                                  two_lines(screen.lblExtra1A, screen.lblExtra1B),
                                  two_lines(screen.lblExtra2A, screen.lblExtra2B),
                                  two_lines(screen.lblExtra3A, screen.lblExtra3B)};
    PodConfig shown = pod;
    restore_pairs(shown);
    for (int slot = 0; slot < shown.NumChannels && slot < ChannelSlots; ++slot) {
        const ChannelTexts texts = channel_texts(shown, slot);
        screen.grdChannel.rows.push_back({{texts.number},
                                          {texts.mode},
                                          {texts.range},
                                          {texts.label},
                                          {texts.unit},
                                          {texts.mx_c},
                                          {texts.extra[0]},
                                          {texts.extra[1]},
                                          {texts.extra[2]}});
    }
}

void ChannelView::head_extra_columns(std::int16_t type) {
    if (type == Type7S) {
        screen.lblExtra1A.caption = "Gauge";
        screen.lblExtra1B.caption = "Factor";
        screen.lblExtra2A.caption = "Offset";
        screen.lblExtra3A.caption = "Initial";
        screen.lblExtra3B.caption = "Volt";
    } else if (type == Type8R || is_universal_type(type)) {
        screen.lblExtra1A.caption = "Sample";
        screen.lblExtra1B.caption = "Rate";
        screen.lblExtra2A.caption = "Time";
        screen.lblExtra2B.caption = "Out";
    }
}

}  // namespace kavorix
