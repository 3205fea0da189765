#include "ui/pods/field_checks.h"

#include <charconv>
#include <cmath>
#include <iterator>

#include "base/numbers.h"
#include "base/program_name.h"

namespace kavorix {

bool refuse(Dialogs& dialogs, std::string_view rule) {
    dialogs.beep();
    dialogs.message_box(rule, box::Exclamation, ProgramName);
    return false;
}

std::optional<float> single_of(std::string_view text) {
    if (!is_numeric(text)) return std::nullopt;
    const auto value = static_cast<float>(numeric_value(text));
    if (!std::isfinite(value)) return std::nullopt;
    return value;
}

std::string exact_text(float value) {
    std::string text = general(value);
    if (!std::isfinite(value) || single_of(text) == value) return text;
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return {digits, end};
}

std::string six_decimals(float value) {
    std::string text = fixed(static_cast<double>(value), 6);
    const std::size_t first = text.front() == '-' ? 1 : 0;
    if (text.find('.') == first + 1) text.insert(first, 1, '0');
    return text;
}

}  // namespace kavorix
