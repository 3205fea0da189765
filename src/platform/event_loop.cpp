#include "platform/event_loop.h"

#include <chrono>
#include <thread>

namespace kavorix {

// Loops that follow the real time wait in it.
void EventLoop::block(int ms) {
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

}  // namespace kavorix
