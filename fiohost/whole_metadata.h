// Making sure that no metadata is lost on its way from one file to another: the plug-in leaves out
// what it has no memory for and does not tell.
#pragma once

#include <functional>

#include "fiohost/describe.h"

namespace fiohost {

// Has load take the file's metadata into the record, and once more into a record of its own. Throws
// Failure when the two do not hold the same: then something was left out.
void takeWhole(const Session& session, const SourceFile& file, Described& described,
               const std::function<void(Described&)>& load);

// Of a record that was just saved: throws Failure when it has fields that only an EXIF segment can
// hold and the plug-in built none.
void requireExifSegment(const FileData& saved);

}  // namespace fiohost
