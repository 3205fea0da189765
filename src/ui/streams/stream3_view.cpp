#include "ui/streams/stream3_view.h"

#include "base/text.h"

namespace kavorix {

std::string printable_text(const PodStatus& status) {
    const std::string_view buffer(status.Stream3Text.data(), status.Stream3Text.size());
    std::string text(trim(buffer.substr(0, buffer.find('\0'))));
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '.';
    return text;
}

void Stream3View::load() {
    pods_ = selected_pods(run_time_.Link);
    for (PodStatus& status : run_time_.Status) status.StreamSeen[TextStream] = false;
    run_time_.Poll.ViewOpen[TextStream] = true;
    shown_.clear();
    for (const Pod pod : pods_) shown_.push_back(printable_text(run_time_.Status[pod]));
    changed_.start(pods_.size());
    ++layout_;
}

void Stream3View::unload() {
    run_time_.Poll.ViewOpen[TextStream] = false;
}

void Stream3View::refresh() {
    for (std::size_t row = 0; row < pods_.size(); ++row) {
        std::string text = printable_text(run_time_.Status[pods_[row]]);
        if (text == shown_[row]) continue;
        shown_[row] = std::move(text);
        changed_.add(row);
    }
}

GridCell Stream3View::cell(int row, int column) const {
    const Pod pod = pods_[at(row)];
    if (column == 0) return {two_digits(pod.number())};
    if (column == 1) return {type_name(run_time_.Status[pod])};
    return {shown_[at(row)]};
}

}  // namespace kavorix
