#include "fiohost/commands/edit_command.h"
#include "fiohost/describe.h"
#include "fiohost/heap_edits.h"
#include "fiohost/heap_tree.h"

namespace fiohost {
namespace {

class HeapCommand : public EditCommand {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "a JPEG file with camera data")->required();
    auto* set = arguments
                    .add_option("--set", changes_,
                                "NAME=VALUE with a name as listed; dates as YYYY-MM-DD HH:MM:SS, "
                                "reals as decimals or as their 32 bits in 0x...")
                    ->check(&checkChange);
    auto* output = declareSave(arguments);
    set->needs(output);
    output->needs(set);
    force_->needs(set);
  }

  ExitCode run(const Session& session) override {
    return serveFiles({file_}, {json_}, [&](const std::string& name) {
      return changes_.empty() ? list(session, name) : save<HeapEdits>(session, name);
    });
  }

 private:
  static FileResult list(const Session& session, const std::string& name) {
    const SourceFile file(name);
    const Described described = describeFile(session, file);
    session.plugin.loadProperties(described.fileData.handle());
    HeapListing listing = listHeap(session, described.fileData);
    return {name + "\n" + listing.words, {{"file", name}, {"heap", std::move(listing.json)}}};
  }
};

}  // namespace

std::unique_ptr<Command> makeHeapCommand() { return std::make_unique<HeapCommand>(); }

}  // namespace fiohost
