// Setting EXIF, GPS and IPTC values: in the property record, from which the plug-in builds the EXIF
// segment anew, and in the Photoshop segment that holds the IPTC datasets.
#pragma once

#include <string>
#include <vector>

#include "fiohost/changes.h"
#include "fiohost/photoshop_iptc.h"
#include "fiohost/save_report.h"
#include "fiohost/source_file.h"
#include "fiohost/tag_values.h"

namespace fiohost {

class TagEdits {
 public:
  // changes: TAG=VALUE each. session must outlive this object.
  TagEdits(const Session& session, const std::vector<std::string>& changes);

  // Changes the loaded record of a JPEG picture; tells which segments that concerns. Throws
  // Failure, with the record as it was, for a name that is none and a value of the wrong form.
  EditedParts apply(FileData& fileData);
  // Throws Failure, naming the tag, unless the file holds every value that was set.
  void verify(const SourceFile& saved) const;

 private:
  struct Edit {
    const SettableTag* tag;
    std::vector<TagValue> values;  // several only of a dataset that may be repeated
  };

  [[nodiscard]] std::vector<Edit> readChanges(const FileData& fileData) const;
  void addChange(const SettableTag& tag, TagValue value, std::vector<Edit>& edits) const;
  [[nodiscard]] std::vector<DatasetEdit> datasetEdits() const;
  [[nodiscard]] bool editsDirectories() const;

  const Session& session_;
  TagCatalogue catalogue_;
  std::vector<Change> changes_;
  std::vector<Edit> edits_;
};

}  // namespace fiohost
