#include "config/config_reader.h"

#include <algorithm>

#include "config/reading.h"

namespace kavorix {

namespace {

// Statement by statement. Each one returns at its first failed check, unless it says otherwise.

void check_handle(Reading& r) {
    const std::string_view text = middle(r.line, 3, 1);
    const auto handle = whole_number(text);
    if (!handle) return r.log("Non-numeric Interface card handle ", text);
    if (*handle != r.connected.CardHandle)
        r.log("The card handle does not match the handle currently in use (",
              r.connected.CardHandle, ").");
}

void check_address(Reading& r) {
    if (r.line.size() <= 6) return r.log("Interface card address missing");
    const std::string_view text = r.body(5);
    const auto address = whole_number(text);
    if (!address) return r.log("Non-numeric Interface card address ", text);
    if (*address != r.connected.CardAddress)
        r.log("The card address does not match the address currently in use(",
              hex16(r.connected.CardAddress), ").");
}

// Both are looked at, whatever the first one says.
void read_card(Reading& r) {
    check_handle(r);
    check_address(r);
}

void read_poll_rate(Reading& r) {
    const std::string_view text = r.body(3);
    const auto rate = whole_number(text);
    if (!rate) return r.log("Non-Numeric Poll Rate: ", text);
    const auto rates = poll_rates();
    if (std::find(rates.begin(), rates.end(), *rate) == rates.end())
        return r.log("Invalid Poll Rate of: ", text);
    r.settings.PollRate = static_cast<std::int16_t>(*rate);
}

void read_power_on(Reading& r) {
    const std::string_view text = middle(r.line, 3, 1);
    const auto power_on = whole_number(text);
    if (!power_on) return r.log("Non-Numeric Power On Setting: ", text);
    if (*power_on != 0 && *power_on != 1) return r.log("Invalid Power On of: ", text);
    r.settings.PowerOn = static_cast<std::int16_t>(*power_on);
}

// Index of the pod with the number in `text`, nothing after a message.
std::optional<int> pod_index(Reading& r, std::string_view text) {
    const auto number = whole_number(text);
    if (number && *number >= 1 && *number <= MaxZavs) return *number - 1;
    r.log(number ? "Invalid ZAV number of " : "Non-numeric ZAV number ", text);
    return std::nullopt;
}

void check_connected_type(Reading& r) {
    const std::string_view code = middle(r.ident(), 1, 2);
    if (code == "NC")
        r.log("Configuration for ZAV number ", r.pod + 1,
              " has been found although an ZAV is not Connected.");
    else if (code != r.type_text)
        r.log("ZAV Types differ for ZAV number ", r.pod + 1, " Connected ZAV is ", code);
}

// Goes on after what is connected does not fit.
void read_pod(Reading& r) {
    r.type_text = middle(r.line, 6, 2);
    r.units_seen = false;
    const auto index = pod_index(r, middle(r.line, 3, 2));
    r.pod = index.value_or(0);
    if (!index) return;
    check_connected_type(r);
    r.config().TypeCode = GetZAVTypeCode(r.type_text);
    if (r.config().TypeCode == NoDevice) return r.log("Unknown ZAV type ", r.type_text);
    const std::string_view text = middle(r.line, 9, 2);
    const auto channels = whole_number(text);
    if (!channels) return r.log("Non-numeric number of channels ", text);
    if (*channels < 0 || *channels > ChannelSlots)
        return r.log("Invalid number of channels ", text);
    r.config().NumChannels = static_cast<std::int16_t>(*channels);
}

template <auto Member>
void set_flag(Reading& r) {
    r.config().*Member = 1;
}

// Ignored for a pod that does not take a scan period.
void read_scan_period(Reading& r) {
    if (middle(r.ident(), 4, 1) != "A") return;
    const std::string_view text = r.body(3);
    const auto period = whole_number(text);
    if (!period) return r.log("Non-numeric scan period ", text);
    const auto periods = scan_periods();
    if (std::none_of(periods.begin(), periods.end(),
                     [&](const Option& option) { return option.code == *period; }))
        return r.log("Unknown scan period ", text);
    r.config().ScanPeriod = static_cast<std::int16_t>(*period);
}

// Ignored for a pod that does not take an integration time.
void read_integration(Reading& r) {
    if (middle(r.ident(), 7, 1) != "F") return;
    const std::string_view text = middle(r.line, 3, 1);
    const auto time = whole_number(text);
    if (!time) return r.log("Non-numeric integration time ", text);
    if (*time < 0 || *time > 5) return r.log("Unknown integration time ", text);
    r.config().Integration = static_cast<std::int16_t>(*time);
}

// Whatever follows "UN".
void read_units(Reading& r) {
    r.config().DegF = 1;
    r.units_seen = true;
}

void read_external_temperature(Reading& r) {
    const std::string_view text = r.body(3);
    const auto value = to_single(text);
    if (!value) return r.log("Non-numeric external temperature ", text);
    const float low = r.units_seen ? -22.0F : -30.0F;
    const float high = r.units_seen ? 177.0F : 80.0F;
    if (*value < low || *value > high) return r.log("External temperature out of range ", text);
    r.config().AmbTemp = 0;
    r.config().ExtTemp = *value;
}

// Index 0 or 1 of the table or equation that the line numbers, nothing after a message.
std::optional<std::size_t> table_index(Reading& r, std::string_view what) {
    const std::string_view text = middle(r.line, 3, 1);
    const auto number = whole_number(text);
    if (number && (*number == 1 || *number == 2)) return static_cast<std::size_t>(*number - 1);
    r.log("Non-numeric ", what, " number ", text);
    return std::nullopt;
}

// Takes six fields off `rest`, highest order first; false at the first that is no number.
bool read_coefficients(std::string_view& rest, Polynomial6& polynomial) {
    for (auto c = polynomial.rbegin(); c != polynomial.rend(); ++c) {
        const auto value = to_single(NextField(rest));
        if (!value) return false;
        *c = *value;
    }
    return true;
}

void read_user_thermocouple(Reading& r) {
    constexpr std::string_view What = "user thermocouple";
    const auto index = table_index(r, What);
    if (!index) return;
    UserTherm& table = r.config().UserTherm[*index];
    table.Enabled = TableOn;
    std::string_view rest = r.from(5);
    if (!read_coefficients(rest, table.Polynomial) || !read_coefficients(rest, table.InversePoly))
        r.log("Error in coefficients for ", What, " number ", middle(r.line, 3, 1));
}

void read_post_linearisation(Reading& r) {
    constexpr std::string_view What = "post linearisation equation";
    const auto index = table_index(r, What);
    if (!index) return;
    PostLinEquation& equation = r.config().PostLinEquation[*index];
    equation.Enabled = TableOn;
    std::string_view rest = r.from(5);
    if (!read_coefficients(rest, equation.Coeff))
        r.log("Error in coefficients for ", What, " number ", middle(r.line, 3, 1));
}

void read_hardware_watchdog(Reading& r) {
    const std::string_view text = middle(r.line, 3, 1);
    const auto value = whole_number(text);
    if (!value) return r.log("Non-numeric HW watch ", text);
    if (*value != 0 && *value != 1) return r.log("Unknown HW watch ", text);
    r.config().HWWatch = static_cast<std::int16_t>(*value);
}

void read_software_watchdog(Reading& r) {
    const std::string_view text = r.body(3);
    const auto time = whole_number(text);
    if (!time) return r.log("Non-numeric SW watch ", text);
    if (*time < 0 || *time > 255) return r.log("SW watch time out of range ", text);
    r.config().SWWatch = *time == 0 ? 0 : 1;
    if (*time != 0) r.config().SWWatchTime = static_cast<std::int16_t>(*time);
}

// A statement: its key, the pod types that take it (none named: all, unchecked), what it is called
// when another type is given it, and what handles it.
struct StatementRow {
    std::string_view key;
    bool (*supported)(std::int16_t type);
    std::string_view subject;
    void (*read)(Reading& r);
};

constexpr StatementRow Statements[] = {
    {"AD", nullptr, "", read_card},
    {"UR", nullptr, "", read_poll_rate},
    {"PO", nullptr, "", read_power_on},
    {"IM", nullptr, "", read_pod},
    {"SE", nullptr, "", set_flag<&PodConfig::Setup>},
    {"AR", nullptr, "", set_flag<&PodConfig::Arm>},
    {"CO", nullptr, "", set_flag<&PodConfig::ContScan>},
    {"KA", supports_calibration, "Calibration", set_flag<&PodConfig::CalOn>},
    {"SP", nullptr, "", read_scan_period},
    {"FR", supports_integration, "Integration time", read_integration},
    {"UN", supports_integration, "Temperature units", read_units},
    {"AM", supports_temperature_reference, "Ambient temperature", set_flag<&PodConfig::AmbTemp>},
    {"TE", supports_temperature_reference, "External temperature", read_external_temperature},
    {"TC", supports_temperature_reference, "TC open", set_flag<&PodConfig::OpenTC>},
    {"UT", nullptr, "", read_user_thermocouple},
    {"PL", nullptr, "", read_post_linearisation},
    {"CH", nullptr, "", read_channel_statement},
    {"HW", supports_watchdogs, "Hardware watchdog", read_hardware_watchdog},
    {"SW", supports_watchdogs, "Software watchdog", read_software_watchdog},
};

void read_statement(Reading& r) {
    const std::string_view key = middle(r.line, 1, 2);
    const auto* row = std::find_if(std::begin(Statements), std::end(Statements),
                                   [&](const StatementRow& s) { return s.key == key; });
    if (row == std::end(Statements)) return r.log("Unknown command of ", key);
    if (row->supported && !row->supported(r.config().TypeCode))
        return r.log(row->subject, " not valid for ", r.type_text, " ZAV");
    row->read(r);
}

// The lines of a file, without their ends and without blanks at both sides.
class Lines {
  public:
    explicit Lines(std::string_view text) : text_(text) {}

