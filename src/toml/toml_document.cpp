#include "toml/toml_document.h"

#include <toml++/toml.h>

#include <algorithm>

#include "toml/toml_limits.h"

namespace kavorix {

namespace {

TomlPlace place(const toml::source_region& region) {
    return {region.begin.line, region.begin.column};
}

TomlTable table_of(const toml::table& from);

TomlValue value_of(const toml::node& node) {
    TomlValue result;
    result.at = place(node.source());
    if (const auto* table = node.as_table())
        result.value = table_of(*table);
    else if (const auto* text = node.as_string())
        result.value = text->get();
    else if (const auto* whole = node.as_integer())
        result.value = whole->get();
    else if (const auto* number = node.as_floating_point())
        result.value = number->get();
    else if (const auto* flag = node.as_boolean())
        result.value = flag->get();
    else if (const auto* list = node.as_array()) {
        TomlArray array;
        array.values.reserve(list->size());
        for (const toml::node& entry : *list) array.values.push_back(value_of(entry));
        result.value = std::move(array);
    }
    return result;
}

TomlTable table_of(const toml::table& from) {
    TomlTable table;
    table.at = place(from.source());
    table.entries.reserve(from.size());
    for (const auto& [key, node] : from)
        table.entries.push_back({std::string(key.str()), place(key.source()), value_of(node)});
    return table;
}

}  // namespace

const TomlValue* TomlTable::find(std::string_view key) const {
    for (const TomlEntry& entry : entries)
        if (entry.key == key) return &entry.value;
    return nullptr;
}

std::vector<std::string> TomlErrors::texts() const {
    std::vector<Found> ordered = found_;
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Found& a, const Found& b) { return a.at < b.at; });
    std::vector<std::string> result;
    for (const Found& found : ordered)
        result.push_back(file_name_ + ":" + std::to_string(found.at.line) + ":" +
                         std::to_string(found.at.column) + ": " + found.message);
    return result;
}

std::optional<TomlTable> parse_toml(std::string_view text, TomlErrors& errors) {
    if (const auto excess = find_excess(text)) {
        errors.add(excess->at, excess->message);
        return std::nullopt;
    }
    try {
        return table_of(toml::parse(text));
    } catch (const toml::parse_error& error) {
        errors.add(place(error.source()), error.description());
        return std::nullopt;
    }
}

}  // namespace kavorix
