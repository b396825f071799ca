// Saving the image that the window shows under a new name.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "fiohost/convert_picture.h"
#include "fiohost/view/decode.h"

namespace fiohost::view {

struct SaveOrder {
  std::string source;
  bool isMultiPicture = false;
  std::size_t image = 0;  // from 0
  std::string target;
  SaveSettings settings;
  bool keepsOthers = false;  // with the first image, what lies behind it
};

// What a save would lose, as a question for the user.
struct LossQuestion {
  std::string text;  // empty when nothing is lost
  bool canBeKept = false;
};

// Goes by the order's source and image alone. Throws Failure.
[[nodiscard]] LossQuestion lossQuestion(const Session& session, const SaveOrder& order);

// The name that Save As begins with: a JPEG file's own, and for an image of several one that tells
// which.
[[nodiscard]] std::string suggestedName(const std::string& source, bool isMultiPicture,
                                        std::size_t image);

// Asks in the plug-in's dialog, which begins with the image's own encoding. Nothing when the user
// cancelled. Throws Failure.
[[nodiscard]] std::optional<SaveSettings> askSettings(const Session& session,
                                                      const SaveOrder& order, HWND owner);

// Replaces an existing target, which may be the source; it appears complete or not at all. goesOn
// as ConvertOptions has it. Throws Failure.
Converted saveImage(const Session& session, const SaveOrder& order,
                    const std::function<bool(host::u32, host::u32)>& goesOn);

}  // namespace fiohost::view
