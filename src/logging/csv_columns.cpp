#include "logging/csv_columns.h"

namespace kavorix {

std::vector<CsvColumn> csv_columns(const std::vector<PodOnFile>& pods,
                                   const CsvSelection& selection) {
    std::vector<CsvColumn> columns;
    for (const PodOnFile& pod : pods) {
        if (!selection.PodSelected.has(Pod::numbered(pod.Number))) continue;
        for (std::int16_t channel = 1; channel <= pod.Channels; ++channel)
            if (selection.ChannelSelected[Pod::numbered(pod.Number)][at(channel - 1)])
                columns.push_back({pod.Number, channel});
    }
    return columns;
}

CsvSelection select_all(const std::vector<PodOnFile>& pods) {
    CsvSelection selection;
    for (const PodOnFile& pod : pods) {
        selection.PodSelected.add(Pod::numbered(pod.Number));
        for (int channel = 0; channel < pod.Channels; ++channel)
            selection.ChannelSelected[Pod::numbered(pod.Number)][at(channel)] = true;
    }
    return selection;
}

}  // namespace kavorix
