// Stored texts as the system shows them.
#pragma once

#include "platform/wide_text.h"

namespace viewer {

using platform::wideText;

}  // namespace viewer
