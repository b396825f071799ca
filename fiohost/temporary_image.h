// One image of a multi-picture file under a temporary name, for as long as this lives.
#pragma once

#include "fiohost/session.h"
#include "fiohost/source_file.h"

namespace fiohost {

// The plug-in takes the metadata of a file's first image. Another image's stream is a whole JPEG
// file (CIPA DC-007, 4.1), so it is described as one of its own.
class TemporaryImage {
 public:
  // number counts from 1, in the order of "fiohost mpo info". Throws Failure when the file has no
  // such image or there is no room for it.
  TemporaryImage(const Session& session, const SourceFile& file, host::u32 number);
  TemporaryImage(const TemporaryImage&) = delete;
  TemporaryImage& operator=(const TemporaryImage&) = delete;
  ~TemporaryImage();

  // The image's stream, under the name of the file that it is from.
  [[nodiscard]] SourceFile source() const { return {name_, path_}; }

 private:
  std::string name_;
  std::filesystem::path path_;
};

}  // namespace fiohost
