#include "mpo/describe_image.h"

namespace mpo {
namespace {

using host::ImageRequest;
using host::MpoCountAnswer;
using host::MpoImageDesc;
using host::u32;
using host::u64;

constexpr host::u8 classMultiFrame = 2;
constexpr host::u8 subCodeDisparity = 2;
constexpr u32 describedAttributes = 0x1C000000;  // base viewpoint, convergence angle, baseline
constexpr int rowCallbackSeven = 7;

void describe(MpoImageDesc& image, u32 number, const MpoWriteContext& context) noexcept {
  image.dependentParent = 0;
  image.dependentChild = 0;
  image.representative = number == 1 ? 1 : 0;
  image.typeClass = classMultiFrame;
  image.typeSubCode = subCodeDisparity;
  image.flags = describedAttributes;
  image.attributes.baseViewpoint = context.baseViewpoint;
  image.attributes.baselineLength = context.baselineLength;
  if (context.convergenceStep == noConvergenceStep) return;
  image.attributes.convergenceAngle = {(number - 1) * context.convergenceStep,
                                       context.convergenceDenominator};
}

int answer(ImageRequest& request, const MpoWriteContext& context) noexcept {
  request.cleared12 = 0;
  request.width = context.width;
  request.height = context.height;
  request.cleared1056 = 0;
  request.cleared1064 = 0;
  request.cleared1080 = 0;
  if (request.answer == 0) return 0;
  if (request.question == host::questionCount) {
    *reinterpret_cast<MpoCountAnswer*>(request.answer) = {context.imageCount, context.position};
    return 1;
  }
  const u32 number = request.imageNumber;
  if (request.question != host::questionImageDesc || number < 1 || number > context.imageCount) {
    return 0;
  }
  describe(*reinterpret_cast<MpoImageDesc*>(request.answer), number, context);
  return 1;
}

int fetchRows(host::RowRequest& request, const MpoWriteContext& context) noexcept {
  void* rows = context.rowCallback(context.user, request.width, request.height, request.firstRow,
                                   request.rowCount, context.flag, rowCallbackSeven, request.mode);
  request.rows = reinterpret_cast<u64>(rows);
  return 1;
}

}  // namespace

int MpoDescribeImage(int action, void* record, void* context, HGLOBAL) noexcept {
  const auto& own = *static_cast<const MpoWriteContext*>(context);
  switch (action) {
    case host::requestQuestion:
      return answer(*static_cast<ImageRequest*>(record), own);
    case host::requestRowSource:
      return fetchRows(*static_cast<host::RowRequest*>(record), own);
    default:
      return 0;
  }
}

}  // namespace mpo
