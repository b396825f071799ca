// The built-in answers by which the simple entry writes a multi-picture file of one image.
#pragma once

#include "host/mpo.h"
#include "host/plugin_entries.h"

namespace mpo {

inline constexpr host::u32 noConvergenceStep = ~host::u32{0};

// What MpoDescribeImage answers from.
struct MpoWriteContext {
  host::u32 width;   // pixels
  host::u32 height;  // pixels
  host::u32 position = 0;
  host::u32 imageCount = 1;
  host::MpoRational baselineLength = {~host::u32{0}, 0};  // unknown (CIPA DC-007, 5.2.4.6)
  host::u32 baseViewpoint = 1;
  host::u32 convergenceStep = noConvergenceStep;  // angle between neighbouring viewpoints
  host::u32 convergenceDenominator = 0;
  host::MPORowCallback* rowCallback;
  void* user;
  host::u8 flag = 1;
};

// A request callback (host::MPORequestCallback) whose context is an MpoWriteContext: answers the
// count and every image's description, and gets rows from the host's row callback. 1 when answered.
int MpoDescribeImage(int action, void* record, void* context, HGLOBAL fileData) noexcept;

}  // namespace mpo
