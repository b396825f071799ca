#include "fiohost/changes.h"
#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/convert_picture.h"
#include "fiohost/describe.h"
#include "fiohost/heap_edits.h"
#include "fiohost/heap_tree.h"

namespace fiohost {
namespace {

class HeapCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "a JPEG file with camera data")->required();
    auto* set = arguments
                    .add_option("--set", changes_,
                                "NAME=VALUE with a name as listed; dates as YYYY-MM-DD HH:MM:SS, "
                                "reals as decimals or as their 32 bits in 0x...")
                    ->check(&checkChange);
    auto* output = arguments.add_option("-o,--output", output_, "the file to write to");
    set->needs(output);
    output->needs(set);
    arguments.add_flag("--force", replace_, "replace an existing output")->needs(set);
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session& session) override {
    return serveFiles({file_}, {json_}, [&](const std::string& name) {
      return changes_.empty() ? list(session, name) : save(session, name);
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

  FileResult save(const Session& session, const std::string& name) const {
    const SourceFile file(name);
    HeapEdits edits(session, changes_);
    const MetadataEdit edit = {[&](FileData& fileData) {
                                 edits.apply(fileData);
                                 return EditedParts{.cameraData = true};
                               },
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

std::unique_ptr<Command> makeHeapCommand() { return std::make_unique<HeapCommand>(); }

}  // namespace fiohost
