// Reading files for the picture window through the plug-in; everything here may run in a thread of
// its own.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fiohost/area_shrinker.h"
#include "fiohost/session.h"
#include "fiohost/source_file.h"
#include "fiohost/temporary_image.h"
#include "fiohost/view/canvas.h"
#include "fiohost/view/worker.h"

namespace fiohost::view {

// Images of one file are numbered from 0 here.
struct StereoPair {
  std::size_t left;
  std::size_t right;

  friend bool operator==(const StereoPair&, const StereoPair&) = default;
};

// What is known of a file before any pixel of it.
struct FileFacts {
  std::string name;  // as it was named
  bool isMultiPicture = false;
  std::vector<Extent> images;  // as stored, at least one; empty sizes are not known
  std::optional<StereoPair> stereo;
  Orientation orientation;  // of the first image
  std::string note;         // what the user should know, mostly empty
};

// One image of a list, as far as a pair of viewpoints goes by it.
struct Viewpoint {
  bool disparity = false;
  int imageNumber = -1;  // the MP Individual Image Number's order, or -1
};

// The first two disparity images; the one with the lower image number is the left one (CIPA DC-007
// counts viewpoints from the left), without numbers the first.
[[nodiscard]] std::optional<StereoPair> findStereoPair(const std::vector<Viewpoint>& images);

// Throws Failure when the file is no picture of the plug-in's.
[[nodiscard]] FileFacts gatherFacts(const Session& session, const std::string& name);

// The picture file that holds one image: the file itself, or of a multi-picture file a copy of the
// image's stream for as long as this lives.
class ImageFile {
 public:
  // Throws Failure.
  ImageFile(const Session& session, const std::string& name, bool isMultiPicture,
            std::size_t image);

  [[nodiscard]] SourceFile source() const;

 private:
  std::string name_;
  std::optional<TemporaryImage> image_;
};

// Decodes a picture file into a canvas, reduced to fit into a box. Throws Failure, also when the
// flag is raised on the way; the canvas keeps what has come.
void decodeInto(Canvas& canvas, const Session& session, const SourceFile& file,
                const std::optional<Size>& box, const StopFlag& stop);

}  // namespace fiohost::view
