#include "fiohost/changes.h"
#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/convert_picture.h"
#include "fiohost/tag_edits.h"

namespace fiohost {
namespace {

class SetCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "a JPEG file")->required();
    arguments
        .add_option("TAG=VALUE", changes_,
                    "a tag as \"fiohost properties\" or the standard names it (F-number, FNumber, "
                    "0x829D, 2:25), and its value; several keywords are set one by one")
        ->required()
        ->check(&checkChange);
    arguments.add_option("-o,--output", output_, "the file to write to")->required();
    arguments.add_flag("--force", replace_, "replace an existing output");
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session& session) override {
    return serveFiles({file_}, {json_},
                      [&](const std::string& name) { return save(session, name); });
  }

 private:
  FileResult save(const Session& session, const std::string& name) const {
    const SourceFile file(name);
    TagEdits edits(session, changes_);
    const MetadataEdit edit = {[&](FileData& fileData) { return edits.apply(fileData); },
                               [&](const SourceFile& saved) { edits.verify(saved); }};
    return savedWith(session, file, output_, replace_, edit);
  }

  std::string file_;
  std::vector<std::string> changes_;
  std::string output_;
  bool replace_ = false;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> makeSetCommand() { return std::make_unique<SetCommand>(); }

}  // namespace fiohost
