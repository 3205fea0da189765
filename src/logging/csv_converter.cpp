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

std::array<char, 8> scan_date(const WallTime& date) {
    const std::string text =
        two_digits(date.day) + "-" + two_digits(date.month) + "-" + two_digits(date.year % 100);
    std::array<char, 8> bytes{};
    text.copy(bytes.data(), bytes.size());
    return bytes;
}

}  // namespace

CsvConverter::CsvConverter(File& log, std::function<void(std::string_view)> write,
                           const CsvPlan& plan, CsvWatcher& watcher, File* sums)
    : plan_(plan),
      columns_(csv_columns(plan.Pods, plan.Selection)),
      watcher_(watcher),
      reader_(log, plan.BufferSize),
      verifier_(sums),
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
        verifier_.take(item, reader_);
        if (item == DatItem::End) return ended(CsvEnd::Done);
        if (const auto end = take_item(item)) return ended(*end);
        if (!watch()) return ended(CsvEnd::Stopped);
    }
}

CsvResult CsvConverter::ended(CsvEnd end) {
    hand_on();
    pool_.finish();
    result_.End = end;
    result_.Position = reader_.item_position();
    result_.Check = verifier_.result();
    return result_;
}

std::optional<CsvEnd> CsvConverter::take_item(DatItem item) {
    if (is_damage(item)) {
        if (!plan_.Salvage)
            return item == DatItem::CutShort  ? CsvEnd::CutShort
                   : item == DatItem::Corrupt ? CsvEnd::Corrupt
                                              : CsvEnd::Damaged;
        ++result_.DamagedParts;
        result_.Skipped += reader_.resume();
    }
    if (item == DatItem::Header) begin_run();
    if (item == DatItem::Configuration) begin_records();
    if (item != DatItem::Data) return std::nullopt;
    if (reader_.kind() != ScanLog)
        add_events();
    else if (!add_scan())
        return CsvEnd::Stopped;
    return std::nullopt;
}

void CsvConverter::begin_run() {
    hand_on();
    layout_ = std::make_shared<CsvLayout>(columns_, std::vector<LoggedPod>());
    chunk_->begin(layout_);
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
    years_ = EventYears(date_);
    last_time_ = -1;
}

// False when the operator does not want to go on past midnight.
bool CsvConverter::add_scan() {
    if (reader_.time() < last_time_ && !pass_midnight()) return false;
    last_time_ = reader_.time();
    row_.time = *decimal(reader_.time());
    row_.count = reader_.count();
    chunk_->add(row_, reader_.values());
    ++result_.Rows;
    return true;
}

// False when the operator does not want to go on with dates that are wrong.
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

void CsvConverter::add_events() {
    const char* value = reader_.values();
    const char* const end = value + at(reader_.count()) * EntrySize;
    while (value < end) {
        const auto pod = read_field<float>(value);
        const auto last = read_field<float>(value + EntrySize);
        value += 2 * EntrySize;
        for (float event = 0; event <= last; ++event) {
            add_event(value, pod);
            value += EventEntries * EntrySize;
        }
    }
}

void CsvConverter::add_event(const char* event, float pod) {
    const auto field = [&](int number) {
        return *decimal(read_field<float>(event + at(number) * EntrySize));
    };
    EventRow row{0, first_six_digits(field(0)), first_six_digits(field(1)),
                 first_five_digits(field(2))};
    row.year = years_.next(pod, row.date / 100 % 100);
    row.column = layout_->column(pod, row.date % 100);
    if (row.column < 0) return;
    chunk_->add(row);
    ++result_.Rows;
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
