#include "config/transmission.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "config/statements.h"
#include "link/error_log.h"

namespace kavorix {

namespace {

// Sets a flag for as long as it lives, also when the program ends meanwhile.
class While {
  public:
    explicit While(bool& flag) : flag_(flag) { flag_ = true; }
    ~While() { flag_ = false; }
    While(const While&) = delete;
    While& operator=(const While&) = delete;

  private:
    bool& flag_;
};

}  // namespace

Transmission::Transmission(const Configuration& configuration, const PodStatuses& status,
                           LinkState& link, Dialogs& dialogs, FailureReporter& failures,
                           SentConfigurations& sent, std::function<void()> TXString)
    : configuration_(configuration),
      status_(status),
      link_(link),
      dialogs_(dialogs),
      failures_(failures),
      sent_(sent),
      tx_string_(std::move(TXString)) {}

std::string Transmission::load_config(std::int16_t podIndex) {
    return trapped(failures_, "confact/load_config", [&] { return statements_for(podIndex); });
}

std::string Transmission::statements_for(std::int16_t podIndex) {
    const PodConfig& pod = configuration_.ZavConfig[at(podIndex)];
    if (GetZAVTypeCode(status_[at(podIndex)].type_code()) != pod.TypeCode) {
        dialogs_.Msg_Box("ZAV type does not match the configuration ZAV type for ZAV number " +
                             two_digits(podIndex + 1) +
                             ".\n\nConfiguration for this ZAV will not be transmitted.",
                         box::Exclamation, ProgramName);
        return {};
    }
    return configuration_statements(pod);
}

void Transmission::transmit_config(const PodFlags& withdrawn) {
    if (transmitting_) return;
    const While sending(transmitting_);
    PodFlags chosen = link_.ZavSelected;
    const PodFlags polled = link_.PollTable.InPollTable;
    link_.ZavSelected.fill(0);
    // The poll cycle goes on meanwhile and may remove pods that are not being sent to.
    const auto removed = [&](int pod) {
        return polled[at(pod)] == 1 && link_.PollTable.InPollTable[at(pod)] == 0;
    };
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (chosen[at(pod)] == 1 && !removed(pod) && withdrawn[at(pod)] != 1)
            transmit_to(pod, chosen);
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (removed(pod)) chosen[at(pod)] = 0;
    link_.ZavSelected = chosen;
    link_.NumSelected = static_cast<std::int16_t>(std::count(chosen.begin(), chosen.end(), 1));
}

void Transmission::transmit_to(int pod, PodFlags& chosen) {
    const std::string statements = load_config(static_cast<std::int16_t>(pod));
    link_.CommandString = statements;
    link_.ZavSelected.fill(0);
    link_.ZavSelected[at(pod)] = 1;
    tx_string_();
    // The link takes a pod that fails out of the selection.
    chosen[at(pod)] = link_.ZavSelected[at(pod)];
    link_.ZavSelected[at(pod)] = 0;
    if (!statements.empty() && chosen[at(pod)] == 1) sent_.note(pod);
}

}  // namespace kavorix
