#include "fiohost/commands/edit_command.h"
#include "fiohost/tag_edits.h"

namespace fiohost {
namespace {

class SetCommand : public EditCommand {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "a JPEG file")->required();
    arguments
        .add_option("TAG=VALUE", changes_,
                    "a tag as \"fiohost properties\" or the standard names it (F-number, FNumber, "
                    "0x829D, 2:25), and its value; several keywords are set one by one")
        ->required()
        ->check(&checkChange);
    declareSave(arguments)->required();
  }

  ExitCode run(const Session& session) override {
    return serveFiles({file_}, {json_},
                      [&](const std::string& name) { return save<TagEdits>(session, name); });
  }
};

}  // namespace

std::unique_ptr<Command> makeSetCommand() { return std::make_unique<SetCommand>(); }

}  // namespace fiohost
