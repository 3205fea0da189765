#pragma once

// Reads one table of a TOML document key by key, checks types and bounds, and names what it does
// not know.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "toml/toml_document.h"

namespace kavorix {

// The name among `names` that `wrong` was most likely meant to be; empty when none is near.
std::string_view nearest_name(std::string_view wrong, const std::vector<std::string_view>& names);

// A number's bounds; `expected` says them in words.
struct TomlBounds {
    double low;
    double high;
    std::string_view expected;
};

class TomlReader {
  public:
    // `path` names the table in messages, such as "pod.channel".
    TomlReader(const TomlTable& table, std::string path, TomlErrors& errors)
        : table_(table), path_(std::move(path)), errors_(errors) {}

    // Each reads one key into `value` when it is there, and reports one of the wrong kind or out of
    // bounds. True when the value was read. A missing key is reported by require() alone.
    bool number(std::string_view key, double& value, const TomlBounds& bounds);
    template <class Whole>
    bool whole(std::string_view key, Whole& value, const TomlBounds& bounds) {
        double read = 0.0;
        if (!whole_number(key, read, bounds)) return false;
        value = static_cast<Whole>(read);
        return true;
    }
    // Text of `shortest` to `longest` Windows-1252 characters.
    bool text(std::string_view key, std::string& value, std::size_t shortest, std::size_t longest);
    bool numbers(std::string_view key, std::vector<double>& value);

    bool boolean(std::string_view key, bool& value);

    // One of a list of names, such as the rows of a table with a member `name`.
    template <class Rows>
    const typename Rows::value_type* choice(std::string_view key, const Rows& rows) {
        const auto* node = find(key);
        if (node == nullptr) return nullptr;
        std::vector<std::string_view> names;
        const auto* name = node->template as<std::string>();
        for (const auto& row : rows) {
            if (name && row.name == *name) return &row;
            names.push_back(row.name);
        }
        wrong_choice(key, *node, names);
        return nullptr;
    }

    // Calls `read` for each table of an array of tables.
    template <class Read>
    void tables(std::string_view key, Read&& read) {
        const auto* node = find(key);
        if (node == nullptr) return;
        if (const auto list = tables_of(key, *node))
            for (const TomlTable* entry : *list) read(*entry);
    }

    // The table at `key`, or nothing.
    const TomlTable* table(std::string_view key);

    bool has(std::string_view key) const { return table_.find(key) != nullptr; }
    bool require(std::string_view key);

    // Reports the value of `key` (the table itself when it is not there).
    void fail(std::string_view key, std::string_view message);

    // Reports every key that was never asked for.
    void finish();

  private:
    std::optional<std::vector<const TomlTable*>> tables_of(std::string_view key,
                                                           const TomlValue& node);
    const TomlValue* find(std::string_view key);
    bool whole_number(std::string_view key, double& value, const TomlBounds& bounds);
    void wrong_choice(std::string_view key, const TomlValue& node,
                      const std::vector<std::string_view>& names);
    std::string name_of(std::string_view key) const;

    const TomlTable& table_;
    std::string path_;
    TomlErrors& errors_;
    std::vector<std::string_view> known_;
};

}  // namespace kavorix
