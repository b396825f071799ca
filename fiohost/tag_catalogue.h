// The tags and datasets that can be set, and finding them by name.
#pragma once

#include <string>
#include <vector>

#include "fiohost/properties.h"
#include "fiohost/session.h"
#include "host/tag_definition.h"

namespace fiohost {

struct SettableTag {
  PropertyGroup group;             // image, exif, gps or iptc
  host::TagDefinition definition;  // as the host's tables have it
  host::u16 fieldId;
  std::string label;  // as `properties` lists it
  std::string standardName;
};

class TagCatalogue {
 public:
  explicit TagCatalogue(const Session& session);

  // A tag by its label, by its standard's name (both without regard to case), by its number
  // ("0x829A"; "GPS:0x02" in the GPS directory) or a dataset by its number ("2:105"). Throws
  // Failure, with what may have been meant, when there is none or more than one.
  [[nodiscard]] const SettableTag& find(const std::string& name) const;
  // None when it cannot be set.
  [[nodiscard]] const SettableTag* ofField(host::u16 fieldId) const;

 private:
  std::vector<SettableTag> tags_;
};

}  // namespace fiohost
