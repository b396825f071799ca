// What the commands share that write a multi-picture file anew without decoding it.
#pragma once

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/output_file.h"
#include "fiohost/streams/jpeg_stream.h"

namespace fiohost {

class MpoRewriteCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "a multi-picture file")->required();
    declareEdit(arguments);
    arguments.add_option("-o,--output", output_, "the file to write, which may be FILE itself")
        ->required();
    arguments.add_flag("--force", replace_, "replace an existing output");
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session&) override {
    return serveFiles({file_}, {json_}, [this](const std::string& name) { return serve(name); });
  }

 protected:
  [[nodiscard]] const std::string& output() const { return output_; }
  // The output appears complete or not at all. Throws Failure.
  void store(ByteView bytes) const {
    OutputFile output(output_, replace_ ? Existing::replaced : Existing::refused);
    output.write(bytes.data(), bytes.size());
    output.commit();
  }

 private:
  // What the command takes besides the file and the output.
  virtual void declareEdit(CLI::App&) {}
  virtual FileResult serve(const std::string& name) const = 0;

  std::string file_;
  std::string output_;
  bool replace_ = false;
  bool json_ = false;
};

}  // namespace fiohost
