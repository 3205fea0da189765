#include "ui/main/event_counters.h"

#include <algorithm>

#include "model/catalogue.h"

namespace kavorix {

void clear_event_counters(PodCommands& pods, const RunTime& run_time,
                          const ChooseChannels& choose) {
    int channels = 0;
    bool universal = false;
    for (const Pod pod : run_time.Link.ZavSelected) {
        const PodStatus& status = run_time.Status[pod];
        channels = std::max<int>(channels, status.Channels);
        if (is_universal_type(GetZAVTypeCode(status.type_code()))) universal = true;
    }
    ChannelChoice choice;
    choice.caption = "Clear Event Counter";
    choice.prompt = "Select Event Totalise Channels to Clear:";
    choice.sets = {{"", channels, {}}};
    choice.complaint = [universal](const std::vector<ChannelChoice::Set>& sets) -> std::string {
        ChannelFlags others = sets.front().chosen;
        others[18] = others[19] = false;
        if (!universal || others == ChannelFlags{}) return {};
        return "Channels other than 19 and 20 do not apply to ZAV types 7V and 7W";
    };
    if (choose(choice)) pods.send(tokens_for("CL", choice.sets.front().chosen));
}

}  // namespace kavorix
