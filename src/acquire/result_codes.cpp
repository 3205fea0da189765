#include "acquire/result_codes.h"

#include <algorithm>
#include <array>

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

struct ErrorRow {
    std::int16_t code;
    std::string_view text;
    std::string_view short_name;
    std::string_view log_text;  // empty: not logged
};

constexpr std::array<ErrorRow, 14> Errors = {{
    {1, "Overload", "ErrOvrld", " Analog Overload (ZAV:"},
    {2, "Thermocouple Undef.", "ErrTCUnd", " Thermocouple Undefined (ZAV:"},
    {3, "Out of Linearisation", "ErrLinRng", " Out of Linearisation Range (ZAV:"},
    {4, "Ambient Measurement", "ErrAmbTmp", " Ambient Measurement Range (ZAV:"},
    {5, "Transducer Error", "ErrTrans", " Transducer Error (ZAV:"},
    {6, "Pen Thermocouple", "ErrTCOpen", " Open Circuit Thermocouple Error (ZAV:"},
    {7, "Unknown Mode", "ErrMode", " Unknown Mode, Type or Range (ZAV:"},
    {9, "Channel Out of Range", "ErrChan", " Channel Number out of Range (ZAV:"},
    {10, "System Zero Error", "ErrSysZero", " System Zero Error (ZAV:"},
    {11, "Calibration Corrupt", "ErrSysCal", " System CalibratiOn Error (ZAV:"},
    {12, "Strain gauge not initialised", "ErrStrInit", " Strain Gage not Initialised (ZAV:"},
    {PendingResult, "Pending Result", "Pending", ""},
    {14, "Time Out", "ErrTmOut", " Period Time-Out (ZAV:"},
    {NotMeasured, "Not Measured", "NotMeasured", ""},
}};

constexpr bool codes_ascend() {
    for (std::size_t i = 1; i < Errors.size(); ++i)
        if (Errors[i - 1].code >= Errors[i].code) return false;
    return true;
}
static_assert(codes_ascend(), "each code once");

const ErrorRow* find(std::int16_t code) {
    const auto* row = std::find_if(Errors.begin(), Errors.end(),
                                   [&](const ErrorRow& r) { return r.code == code; });
    return row == Errors.end() ? nullptr : row;
}

}  // namespace

std::string ZAVError(std::int16_t code) {
    if (const ErrorRow* row = find(code)) return std::string(row->text);
    return "Unknown error number: " + std::to_string(code);
}

std::string_view DispZAVErr(std::int16_t code) {
    const ErrorRow* row = find(code);
    return row ? row->short_name : std::string_view{};
}

std::string error_log_line(std::int16_t podNumber, std::int16_t channelNumber, std::int16_t code,
                           std::int16_t card_address) {
    const ErrorRow* row = find(code);
    if (row && row->log_text.empty()) return {};
    const std::string text =
        row ? std::string(row->log_text) : " ZAV Error Code " + std::to_string(code) + " (ZAV:";
    return text + two_digits(podNumber) + " Chan:" + two_digits(channelNumber) +
           " Interface:" + hex16(card_address) + ")";
}

std::string FormatValue(float value, std::int16_t decimals) {
    return fixed(static_cast<double>(value), decimals >= 0 && decimals <= 6 ? decimals : 6);
}

std::int16_t decimals_of(std::string_view type_code, int channel) {
    const bool digital =
        type_code == "8R" || type_code == "8S" ||
        ((type_code == "7V" || type_code == "7W") && (channel == 19 || channel == 20));
    return digital ? 0 : 6;
}

void PodErrors::LogZAVErr(Pod pod, std::int16_t channelNumber, std::int16_t code) {
    const std::string line = error_log_line(pod.number(), channelNumber, code, card_.CardAddress);
    if (line.empty()) return;
    log_.write_line(line);
    ++link_.ErrorCount;
    ++link_.SessionErrorCount;
    reports_.LastFault = Fault::Pod;
}

}  // namespace kavorix
