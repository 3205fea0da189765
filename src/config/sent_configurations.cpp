#include "config/sent_configurations.h"

#include "config/statements.h"

namespace kavorix {

void SentConfigurations::note(int pod) {
    sent_[at(pod)] = configuration_statements(configured_[at(pod)]);
}

bool SentConfigurations::differs(int pod) const {
    const PodConfig& now = configured_[at(pod)];
    return sent_[at(pod)] && now.TypeCode != NoDevice &&
           *sent_[at(pod)] != configuration_statements(now);
}

}  // namespace kavorix
