#include "fiohost/held_fields.h"

#include "fiohost/photoshop_iptc.h"
#include "fiohost/record_edits.h"
#include "property/field_block.h"

namespace fiohost {
namespace {

using host::PropertyField;

// Profile chunks would only take room, since no directory has an entry for them.
bool isProfileOrPacket(const PropertyField& field) {
  return field.fieldId == host::fieldIcc ||
         (field.fieldId == host::fieldXmp && field.sourceGroup == 0);
}

}  // namespace

PropertyField* iptcSegment(const LockedFields& locked) {
  for (PropertyField& field : locked.fields()) {
    const bool isPhotoshop =
        field.fieldId == host::fieldPhotoshop && field.sourceGroup == host::groupRawSegment;
    if (isPhotoshop && countDatasets(property::payloadOf(field))) return &field;
  }
  return nullptr;
}

bool isIptcField(const PropertyField& field) {
  return field.fieldId >= host::fieldIptcFirst && field.fieldId <= host::fieldIptcLast;
}

void dropHeldFields(const FileData& fileData) {
  const bool inPhotoshop = iptcSegment(LockedFields(fileData)) != nullptr;
  removeFields(fileData, [&](const PropertyField& field) {
    return isProfileOrPacket(field) || (inPhotoshop && isIptcField(field));
  });
}

}  // namespace fiohost
