// Any bytes as an alarm file: rules that are written and read again as the same, or errors that
// name file, line and column. And as a journal: a start takes what is whole, and what it then
// writes is.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "alarms/alarm_desk.h"
#include "alarms/rules_file.h"
#include "support/memory_files.h"

namespace {

using namespace kavorix;

void read_rules(std::string_view text) {
    const LoadedRules loaded = parse_rules(text, "a.toml");
    for (const std::string& error : loaded.errors)
        if (!error.starts_with("a.toml:")) std::abort();
    if (!loaded.errors.empty()) return;
    LoadedRules again = parse_rules(rules_text(loaded.rules), "b.toml");
    if (again.rules.size() != loaded.rules.size()) std::abort();
    for (std::size_t i = 0; i < again.rules.size(); ++i) {
        again.rules[i].line = loaded.rules[i].line;
        if (!(again.rules[i] == loaded.rules[i])) std::abort();
    }
}

void start_on(std::string_view text) {
    test::MemoryFiles files;
    const JournalPlace place{"", 100000, 3};
    files.put(place.path(0), std::string(text));
    if (read_journal(files, place, place.files).records.empty()) return;
    AlarmMoment now{0, 1'800'000'000'000, 60};
    AlarmRule rule;
    rule.pod = 4;
    rule.channel = 1;
    for (int start = 0; start < 2; ++start) {
        AlarmDesk desk(files, place, now);
        desk.set_rules({rule}, now);
        for (const float value : {1.0F, -1.0F}) {
            now.tick_ms += 1000;
            desk.reading(3, std::vector<float>{value}, std::vector<std::int16_t>{0}, now);
        }
        desk.tick(now);
        if (!desk.journal_failure().empty()) std::abort();
        desk.stop(now);
    }
    const JournalContents contents = read_journal(files, place, place.files);
    if (contents.records.empty() || contents.records.back().event != RecordEvent::Stop)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    read_rules(text);
    start_on(text);
    return 0;
}