    bool next(std::string_view& line) {
        if (at_ >= text_.size()) return false;
        // The next line feed is remembered: a file may hold a million carriage returns before it.
        if (line_feed_ < at_ || at_ == 0)
            line_feed_ = std::min(text_.find('\n', at_), text_.size());
        const std::string_view ahead = text_.substr(at_, line_feed_ - at_);
        const std::size_t length = std::min(ahead.find('\r'), ahead.size());
        line = trim(ahead.substr(0, length));
        at_ += length + 1;
        const bool crlf = length < ahead.size() && at_ == line_feed_ && at_ < text_.size();
        if (crlf) ++at_;
        return true;
    }

  private:
    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t line_feed_ = 0;
};

constexpr const char* NotConnected = "NC          ";

bool is_header(std::string_view line) {
    constexpr std::string_view Header = "KAVORIX ZAV CONFIGURATION FILE";
    return upper(line.substr(0, Header.size())) == Header;
}

// Whether enough of a file is there to tell if it starts with the header.
bool header_is_there(std::string_view content) {
    constexpr std::size_t HeaderLength = 30;
    const std::size_t first = std::min(content.find_first_not_of(' '), content.size());
    return content.size() - first >= HeaderLength ||
           content.find_first_of("\r\n") != std::string_view::npos;
}

bool starts_with_header(std::string_view content) {
    std::string_view line;
    return Lines(content).next(line) && is_header(line);
}

void read_statements(Reading& r, Lines& lines) {
    while (!r.stopped && lines.next(r.line)) {
        ++r.line_number;
        read_statement(r);
    }
}

}  // namespace

std::string_view NextField(std::string_view& text) {
    std::size_t end = text.find(',');
    if (end == std::string_view::npos) end = text.find(';');
    if (end == std::string_view::npos) return "Error";
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end + 1);
    return field;
}

