#include "fiohost/temporary_image.h"

#include "fiohost/failure.h"
#include "fiohost/mpo_extract.h"
#include "fiohost/temporary_name.h"
#include "platform/console/console.h"

namespace fiohost {

TemporaryImage::TemporaryImage(const Session& session, const SourceFile& file, host::u32 number)
    : name_(file.name()),
      path_(std::filesystem::temp_directory_path() /
            (temporaryStem() + "-image-" + std::to_string(number) + ".jpg")) {
  const MpoFile mpo = describeMpo(session, file);
  if (number > mpo.images.size()) {
    throw Failure("there is no image " + std::to_string(number),
                  "the file has " + std::to_string(mpo.images.size()));
  }
  static_cast<void>(extractStream(file, mpo.images[number - 1], platform::displayPath(path_),
                                  Existing::replaced));
}

TemporaryImage::~TemporaryImage() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace fiohost
