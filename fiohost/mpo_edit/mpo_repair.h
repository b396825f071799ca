// A right index in place of a stale one.
#pragma once

#include "fiohost/mpo_edit/mpo_content.h"

namespace fiohost {

// The file with an index that tells where its pictures are. When every image has its picture, only
// words of the index differ; an entry without one is dropped. Throws Failure when the index cannot
// be put right.
[[nodiscard]] ByteBlock repairedMpo(ByteView file, const MpoSurvey& survey);

}  // namespace fiohost
