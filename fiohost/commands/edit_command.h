// What the commands share that change metadata: NAME=VALUE changes, and a save.
#pragma once

#include "fiohost/changes.h"
#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/convert_picture.h"

namespace fiohost {

class EditCommand : public Command {
 protected:
  // The option for the output, after which the others of a save are declared.
  CLI::Option* declareSave(CLI::App& arguments) {
    CLI::Option* output = arguments.add_option("-o,--output", output_, "the file to write to");
    losses_.declare(arguments);
    force_ = arguments.add_flag("--force", replace_, "replace an existing output");
    arguments.add_flag("--json", json_, "print JSON");
    return output;
  }
  // Saves the file with the changes that an object of the kind applies and verifies.
  template <typename Edits>
  [[nodiscard]] FileResult save(const Session& session, const std::string& name) const {
    const SourceFile file(name);
    Edits edits(session, changes_);
    const MetadataEdit edit = {[&](FileData& fileData) { return edits.apply(fileData); },
                               [&](const SourceFile& saved) { edits.verify(saved); }};
    return savedWith(session, file, output_, replace_, losses_, edit);
  }

  std::string file_;
  std::vector<std::string> changes_;
  CLI::Option* force_ = nullptr;
  bool json_ = false;

 private:
  std::string output_;
  bool replace_ = false;
  LossOptions losses_;
};

}  // namespace fiohost
