// Telling of what a save would lose, and keeping it: the options that saving commands share.
#pragma once

#include "fiohost/commands/command.h"
#include "fiohost/convert_picture.h"

namespace fiohost {

struct SettledSave {
  ConvertOptions options;
  std::string warning;  // what is lost all the same, a line; empty when nothing is
};

class LossOptions {
 public:
  // Whether a user sits at a terminal who can be asked.
  [[nodiscard]] static bool mayAsk();

  void declare(CLI::App& arguments);

  // The options for saving a file, and what it loses, which the user was asked about where he can
  // be. Throws Failure when nothing shall be saved.
  [[nodiscard]] SettledSave settle(const SourceFile& file, ConvertOptions options) const;

 private:
  bool keepImages_ = false;
  bool firstOnly_ = false;
  bool noLoss_ = false;
};

}  // namespace fiohost
