#include "toml/toml_writer.h"

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

std::string toml_text(std::string_view cp1252) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string quoted = "\"";
    for (const char c : cp1252) {
        const auto byte = static_cast<unsigned char>(c);
        // The places that the code page leaves open become control characters, too.
        const bool control = byte < 0x20 || byte == 0x7F || byte == 0x81 || byte == 0x8D ||
                             byte == 0x8F || byte == 0x90 || byte == 0x9D;
        if (c == '"' || c == '\\')
            (quoted += '\\') += c;
        else if (control)
            ((quoted += "\\u00") += Digits[byte / 16]) += Digits[byte % 16];
        else
            quoted += to_utf8({&c, 1});
    }
    return quoted + '"';
}

std::string toml_number(double value) {
    return shortest(value);
}

}  // namespace kavorix
