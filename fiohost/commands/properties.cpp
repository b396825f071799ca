#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/describe.h"
#include "fiohost/extract.h"
#include "fiohost/jobs/jobs_option.h"
#include "fiohost/output_file.h"
#include "fiohost/property_words.h"
#include "fiohost/temporary_image.h"
#include "fiohost/whole_metadata.h"

namespace fiohost {
namespace {

// Labels are longer than the facts of a picture.
std::string propertyLine(const Property& property, bool exact) {
  constexpr std::size_t labelWidth = 34;
  std::string label = property.name.empty() ? originText(property) : property.name;
  if (label.size() < labelWidth) label.resize(labelWidth, ' ');
  return "    " + label + " " + valueText(property, exact) + "   [" + originText(property) + "]\n";
}

class PropertiesCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_, "JPEG or MPO files")->required();
    arguments.add_flag("--json", json_, "print JSON");
    jobs_.declare(arguments);
    arguments.add_flag("--raw", raw_, "numbers, fractions and bytes as they are stored");
    arguments
        .add_option("--image", image_,
                    "an image of a multi-picture file, by its number in \"mpo info\"")
        ->check(CLI::Range(1U, host::mpoMostImages));
    auto* window = arguments.add_flag("--window", window_, "show them in a dialog (Windows)");
    auto* output = arguments.add_option("-o,--output", output_, "the file to extract to");
    auto* extract = arguments.add_option("--extract", extract_, "write one block to a file")
                        ->check(CLI::IsMember(extractNames()));
    extract->needs(output)->excludes(window);
    output->needs(extract);
  }

  ExitCode run(const Session& session) override {
    if (!extract_.empty() && files_.size() > 1) {
      throw Failure("--extract takes one file", "name them one after another");
    }
    if (window_ && !hasWindowsFor(session, "--window")) return exitUsage;
    // One dialog at a time.
    const Serving serving = {json_, window_ ? 1 : jobs_.count()};
    return serveFiles(files_, serving,
                      [&](const std::string& name) { return serve(session, name); });
  }

 private:
  [[nodiscard]] FileResult serve(const Session& session, const std::string& name) const {
    const SourceFile file(name);
    return image_ == 0 ? serveFile(session, file) : serveImage(session, file);
  }

  [[nodiscard]] FileResult serveImage(const Session& session, const SourceFile& file) const {
    const TemporaryImage image(session, file, image_);
    FileResult result = serveFile(session, image.source());
    if (!result.words.empty()) {
      result.words.insert(file.name().size(), ", image " + std::to_string(image_));
    }
    if (!result.json.empty()) result.json["image"] = image_;
    return result;
  }

  [[nodiscard]] FileResult serveFile(const Session& session, const SourceFile& file) const {
    Described described = describeFile(session, file);
    if (window_) return show(session, file.name(), described);
    const auto load = [&](Described& target) {
      session.plugin.loadProperties(target.fileData.handle());
    };
    if (extract_.empty()) {
      load(described);
      return list(file.name(), described, readProperties(session, described.fileData));
    }
    takeWhole(session, file, described, load);
    return extract(session, file, readProperties(session, described.fileData));
  }

  static FileResult show(const Session& session, const std::string& name,
                         const Described& described) {
    session.plugin.showProperties(described.fileData.handle());
    return {name + " was shown\n", {{"file", name}, {"shown", true}}};
  }

  // Only in the form that is printed: long lists are many values.
  [[nodiscard]] FileResult list(const std::string& name, const Described& described,
                                const std::vector<Property>& properties) const {
    if (json_) return {"", inJson(name, described.family, properties)};
    return {inWords(name, properties), {}};
  }

  [[nodiscard]] Json inJson(const std::string& name, Family family,
                            const std::vector<Property>& properties) const {
    Json listed = Json::array();
    for (const Property& property : properties) {
      listed.push_back(propertyInJson(property, raw_));
    }
    return {{"file", name}, {"format", familyName(family)}, {"properties", std::move(listed)}};
  }

  [[nodiscard]] std::string inWords(const std::string& name,
                                    const std::vector<Property>& properties) const {
    std::string words = name + "\n";
    const char* group = nullptr;
    for (const Property& property : properties) {
      if (group != groupName(property.group)) {
        group = groupName(property.group);
        words += std::string("  ") + group + "\n";
      }
      words += propertyLine(property, raw_);
    }
    return properties.empty() ? words + "  no metadata\n" : words;
  }

  FileResult extract(const Session& session, const SourceFile& file,
                     const std::vector<Property>& properties) const {
    const std::vector<std::uint8_t> block = extractBlock(extract_, session, file, properties);
    OutputFile output(output_);
    output.write(block.data(), block.size());
    output.commit();
    return {file.name() + " -> " + output_ + ", " + std::to_string(block.size()) + " bytes\n",
            {{"file", file.name()},
             {"extracted", extract_},
             {"output", output_},
             {"bytes", block.size()}}};
  }

  std::vector<std::string> files_;
  std::string output_;
  std::string extract_;
  host::u32 image_ = 0;  // 0: the file as it stands
  bool json_ = false;
  bool raw_ = false;
  bool window_ = false;
  Jobs jobs_;
};

}  // namespace

std::unique_ptr<Command> makePropertiesCommand() { return std::make_unique<PropertiesCommand>(); }

}  // namespace fiohost
