#include "sim/table_reader.h"

#include <cmath>
#include <limits>
#include <numeric>

#include "base/text.h"

namespace kavorix::sim {

namespace {

// Insertions, deletions, replacements and swaps of neighbours that turn one name into the other.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1,
                                               std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) cost[i][0] = i;
    std::iota(cost[0].begin(), cost[0].end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
            cost[i][j] =
                std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    return cost[a.size()][b.size()];
}

std::string meant(std::string_view nearest) {
    return nearest.empty() ? "" : "; did you mean \"" + std::string(nearest) + "\"?";
}

}  // namespace

void ScenarioErrors::add(const toml::source_region& where, std::string_view message) {
    found_.push_back({where.begin, std::string(message)});
}

std::vector<std::string> ScenarioErrors::texts() const {
    std::vector<Found> ordered = found_;
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Found& a, const Found& b) { return a.at < b.at; });
    std::vector<std::string> result;
    for (const Found& found : ordered)
        result.push_back(file_name_ + ":" + std::to_string(found.at.line) + ":" +
                         std::to_string(found.at.column) + ": " + found.message);
    return result;
}

std::string_view nearest_name(std::string_view wrong, const std::vector<std::string_view>& names) {
    std::string_view nearest;
    std::size_t least = std::max<std::size_t>(2, wrong.size() / 3) + 1;
    for (const std::string_view name : names) {
        const bool begun = wrong.size() >= 3 && name.starts_with(wrong);
        if (const std::size_t cost = begun ? 1 : distance(wrong, name); cost < least) {
            least = cost;
            nearest = name;
        }
    }
    return nearest;
}

std::string TableReader::name_of(std::string_view key) const {
    return path_.empty() ? std::string(key) : path_ + "." + std::string(key);
}

const toml::node* TableReader::find(std::string_view key) {
    known_.push_back(key);
    return table_.get(key);
}

void TableReader::fail(std::string_view key, std::string_view message) {
    const toml::node* node = table_.get(key);
    errors_.add(node != nullptr ? node->source() : table_.source(),
                "\"" + name_of(key) + "\" " + std::string(message));
}

bool TableReader::require(std::string_view key) {
    if (has(key)) return true;
    fail(key, "is missing");
    return false;
}

bool TableReader::number(std::string_view key, double& value, const Bounds& bounds) {
    const toml::node* node = find(key);
    if (node == nullptr) return false;
    const auto read = node->is_number() ? node->value<double>() : std::nullopt;
    if (!read || !(*read >= bounds.low && *read <= bounds.high)) {
        fail(key, "must be " + std::string(bounds.expected));
        return false;
    }
    value = *read;
    return true;
}

bool TableReader::whole_number(std::string_view key, double& value, const Bounds& bounds) {
    const toml::node* node = find(key);
    if (node == nullptr) return false;
    const auto read = node->is_integer() ? node->value<double>() : std::nullopt;
    if (!read || *read < bounds.low || *read > bounds.high) {
        fail(key, "must be " + std::string(bounds.expected));
        return false;
    }
    value = *read;
    return true;
}

bool TableReader::text(std::string_view key, std::string& value, std::size_t shortest,
                       std::size_t longest) {
    const toml::node* node = find(key);
    if (node == nullptr) return false;
    const auto utf8 = node->is_string() ? node->value<std::string>() : std::nullopt;
    const auto read = utf8 ? from_utf8(*utf8) : std::nullopt;
    if (utf8 && !read) {
        fail(key, "holds a character that has no place in code page 1252");
        return false;
    }
    if (!read || read->size() < shortest || read->size() > longest) {
        const std::string length =
            shortest == longest ? std::to_string(longest)
                                : std::to_string(shortest) + " to " + std::to_string(longest);
        fail(key, "must be a text of " + length + " characters");
        return false;
    }
    value = *read;
    return true;
}

bool TableReader::numbers(std::string_view key, std::vector<double>& value) {
    const toml::node* node = find(key);
    if (node == nullptr) return false;
    value.clear();
    if (const toml::array* list = node->as_array())
        for (const auto& entry : *list)
            value.push_back(entry.is_number() ? entry.value<double>().value_or(0.0)
                                              : std::numeric_limits<double>::quiet_NaN());
    const auto finite = [](double x) { return std::isfinite(x); };
    if (node->is_array() && std::all_of(value.begin(), value.end(), finite)) return true;
    fail(key, "must be a list of numbers");
    return false;
}

void TableReader::wrong_choice(std::string_view key, const toml::node& node,
                               const std::vector<std::string_view>& names) {
    std::string message = "must be one of";
    for (const std::string_view name : names)
        message += (name == names.front() ? " " : ", ") + std::string(name);
    if (const auto name = node.value<std::string_view>())
        message += meant(nearest_name(*name, names));
    fail(key, message);
}

const toml::table* TableReader::table(std::string_view key) {
    const toml::node* node = find(key);
    if (node == nullptr) return nullptr;
    const toml::table* inner = node->as_table();
    if (inner == nullptr) fail(key, "must be written as [" + name_of(key) + "]");
    return inner;
}

void TableReader::finish() {
    for (const auto& [key, node] : table_) {
        const std::string_view name = key.str();
        if (std::find(known_.begin(), known_.end(), name) != known_.end()) continue;
        errors_.add(key.source(),
                    "unknown key \"" + name_of(name) + "\"" + meant(nearest_name(name, known_)));
    }
}

}  // namespace kavorix::sim
