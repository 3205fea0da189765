#include "logging/log_sums.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>
#include <utility>

namespace kavorix {

namespace {

constexpr std::string_view FirstLine = "KAVORIX SUMS 1";
constexpr std::size_t LongestLine = 64;
constexpr std::size_t BufferSize = 16 * 1024;
constexpr std::size_t SumDigits = 8;

std::string hex(std::uint32_t sum) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string text(SumDigits, '0');
    for (std::size_t i = SumDigits; i-- > 0; sum >>= 4u) text[i] = Digits[sum & 15u];
    return text;
}

template <class Number>
std::optional<Number> number_in(std::string_view text, int base) {
    Number number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<std::uint32_t> sum_in(std::string_view text) {
    return text.size() == SumDigits ? number_in<std::uint32_t>(text, 16) : std::nullopt;
}

// The number behind `word` and a blank.
std::optional<std::uint64_t> number_behind(std::string_view line, std::string_view word) {
    if (!line.starts_with(word)) return std::nullopt;
    return number_in<std::uint64_t>(line.substr(word.size()), 10);
}

struct RunLine {
    std::uint64_t position = 0;
    std::uint32_t sum = 0;
};

std::optional<RunLine> run_in(std::string_view line) {
    const auto blank = line.rfind(' ');
    if (blank == std::string_view::npos) return std::nullopt;
    const auto position = number_behind(line.substr(0, blank), "run ");
    const auto sum = sum_in(line.substr(blank + 1));
    if (!position || !sum) return std::nullopt;
    return RunLine{*position, *sum};
}

bool holds_sums(File& file) {
    std::array<char, FirstLine.size()> bytes{};
    return file.read_at(0, bytes) == bytes.size() &&
           std::string_view(bytes.data(), bytes.size()) == FirstLine;
}

// Where the last whole line ends.
std::uint64_t end_of_lines(File& file) {
    const std::uint64_t size = file.size();
    std::string tail(LongestLine, '\0');
    const std::uint64_t begin = size - std::min<std::uint64_t>(size, tail.size());
    tail.resize(file.read_at(begin, tail));
    const auto last = tail.rfind('\n');
    return last == std::string::npos ? size : begin + last + 1;
}

}  // namespace

std::string sums_path_of(const std::string& log_path) {
    return log_path + ".sum";
}

SumWriter::SumWriter(Files& files, const std::string& log_path, bool fresh) {
    try {
        open(files, sums_path_of(log_path), fresh);
    } catch (const std::system_error& failure) {
        file_ = nullptr;
        failure_ = failure.what();
    }
}

SumWriter::SumWriter(File& file) : file_(&file) {
    write_line(std::string(FirstLine));
}

void SumWriter::open(Files& files, const std::string& path, bool fresh) {
    own_ = files.open(path, OpenMode::ReadWrite);
    if (own_->size() > 0 && !holds_sums(*own_)) {
        failure_ = "\"" + path + "\" holds something else";
        return;
    }
    file_ = own_.get();
    if (!fresh && file_->size() > 0) {
        end_ = end_of_lines(*file_);
        file_->truncate(end_);
        return;
    }
    file_->truncate(0);
    write_line(std::string(FirstLine));
}

void SumWriter::write_line(const std::string& line) {
    if (!file_) return;
    try {
        file_->write_at(end_, line + "\n");
        end_ += line.size() + 1;
    } catch (const std::system_error& failure) {
        file_ = nullptr;
        failure_ = failure.what();
    }
}

void SumWriter::begin_run(std::uint64_t position, std::uint32_t header_sum) {
    write_line("run " + std::to_string(position) + " " + hex(header_sum));
}

void SumWriter::add(std::uint32_t record_sum) {
    write_line(hex(record_sum));
}

void SumWriter::mark_unsynced(std::uint64_t records) {
    write_line("unsynced " + std::to_string(records));
}

void SumWriter::end_run(std::uint64_t records) {
    write_line("end " + std::to_string(records));
}

SumReader::SumReader(File& file) : file_(file) {
    if (!holds_sums(file)) position_ = file.size();
}

bool SumReader::fill() {
    buffer_.erase(0, std::exchange(begin_, 0));
    const std::size_t before = buffer_.size();
    buffer_.resize(before + BufferSize);
    const std::size_t got =
        file_.read_at(position_, {buffer_.data() + before, buffer_.size() - before});
    buffer_.resize(before + got);
    position_ += got;
    return got > 0;
}

// Without its end; what is longer than any line comes in pieces that are none. The last line counts
// only with its end.
std::optional<std::string> SumReader::next_line() {
    if (held_) return std::exchange(held_, std::nullopt);
    while (true) {
        const auto end = buffer_.find('\n', begin_);
        if (end != std::string::npos || buffer_.size() - begin_ > LongestLine) {
            const std::size_t length =
                end == std::string::npos ? buffer_.size() - begin_ : end - begin_;
            std::string line = buffer_.substr(begin_, length);
            begin_ = std::min(buffer_.size(), begin_ + length + 1);
            return line;
        }
        if (!fill()) return std::nullopt;
    }
}

std::optional<std::uint32_t> SumReader::begin_run(std::uint64_t position) {
    ahead_.clear();
    in_run_ = false;
    unsynced_.reset();
    while (auto line = next_line()) {
        const auto run = run_in(*line);
        if (!run) continue;
        if (run->position < position) {
            ++passed_over_;
            continue;
        }
        if (run->position > position) {
            held_ = std::move(line);
            return std::nullopt;
        }
        in_run_ = true;
        return run->sum;
    }
    return std::nullopt;
}

// Reads on to the next sum; false at the end of the run's sums, or at a line that makes no sense.
bool SumReader::read_sum() {
    while (in_run_) {
        auto line = next_line();
        if (!line) break;
        if (const auto sum = sum_in(*line)) {
            ahead_.push_back(*sum);
            return true;
        }
        if (const auto unsynced = number_behind(*line, "unsynced ")) {
            unsynced_ = unsynced;
            continue;
        }
        held_ = std::move(line);
        break;
    }
    return in_run_ = false;
}

std::deque<std::uint32_t>& SumReader::ahead(std::size_t count) {
    while (ahead_.size() < count && read_sum()) {
    }
    return ahead_;
}

}  // namespace kavorix
