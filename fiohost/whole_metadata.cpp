#include "fiohost/whole_metadata.h"

#include <algorithm>

#include "fiohost/failure.h"
#include "fiohost/properties.h"
#include "property/field_block.h"

namespace fiohost {
namespace {

using host::PropertyField;

bool sameField(const PropertyField& one, const PropertyField& other) {
  if (one.fieldId != other.fieldId || one.valueKind != other.valueKind ||
      one.sourceGroup != other.sourceGroup || one.dataSize != other.dataSize) {
    return false;
  }
  if (property::ownsBlock(one) != property::ownsBlock(other)) return false;
  if (!property::ownsBlock(one)) return one.data == other.data;
  const auto bytes = property::blockOf(one);
  const auto others = property::blockOf(other);
  return std::equal(bytes.begin(), bytes.end(), others.begin(), others.end());
}

bool sameFields(const FileData& one, const FileData& other) {
  const LockedFields fields(one);
  const LockedFields others(other);
  return std::equal(fields.fields().begin(), fields.fields().end(), others.fields().begin(),
                    others.fields().end(), &sameField);
}

bool between(host::u16 id, host::u16 first, host::u16 last) { return id >= first && id <= last; }

// Packets have a segment of their own.
bool needsExifSegment(const PropertyField& field) {
  return between(field.fieldId, host::fieldExifFirst, host::fieldExifLast) ||
         between(field.fieldId, host::fieldGpsFirst, host::fieldGpsLast) ||
         (between(field.fieldId, host::fieldHostFirst, host::fieldHostLast) &&
          field.fieldId != host::fieldXmp);
}

}  // namespace

void takeWhole(const Session& session, const SourceFile& file, Described& described,
               const std::function<void(Described&)>& load) {
  load(described);
  Described again = describeFile(session, file);
  load(again);
  if (sameFields(described.fileData, again.fileData)) return;
  throw Failure("the metadata cannot be taken in whole",
                "close other programs and check that the file can still be opened");
}

void requireExifSegment(const FileData& saved) {
  const LockedFields locked(saved);
  const auto any = [&](const auto& condition) {
    return std::any_of(locked.fields().begin(), locked.fields().end(), condition);
  };
  const auto isSegment = [](const PropertyField& field) {
    return field.fieldId == host::fieldExifSegment;
  };
  if (any(isSegment) || !any(&needsExifSegment)) return;
  throw Failure("there is no memory for the EXIF segment", "close other programs");
}

}  // namespace fiohost
