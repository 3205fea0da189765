#pragma once

// What the stream views have in common: the pods they show and the rows that changed.

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "model/catalogue.h"
#include "model/runtime.h"
#include "platform/controls.h"

namespace kavorix {

// The pods that the operator has selected.
inline std::vector<Pod> selected_pods(const LinkState& link) {
    return {link.ZavSelected.begin(), link.ZavSelected.end()};
}

// A list of pods to choose from: "03 - 7V", the code being the pod's index.
inline std::vector<ListEntry> pod_entries(const std::vector<Pod>& pods, const PodStatuses& status) {
    std::vector<ListEntry> entries;
    for (const Pod pod : pods)
        entries.push_back(
            {two_digits(pod.number()) + " - " + std::string(status[pod].type_code()), pod.index()});
    return entries;
}

// The name of a pod's type; the type code as received when it is none that is known.
inline std::string type_name(const PodStatus& status) {
    const PodTypeRow& type = pod_type(GetZAVTypeCode(status.type_code()));
    return std::string(type.type == NoDevice ? status.type_code() : type.description);
}

// Rows of a table that have changed since they were last taken, each once.
class ChangedRows {
  public:
    // The table has this many rows, none of them changed.
    void start(std::size_t rows) {
        marked_.assign(rows, false);
        for (std::vector<int>* list : {&rows_, &taken_}) {
            list->clear();
            list->reserve(rows);
        }
    }
    void add(std::size_t row) {
        if (marked_[row]) return;
        marked_[row] = true;
        rows_.push_back(static_cast<int>(row));
    }
    // Ascending; stands until the next call.
    const std::vector<int>& take() {
        std::swap(taken_, rows_);
        rows_.clear();
        for (const int row : taken_) marked_[at(row)] = false;
        if (!std::is_sorted(taken_.begin(), taken_.end())) std::sort(taken_.begin(), taken_.end());
        return taken_;
    }

  private:
    std::vector<bool> marked_;
    std::vector<int> rows_;
    std::vector<int> taken_;
};

}  // namespace kavorix
