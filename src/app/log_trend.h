#pragma once

// The readings of a scan log as rows of a trend.

#include <string>
#include <vector>

#include "base/dates.h"
#include "graphs/legend.h"
#include "logging/csv_columns.h"
#include "platform/files.h"

namespace kavorix {

struct LogTrend {
    struct Row {
        double time_s = 0;  // since the first record; ascending
        WallTime wall;
    };

    std::vector<CsvColumn> Columns;
    std::vector<std::string> Names;  // labels, or "ZAV03 Chan12"
    std::string Unit;                // of all columns; empty when they differ
    std::string Comment;
    std::vector<Row> Rows;
    std::vector<float> Values;  // row by row; NaN where there is none
    std::string Damage;         // where the log ends before its end; empty when it is whole
};

// Reads the selected channels of a scan log. A pod that has nothing new in a record keeps its
// values; an error, and the time between two runs, is a gap.
LogTrend read_log_trend(File& file, const std::vector<CsvColumn>& columns);

}  // namespace kavorix
