// Telling of what a save would lose, and keeping it: the options that saving commands share.
#pragma once

#include "fiohost/commands/command.h"
#include "fiohost/convert_picture.h"

namespace fiohost {

class LossOptions {
 public:
  void declare(CLI::App& arguments);

  // The options for saving a file, after what it would lose was told, or asked about where a user
  // sits at a terminal. Throws Failure when nothing shall be saved.
  [[nodiscard]] ConvertOptions settle(const SourceFile& file, ConvertOptions options) const;

 private:
  bool keepImages_ = false;
  bool firstOnly_ = false;
  bool noLoss_ = false;
};

}  // namespace fiohost
