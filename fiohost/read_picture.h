// Decoding one picture through the plug-in into a picture file.
#pragma once

#include <optional>
#include <string>

#include "fiohost/area_shrinker.h"
#include "fiohost/describe.h"
#include "fiohost/row_receiver.h"

namespace fiohost {

struct ReadOptions {
  std::optional<Size> box;  // reduce to fit inside
  bool thumbnail = false;   // the EXIF thumbnail instead of the picture
};

// Gives the picture's rows to the writers that begin makes. Returns the size delivered. Throws
// Failure.
PictureShape deliverPicture(const Session& session, const SourceFile& file, Described& described,
                            const ReadOptions& options, const RowReceiver::BeginPass& begin);

// Writes the picture to outputName, whose extension writerFor() must know; an existing file is
// replaced by the complete one only. Throws Failure and leaves everything as it was.
PictureShape readPicture(const Session& session, const SourceFile& file, Described& described,
                         const ReadOptions& options, const std::string& outputName);

}  // namespace fiohost
