// The camera-data heap (CIFF) as the tree that it is: records inside records, each with its values.
#pragma once

#include <string>

#include "fiohost/file_data.h"
#include "fiohost/json_value.h"
#include "fiohost/session.h"

namespace fiohost {

struct HeapListing {
  std::string words;  // a line for each record and value, indented by their depth
  Json json;          // the top record, with "values" and, inside it, "records"
};

// fileData's metadata must have been loaded. Throws Failure when it has no camera data that can be
// read.
[[nodiscard]] HeapListing listHeap(const Session& session, const FileData& fileData);

}  // namespace fiohost
