#include <charconv>

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/picture_words.h"
#include "fiohost/read_picture.h"

namespace fiohost {
namespace {

// "WIDTHxHEIGHT", both from 1.
std::optional<Size> parseBox(const std::string& text) {
  Size box = {};
  const char* end = text.data() + text.size();
  const auto [afterWidth, widthError] = std::from_chars(text.data(), end, box.width);
  if (widthError != std::errc() || afterWidth == end || *afterWidth != 'x') return std::nullopt;
  const auto [afterHeight, heightError] = std::from_chars(afterWidth + 1, end, box.height);
  if (heightError != std::errc() || afterHeight != end) return std::nullopt;
  if (box.width == 0 || box.height == 0) return std::nullopt;
  return box;
}

std::string checkBox(const std::string& text) {
  return parseBox(text) ? "" : "--fit takes a size such as 800x600, not \"" + text + "\"";
}

std::string checkOutput(const std::string& name) {
  return writerFor(name) != nullptr ? ""
                                    : "the output's name must end in .png, .bmp or .ppm: " + name;
}

class ReadCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "JPEG or MPO file")->required();
    arguments.add_option("-o,--output", output_, "the .png, .bmp or .ppm file to write")
        ->required()
        ->check(&checkOutput);
    arguments.add_option("--fit", box_, "reduce to fit inside WIDTHxHEIGHT pixels")
        ->check(&checkBox);
    arguments.add_flag("--thumbnail", thumbnail_, "write the EXIF thumbnail instead");
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session& session) override {
    return serveFiles({file_}, {json_},
                      [&](const std::string& name) { return serve(session, name); });
  }

 private:
  FileResult serve(const Session& session, const std::string& name) {
    const SourceFile file(name);
    Described described = describeFile(session, file);
    const ReadOptions options = {parseBox(box_), thumbnail_};
    const PictureShape shape = readPicture(session, file, described, options, output_);
    const char* colour = colourName(shape.channels);
    const std::string words = name + " -> " + output_ + ", " + std::to_string(shape.width) + " x " +
                              std::to_string(shape.height) + " pixels, " + colour + "\n";
    return {words,
            {{"file", name},
             {"output", output_},
             {"width", shape.width},
             {"height", shape.height},
             {"colour", colour}}};
  }

  std::string file_;
  std::string output_;
  std::string box_;
  bool thumbnail_ = false;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> makeReadCommand() { return std::make_unique<ReadCommand>(); }

}  // namespace fiohost
