#include <algorithm>

#include "config/reading.h"

namespace kavorix {

namespace {

// Sub-key by sub-key. Each one returns at its first failed check, unless it says otherwise.

constexpr std::size_t LabelPosition = 11;  // of the label's first quote

// 1-based position of the quote that ends the text starting at `position`; 0 when a ";" or the end
// of the line comes first.
std::size_t closing_quote(std::string_view line, std::size_t position) {
    const std::size_t found = line.find_first_of("';", position - 1);
    return found == std::string_view::npos || line[found] == ';' ? 0 : found + 1;
}

// The characters between two positions, both left out.
std::string_view between(std::string_view line, std::size_t before, std::size_t behind) {
    return middle(line, before + 1, behind - before - 1);
}

// The scaling behind the brace; what is no number counts as 0.
void read_scaling(Reading& r, std::size_t brace) {
    std::string_view rest = r.from(brace + 1);
    const std::size_t separator = std::min(rest.find(';'), rest.size());
    r.channel().MValue = finite_single(rest.substr(0, separator));
    rest = middle(rest, separator + 2);
    r.channel().CValue = finite_single(rest.substr(0, rest.find('}')));
}

void read_label_and_unit(Reading& r) {
    const std::string_view line = r.line;
    if (middle(line, LabelPosition, 1) != "'")
        return r.log("Quote for label not in position 11 for ", line);
    const std::size_t label_end = closing_quote(line, LabelPosition + 1);
    if (label_end == 0) return r.log("Closing quote for label missing for ", line);
    r.channel().Label = between(line, LabelPosition, label_end).substr(0, MaxLabel);

    const std::size_t unit = label_end + 3;
    if (unit >= line.size()) return r.log("Format for channel command incorrect ", line);
    if (middle(line, unit - 1, 1) != "'")
        return r.log("Quote for unit not in correct position for ", line);
    const std::size_t unit_end = closing_quote(line, unit);
    if (unit_end == 0) return r.log("Closing quote for unit missing for ", line);
    r.channel().Unit = between(line, unit - 1, unit_end).substr(0, MaxUnit);

    const std::size_t brace = unit_end + 2;
    if (brace >= line.size()) return;
    if (middle(line, brace, 1) != "{")
        return r.log("Brace({) for Mx+c not in correct position for ", line);
    read_scaling(r, brace);
}

// What a pod type offers on any of its channels: on which one is not checked.
bool mode_and_range_fit(Reading& r, std::int16_t mode, std::int16_t range) {
    const std::int16_t type = r.config().TypeCode;
    if (mode == 0) {
        if (range != 0) r.log("Unknown range for ", r.line);
        return range == 0;
    }
    if (!is_known_mode(mode))
        r.log("Unknown mode of ", mode, ", ZAV number ", r.pod + 1, " for ", r.line);
    else if (!is_legal_mode_of_type(mode, type))
        r.log("Mode/ZAV type mismatch, mode ", mode, " ZAV number ", r.pod + 1, " ", r.line);
    else if (!is_legal_range_of_type(range, mode, type))
        r.log("Unknown range of ", range, " for ", r.line);
    else
        return true;
    return false;
}

void read_mode(Reading& r) {
    const std::string_view text = middle(r.line, 7, 3);
    if (!is_numeric(text)) return r.log("Non-numeric channel mode/range ", text);
    const auto digits = [&](std::size_t position, std::size_t count) {
        return static_cast<std::int16_t>(
            round_half_even(leading_value(middle(text, position, count))));
    };
    const std::int16_t mode = digits(1, 2);
    const std::int16_t range = digits(3, 1);
    if (!mode_and_range_fit(r, mode, range)) return;
    r.channel().Mode = mode;
    r.channel().Range = range;
    read_label_and_unit(r);
}

bool has_code(std::span<const Option> list, std::int32_t code) {
    return std::any_of(list.begin(), list.end(),
                       [&](const Option& option) { return option.code == code; });
}

void read_sample_rate(Reading& r) {
    const std::string_view text = r.body(7);
    const auto code = whole_number(text);
    if (!code) return r.log("Non-numeric sample rate ", text);
    if (!has_code(sample_rates(), *code)) return r.log("Unknown sample rate ", text);
    r.config().SampleRate[at(r.slot)] = static_cast<std::int16_t>(*code);
}

// Ignored for the types without digital channels that can time out.
void read_timeout(Reading& r) {
    const std::string_view text = r.body(7);
    const auto code = whole_number(text);
    if (!code) return r.log("Non-numeric timeout ", text);
    const bool universal = is_universal_type(r.config().TypeCode);
    if (!universal && r.config().TypeCode != Type8R) return;
    if (!has_code(timeouts(universal), *code)) return r.log("Unknown timeout ", text);
    r.config().Timeout[at(r.slot)] = static_cast<std::int16_t>(*code);
}

void read_gauge_factor(Reading& r) {
    const std::string_view text = r.body(7);
    const auto value = to_single(text);
    if (!value) return r.log("Non-numeric Gauge factor ", text);
    r.config().Strain[at(r.slot)].GaugeFactor = *value;
}

void read_strain_offset(Reading& r) {
    std::string_view rest = r.from(7);
    const std::size_t separator = std::min(rest.find(';'), rest.size());
    const auto offset = to_single(rest.substr(0, separator));
    if (!offset) return r.log("Non-numeric offset ", r.line);
    r.config().Strain[at(r.slot)].Offset = *offset;
    rest = middle(rest, separator + 2);
    if (rest.empty()) return r.log("Initial volt missing for ", r.line);
    const auto volt = to_single(rest.substr(0, rest.find(';')));
    if (!volt) return r.log("Non-numeric initial volt ", r.line);
    r.config().Strain[at(r.slot)].InitialVolt = *volt;
}

// The limit counts even when the hysteresis does not.
void read_alarm(Reading& r, AlarmLimit& alarm, std::string_view which) {
    std::string_view rest = r.from(8);
    const auto limit = to_single(NextField(rest));
    if (!limit)
        return r.log("Invalid alarm limit for ", which, " Alarm on Chan: ", r.channel_number());
    alarm.Limit = *limit;
    const auto hysteresis = to_single(NextField(rest));
    if (!hysteresis)
        return r.log("Invalid Hysteresis Limit for ", which,
                     " Alarm on Chan: ", r.channel_number());
    alarm.Hysteresis = *hysteresis;
    alarm.Enabled = 1;
}

void read_high_alarm(Reading& r) {
    read_alarm(r, r.channel().HighAlarm, "High");
}
void read_low_alarm(Reading& r) {
    read_alarm(r, r.channel().LowAlarm, "Low");
}

void read_member(Reading& r, AlarmGroup& group, std::string_view channel, std::string_view letter) {
    const auto number = whole_number(channel);
    if (!number)
        return r.log("Non-numeric channel number (", channel, ") in alarm group: ", r.line);
    if (*number < 1 || *number > AlarmGroupChannels)
        return r.log("Channel number ", channel, " is out of range for alarm group: ", r.line);
    if (letter == "H")
        group.High[at(*number - 1)] = 1;
    else if (letter == "L")
        group.Low[at(*number - 1)] = 1;
    else
        r.log("Expecting 'H' or 'L' in alarm group channel ", r.channel_number(), " ZAV type ",
              r.type_text);
}

// Goes on after a member that is wrong.
void read_members(Reading& r, AlarmGroup& group) {
    std::string_view rest = r.from(9);
    bool separated = true;
    while (!rest.empty() && separated) {
        const std::string_view channel = NextField(rest);
        const std::string_view letter = NextField(rest);
        separated = letter != "Error";
        read_member(r, group, channel, letter);
    }
}

void read_alarm_group(Reading& r) {
    AlarmGroup& group = r.config().AlarmGroup[at(r.channel_number() - 19)];
    const auto state = whole_number(middle(r.line, 7, 2));
    if (!state) return r.log("Non-numeric alarm output state  ");
    if (*state < 0 || *state > GroupOff) return r.log("Invalid alarm output state  ");
    group.OutputState = static_cast<std::int16_t>(*state);
    if (*state != GroupOff) read_members(r, group);
}

// Goes on with c after an M that is wrong.
void read_unit_conversion(Reading& r) {
    std::string_view rest = r.from(8);
    if (const auto m = to_single(NextField(rest)))
        r.channel().MValue = *m;
    else
        r.log("M value must be a number: ", r.line);
    const auto c = to_single(NextField(rest));
    if (!c) return r.log("C value must be a number: ", r.line);
    r.channel().CValue = *c;
    const auto flag = whole_number(NextField(rest));
    if (!flag || (*flag != 0 && *flag != 1))
        return r.log("Unit conversion enable flag must be 1 or 0. ", r.line);
    if (*flag == 0) {
        r.channel().MValue = 1.0F;
        r.channel().CValue = 0.0F;
    }
}

void read_linearisation(Reading& r) {
    std::string_view rest = r.from(7);
    const auto equation = whole_number(NextField(rest));
    if (!equation) return r.log("Equation specifier must be a number: ", r.line);
    if (*equation < 0 || *equation > 2)
        return r.log("Post Linearisation number must be 0,1 or 2: ", r.line);
    r.channel().PostLin = static_cast<std::int16_t>(*equation);
}

// Where statements are allowed, and the message where they are not. The type is the one written in
// the file.

bool any_channel(const Reading&) {
    return true;
}
void never_refused(Reading&) {}

bool is_universal(const Reading& r) {
    return r.type_text == "7V" || r.type_text == "7W";
}
bool is_output(const Reading& r) {
    return r.channel_number() == 19 || r.channel_number() == 20;
}
bool takes_alarm(const Reading& r) {
    return is_universal(r) && r.pods[at(r.pod)].Channel[at(r.slot)].Mode != DigitalStatus;
}
bool takes_group(const Reading& r) {
    return is_universal(r) && is_output(r);
}
bool takes_scaling(const Reading& r) {
    return is_universal(r) && !is_output(r);
}

void refuse_high_alarm(Reading& r) {
    r.log("Trying to set high alarm level for an invalid channel - Chan: ", r.channel_number(),
          " ZAV Type = ", r.type_text);
}
void refuse_low_alarm(Reading& r) {
    r.log("Trying to set low alarm level for an invalid channel - Chan: ", r.channel_number(),
          " ZAV Type = ", r.type_text);
}
void refuse_group(Reading& r) {
    r.log("Alarm group not allowed in ZAV Type ", r.type_text, " channel ", r.channel_number());
}
void refuse_scaling(Reading& r) {
    r.log("Unit Conversion not allowed in ZAV Type ", r.type_text, " channel ", r.channel_number(),
          " : ", r.line);
}
void refuse_linearisation(Reading& r) {
    r.log("Post Linearisation not allowed in ZAV Type ", r.type_text, " channel ",
          r.channel_number(), " : ", r.line);
}

// A statement of a channel: its sub-key, where it is allowed, the message where it is not, and what
// handles it.
struct ChannelStatementRow {
    std::string_view key;
    bool (*allowed)(const Reading& r);
    void (*refuse)(Reading& r);
    void (*read)(Reading& r);
};

constexpr ChannelStatementRow ChannelStatements[] = {
    {"MO", any_channel, never_refused, read_mode},
    {"RA", any_channel, never_refused, read_sample_rate},
    {"TI", any_channel, never_refused, read_timeout},
    {"GA", any_channel, never_refused, read_gauge_factor},
    {"OF", any_channel, never_refused, read_strain_offset},
    {"HL", takes_alarm, refuse_high_alarm, read_high_alarm},
    {"LL", takes_alarm, refuse_low_alarm, read_low_alarm},
    {"GO", takes_group, refuse_group, read_alarm_group},
    {"UC", takes_scaling, refuse_scaling, read_unit_conversion},
    {"PL", takes_scaling, refuse_linearisation, read_linearisation},
};

}  // namespace

void read_channel_statement(Reading& r) {
    const std::string_view text = middle(r.line, 3, 2);
    const auto number = whole_number(text);
    if (!number) return r.log("Non-numeric channel number ", text);
    if (*number < 1) return r.log("Invalid channel number of ", text);
    if (*number > r.config().NumChannels) return r.log("Channel number exceeds maximum ", text);
    r.slot = *number - 1;
    const std::string_view key = middle(r.line, 5, 2);
    const auto* row = std::find_if(std::begin(ChannelStatements), std::end(ChannelStatements),
                                   [&](const ChannelStatementRow& s) { return s.key == key; });
    if (row == std::end(ChannelStatements)) return r.log("Unknown channel command. ", r.line);
    if (!row->allowed(r)) return row->refuse(r);
    row->read(r);
}

}  // namespace kavorix
