// A multi-picture file looked through, put right, taken apart and put together in another order.
#include <cstdio>
#include <cstdlib>
#include <numeric>

#include "fiohost/failure.h"
#include "fiohost/mpo_edit/mpo_repair.h"
#include "fuzz/input.h"

namespace {

using fiohost::ByteView;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

void repair(ByteView file, const fiohost::MpoSurvey& survey) {
  try {
    require(fiohost::surveyMpo(fiohost::repairedMpo(file, survey)).faults.empty(),
            "what was repaired has faults");
  } catch (const fiohost::Failure&) {
    return;
  }
}

void turnRound(ByteView file) {
  try {
    const fiohost::MpoContent content = fiohost::takeApart(file);
    std::vector<std::size_t> numbers(content.pictures.size());
    std::iota(numbers.rbegin(), numbers.rend(), std::size_t{1});
    const fiohost::ByteBlock turned = fiohost::putTogether(fiohost::arranged(content, numbers));
    require(fiohost::takeApart(turned).pictures.size() == numbers.size(), "images were lost");
  } catch (const fiohost::Failure&) {
    return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::InTime inTime;
  const ByteView file(data, size);
  const fiohost::MpoSurvey survey = fiohost::surveyMpo(file);
  if (!survey.faults.empty()) repair(file, survey);
  turnRound(file);
  return 0;
}
