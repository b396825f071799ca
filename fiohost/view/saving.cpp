#include "fiohost/view/saving.h"

#include <algorithm>

#include "fiohost/save_loss.h"
#include "platform/console/console.h"

namespace fiohost::view {

namespace {

// The first image with what lies behind it is the file itself.
ImageFile imageFileOf(const Session& session, const SaveOrder& order) {
  return ImageFile(session, order.source, order.isMultiPicture && !order.keepsOthers, order.image);
}

}  // namespace

LossQuestion lossQuestion(const Session& session, const SaveOrder& order) {
  const bool first = order.image == 0;
  const ImageFile file(session, order.source, order.isMultiPicture && !first, order.image);
  const std::vector<Loss> losses = lossesOfSave(readWhole(file.source().path()), {});
  if (losses.empty()) return {};
  const bool canBeKept = first && std::any_of(losses.begin(), losses.end(),
                                              [](const Loss& loss) { return loss.keepable; });
  return {"Saving this picture loses " + lossesInWords(losses) + ".\n\n" +
              (canBeKept ? "Keep what lies behind the picture?" : "Save all the same?"),
          canBeKept};
}

std::string suggestedName(const std::string& source, bool isMultiPicture, std::size_t image) {
  std::filesystem::path path = platform::systemPath(source);
  if (!isMultiPicture) return platform::displayPath(path);
  std::filesystem::path name = path.stem();
  name += "-" + std::to_string(image + 1) + ".jpg";
  return platform::displayPath(path.replace_filename(name));
}

std::optional<SaveSettings> askSettings(const Session& session, const SaveOrder& order,
                                        HWND owner) {
  const ImageFile file = imageFileOf(session, order);
  ConvertOptions options;
  options.keepSourceSettings = true;
  if (order.keepsOthers) options.behind = BehindPicture::kept;
  return askSaveSettings(session, file.source(), options, owner);
}

Converted saveImage(const Session& session, const SaveOrder& order,
                    const std::function<bool(host::u32, host::u32)>& goesOn) {
  const ImageFile file = imageFileOf(session, order);
  ConvertOptions options;
  if (order.keepsOthers) options.behind = BehindPicture::kept;
  options.quality = order.settings.quality;
  options.sample = order.settings.sample;
  options.mode = order.settings.mode;
  options.jfif = order.settings.jfif;
  options.replace = true;
  options.goesOn = goesOn;
  return convertPicture(session, file.source(), order.target, options);
}

}  // namespace fiohost::view
