#include "fiohost/explain.h"

#include <algorithm>
#include <array>

#include "host/k32comm.h"

namespace fiohost {
namespace {

struct Explanation {
  int code;
  const char* problem;
  const char* advice;
};

constexpr std::array explanations = {
    Explanation{host::errorMemoryOrOutput, "there is not enough memory, or no file to work on",
                "close other programs and check that the file can still be opened"},
    Explanation{host::errorColourLayout, "the colour layout is not supported",
                "only grey, three-component colour and four-component pictures can be read"},
    Explanation{host::errorDescribe, "the header cannot be read",
                "check that the file is a JPEG picture and was copied completely"},
    Explanation{host::errorRead, "the picture cannot be decoded",
                "the file is damaged; fetch it again from where it came"},
    Explanation{host::errorWrite, "the picture cannot be encoded",
                "check the free space and the permissions of the target folder"},
};

}  // namespace

Failure explainCode(int code, const std::string& otherwise, const std::string& otherwiseAdvice) {
  if (code == 0) return Failure(otherwise, otherwiseAdvice);
  const auto found = std::find_if(explanations.begin(), explanations.end(),
                                  [code](const Explanation& entry) { return entry.code == code; });
  if (found == explanations.end()) {
    return Failure("the plug-in failed", "check the file and try again", code);
  }
  return Failure(found->problem, found->advice, code);
}

}  // namespace fiohost
