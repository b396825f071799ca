#include "fiohost/commands/loss_options.h"

#include <algorithm>
#include <cctype>
#include <iostream>

#include "fiohost/failure.h"
#include "fiohost/save_loss.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

// The answer's first letter in lower case; 'c' when there is none.
char answerTo(const std::string& question) {
  std::cout.flush();
  std::cerr << question << std::flush;
  std::string line;
  std::getline(std::cin, line);
  return line.empty() ? 'c' : static_cast<char>(std::tolower(static_cast<unsigned char>(line[0])));
}

bool anyKeepable(const std::vector<Loss>& losses) {
  return std::any_of(losses.begin(), losses.end(), [](const Loss& loss) { return loss.keepable; });
}

// A multi-picture file by its name is refused with words of its own.
bool willBeRefused(const SourceFile& file, const std::vector<Loss>& losses,
                   const ConvertOptions& options) {
  std::string extension = platform::displayPath(file.path().extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const bool images = losses.front().kind == LossKind::images;
  return images && extension == ".mpo" && options.behind == BehindPicture::refused;
}

void ask(const std::string& file, const std::vector<Loss>& losses, ConvertOptions& options) {
  const bool keepable = anyKeepable(losses);
  const char answer = answerTo(file + ": saving loses " + lossesInWords(losses) + ". " +
                               (keepable ? "[k]eep what lies behind the picture, " : "") +
                               "[s]ave all the same, [c]ancel? ");
  if (keepable && answer == 'k') {
    options.behind = BehindPicture::kept;
  } else if (answer == 's') {
    options.behind = BehindPicture::dropped;
  } else {
    throw Failure("saving was cancelled", "nothing was written");
  }
}

}  // namespace

bool LossOptions::mayAsk() { return platform::isTerminal(stdin) && platform::isTerminal(stderr); }

void LossOptions::declare(CLI::App& arguments) {
  auto* keep = arguments.add_flag("--keep-images", keepImages_,
                                  "keep the other images, and what else lies behind the first, "
                                  "as they are");
  auto* first = arguments.add_flag("--first-only", firstOnly_,
                                   "save the first image of a multi-picture file alone");
  arguments.add_flag("--no-loss", noLoss_, "write nothing when something would be lost");
  keep->excludes(first);
}

SettledSave LossOptions::settle(const SourceFile& file, ConvertOptions options) const {
  if (keepImages_) options.behind = BehindPicture::kept;
  if (firstOnly_) options.behind = BehindPicture::dropped;
  const SavePlan plan = {.behindPicture = keepImages_ || (firstOnly_ && !noLoss_),
                         .metadata = !options.dropMetadata};
  const std::vector<Loss> losses = lossesOfSave(readWhole(file.path()), plan);
  if (losses.empty()) return {options, ""};
  const char* advice = anyKeepable(losses) ? "--keep-images keeps what lies behind the picture"
                                           : "leave --no-loss out to save all the same";
  if (noLoss_) throw Failure("saving would lose " + lossesInWords(losses), advice);
  if (mayAsk()) {
    ask(file.name(), losses, options);
    return {options, ""};
  }
  if (willBeRefused(file, losses, options)) return {options, ""};
  const std::string hint = anyKeepable(losses) ? std::string("; ") + advice : "";
  return {options,
          "fiohost: " + file.name() + ": saving loses " + lossesInWords(losses) + hint + "\n"};
}

}  // namespace fiohost
