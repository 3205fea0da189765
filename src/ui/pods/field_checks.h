#pragma once

// What the dialogs over the pod configuration have in common when they check what was typed.

#include <optional>
#include <string>
#include <string_view>

#include "platform/dialogs.h"

namespace kavorix {

// The name of every dialog's Cancel button: several checks are left out on the way to it.
inline constexpr std::string_view CancelButton = "cmdCancel";

// Beeps and shows an exclamation box with the rule that was broken. Always false, the answer to
// "may the focus leave the field".
bool refuse(Dialogs& dialogs, std::string_view rule);

// The value of a numeric text; nothing when the text is not numeric or its value has no place in a
// single.
std::optional<float> single_of(std::string_view text);

// The general format where it tells the value exactly, else as many digits as that takes: reading
// the text again gives the same single.
std::string exact_text(float value);

// "00.000000": six decimals, at least two digits before the point.
std::string six_decimals(float value);

}  // namespace kavorix
