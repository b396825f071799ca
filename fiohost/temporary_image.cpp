#include "fiohost/temporary_image.h"

#include <atomic>

#include "fiohost/failure.h"
#include "fiohost/mpo_extract.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

// Several threads may have the same image at once.
std::filesystem::path uniquePath(host::u32 number) {
  static std::atomic<unsigned> count = 0;
  return std::filesystem::temp_directory_path() /
         ("fiohost-" + std::to_string(platform::processNumber()) + "-" + std::to_string(count++) +
          "-image-" + std::to_string(number) + ".jpg");
}

}  // namespace

TemporaryImage::TemporaryImage(const Session& session, const SourceFile& file, host::u32 number)
    : name_(file.name()), path_(uniquePath(number)) {
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
