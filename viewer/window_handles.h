// Owner types for what the window system gives out.
#pragma once

#include "platform/window_handles.h"

namespace viewer {

using platform::OwnedBitmap;
using platform::OwnedBrush;
using platform::OwnedImageList;
using platform::OwnedWindow;
using platform::WindowContext;

}  // namespace viewer
