#pragma once

// A TOML document as plain values with their places. What is read from it is the business of
// TomlReader; this is the tree, and the text that it is made of.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kavorix {

// Where something stands in a file, both counted from 1; the column in characters.
struct TomlPlace {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
    auto operator<=>(const TomlPlace&) const = default;
};

struct TomlValue;
struct TomlEntry;

struct TomlTable {
    TomlPlace at;
    std::vector<TomlEntry> entries;  // each key once

    // The value of a key; nothing without it.
    const TomlValue* find(std::string_view key) const;
};

struct TomlArray {
    std::vector<TomlValue> values;
};

// A date or time of day: the station's files have none, it only needs to be told from the others.
struct TomlDate {};

struct TomlValue {
    TomlPlace at;
    // Texts are UTF-8.
    std::variant<TomlDate, bool, std::int64_t, double, std::string, TomlArray, TomlTable> value;

    template <class Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&value);
    }
};

struct TomlEntry {
    std::string key;
    TomlPlace key_at;
    TomlValue value;
};

// What is wrong with one file.
class TomlErrors {
  public:
    explicit TomlErrors(std::string_view file_name) : file_name_(file_name) {}

    void add(TomlPlace at, std::string_view message) {
        found_.push_back({at, std::string(message)});
    }
    bool empty() const { return found_.empty(); }
    std::size_t size() const { return found_.size(); }

    // "FILE:LINE:COLUMN: message", in the order of the file.
    std::vector<std::string> texts() const;

  private:
    struct Found {
        TomlPlace at;
        std::string message;
    };
    std::string file_name_;
    std::vector<Found> found_;
};

// What a document may have. The text is measured before it is parsed: neither the stack nor the
// memory that a hostile file takes grows beyond what these allow (some 100 MB).
struct TomlLimits {
    static constexpr std::size_t Bytes = 4 * 1024 * 1024;
    static constexpr std::size_t KeyBytes = 256;   // a whole dotted key
    static constexpr std::size_t KeyParts = 8;     // of a dotted key or a heading
    static constexpr std::size_t Depth = 8;        // brackets within brackets of a value
    static constexpr std::size_t Values = 200000;  // keys and list entries of the whole document
};

// The document of a text in UTF-8; nothing when it goes beyond the limits or is no TOML, which is
// then the one error added.
std::optional<TomlTable> parse_toml(std::string_view text, TomlErrors& errors);

}  // namespace kavorix
