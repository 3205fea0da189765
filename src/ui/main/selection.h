#pragma once

// The operator's selection of pods and interface.

#include "model/runtime.h"

namespace kavorix {

// A pod that is not in the poll table has no place in a selection: nothing happens then.
void toggle_selected(LinkState& link, Pod pod);

// It becomes the only one, unless it is selected already.
void select_alone(LinkState& link, Pod pod);

// All pods of the poll table; none when all were selected this way before.
void select_all_or_none(LinkState& link);

}  // namespace kavorix
