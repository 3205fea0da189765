#pragma once

// What a failure of the link does to a pod, and to what is going on with it.

#include "link/error_log.h"
#include "link/message_line.h"
#include "model/runtime.h"

namespace kavorix {

enum class LinkFault { Transmit, Receive, Other };

// Whether the pod goes on being polled.
enum class AfterFault { Polled, Removed };

class LinkErrors {
  public:
    // All of it outlives this.
    LinkErrors(MessageLine& message_line, ErrorLog& error_log, const InterfaceSettings& card,
               RunTime& run_time)
        : message_line_(message_line),
          error_log_(error_log),
          card_(card),
          status_(run_time.Status),
          link_(run_time.Link),
          reports_(run_time.Reports) {}

    // Records a failure of one pod: it is told and logged (a fault of another kind is only
    // counted), the pod is no longer selected nor triggered, and what is under way goes on without
    // it.
    void RxTxErr(Pod pod, LinkFault kind, AfterFault after);

  private:
    void tell(Pod pod, LinkFault kind);

    MessageLine& message_line_;
    ErrorLog& error_log_;
    const InterfaceSettings& card_;
    PodStatuses& status_;
    LinkState& link_;
    Reports& reports_;
};

// ContScanning from ScanState.
void update_cont_scanning(LinkState& link);

// The pods that a piece of work is about. Those that fail or are cleared while it is under way drop
// out and do not come back, for they missed something.
class StandingPods {
  public:
    // `link` outlives this.
    StandingPods(const PodSet& pods, const LinkState& link)
        : pods_(pods), link_(link), before_(link.Interruptions) {}

    bool has(Pod pod) const { return pods_.has(pod) && link_.Interruptions[pod] == before_[pod]; }
    PodSet now() const;

  private:
    PodSet pods_;
    const LinkState& link_;
    PodArray<std::uint32_t> before_;
};

// Work that talks to the pods is under way as long as one lives: commands that would send something
// else are not available.
class Sending {
  public:
    explicit Sending(LinkState& link) : link_(link) { ++link_.Sending; }
    ~Sending() { --link_.Sending; }
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;

  private:
    LinkState& link_;
};

}  // namespace kavorix
