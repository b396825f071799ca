// Changing the fields of a property record, which belongs to the host.
#pragma once

#include <functional>

#include "fiohost/properties.h"
#include "fiohost/tag_values.h"

namespace fiohost {

// Gives the tag these values in the place of those it has. Fields that are not there are added.
// Throws Failure without memory.
void setField(FileData& fileData, const SettableTag& tag, const std::vector<TagValue>& values);

// Takes the fields out that a condition names, with their blocks.
void removeFields(const FileData& fileData,
                  const std::function<bool(const host::PropertyField&)>& condition);

// Brings the fields of every directory into the order of their tags, as TIFF 6.0 wants entries.
void sortDirectories(const FileData& fileData, const TagCatalogue& catalogue);

}  // namespace fiohost
