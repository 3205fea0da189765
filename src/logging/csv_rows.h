#pragma once

// The lines of the text file that a log is converted to. Every line ends with CR LF, texts stand in
// double quotes (a quote inside is doubled), numbers stand bare.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "logging/csv_columns.h"

namespace kavorix {

inline constexpr std::string_view CsvLineEnd = "\r\n";

std::string csv_quoted(std::string_view text);

// "DATE","TIME","MILLISECOND" and a name for every column, like "ZAV3/Ch12".
std::string csv_heading(const std::vector<CsvColumn>& columns);

// The line of labels and the line of units, for the pods of one run; empty texts where the run does
// not have a column's channel.
std::string csv_labels(const std::vector<CsvColumn>& columns, const std::vector<LoggedPod>& pods);

// How the records of one run fill the columns.
class CsvLayout {
  public:
    CsvLayout() = default;
    CsvLayout(const std::vector<CsvColumn>& columns, const std::vector<LoggedPod>& pods);

    // Writes ",value" or "," for every column of a record that adds up; returns the end.
    char* write_values(const char* values, int count, char* out) const;

    // Bytes that the longest line may take while it is written.
    std::size_t row_room() const { return row_room_; }

    // Index of the column of a pod's channel (numbers); -1 when it has none.
    int column(float pod, int channel) const;

  private:
    static constexpr int NoGroup = -1;
    // A pod's part of a record.
    struct Part {
        float number = 0;
        int channels = 0;
        int group = NoGroup;
    };
    // The columns of one pod, which stand side by side.
    struct Group {
        std::int16_t pod = 0;
        std::vector<std::int16_t> channels;  // indices of the selected ones
        int present = 0;                     // how many of them the run has
    };

    static char* write_group(const Group& group, const char* values, char* out);

    std::vector<Part> parts_;    // in the order of the run's records
    std::vector<Group> groups_;  // in the order of the columns
    std::array<std::array<std::int16_t, MaxChannels>, MaxZavs> column_{};  // -1: none
    std::size_t row_room_ = 0;
};

// One line of a scan log.
struct ScanRow {
    std::array<char, 8> date{};  // dd-mm-yy
    std::int32_t time = 0;       // hhmmssmmm
    int count = 0;               // of the values in its record, which adds up
};

// One line of an event log.
struct EventRow {
    std::int32_t year = 0;
    std::int32_t date = 0;  // ddmmcc
    std::int32_t time = 0;  // hhmmss
    std::int32_t rest = 0;  // mmmls
    int column = 0;
};

// Write a line to `out`, which has room for layout.row_room() bytes, and return its end.
char* write_row(const CsvLayout& layout, const ScanRow& row, const char* values, char* out);
char* write_row(const EventRow& row, char* out);

// The first six (five) digits of a number written with at least so many: what the fields of an
// event are taken from.
std::int32_t first_six_digits(std::int32_t number);
std::int32_t first_five_digits(std::int32_t number);

}  // namespace kavorix
