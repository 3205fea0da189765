#pragma once

// When a pod scans: once after a trigger, or again and again in continuous mode, at the scan period
// or as fast as its channels allow. A scan that nobody needs is never computed, so that a long
// silence costs nothing.

#include <cstdint>
#include <optional>

#include "sim/front_end.h"
#include "sim/held_settings.h"

namespace kavorix::sim {

class Scanner {
  public:
    // Keeps references to both.
    Scanner(FrontEnd& front, const HeldSettings& held) : front_(front), held_(held) {}

    // One scan from now on; in continuous mode scan follows on scan from here, unless they do.
    void trigger(std::int64_t now_ms);
    void halt() { running_.reset(); }
    void clear();

    // Finishes the scans that ended until now and starts what follows on them.
    void advance(std::int64_t now_ms);

    // The settings are about to change: what has been scanned stays as it was.
    void settle();

    // The moment at which the record that waits was finished.
    std::optional<std::int64_t> finished_ms() const;

    // The record that waits; it no longer does.
    std::optional<FrontEnd::Readings> take();

  private:
    struct Scan {
        std::int64_t start_ms = 0;
        std::int64_t end_ms = 0;
        std::optional<FrontEnd::Readings> readings;  // once computed
    };
    void start(std::int64_t start_ms);
    void measure(Scan& scan);

    FrontEnd& front_;
    const HeldSettings& held_;
    std::optional<Scan> running_;
    bool repeating_ = false;
    std::optional<Scan> finished_;
};

}  // namespace kavorix::sim
