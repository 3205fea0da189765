#include "toml/toml_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "base/text.h"

namespace kavorix {

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

std::optional<double> number_in(const TomlValue& node) {
    if (const auto* whole = node.as<std::int64_t>()) return static_cast<double>(*whole);
    if (const auto* number = node.as<double>()) return *number;
    return std::nullopt;
}

constexpr std::size_t MostSuggestions = 100;

std::string meant(std::string_view nearest) {
    return nearest.empty() ? "" : "; did you mean \"" + std::string(nearest) + "\"?";
}

}  // namespace

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

std::string TomlReader::name_of(std::string_view key) const {
    return path_.empty() ? std::string(key) : path_ + "." + std::string(key);
}

const TomlValue* TomlReader::find(std::string_view key) {
    known_.push_back(key);
    return table_.find(key);
}

void TomlReader::fail(std::string_view key, std::string_view message) {
    const TomlValue* node = table_.find(key);
    errors_.add(node != nullptr ? node->at : table_.at,
                "\"" + name_of(key) + "\" " + std::string(message));
}

bool TomlReader::require(std::string_view key) {
    if (has(key)) return true;
    fail(key, "is missing");
    return false;
}

bool TomlReader::number(std::string_view key, double& value, const TomlBounds& bounds) {
    const TomlValue* node = find(key);
    if (node == nullptr) return false;
    const auto read = number_in(*node);
    if (!read || !(*read >= bounds.low && *read <= bounds.high)) {
        fail(key, "must be " + std::string(bounds.expected));
        return false;
    }
    value = *read;
    return true;
}

bool TomlReader::whole_number(std::string_view key, double& value, const TomlBounds& bounds) {
    const TomlValue* node = find(key);
    if (node == nullptr) return false;
    const auto* read = node->as<std::int64_t>();
    const double number = read ? static_cast<double>(*read) : 0.0;
    if (!read || number < bounds.low || number > bounds.high) {
        fail(key, "must be " + std::string(bounds.expected));
        return false;
    }
    value = number;
    return true;
}

bool TomlReader::boolean(std::string_view key, bool& value) {
    const TomlValue* node = find(key);
    if (node == nullptr) return false;
    const bool* read = node->as<bool>();
    if (read == nullptr) {
        fail(key, "must be true or false");
        return false;
    }
    value = *read;
    return true;
}

bool TomlReader::text(std::string_view key, std::string& value, std::size_t shortest,
                      std::size_t longest) {
    const TomlValue* node = find(key);
    if (node == nullptr) return false;
    const auto* utf8 = node->as<std::string>();
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

bool TomlReader::numbers(std::string_view key, std::vector<double>& value) {
    const TomlValue* node = find(key);
    if (node == nullptr) return false;
    value.clear();
    const auto* list = node->as<TomlArray>();
    if (list != nullptr)
        for (const TomlValue& entry : list->values)
            value.push_back(number_in(entry).value_or(std::numeric_limits<double>::quiet_NaN()));
    const auto finite = [](double x) { return std::isfinite(x); };
    if (list != nullptr && std::all_of(value.begin(), value.end(), finite)) return true;
    fail(key, "must be a list of numbers");
    return false;
}

void TomlReader::wrong_choice(std::string_view key, const TomlValue& node,
                              const std::vector<std::string_view>& names) {
    std::string message = "must be one of";
    for (const std::string_view name : names)
        message += (name == names.front() ? " " : ", ") + std::string(name);
    if (const auto* name = node.as<std::string>()) message += meant(nearest_name(*name, names));
    fail(key, message);
}

const TomlTable* TomlReader::table(std::string_view key) {
    const TomlValue* node = find(key);
    if (node == nullptr) return nullptr;
    const TomlTable* inner = node->as<TomlTable>();
    if (inner == nullptr) fail(key, "must be written as [" + name_of(key) + "]");
    return inner;
}

std::optional<std::vector<const TomlTable*>> TomlReader::tables_of(std::string_view key,
                                                                   const TomlValue& node) {
    std::vector<const TomlTable*> tables;
    const auto* list = node.as<TomlArray>();
    if (list != nullptr)
        for (const TomlValue& entry : list->values) tables.push_back(entry.as<TomlTable>());
    const auto none = [](const TomlTable* table) { return table == nullptr; };
    if (list != nullptr && std::none_of(tables.begin(), tables.end(), none) && !tables.empty())
        return tables;
    fail(key, "must be written as [[" + name_of(key) + "]]");
    return std::nullopt;
}

void TomlReader::finish() {
    for (const TomlEntry& entry : table_.entries) {
        if (std::find(known_.begin(), known_.end(), entry.key) != known_.end()) continue;
        // Looking for what was meant takes its time: a file of nothing but mistakes goes without.
        const bool ask = errors_.size() < MostSuggestions;
        errors_.add(entry.key_at, "unknown key \"" + name_of(entry.key) + "\"" +
                                      (ask ? meant(nearest_name(entry.key, known_)) : ""));
    }
}

}  // namespace kavorix
