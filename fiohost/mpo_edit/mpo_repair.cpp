#include "fiohost/mpo_edit/mpo_repair.h"

#include <algorithm>
#include <limits>

#include "fiohost/failure.h"

namespace fiohost {
namespace {

using mpo::MpfValue;
using std::uint32_t;
using std::uint64_t;

void store(ByteBlock& file, uint64_t place, const MpfEntry& entry) {
  std::copy(entry.value.begin(), entry.value.end(),
            file.begin() + static_cast<std::ptrdiff_t>(place));
}

// A size that was right may take in the filling behind the picture, and stays so.
bool sizeIsWrong(const MpoSurvey& survey, std::size_t image) {
  return std::any_of(survey.faults.begin(), survey.faults.end(), [&](const FoundFault& fault) {
    return fault.kind == IndexFault::size && fault.image == image + 1;
  });
}

MpImage corrected(const MpoSurvey& survey, std::size_t image) {
  MpImage entry = survey.images[image];
  const JpegStream& stream = survey.streams[*survey.streamOf[image]];
  const uint64_t offset = image == 0 ? 0 : stream.start - survey.header;
  if (stream.end > std::numeric_limits<uint32_t>::max()) {
    throw Failure("the file is larger than 4 GB, which an index cannot tell", "");
  }
  entry.offset = static_cast<uint32_t>(offset);
  if (sizeIsWrong(survey, image)) entry.size = static_cast<uint32_t>(stream.size());
  return entry;
}

// The words of the index, each in its old place.
ByteBlock rewritten(ByteView file, const MpoSurvey& survey, const MpoContent& content) {
  std::vector<MpImage> images;
  for (std::size_t i = 0; i < survey.images.size(); ++i) {
    images.push_back(corrected(survey, i));
    images.back().attribute = content.pictures[i].entry.attribute;
    images.back().dependents = content.pictures[i].entry.dependents;
  }
  ByteBlock result(file.begin(), file.end());
  const MpfDirectory& index = *survey.block.index;
  store(result, survey.header + index.find(MpfValue::entryTable)->place,
        mpTableEntry(images, survey.block.order));
  if (const MpfEntry* count = index.find(MpfValue::imageCount)) {
    store(result, survey.header + count->place,
          mpfNumberEntry(MpfValue::imageCount, static_cast<uint32_t>(images.size()),
                         survey.block.order));
  }
  return result;
}

}  // namespace

ByteBlock repairedMpo(ByteView file, const MpoSurvey& survey) {
  if (survey.faults.empty()) return {file.begin(), file.end()};
  const auto hopeless =
      std::find_if(survey.faults.begin(), survey.faults.end(), [&](const FoundFault& fault) {
        return fault.kind == IndexFault::damagedIndex || fault.kind == IndexFault::cut;
      });
  if (hopeless != survey.faults.end() || !survey.repairable()) {
    const FoundFault& fault = hopeless != survey.faults.end() ? *hopeless : survey.faults.front();
    throw Failure(
        (fault.image != 0 ? "image " + std::to_string(fault.image) + ": " : "") + fault.problem,
        fault.advice);
  }
  const MpoContent content = takeApart(file, survey);
  if (content.pictures.size() == survey.images.size()) {
    // An index that lacks a value, or holds it in another form, has no place for the right one.
    ByteBlock result = rewritten(file, survey, content);
    if (surveyMpo(result).faults.empty()) return result;
  }
  // Where a damaged picture hides the beginning or the end of another, no index is right.
  ByteBlock result = putTogether(content);
  if (surveyMpo(result).faults.empty()) return result;
  throw Failure("its pictures cannot be told apart", "fetch the file again");
}

}  // namespace fiohost
