// What becomes known of pods and selection from outside. The checks are in invariants.cpp.

#include "soak/invariants.h"

namespace kavorix::soak {

namespace {

int bcd(char byte) {
    const auto bits = static_cast<unsigned char>(byte);
    return (bits >> 4) * 10 + (bits & 15);
}

}  // namespace

void Invariants::events_read(int pod, std::string_view bytes) {
    KnownPod& of = known.pods[at(pod)];
    const bool switch_pod = run_time().Status[at(pod)].type_code() == "8S";
    of.events.clear();
    for (std::size_t i = 0; i + 4 <= bytes.size() && bytes[i] != 0; i += 4) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto part = [&](std::size_t n) {
            return static_cast<std::int16_t>(bcd(bytes[i + n]));
        };
        if (first == 255) continue;
        if (first < 32) {
            of.base = {part(0), part(1), part(2), part(3)};
            continue;
        }
        EventEntry event;
        event.EvMonth = of.base.Month;
        event.EvDay = of.base.Day;
        event.EvHour = of.base.Hour;
        event.EvMinute = of.base.Minute;
        event.EvChannel = static_cast<std::int16_t>(first % 32 + (switch_pod ? 1 : 0));
        event.EvState = (first & 32) != 0 ? 1 : 0;
        event.EvLevel = first < 128 ? 1 : 0;
        event.EvSecond = part(1);
        event.EvMillisecond =
            static_cast<std::int16_t>(part(2) * 10 + static_cast<unsigned char>(bytes[i + 3]) / 16);
        of.events.push_back(event);
    }
}

void Invariants::errors_cleared() {
    for (KnownPod& pod : known.pods) {
        if (!pod.in_error) continue;
        pod.polled = true;
        pod.in_error = pod.selected = false;
        addressed[at(static_cast<int>(&pod - known.pods.data()))] = false;
    }
}

void Invariants::click(int pod) {
    KnownPod& of = known.pods[at(pod)];
    if (of.polled) of.selected = !of.selected;
}

void Invariants::select_all() {
    known.all_selected = !known.all_selected;
    for (KnownPod& pod : known.pods)
        if (pod.polled) pod.selected = known.all_selected;
}

}  // namespace kavorix::soak
