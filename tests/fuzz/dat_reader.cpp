// Any bytes as a log file: it converts or says why not, the text does not depend on the buffers,
// the information about it can be told, and a new run can be appended or is refused.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "logging/csv_preview.h"
#include "logging/log_info.h"
#include "logging/log_tail.h"

namespace {

using namespace kavorix;

class BytesFile : public File {
  public:
    std::string bytes;

    std::size_t read(std::span<char>) override { return 0; }
    std::size_t read_at(std::uint64_t offset, std::span<char> buffer) override {
        return offset < bytes.size() ? bytes.copy(buffer.data(), buffer.size(), offset) : 0;
    }
    void write(std::string_view) override {}
    void write_at(std::uint64_t offset, std::string_view written) override {
        if (bytes.size() < offset + written.size()) bytes.resize(offset + written.size());
        bytes.replace(offset, written.size(), written);
    }
    std::uint64_t size() override { return bytes.size(); }
    void truncate(std::uint64_t size) override { bytes.resize(size); }
    void sync() override {}
    void close() override {}
};

class Watcher : public CsvWatcher {
  public:
    void progress(int percent) override { check(percent >= 0 && percent <= 100); }
    bool go_on() override { return true; }
    bool go_on_with_wrong_dates() override { return true; }

    static void check(bool holds) {
        if (!holds) std::abort();
    }
};

struct Outcome {
    CsvResult result;
    std::string text;
};

Outcome convert(BytesFile& log, std::size_t buffer_size) {
    CsvPlan plan{"/a.CSV", read_log_contents(log).Pods, {}, 0, buffer_size};
    plan.Selection = select_all(plan.Pods);
    Watcher watcher;
    Outcome outcome;
    outcome.result = CsvConverter(
                         log, [&](std::string_view text) { outcome.text += text; }, plan, watcher)
                         .convert();
    return outcome;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    BytesFile log;
    log.bytes.assign(reinterpret_cast<const char*>(data), size);
    const Outcome whole = convert(log, DatReader::DefaultBufferSize);
    const Outcome pieces = convert(log, 5);
    Watcher::check(whole.text == pieces.text && whole.result.End == pieces.result.End &&
                   whole.result.Position == pieces.result.Position);
    Watcher::check(whole.result.Position <= size);

    CsvPlan plan{"/a.CSV", read_log_contents(log).Pods, {}};
    plan.Selection = select_all(plan.Pods);
    csv_preview(log, plan);
    log_info_text(read_log_info(log));

    try {
        const std::uint64_t end = repair_log_end(log, "a.DAT");
        Watcher::check(end >= log.bytes.size() || log.bytes.size() <= size + BlockSize);
        log.write_at(end, encode({ScanLog, "", 20260105, {{1, "7R", {{}}}}}));
        read_log_contents(log);
    } catch (const LogRefused&) {
        // Damaged, or no log: it stays as it was.
        Watcher::check(log.bytes.size() == size);
    }
    return 0;
}
