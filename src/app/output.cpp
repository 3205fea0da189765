#include "app/output.h"

#include <algorithm>
#include <ostream>

#include "app/options.h"

namespace kavorix {

namespace {

unsigned byte_of(char c) {
    return static_cast<unsigned char>(c);
}

// Bytes of the character that begins here; 0 when none does.
std::size_t character_length(std::string_view text) {
    const unsigned first = byte_of(text[0]);
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xC2 && first < 0xE0 ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length == 0 || length > text.size()) return 0;
    const std::string_view rest = text.substr(1, length - 1);
    const bool whole =
        std::all_of(rest.begin(), rest.end(), [](char c) { return (byte_of(c) & 0xC0u) == 0x80; });
    return whole ? length : 0;
}

bool is_control(std::string_view character) {
    const unsigned first = byte_of(character[0]);
    if (character.size() == 1)
        return (first < ' ' && character[0] != '\n' && character[0] != '\t') || first == 0x7F;
    return first == 0xC2 && byte_of(character[1]) < 0xA0;
}

}  // namespace

std::string for_terminal(std::string_view utf8) {
    std::string shown;
    while (!utf8.empty()) {
        const std::size_t length = character_length(utf8);
        const std::string_view character = utf8.substr(0, std::max<std::size_t>(length, 1));
        if (length == 0 || is_control(character))
            shown += '?';
        else
            shown += character;
        utf8.remove_prefix(character.size());
    }
    return shown;
}

int after_output(std::ostream& out, std::ostream& messages, int code) {
    out.flush();
    if (out.good()) return code;
    messages << "The results could not be written" << std::endl;
    return code == ExitDone ? ExitFailed : code;
}

}  // namespace kavorix
