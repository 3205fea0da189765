#include "app/readings.h"

#include <gtest/gtest.h>

namespace kavorix::test {

namespace {

PodStatus seventh_of_type_v() {
    PodStatus status;
    status.Ident = {'7', 'V', 'J', 'A', ' ', '0', 'F', ' ', '1', '.', '0', '0'};
    return status;
}

constexpr WallTime Afternoon{2026, 3, 4, 13, 45, 2, 500};

}  // namespace

TEST(ReadingLine, ListsMeasuredChannels) {
    PodStatus status = seventh_of_type_v();
    status.ChannelCount = 4;
    status.Reading = {0.52F, 3.0F, 0.0F, 1e-8F};
    status.ResultCode = {0, 129, 255, 128};
    EXPECT_EQ(reading_line(Afternoon, Pod::at_index(6), status),
              "13:45:02.500 07 7V 1=0.52 2=ErrOvrld 4=1E-08");
}

TEST(ReadingLine, NumbersErrorsWithoutAName) {
    PodStatus status = seventh_of_type_v();
    status.ChannelCount = 1;
    status.ResultCode[0] = 136;
    EXPECT_EQ(reading_line(Afternoon, Pod::at_index(0), status), "13:45:02.500 01 7V 1=Err8");
}

TEST(ReadingLine, MarksAPodWithoutReadings) {
    EXPECT_EQ(reading_line(Afternoon, Pod::at_index(0), seventh_of_type_v()),
              "13:45:02.500 01 7V -");
}

}  // namespace kavorix::test
