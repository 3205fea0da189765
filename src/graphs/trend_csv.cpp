#include "graphs/trend_csv.h"

#include <cmath>

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string result = "\"";
    for (const char c : text) result += c == '"' ? std::string(2, c) : std::string(1, c);
    return result + "\"";
}

std::string three_digits(int value) {
    return (value < 100 ? "0" : "") + two_digits(value);
}

}  // namespace

std::string trend_csv(const TrendData& data, const TimeRange& range,
                      const std::vector<std::string>& names) {
    std::string text = "Time (s),Date,Clock";
    for (const std::string& name : names) text += "," + quoted(name);
    text += "\r\n";
    for (std::uint64_t row = data.row_at(range.begin);
         row < data.end_row() && data.time(row) <= range.end; ++row) {
        const WallTime wall = data.wall_time(data.time(row));
        const std::string date = general_date(wall);
        text += shortest(data.time(row)) + "," + date.substr(0, 10) + "," + date.substr(11) + "." +
                three_digits(wall.millisecond);
        for (const float value : data.values(row))
            text += std::isfinite(value) ? "," + general(value) : ",";
        text += "\r\n";
    }
    return text;
}

}  // namespace kavorix
