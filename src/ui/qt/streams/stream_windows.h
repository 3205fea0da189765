#pragma once

// The windows of the four stream views, `frmStrm0` to `frmStrm3`. Everything given outlives them.

#include <memory>

#include "ui/qt/streams/stream_window.h"
#include "ui/streams/stream0_view.h"
#include "ui/streams/stream1_view.h"
#include "ui/streams/stream2_view.h"
#include "ui/streams/stream3_view.h"

namespace kavorix {

std::unique_ptr<StreamWindow> make_stream_window(Stream0View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory);
std::unique_ptr<StreamWindow> make_stream_window(Stream1View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory);
std::unique_ptr<StreamWindow> make_stream_window(Stream2View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory);
std::unique_ptr<StreamWindow> make_stream_window(Stream3View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory);

}  // namespace kavorix
