#include "acquire/result_codes.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::C800;
using test::LogHeader;
using test::Rig;

struct CodeRow {
    int code;
    const char* text;
    const char* short_name;
    const char* line;  // of pod 3, channel 7
};

const CodeRow Codes[] = {
    {1, "Overload", "ErrOvrld", " Analog Overload (ZAV:03 Chan:07 Interface:C800)"},
    {2, "Thermocouple Undef.", "ErrTCUnd",
     " Thermocouple Undefined (ZAV:03 Chan:07 Interface:C800)"},
    {3, "Out of Linearisation", "ErrLinRng",
     " Out of Linearisation Range (ZAV:03 Chan:07 Interface:C800)"},
    {4, "Ambient Measurement", "ErrAmbTmp",
     " Ambient Measurement Range (ZAV:03 Chan:07 Interface:C800)"},
    {5, "Transducer Error", "ErrTrans", " Transducer Error (ZAV:03 Chan:07 Interface:C800)"},
    {6, "Pen Thermocouple", "ErrTCOpen",
     " Open Circuit Thermocouple Error (ZAV:03 Chan:07 Interface:C800)"},
    {7, "Unknown Mode", "ErrMode", " Unknown Mode, Type or Range (ZAV:03 Chan:07 Interface:C800)"},
    {8, "Unknown error number: 8", "", " ZAV Error Code 8 (ZAV:03 Chan:07 Interface:C800)"},
    {9, "Channel Out of Range", "ErrChan",
     " Channel Number out of Range (ZAV:03 Chan:07 Interface:C800)"},
    {10, "System Zero Error", "ErrSysZero", " System Zero Error (ZAV:03 Chan:07 Interface:C800)"},
    {11, "Calibration Corrupt", "ErrSysCal",
     " System CalibratiOn Error (ZAV:03 Chan:07 Interface:C800)"},
    {12, "Strain gauge not initialised", "ErrStrInit",
     " Strain Gage not Initialised (ZAV:03 Chan:07 Interface:C800)"},
    {13, "Pending Result", "Pending", ""},
    {14, "Time Out", "ErrTmOut", " Period Time-Out (ZAV:03 Chan:07 Interface:C800)"},
    {15, "Unknown error number: 15", "", " ZAV Error Code 15 (ZAV:03 Chan:07 Interface:C800)"},
    {126, "Unknown error number: 126", "", " ZAV Error Code 126 (ZAV:03 Chan:07 Interface:C800)"},
    {127, "Not Measured", "NotMeasured", ""},
    {128, "Unknown error number: 128", "", " ZAV Error Code 128 (ZAV:03 Chan:07 Interface:C800)"},
    {0, "Unknown error number: 0", "", " ZAV Error Code 0 (ZAV:03 Chan:07 Interface:C800)"},
    {-5, "Unknown error number: -5", "", " ZAV Error Code -5 (ZAV:03 Chan:07 Interface:C800)"},
    {32639, "Unknown error number: 32639", "",
     " ZAV Error Code 32639 (ZAV:03 Chan:07 Interface:C800)"},
};

TEST(ResultCodes, HaveTheirThreeRenderings) {
    for (const CodeRow& row : Codes) {
        SCOPED_TRACE(row.code);
        const auto code = static_cast<std::int16_t>(row.code);
        EXPECT_EQ(ZAVError(code), row.text);
        EXPECT_EQ(DispZAVErr(code), row.short_name);
        EXPECT_EQ(error_log_line(3, 7, code, C800), row.line);
    }
}

TEST(ResultCodes, LoggedErrorsAreCountedAndLightThePanel) {
    for (const CodeRow& row : Codes) {
        SCOPED_TRACE(row.code);
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.pod_errors.LogZAVErr(3, 7, static_cast<std::int16_t>(row.code));
        const bool logged = *row.line != 0;
        EXPECT_EQ(rig.log_text(), LogHeader + (logged ? std::string(row.line) + "\r\n" : ""));
        EXPECT_EQ(rig.run_time.Link.ErrorCount, logged ? 1 : 0);
        EXPECT_EQ(rig.run_time.Link.SessionErrorCount, logged ? 1 : 0);
        EXPECT_EQ(rig.screen.pnlErr.caption, logged ? "ZAV ERROR" : "");
    }
}

TEST(ResultCodes, LogLineNumbersHaveTwoDigitsAtLeast) {
    EXPECT_EQ(error_log_line(50, 32, 1, static_cast<std::int16_t>(0x0A00)),
              " Analog Overload (ZAV:50 Chan:32 Interface:A00)");
}

struct FormatRow {
    float value;
    int decimals;
    const char* text;
};

TEST(FormatValue, HasUpToSixDecimals) {
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    const FormatRow rows[] = {
        {2.5F, 0, "3"},          {2.5F, 1, "2.5"},
        {2.5F, 2, "2.50"},       {2.5F, 3, "2.500"},
        {2.5F, 4, "2.5000"},     {2.5F, 5, "2.50000"},
        {2.5F, 6, "2.500000"},   {2.5F, 7, "2.500000"},
        {2.5F, 9, "2.500000"},   {2.5F, -1, "2.500000"},
        {-2.5F, 0, "-3"},        {-0.4F, 0, "0"},
        {0.1F, 6, "0.100000"},   {1E-7F, 6, "0.000000"},
        {-1E-7F, 6, "0.000000"}, {1.5E10F, 0, "15000000512"},
        {Infinity, 6, "Inf"},    {-Infinity, 0, "-Inf"},
    };
    for (const FormatRow& row : rows)
        EXPECT_EQ(FormatValue(row.value, static_cast<std::int16_t>(row.decimals)), row.text);
}

struct DecimalsRow {
    const char* type;
    int channel;
    int decimals;
};

TEST(Decimals, DigitalDataHasNone) {
    const DecimalsRow rows[] = {
        {"7R", 1, 6},  {"7R", 19, 6}, {"7S", 10, 6}, {"7T", 20, 6}, {"7U", 20, 6}, {"7V", 5, 6},
        {"7V", 18, 6}, {"7V", 19, 0}, {"7V", 20, 0}, {"7V", 21, 6}, {"7W", 18, 6}, {"7W", 19, 0},
        {"7W", 20, 0}, {"8R", 1, 0},  {"8R", 20, 0}, {"8S", 1, 0},  {"8S", 32, 0}, {"NC", 1, 6},
    };
    for (const DecimalsRow& row : rows)
        EXPECT_EQ(decimals_of(row.type, row.channel), row.decimals) << row.type << row.channel;
}

}  // namespace
}  // namespace kavorix
