#include "acquire/result_codes.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "support/facts.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::C800;

TEST(ResultCodes, HaveTheirThreeRenderings) {
    struct Row {
        int code;
        const char* text;
        const char* short_name;
        const char* logged;  // empty: not logged
    };
    const Row rows[] = {
        {1, "Overload", "ErrOvrld", " Analog Overload"},
        {2, "Thermocouple Undef.", "ErrTCUnd", " Thermocouple Undefined"},
        {3, "Out of Linearisation", "ErrLinRng", " Out of Linearisation Range"},
        {4, "Ambient Measurement", "ErrAmbTmp", " Ambient Measurement Range"},
        {5, "Transducer Error", "ErrTrans", " Transducer Error"},
        {6, "Pen Thermocouple", "ErrTCOpen", " Open Circuit Thermocouple Error"},
        {7, "Unknown Mode", "ErrMode", " Unknown Mode, Type or Range"},
        {8, "Unknown error number: 8", "", " ZAV Error Code 8"},
        {9, "Channel Out of Range", "ErrChan", " Channel Number out of Range"},
        {10, "System Zero Error", "ErrSysZero", " System Zero Error"},
        {11, "Calibration Corrupt", "ErrSysCal", " System CalibratiOn Error"},
        {12, "Strain gauge not initialised", "ErrStrInit", " Strain Gage not Initialised"},
        {13, "Pending Result", "Pending", ""},
        {14, "Time Out", "ErrTmOut", " Period Time-Out"},
        {15, "Unknown error number: 15", "", " ZAV Error Code 15"},
        {126, "Unknown error number: 126", "", " ZAV Error Code 126"},
        {127, "Not Measured", "NotMeasured", ""},
        {128, "Unknown error number: 128", "", " ZAV Error Code 128"},
        {0, "Unknown error number: 0", "", " ZAV Error Code 0"},
        {-5, "Unknown error number: -5", "", " ZAV Error Code -5"},
        {32639, "Unknown error number: 32639", "", " ZAV Error Code 32639"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        const auto code = static_cast<std::int16_t>(row.code);
        const bool logged = *row.logged != 0;
        EXPECT_EQ(ZAVError(code), row.text);
        EXPECT_EQ(DispZAVErr(code), row.short_name);

        test::Rig rig;
        rig.station({{5, "7RJA 0F 1.00"}});
        rig.pod_errors.LogZAVErr(Pod::numbered(5), 7, code);
        EXPECT_EQ(
            rig.log_text(),
            test::LogHeader +
                (logged ? std::string(row.logged) + " (ZAV:05 Chan:07 Interface:C800)\r\n" : ""));
        EXPECT_EQ(rig.run_time.Link.ErrorCount, logged ? 1 : 0);
        EXPECT_EQ(test::facts(rig.run_time),
                  logged ? "polled: 5; fault: pod; errors: 1" : "polled: 5");
    }
}

TEST(ResultCodes, LogLineNumbersHaveTwoDigitsAtLeast) {
    EXPECT_EQ(error_log_line(50, 32, 1, static_cast<std::int16_t>(0x0A00)),
              " Analog Overload (ZAV:50 Chan:32 Interface:A00)");
}

TEST(FormatValue, HasUpToSixDecimals) {
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    struct Row {
        float value;
        int decimals;
        const char* text;
    };
    const Row rows[] = {
        {2.5F, 0, "3"},
        {2.5F, 1, "2.5"},
        {2.5F, 2, "2.50"},
        {2.5F, 3, "2.500"},
        {2.5F, 4, "2.5000"},
        {2.5F, 5, "2.50000"},
        {2.5F, 6, "2.500000"},
        {2.5F, 7, "2.500000"},
        {2.5F, -1, "2.500000"},
        {-2.5F, 0, "-3"},
        {-0.4F, 0, "0"},
        {-1E-7F, 6, "0.000000"},
        {1.5E10F, 0, "15000000512"},
        {Infinity, 6, "Inf"},
        {-Infinity, 0, "-Inf"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(FormatValue(row.value, static_cast<std::int16_t>(row.decimals)), row.text);
}

TEST(Decimals, DigitalDataHasNone) {
    struct Row {
        const char* type;
        std::vector<int> digital;  // of the channels 1..32
    };
    std::vector<int> all(MaxChannels);
    std::iota(all.begin(), all.end(), 1);
    const Row rows[] = {{"7R", {}},       {"7S", {}},       {"7T", {}},  {"7U", {}}, {"NC", {}},
                        {"7V", {19, 20}}, {"7W", {19, 20}}, {"8R", all}, {"8S", all}};
    for (const Row& row : rows) {
        std::vector<int> digital;
        for (const int channel : all)
            if (decimals_of(row.type, channel) == 0) digital.push_back(channel);
        EXPECT_EQ(digital, row.digital) << row.type;
    }
    EXPECT_EQ(decimals_of("7R", 1), 6);
}

}  // namespace
}  // namespace kavorix
