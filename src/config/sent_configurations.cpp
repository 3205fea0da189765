#include "config/sent_configurations.h"

#include "config/statements.h"

namespace kavorix {

void SentConfigurations::note(Pod pod) {
    sent_[pod] = configuration_statements(configured_[pod]);
}

bool SentConfigurations::differs(Pod pod) const {
    const PodConfig& now = configured_[pod];
    return sent_[pod] && now.TypeCode != NoDevice && *sent_[pod] != configuration_statements(now);
}

}  // namespace kavorix
