#include "logging/csv_preview.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace kavorix {

namespace {

constexpr std::size_t LinesInFront = 2;  // file name and comment
constexpr std::size_t Lines = LinesInFront + 3 + 20;

// Gathers text until there are enough lines.
class Beginning : public CsvWatcher {
  public:
    std::string text;

    void progress(int) override {}
    bool go_on() override {
        constexpr int MostLooks = 64;  // at most a megabyte of the log lies between two
        return ++looks_ < MostLooks &&
               std::count(text.begin(), text.end(), '\n') < static_cast<std::ptrdiff_t>(Lines);
    }
    bool go_on_with_wrong_dates() override { return true; }

  private:
    int looks_ = 0;
};

// The next field of a line, taken off its front with the comma behind it.
std::string take_field(std::string_view& line) {
    std::string field;
    bool quoted = false;
    std::size_t i = 0;
    for (; i < line.size() && (quoted || line[i] != ','); ++i) {
        if (line[i] != '"') {
            field += line[i];
        } else if (quoted && i + 1 < line.size() && line[i + 1] == '"') {
            field += line[i++];
        } else {
            quoted = !quoted;
        }
    }
    line.remove_prefix(std::min(line.size(), i + 1));
    return field;
}

std::vector<std::string> fields_of(std::string_view line) {
    std::vector<std::string> fields;
    while (!line.empty()) fields.push_back(take_field(line));
    return fields;
}

std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty() && lines.size() < Lines) {
        const std::size_t end = text.find(CsvLineEnd);
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(text.size(), lines.back().size() + CsvLineEnd.size()));
    }
    return lines;
}

}  // namespace

Grid csv_preview(File& log, const CsvPlan& plan) {
    Beginning beginning;
    CsvConverter(
        log, [&](std::string_view text) { beginning.text += text; }, plan, beginning)
        .convert();
    const auto lines = lines_of(beginning.text);
    Grid grid;
    for (std::size_t i = LinesInFront; i < lines.size(); ++i) {
        std::vector<std::string> fields = fields_of(lines[i]);
        if (i == LinesInFront) {
            grid.headings = std::move(fields);
            continue;
        }
        fields.resize(grid.headings.size());
        std::vector<GridCell>& row = grid.rows.emplace_back();
        for (std::string& field : fields) row.push_back({std::move(field)});
    }
    return grid;
}

}  // namespace kavorix