Connected connected_now(const InterfaceSettings& settings, const PodStatuses& status) {
    Connected connected{settings.CardHandle, settings.CardAddress, {}};
    for (std::size_t pod = 0; pod < status.size(); ++pod)
        connected.Ident[pod] = status[pod].ident();
    return connected;
}

LoadOutcome load_configuration(std::string_view file, const Connected& connected,
                               Configuration& configuration, const MessageSink& sink) {
    Lines lines(file);
    std::string_view header;
    if (!lines.next(header) || !is_header(header)) return LoadOutcome::NoHeader;
    configuration.ZavConfigCopy = configuration.ZavConfig;
    const auto restore = [&] { configuration.ZavConfig = configuration.ZavConfigCopy; };
    try {
        for (PodConfig& pod : configuration.ZavConfig) default_ZAV_config(pod, NoDevice, 0);
        Reading reading{connected, configuration.Interface, configuration.ZavConfig, sink};
        reading.line_number = 1;
        read_statements(reading, lines);
        if (reading.errors == 0) return LoadOutcome::Loaded;
        restore();
        return reading.stopped ? LoadOutcome::Stopped : LoadOutcome::Errors;
    } catch (...) {
        restore();
        throw;
    }
}

Connected assume_connected(std::string_view file) {
    Connected connected;
    connected.Ident.fill(NotConnected);
    bool card_named = false;
    Lines lines(file);
    std::string_view line;
    while (lines.next(line)) {
        const std::string_view key = middle(line, 1, 2);
        if (key == "AD" && !card_named) {
            const auto handle = whole_number(middle(line, 3, 1));
            const auto address = whole_number(middle(line.substr(0, line.size() - 1), 5));
            connected.CardHandle = static_cast<std::int16_t>(handle.value_or(0));
            connected.CardAddress = static_cast<std::int16_t>(address.value_or(0));
            card_named = true;
        } else if (key == "IM") {
            const int number = whole_number(middle(line, 3, 2)).value_or(0);
            if (number < 1 || number > MaxZavs) continue;
            std::string& ident = connected.Ident[at(number - 1)];
            if (ident != NotConnected) continue;
            ident = middle(line, 6, 2);
            ident.resize(2, ' ');
            ident += " A  F     ";
        }
    }
    return connected;
}

LoadOutcome load_on_its_own(std::string_view file, Configuration& configuration,
                            const MessageSink& sink) {
    const Connected assumed = assume_connected(file);
    configuration.Interface.CardHandle = assumed.CardHandle;
    configuration.Interface.CardAddress = assumed.CardAddress;
    return load_configuration(file, assumed, configuration, sink);
}

std::string read_config_file(Files& files, const std::string& path) {
    const auto file = files.open(path, OpenMode::Read);
    std::string content;
    std::array<char, 65536> buffer{};
    bool checked = false;
    while (const std::size_t count = file->read(buffer)) {
        content.append(buffer.data(), count);
        if (checked || !header_is_there(content)) continue;
        if (!starts_with_header(content)) break;
        checked = true;
    }
    return content;
}

}  // namespace kavorix
