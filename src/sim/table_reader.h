#pragma once

// Reads one table of a scenario file key by key, checks types and bounds, and names what it does
// not know.

#include <toml++/toml.h>
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kavorix::sim {

// The errors of one file.
class ScenarioErrors {
  public:
    explicit ScenarioErrors(std::string_view file_name) : file_name_(file_name) {}

    void add(const toml::source_region& where, std::string_view message);
    bool empty() const { return found_.empty(); }

    // "FILE:LINE:COLUMN: message" in the order of the file.
    std::vector<std::string> texts() const;

  private:
    struct Found {
        toml::source_position at;
        std::string message;
    };
    std::string file_name_;
    std::vector<Found> found_;
};

// The name among `names` that `wrong` was most likely meant to be; empty when none is near.
std::string_view nearest_name(std::string_view wrong, const std::vector<std::string_view>& names);

// A number's bounds; `expected` says them in words.
struct Bounds {
    double low;
    double high;
    std::string_view expected;
};

class TableReader {
  public:
    // `path` names the table in messages, such as "pod.channel".
    TableReader(const toml::table& table, std::string path, ScenarioErrors& errors)
        : table_(table), path_(std::move(path)), errors_(errors) {}

    // Each reads one key into `value` when it is there, and reports one of the wrong kind or out of
    // bounds. True when the value was read. A missing key is reported by require() alone.
    bool number(std::string_view key, double& value, const Bounds& bounds);
    template <class Whole>
    bool whole(std::string_view key, Whole& value, const Bounds& bounds) {
        double read = 0.0;
        if (!whole_number(key, read, bounds)) return false;
        value = static_cast<Whole>(read);
        return true;
    }
    // Text of `shortest` to `longest` Windows-1252 characters.
    bool text(std::string_view key, std::string& value, std::size_t shortest, std::size_t longest);
    bool numbers(std::string_view key, std::vector<double>& value);

    // One of a list of names, such as the rows of a table with a member `name`.
    template <class Rows>
    const typename Rows::value_type* choice(std::string_view key, const Rows& rows) {
        const auto* node = find(key);
        if (node == nullptr) return nullptr;
        std::vector<std::string_view> names;
        const auto name = node->template value<std::string_view>();
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
        const toml::array* list = node->as_array();
        if (list == nullptr || !list->is_array_of_tables()) {
            fail(key, "must be written as [[" + name_of(key) + "]]");
            return;
        }
        for (const auto& entry : *list) read(*entry.as_table());
    }

    // The table at `key`, or nothing.
    const toml::table* table(std::string_view key);

    bool has(std::string_view key) const { return table_.contains(key); }
    bool require(std::string_view key);

    // Reports the value of `key` (the table itself when it is not there).
    void fail(std::string_view key, std::string_view message);

    // Reports every key that was never asked for.
    void finish();

  private:
    const toml::node* find(std::string_view key);
    bool whole_number(std::string_view key, double& value, const Bounds& bounds);
    void wrong_choice(std::string_view key, const toml::node& node,
                      const std::vector<std::string_view>& names);
    std::string name_of(std::string_view key) const;

    const toml::table& table_;
    std::string path_;
    ScenarioErrors& errors_;
    std::vector<std::string_view> known_;
};

}  // namespace kavorix::sim
