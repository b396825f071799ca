#include "fiohost/mpo_build.h"

#include <algorithm>
#include <cctype>

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"

namespace fiohost {
namespace {

struct KindName {
  const char* name;
  BuildKind kind;
};
constexpr KindName kindNames[] = {{"stereo", BuildKind::stereo},
                                  {"panorama", BuildKind::panorama},
                                  {"multi-angle", BuildKind::multiAngle},
                                  {"large-thumbnail", BuildKind::largeThumbnail}};

std::vector<std::string> kindWords() {
  std::vector<std::string> words;
  for (const KindName& kind : kindNames) words.emplace_back(kind.name);
  return words;
}

bool isUniqueId(const std::string& text) {
  return text.size() == host::mpoUidLength - 1 &&
         std::all_of(text.begin(), text.end(),
                     [](unsigned char digit) { return std::isxdigit(digit) != 0; });
}

std::vector<std::string> parseUniqueIds(const std::string& text) {
  std::vector<std::string> ids;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    ids.push_back(text.substr(start, comma - start));
    if (!isUniqueId(ids.back())) {
      throw CLI::ValidationError("--unique-ids",
                                 "takes 32 hexadecimal digits each, not \"" + ids.back() + "\"");
    }
    start = comma + 1;
  }
  return ids;
}

class MpoBuildCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("IMG", pictures_, "JPEG files, the first image first")->required();
    arguments.add_option("-o,--output", output_, "the MPO file to write")->required();
    arguments.add_option("--kind", kind_, "what the pictures are to each other")
        ->required()
        ->check(CLI::IsMember(kindWords()));
    for (const MpoAttribute& attribute : mpoAttributes()) declareAttribute(arguments, attribute);
    arguments.add_option_function<std::string>(
        "--unique-ids",
        [this](const std::string& text) { options_.uniqueIds = parseUniqueIds(text); },
        "32 hexadecimal digits for each image, with commas");
    arguments.add_option("--quality", quality_, "1 to 100")->check(CLI::Range(1, 100));
    arguments.add_flag("--force", options_.replace, "replace an existing output");
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session& session) override {
    takeOptions();
    return serveFiles({output_}, {json_}, [&](const std::string& name) {
      const host::u64 size = buildMpo(session, pictures_, name, options_);
      return FileResult{
          std::to_string(pictures_.size()) + " images -> " + name + ", " + std::to_string(size) +
              " bytes\n",
          {{"output", name}, {"kind", kind_}, {"images", pictures_.size()}, {"bytes", size}}};
    });
  }

 private:
  void declareAttribute(CLI::App& arguments, const MpoAttribute& attribute) {
    const auto take = [this, &attribute](const std::string& text) {
      const auto given = parseAttribute(attribute, text);
      if (!given) {
        throw CLI::ValidationError(attribute.option,
                                   "takes " + attributeHelp(attribute) + ", not " + text);
      }
      options_.attributes.push_back(*given);
    };
    arguments.add_option_function<std::string>(attribute.option, take, attributeHelp(attribute));
  }

  void takeOptions() {
    options_.kind =
        std::find_if(std::begin(kindNames), std::end(kindNames), [this](const KindName& kind) {
          return kind_ == kind.name;
        })->kind;
    if (quality_ != 0) options_.quality = quality_;
  }

  std::vector<std::string> pictures_;
  std::string output_;
  std::string kind_;
  host::u32 quality_ = 0;
  bool json_ = false;
  BuildOptions options_;
};

}  // namespace

std::unique_ptr<Command> makeMpoBuildCommand() { return std::make_unique<MpoBuildCommand>(); }

}  // namespace fiohost
