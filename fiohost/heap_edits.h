// Setting values of a camera-data heap through the plug-in: in the property record first, which
// is then handed back.
#pragma once

#include <string>
#include <vector>

#include "fiohost/changes.h"
#include "fiohost/heap_values.h"
#include "fiohost/save_report.h"
#include "fiohost/source_file.h"

namespace fiohost {

class HeapEdits {
 public:
  // changes: NAME=VALUE each. session must outlive this object.
  HeapEdits(const Session& session, const std::vector<std::string>& changes);

  // Changes the loaded record of a JPEG picture; tells which segments that concerns. Throws
  // Failure, with the record as it was, for a name that is none and a value that the item cannot
  // take.
  EditedParts apply(const FileData& fileData);
  // Throws Failure, naming the item, unless the file holds every value that was set.
  void verify(const SourceFile& saved) const;

 private:
  struct Edit {
    std::string name;
    host::u16 fieldId;
    HeapValue value;
  };

  [[nodiscard]] bool isEdited(host::u16 fieldId) const;

  const Session& session_;
  std::vector<Change> changes_;
  std::vector<Edit> edits_;
};

}  // namespace fiohost
