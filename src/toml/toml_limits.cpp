#include "toml/toml_limits.h"

#include <array>

namespace kavorix {

namespace {

// Walks over the text byte by byte, telling keys from values, and strings and comments from both.
class Measure {
  public:
    explicit Measure(std::string_view text) : text_(text) {}

    std::optional<TomlExcess> run() {
        if (text_.size() > TomlLimits::Bytes)
            return TomlExcess{
                {1, 1}, "the file is longer than " + std::to_string(TomlLimits::Bytes) + " bytes"};
        while (i_ < text_.size() && !excess_) step();
        return excess_;
    }

  private:
    bool in_key() const { return open_ == 0 ? !value_ : braces_[open_ - 1] && !value_; }

    void step() {
        const char c = text_[i_];
        const std::size_t from = i_;
        if (c == '#')
            i_ = std::min(text_.find('\n', i_), text_.size());
        else if (c == '"' || c == '\'')
            skip_string(c);
        else
            take(c);
        if (excess_) return;
        if (in_key() && c != '#' && c != '\n') {
            key_bytes_ += i_ - from;
            if (key_bytes_ > TomlLimits::KeyBytes) beyond("a key", TomlLimits::KeyBytes, "bytes");
        }
    }

    void take(char c) {
        ++i_;
        if (c == '\n') {
            ++line_;
            line_start_ = i_;
            if (open_ == 0) begin_key();
        } else if (in_key()) {
            take_of_key(c);
        } else if (c == '[' || c == '{') {
            open(c == '{');
        } else if (c == ']' || c == '}') {
            close();
        } else if (c == ',') {
            count();
            if (open_ > 0 && braces_[open_ - 1]) begin_key();
        }
    }

    // Brackets at the start of a line are those of a heading, which is a key like others.
    void take_of_key(char c) {
        if (c == '=') {
            value_ = true;
            count();
        } else if (c == '.') {
            count();
            if (++parts_ > TomlLimits::KeyParts)
                beyond("a key", TomlLimits::KeyParts, "parts joined by points");
        } else if (c == '[' && open_ == 0) {
            count();
        } else if (c == '}') {
            close();
        }
    }

    void begin_key() {
        value_ = false;
        key_bytes_ = 0;
        parts_ = 1;
    }

    void open(bool brace) {
        if (open_ == TomlLimits::Depth) {
            excess("values are nested deeper than " + std::to_string(TomlLimits::Depth));
            return;
        }
        braces_[open_++] = brace;
        count();
        if (brace) begin_key();
    }

    // What stands around the closed bracket is a value.
    void close() {
        if (open_ > 0) --open_;
        value_ = true;
    }

    void count() {
        if (++values_ > TomlLimits::Values) beyond("the file", TomlLimits::Values, "values");
    }

    void skip_string(char quote) {
        const std::string_view rest = text_.substr(i_);
        const bool multi = rest.starts_with(std::string(3, quote));
        i_ += multi ? 3 : 1;
        for (; i_ < text_.size(); ++i_) {
            if (text_[i_] == '\n') {
                if (!multi) return;  // a mistake; the line ends here
                ++line_;
                line_start_ = i_ + 1;
            } else if (text_[i_] == '\\' && quote == '"') {
                if (i_ + 1 < text_.size() && text_[i_ + 1] != '\n') ++i_;
            } else if (text_[i_] == quote && closes(quote, multi)) {
                return;
            }
        }
    }

    // Steps behind the closing quotes. A longer row of quotes in a text of several lines ends with
    // the closing ones.
    bool closes(char quote, bool multi) {
        if (!multi) {
            ++i_;
            return true;
        }
        if (!text_.substr(i_).starts_with(std::string(3, quote))) return false;
        i_ += 3;
        for (int more = 0; more < 2 && i_ < text_.size() && text_[i_] == quote; ++more) ++i_;
        return true;
    }

    void beyond(const std::string& what, std::size_t most, const std::string& of_what) {
        excess(what + " has more than " + std::to_string(most) + " " + of_what);
    }
    void excess(std::string message) {
        const std::size_t column = i_ > line_start_ ? i_ - line_start_ : 1;
        excess_ = TomlExcess{{line_, static_cast<std::uint32_t>(column)}, std::move(message)};
    }

    std::string_view text_;
    std::size_t i_ = 0;
    std::uint32_t line_ = 1;
    std::size_t line_start_ = 0;
    bool value_ = false;  // behind the "=" of a key
    std::size_t key_bytes_ = 0;
    std::size_t parts_ = 1;
    std::array<bool, TomlLimits::Depth> braces_{};  // the open brackets: whether "{"
    std::size_t open_ = 0;
    std::size_t values_ = 0;
    std::optional<TomlExcess> excess_;
};

}  // namespace

std::optional<TomlExcess> find_excess(std::string_view text) {
    return Measure(text).run();
}

}  // namespace kavorix
