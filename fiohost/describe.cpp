#include "fiohost/describe.h"

#include "fiohost/explain.h"
#include "fiohost/temporary_copy.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

Described adopt(const Session& session, const SourceFile& file, Family family,
                platform::OwnedGlobal record, std::string note = {}) {
  Described described = {family, FileData(std::move(record), session.utilities), std::move(note)};
  described.fileData.setSourcePath(file.path());
  return described;
}

struct MpoAttempt {
  platform::OwnedGlobal fileData;
  std::string refusal;  // when there is no file data
};

MpoAttempt tryMpo(const Session& session, const SourceFile& file) {
  MpoAttempt attempt;
  try {
    session.reports.clear();
    attempt.fileData = session.plugin.describe(Family::mpo, file.wide()).fileData;
    if (!attempt.fileData) {
      attempt.refusal = explainCode(session.reports.code(), "it holds no image list", "").line();
    }
  } catch (const Failure& failure) {
    attempt.refusal = failure.what();
  }
  return attempt;
}

// The JPEG family goes by the name alone, so it is shown the file under another one.
Described describeByContent(const Session& session, const SourceFile& file,
                            const std::string& refusal) {
  const TemporaryCopy copy(file.path(), ".jpg");
  session.reports.clear();
  DescribeResult result = session.plugin.describe(Family::jpeg, platform::widePath(copy.path()));
  if (!result.fileData) {
    throw explainCode(session.reports.code(), "this is no picture that the plug-in can open",
                      "check the file");
  }
  return adopt(session, file, Family::jpeg, std::move(result.fileData),
               "only the first picture is shown, not a multi-picture file: " + refusal);
}

}  // namespace

Described describeFile(const Session& session, const SourceFile& file) {
  session.reports.clear();
  DescribeResult result = session.plugin.describe(Family::jpeg, file.wide());
  if (result.fileData) return adopt(session, file, Family::jpeg, std::move(result.fileData));
  // A silent refusal is the other family's file; a failure has been reported.
  if (!result.refused || session.reports.code() != 0) {
    throw explainCode(session.reports.code(), "the plug-in refused the file without a reason",
                      "check the file");
  }
  MpoAttempt mpo = tryMpo(session, file);
  if (mpo.fileData) return adopt(session, file, Family::mpo, std::move(mpo.fileData));
  return describeByContent(session, file, mpo.refusal);
}

}  // namespace fiohost
