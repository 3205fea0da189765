#include "logging/csv_rows.h"

#include <algorithm>
#include <cstring>

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

// `width` digits of a number that has no more.
char* write_digits(std::int32_t number, int width, char* out) {
    for (char* digit = out + width; digit != out; number /= 10)
        *--digit = static_cast<char>('0' + number % 10);
    return out + width;
}

char* write_text(std::string_view text, char* out) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

// "hh:mm:ss" with its quotes, of hhmmss.
char* write_time(std::int32_t time, char* out) {
    *out++ = '"';
    out = write_digits(time / 10000, 2, out);
    *out++ = ':';
    out = write_digits(time / 100 % 100, 2, out);
    *out++ = ':';
    out = write_digits(time % 100, 2, out);
    *out++ = '"';
    return out;
}

std::int32_t first_digits(std::int32_t number, std::int32_t beyond) {
    while (number >= beyond) number /= 10;
    return number;
}

// What an event says: its fourth digit tells a level from a transition, the fifth the state.
std::string_view event_text(std::int32_t rest) {
    const bool level = rest / 10 % 10 != 0;
    const bool high = rest % 10 != 0;
    if (level) return high ? "\"High\"" : "\"Low\"";
    return high ? "\"Lo to Hi\"" : "\"Hi to Lo\"";
}

}  // namespace

std::int32_t first_six_digits(std::int32_t number) {
    return first_digits(number, 1000000);
}

std::int32_t first_five_digits(std::int32_t number) {
    return first_digits(number, 100000);
}

std::string csv_quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += c;
        quoted += c;
    }
    return quoted + '"';
}

std::string csv_heading(const std::vector<CsvColumn>& columns) {
    std::string line = "\"DATE\",\"TIME\",\"MILLISECOND\"";
    for (const CsvColumn& column : columns)
        line +=
            ",\"ZAV" + std::to_string(column.Pod) + "/Ch" + std::to_string(column.Channel) + '"';
    return line.append(CsvLineEnd);
}

std::string csv_labels(const std::vector<CsvColumn>& columns, const std::vector<LoggedPod>& pods) {
    std::string labels = ",,";
    std::string units = ",,";
    for (const CsvColumn& column : columns) {
        LoggedChannel channel;
        for (const LoggedPod& pod : pods)
            if (pod.Number == column.Pod && at(column.Channel) <= pod.Channels.size())
                channel = pod.Channels[at(column.Channel - 1)];
        labels += "," + csv_quoted(trim(channel.Label));
        units += "," + csv_quoted(trim(channel.Unit));
    }
    return labels.append(CsvLineEnd) + units.append(CsvLineEnd);
}

CsvLayout::CsvLayout(const std::vector<CsvColumn>& columns, const std::vector<LoggedPod>& pods) {
    constexpr std::size_t LineRoom = 64;   // date, time, event text, line end
    constexpr std::size_t ValueRoom = 14;  // comma and the longest number
    row_room_ = LineRoom + columns.size() * ValueRoom + GeneralBufferSize;
    for (auto& channels : column_) channels.fill(-1);
    for (const LoggedPod& pod : pods)
        parts_.push_back({static_cast<float>(pod.Number), static_cast<int>(pod.Channels.size())});
    std::int16_t index = 0;
    for (const CsvColumn& column : columns) {
        column_[at(column.Pod - 1)][at(column.Channel - 1)] = index++;
        if (groups_.empty() || groups_.back().pod != column.Pod) {
            groups_.push_back({column.Pod, {}, 0});
            for (Part& part : parts_)
                if (part.number == static_cast<float>(column.Pod))
                    part.group = static_cast<int>(groups_.size()) - 1;
        }
        Group& group = groups_.back();
        group.channels.push_back(static_cast<std::int16_t>(column.Channel - 1));
        for (const Part& part : parts_)
            if (part.number == static_cast<float>(column.Pod) && column.Channel <= part.channels)
                group.present = static_cast<int>(group.channels.size());
    }
}

char* CsvLayout::write_values(const char* values, int count, char* out) const {
    std::array<const char*, MaxZavs> found{};
    int read = 0;
    for (const Part& part : parts_) {
        if (read == count) break;
        if (read_field<float>(values + at(read) * EntrySize) != part.number) continue;
        if (part.group != NoGroup) found[at(part.group)] = values + at(read + 1) * EntrySize;
        read += 1 + part.channels;
    }
    for (std::size_t group = 0; group < groups_.size(); ++group)
        out = write_group(groups_[group], found[group], out);
    return out;
}

char* CsvLayout::write_group(const Group& group, const char* values, char* out) {
    const int present = values ? group.present : 0;
    for (int i = 0; i < present; ++i) {
        const auto bits = read_field<std::uint32_t>(values + at(group.channels[at(i)]) * EntrySize);
        *out++ = ',';
        if (bits != ErrorReadingBits) out = write_general(std::bit_cast<float>(bits), out);
    }
    const std::size_t absent = group.channels.size() - at(present);
    std::memset(out, ',', absent);
    return out + absent;
}

int CsvLayout::column(float pod, int channel) const {
    if (!(pod >= 1 && pod <= MaxZavs) || channel < 1 || channel > MaxChannels) return -1;
    const auto number = static_cast<int>(pod);
    return static_cast<float>(number) == pod ? column_[at(number - 1)][at(channel - 1)] : -1;
}

char* write_row(const CsvLayout& layout, const ScanRow& row, const char* values, char* out) {
    *out++ = '"';
    out = write_text({row.date.data(), row.date.size()}, out);
    out = write_text("\",", out);
    out = write_time(row.time / 1000, out);
    *out++ = ',';
    out = write_digits(row.time % 1000, 3, out);
    out = layout.write_values(values, row.count, out);
    return write_text(CsvLineEnd, out);
}

char* write_row(const EventRow& row, char* out) {
    *out++ = '"';
    out = write_digits(row.date / 10000, 2, out);
    *out++ = '-';
    out = write_digits(row.date / 100 % 100, 2, out);
    *out++ = '-';
    out = write_digits(row.year, 4, out);
    out = write_text("\",", out);
    out = write_time(row.time, out);
    *out++ = ',';
    out = write_digits(row.rest / 100, 3, out);
    const auto commas = static_cast<std::size_t>(row.column) + 1;
    std::memset(out, ',', commas);
    out = write_text(event_text(row.rest), out + commas);
    return write_text(CsvLineEnd, out);
}

}  // namespace kavorix
