#pragma once

#include "logging/csv_converter.h"
#include "platform/controls.h"

namespace kavorix {

// The beginning of the text file that a log would become: its column names as headings, labels,
// units and the first rows. Looks no further into the log than it takes, and never far.
Grid csv_preview(File& log, const CsvPlan& plan);

}  // namespace kavorix
