// Comparing a multi-picture file's index with the pictures in it, and putting it right.
#include "fiohost/commands/mpo_rewrite.h"
#include "fiohost/mpo_edit/mpo_repair.h"

namespace fiohost {
namespace {

std::string faultsInWords(const std::string& name, const MpoSurvey& survey) {
  std::string words;
  for (const FoundFault& fault : survey.faults) words += fault.sentence(name) + "\n";
  return words;
}

Json faultsInJson(const std::string& name, const MpoSurvey& survey) {
  Json all = Json::array();
  for (const FoundFault& fault : survey.faults) {
    all.push_back({{"kind", faultName(fault.kind)},
                   {"image", fault.image != 0 ? Json(fault.image) : Json(nullptr)},
                   {"sentence", fault.sentence(name)}});
  }
  return all;
}

class MpoVerifyCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_, "multi-picture files")->required();
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session&) override {
    bool faulty = false;
    const ExitCode code = serveFiles(files_, {json_}, [&](const std::string& name) {
      const MpoSurvey survey = surveyMpo(readWhole(SourceFile(name).path()));
      faulty = faulty || !survey.faults.empty();
      return told(name, survey);
    });
    return faulty ? exitSomeFailed : code;
  }

 private:
  static FileResult told(const std::string& name, const MpoSurvey& survey) {
    const std::size_t extra = survey.images.empty() ? 0 : survey.unlisted().size();
    std::string words = faultsInWords(name, survey);
    if (words.empty()) {
      words = name + ": " + std::to_string(survey.images.size()) +
              " images, all where the index says\n";
    }
    if (extra != 0) {
      words += name + ": " + std::to_string(extra) + " more JPEG " +
               (extra == 1 ? "stream lies" : "streams lie") +
               " in the file, in no entry of the index\n";
    }
    return {words,
            {{"file", name},
             {"images", survey.images.size()},
             {"unlisted", extra},
             {"faults", faultsInJson(name, survey)}}};
  }

  std::vector<std::string> files_;
  bool json_ = false;
};

class MpoRepairCommand : public MpoRewriteCommand {
 private:
  FileResult serve(const std::string& name) const override {
    const ByteBlock file = readWhole(SourceFile(name).path());
    const MpoSurvey survey = surveyMpo(file);
    const ByteBlock repaired = repairedMpo(file, survey);
    store(repaired);
    const std::size_t count = survey.faults.size();
    const std::string done =
        count == 0 ? "nothing to repair"
                   : std::to_string(count) + (count == 1 ? " fault repaired" : " faults repaired");
    return {name + " -> " + output() + ", " + std::to_string(repaired.size()) + " bytes, " + done +
                "\n" + faultsInWords(name, survey),
            {{"file", name},
             {"output", output()},
             {"bytes", repaired.size()},
             {"faults", faultsInJson(name, survey)}}};
  }
};

}  // namespace

std::unique_ptr<Command> makeMpoRepairCommand() { return std::make_unique<MpoRepairCommand>(); }
std::unique_ptr<Command> makeMpoVerifyCommand() { return std::make_unique<MpoVerifyCommand>(); }

}  // namespace fiohost
