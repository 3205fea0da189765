#include "logging/csv_converter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/text.h"

namespace kavorix {

namespace {

// Records of about this size are formatted together.
constexpr std::size_t ChunkSize = 128 * 1024;

// The watcher looks on at least every so many bytes of the log.
constexpr std::uint64_t WatchDistance = 1024 * 1024;

// A single that stands for a decimal number without sign of up to nine digits.
std::optional<std::int32_t> decimal(float value) {
    if (!(value >= 0 && value < 1E9F)) return std::nullopt;
    return static_cast<std::int32_t>(std::lrint(value));
}

std::array<char, 8> scan_date(const WallTime& date) {
    const std::string text =
        two_digits(date.day) + "-" + two_digits(date.month) + "-" + two_digits(date.year % 100);
    std::array<char, 8> bytes{};
    text.copy(bytes.data(), bytes.size());
    return bytes;
}

}  // namespace

CsvConverter::CsvConverter(File& log, std::function<void(std::string_view)> write,
                           const CsvPlan& plan, CsvWatcher& watcher)
    : plan_(plan),
      columns_(csv_columns(plan.Pods, plan.Selection)),
      watcher_(watcher),
      reader_(log, plan.BufferSize),
      length_(log.size()),
      pool_(plan.Helpers, std::move(write)),
      chunk_(pool_.take()) {}

CsvResult CsvConverter::convert() {
    watcher_.progress(0);
    layout_ = std::make_shared<CsvLayout>(columns_, std::vector<LoggedPod>());
    chunk_->begin(layout_);
    chunk_->add_lines(csv_quoted(plan_.CsvPath).append(CsvLineEnd));
    while (true) {
        const DatItem item = reader_.next();
        if (item == DatItem::End) return ended(CsvEnd::Done);
        if (const auto end = take_item(item)) return ended(*end);
        if (!watch()) return ended(CsvEnd::Stopped);
    }
}

CsvResult CsvConverter::ended(CsvEnd end) {
    hand_on();
    pool_.finish();
    return {end, reader_.item_position(), rows_};
}

std::optional<CsvEnd> CsvConverter::take_item(DatItem item) {
    switch (item) {
        case DatItem::Header:
            begin_run();
            return std::nullopt;
        case DatItem::Configuration:
            begin_records();
            return std::nullopt;
        case DatItem::Data:
            return reader_.kind() == ScanLog ? add_scan() : add_events();
        case DatItem::CutShort:
            return CsvEnd::CutShort;
        default:
            return CsvEnd::Damaged;
    }
}

void CsvConverter::begin_run() {
    hand_on();
    chunk_->add_lines(csv_quoted(trim(reader_.comment())).append(CsvLineEnd));
    chunk_->add_lines(csv_heading(columns_));
}

void CsvConverter::begin_records() {
    hand_on();
    layout_ = std::make_shared<CsvLayout>(columns_, reader_.pods());
    chunk_->begin(layout_);
    chunk_->add_lines(csv_labels(columns_, reader_.pods()));
    const std::int32_t date = reader_.date();
    date_ = {date / 10000, date / 100 % 100, date % 100};
    row_.date = scan_date(date_);
    year_ = date_.year;
    month_ = 0;
    last_time_ = -1;
}

std::optional<CsvEnd> CsvConverter::add_scan() {
    const auto time = decimal(reader_.time());
    if (!time) return CsvEnd::Damaged;
    if (reader_.time() < last_time_ && !pass_midnight()) return CsvEnd::Stopped;
    last_time_ = reader_.time();
    if (!layout_->adds_up(reader_.values(), reader_.count())) return CsvEnd::Corrupt;
    row_.time = *time;
    row_.count = reader_.count();
    chunk_->add(row_, reader_.values());
    ++rows_;
    return std::nullopt;
}

// False when the operator does not want to go on without.
bool CsvConverter::pass_midnight() {
    if (wrong_dates_) return true;
    if (!is_date(date_)) {
        wrong_dates_ = watcher_.go_on_with_wrong_dates();
        return wrong_dates_;
    }
    date_ = add_days(date_, 1);
    row_.date = scan_date(date_);
    return true;
}

std::optional<CsvEnd> CsvConverter::add_events() {
    const char* value = reader_.values();
    const char* const end = value + at(reader_.count()) * EntrySize;
    while (value < end) {
        if (end - value < static_cast<std::ptrdiff_t>(2 * EntrySize)) return CsvEnd::Damaged;
        const auto pod = read_field<float>(value);
        const auto last = read_field<float>(value + EntrySize);
        value += 2 * EntrySize;
        const auto room =
            static_cast<float>((end - value) / static_cast<std::ptrdiff_t>(EntrySize));
        if (!((last + 1) * EventEntries <= room)) return CsvEnd::Damaged;
        for (float event = 0; event <= last; ++event) {
            if (const auto failure = add_event(value, pod)) return failure;
            value += EventEntries * EntrySize;
        }
    }
    return std::nullopt;
}

std::optional<CsvEnd> CsvConverter::add_event(const char* event, float pod) {
    const auto date = decimal(read_field<float>(event));
    const auto time = decimal(read_field<float>(event + EntrySize));
    const auto rest = decimal(read_field<float>(event + 2 * EntrySize));
    if (!date || !time || !rest) return CsvEnd::Damaged;
    EventRow row{year_, first_six_digits(*date), first_six_digits(*time), first_five_digits(*rest)};
    const std::int32_t month = row.date / 100 % 100;
    if (month_ == 12 && month == 1) row.year = ++year_;
    month_ = month;
    row.column = layout_->column(pod, row.date % 100);
    if (row.column < 0) return std::nullopt;
    chunk_->add(row);
    ++rows_;
    return std::nullopt;
}

// Gives what is gathered so far to be formatted and written.
void CsvConverter::hand_on() {
    pool_.put(std::move(chunk_));
    chunk_ = pool_.take();
    chunk_->begin(layout_);
}

// Lets the watcher look on; false when it stops the conversion.
bool CsvConverter::watch() {
    const std::uint64_t position = std::min(reader_.position(), length_);
    const int percent = length_ == 0 ? 100 : static_cast<int>(position * 100 / length_);
    if (percent <= percent_ && chunk_->size() < ChunkSize && position - watched_ < WatchDistance)
        return true;
    watched_ = position;
    hand_on();
    if (!watcher_.go_on()) return false;
    if (percent > percent_) watcher_.progress(percent_ = percent);
    return true;
}

}  // namespace kavorix
