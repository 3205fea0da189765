#include "logging/csv_columns.h"

namespace kavorix {

std::vector<CsvColumn> csv_columns(const std::vector<PodOnFile>& pods,
                                   const CsvSelection& selection) {
    std::vector<CsvColumn> columns;
    for (const PodOnFile& pod : pods) {
        if (selection.PodSelected[at(pod.Number - 1)] != 1) continue;
        for (std::int16_t channel = 1; channel <= pod.Channels; ++channel)
            if (selection.ChannelSelected[at(pod.Number - 1)][at(channel - 1)] == 1)
                columns.push_back({pod.Number, channel});
    }
    return columns;
}

CsvSelection select_all(const std::vector<PodOnFile>& pods) {
    CsvSelection selection;
    for (const PodOnFile& pod : pods) {
        selection.PodSelected[at(pod.Number - 1)] = 1;
        for (int channel = 0; channel < pod.Channels; ++channel)
            selection.ChannelSelected[at(pod.Number - 1)][at(channel)] = 1;
    }
    return selection;
}

}  // namespace kavorix
