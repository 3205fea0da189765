#include "config/transmission.h"

#include "base/program_name.h"
#include "base/text.h"
#include "config/statements.h"

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

std::string Transmission::load_config(Pod pod) {
    return trapped(with_.failures, "confact/load_config", [&] { return statements_for(pod); });
}

std::string Transmission::statements_for(Pod pod) {
    const PodConfig& config = with_.configuration.ZavConfig[pod];
    if (GetZAVTypeCode(with_.status[pod].type_code()) != config.TypeCode) {
        with_.dialogs.Msg_Box("ZAV type does not match the configuration ZAV type for ZAV number " +
                                  two_digits(pod.number()) +
                                  ".\n\nConfiguration for this ZAV will not be transmitted.",
                              box::Exclamation, ProgramName);
        return {};
    }
    return configuration_statements(config);
}

PodSet Transmission::transmit_config(const PodSet& pods) {
    PodSet reached;
    if (transmitting_) return reached;
    const While under_way(transmitting_);
    const Sending sending(with_.link);
    // The poll cycle and the operator go on meanwhile.
    const StandingPods standing(pods, with_.link);
    for (const Pod pod : PodSet(pods))
        if (standing.has(pod) && transmit_to(pod)) reached.add(pod);
    return reached;
}

bool Transmission::transmit_to(Pod pod) {
    const std::string statements = load_config(pod);
    const bool got = with_.command_link.send(statements, {pod}).has(pod) && !statements.empty();
    if (got) with_.sent.note(pod);
    return got;
}

}  // namespace kavorix
