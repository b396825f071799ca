#include "fiohost/view/saving.h"

#include "platform/console/console.h"

namespace fiohost::view {

std::string suggestedName(const std::string& source, bool isMultiPicture, std::size_t image) {
  std::filesystem::path path = platform::systemPath(source);
  if (!isMultiPicture) return platform::displayPath(path);
  std::filesystem::path name = path.stem();
  name += "-" + std::to_string(image + 1) + ".jpg";
  return platform::displayPath(path.replace_filename(name));
}

std::optional<SaveSettings> askSettings(const Session& session, const SaveOrder& order,
                                        HWND owner) {
  const ImageFile file(session, order.source, order.isMultiPicture, order.image);
  ConvertOptions options;
  options.keepSourceSettings = true;
  return askSaveSettings(session, file.source(), options, owner);
}

Converted saveImage(const Session& session, const SaveOrder& order,
                    const std::function<bool(host::u32, host::u32)>& goesOn) {
  const ImageFile file(session, order.source, order.isMultiPicture, order.image);
  ConvertOptions options;
  options.quality = order.settings.quality;
  options.sample = order.settings.sample;
  options.mode = order.settings.mode;
  options.jfif = order.settings.jfif;
  options.replace = true;
  options.goesOn = goesOn;
  return convertPicture(session, file.source(), order.target, options);
}

}  // namespace fiohost::view
