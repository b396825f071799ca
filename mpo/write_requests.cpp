#include "mpo/write_requests.h"

namespace mpo {

using host::RowRequest;
using host::u32;
using host::u64;

int WriteRequests::ask(u32 question, u32 imageNumber, void* answer) const noexcept {
  host::ImageRequest request = {};
  request.size = sizeof request;
  request.imageNumber = imageNumber;
  request.question = question;
  request.answer = reinterpret_cast<u64>(answer);
  return callback_(host::requestQuestion, &request, context_, nullptr);
}

int WriteRequests::askCount(host::MpoCountAnswer& counts) const noexcept {
  return ask(host::questionCount, 0, &counts);
}

int WriteRequests::askDescriptions(std::span<host::MpoImageDesc> images) const noexcept {
  for (u32 number = 1; number <= images.size(); ++number) {
    const int answer = ask(host::questionImageDesc, number, &images[number - 1]);
    if (answer != 1) return answer;
  }
  return 1;
}

int WriteRequests::askRows(RowRequest& request) const noexcept {
  return callback_(host::requestRowSource, &request, context_, nullptr);
}

RowRequest rowRequest(u32 width, u32 height, u32 firstRow, u32 rowCount, u32 bytesPerPixel,
                      u32 rowDistance) noexcept {
  constexpr u32 fourSamples = 4;
  RowRequest request = {};
  request.size = sizeof request;
  request.width = width;
  request.height = height;
  request.firstRow = firstRow;
  request.rowCount = rowCount;
  request.samples = bytesPerPixel;
  request.rowDistance = rowDistance;
  request.mode = bytesPerPixel == fourSamples ? 15 : 7;
  return request;
}

}  // namespace mpo
