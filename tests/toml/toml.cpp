// Documents as the station reads them: what a hostile text may cost, and a reader's complaints that
// the scenario files have no key for. The rest of TomlReader is tested with those.

#include <gtest/gtest.h>

#include <functional>

#include "toml/toml_reader.h"
#include "toml/toml_writer.h"

namespace kavorix::test {
namespace {

std::string repeat(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

// The error of a text that must not parse; empty when it does.
std::string error_of(std::string_view text) {
    TomlErrors errors("x.toml");
    const bool parsed = parse_toml(text, errors).has_value();
    EXPECT_NE(parsed, !errors.empty());
    return parsed ? "" : errors.texts().at(0);
}

// Each limit: what just keeps it parses, one more is refused before the parser sees it.
TEST(Toml, LimitsAreMeasuredBeforeParsing) {
    const auto deep = [](std::size_t n) { return "a=" + repeat("[", n) + repeat("]", n); };
    const auto tables = [](std::size_t n) { return repeat("a={", n) + "a=1" + repeat("}", n); };
    const auto parts = [](std::size_t n) { return repeat("a.", n - 1) + "a=1"; };
    const auto heading = [](std::size_t n) { return "\n[" + repeat("a.", n - 1) + "a]"; };
    const auto key = [](std::size_t n) { return std::string(n, 'k') + "=1"; };
    const auto quoted = [](std::size_t n) { return "\"" + std::string(n - 2, '.') + "\"=1"; };
    const auto values = [](std::size_t n) { return "a=[" + repeat("1,", n - 2) + "1]"; };
    const auto bytes = [](std::size_t n) { return "a=1#" + std::string(n - 4, '['); };
    struct Limit {
        const char* name;
        std::function<std::string(std::size_t)> text;
        std::size_t most;
        const char* error;
    };
    const std::vector<Limit> limits = {
        {"arrays", deep, TomlLimits::Depth, "nested deeper than 8"},
        {"inline tables", tables, TomlLimits::Depth, "nested deeper than 8"},
        {"parts of a key", parts, TomlLimits::KeyParts, "more than 8 parts"},
        {"parts of a heading", heading, TomlLimits::KeyParts, "x.toml:2:"},
        {"bytes of a key", key, TomlLimits::KeyBytes, "more than 256 bytes"},
        {"bytes of a quoted key", quoted, TomlLimits::KeyBytes, "more than 256 bytes"},
        {"values", values, TomlLimits::Values, "the file has more than 200000 values"},
        {"bytes of the file", bytes, TomlLimits::Bytes, "longer than 4194304 bytes"},
    };
    for (const Limit& limit : limits) {
        EXPECT_EQ(error_of(limit.text(limit.most)), "") << limit.name;
        EXPECT_NE(error_of(limit.text(limit.most + 1)).find(limit.error), std::string::npos)
            << limit.name << ": " << error_of(limit.text(limit.most + 1));
    }
}

TEST(Toml, BracketsPointsAndCommasInTextsAndCommentsAreNoStructure) {
    const std::string noise = repeat("[{.,=", 3 * TomlLimits::Values / 5);
    for (const std::string& text :
         {"a=\"" + noise + "\"", "a='" + noise + "'", "a=\"\"\"\n\\\"\"" + noise + "\"\"\"\"",
          "a='''\n'" + noise + "''''", "a=1 #" + noise, "a=[ # \"" + noise + "\n1]"})
        EXPECT_EQ(error_of(text), "") << text.substr(0, 20);
    EXPECT_NE(error_of("a=\"\\\"\"\nb=" + repeat("[", 9)).find("2:11: values"), std::string::npos);
}

// The measure must never lose its way before the parser would: a text that ends anywhere, or has
// any byte changed, is a document or one error with a place.
TEST(Toml, EveryCutAndEveryChangedByteIsReadOrReported) {
    const std::string text =
        "[[alarm]]\npod = 4 # a \"\nk.'x' = [1.5, { b = \"\\\"\", c = '''\n''' }]\nt=1979-05-27\n";
    ASSERT_EQ(error_of(text), "");
    for (std::size_t i = 0; i < text.size(); ++i) {
        error_of(text.substr(0, i));
        for (const char c : {'"', '\'', '[', '}', '=', '\n', '\\', '\0', '\xFF'}) {
            std::string changed = text;
            changed[i] = c;
            error_of(changed);
        }
    }
}

TEST(Toml, FlagsAndDatesAreToldFromTheRest) {
    TomlErrors errors("x.toml");
    const auto document = parse_toml("yes = true\none = 1\nday = 1979-05-27\nnone = []", errors);
    ASSERT_TRUE(document);
    TomlReader reader(*document, "", errors);
    bool flag = false;
    double number = 0;
    EXPECT_TRUE(reader.boolean("yes", flag) && flag);
    EXPECT_FALSE(reader.boolean("one", flag) || reader.boolean("missing", flag));
    EXPECT_FALSE(reader.number("day", number, {0, 9, "a number"}));
    reader.tables("none", [](const TomlTable&) { FAIL(); });
    reader.finish();
    EXPECT_EQ(errors.texts(),
              (std::vector<std::string>{"x.toml:2:7: \"one\" must be true or false",
                                        "x.toml:3:7: \"day\" must be a number",
                                        "x.toml:4:8: \"none\" must be written as [[none]]"}));
}

// What is written comes back: every byte of the code page, and numbers with a point or without.
TEST(Toml, WrittenValuesAreReadBack) {
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    for (const double number : {0.0, -2.0, 0.1, 1e20, -2.5e-7}) {
        TomlErrors errors("x.toml");
        const auto document =
            parse_toml("t = " + toml_text(all) + "\nn = " + toml_number(number), errors);
        ASSERT_TRUE(document) << errors.texts().at(0);
        TomlReader reader(*document, "", errors);
        std::string text;
        double read = 1;
        EXPECT_TRUE(reader.text("t", text, 0, 255));
        EXPECT_TRUE(reader.number("n", read, {-1e30, 1e30, ""}));
        EXPECT_EQ(text, all);
        EXPECT_EQ(read, number);
    }
}

}  // namespace
}  // namespace kavorix::test
