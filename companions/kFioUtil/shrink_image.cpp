// A row made narrower by averaging the source columns that fall on one target column.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "host/kfioutil.h"

namespace kFioUtil {
namespace {

using host::u32;
using host::u64;
using host::u8;

// The source columns of one target column; never empty, never outside the row.
struct ColumnRange {
  u32 begin;
  u32 end;
};

// The columns from one entry of the map to the next, or to the row's end for the last one. A map
// that stretches the row names a column several times: each is then delivered as it stands.
ColumnRange findColumns(const u32* map, u32 target, u32 targetWidth, u32 sourceWidth) noexcept {
  const u32 begin = std::min(map[target], sourceWidth - 1);
  const u32 next = target + 1 < targetWidth ? map[target + 1] : sourceWidth;
  return {begin, std::clamp(next, begin + 1, sourceWidth)};
}

// The mean of each component, rounded to the nearest.
template <u32 components>
void averageColumns(u8* target, const u8* source, u32 count) noexcept {
  u64 sums[components] = {};
  for (u32 column = 0; column < count; ++column, source += components) {
    for (u32 i = 0; i < components; ++i) sums[i] += source[i];
  }
  for (u32 i = 0; i < components; ++i) target[i] = static_cast<u8>((sums[i] + count / 2) / count);
}

template <u32 components>
void shrinkRow(u8* target, const u8* source, u32 sourceWidth, const u32* map,
               u32 targetWidth) noexcept {
  for (u32 column = 0; column < targetWidth; ++column, target += components) {
    const ColumnRange range = findColumns(map, column, targetWidth, sourceWidth);
    averageColumns<components>(target, source + std::size_t{components} * range.begin,
                               range.end - range.begin);
  }
}

void shrinkRowOfAnyDepth(u8* target, const u8* source, u32 sourceWidth, u32 bytesPerPixel,
                         const u32* map, u32 targetWidth) noexcept {
  for (u32 column = 0; column < targetWidth; ++column) {
    const ColumnRange range = findColumns(map, column, targetWidth, sourceWidth);
    const u32 count = range.end - range.begin;
    for (u32 i = 0; i < bytesPerPixel; ++i) {
      u64 sum = count / 2;
      for (u32 from = range.begin; from < range.end; ++from) {
        sum += source[std::size_t{from} * bytesPerPixel + i];
      }
      *target++ = static_cast<u8>(sum / count);
    }
  }
}

}  // namespace
}  // namespace kFioUtil

extern "C" void ShrinkImage(host::u8* target, const host::u8* source, int /*zero*/,
                            host::u32 sourceWidth, host::u32 bytesPerPixel,
                            const host::u32* columnMap, host::u32 targetWidth) {
  if (target == nullptr || source == nullptr || columnMap == nullptr || sourceWidth == 0) return;
  switch (bytesPerPixel) {
    case 1:
      return kFioUtil::shrinkRow<1>(target, source, sourceWidth, columnMap, targetWidth);
    case 3:
      return kFioUtil::shrinkRow<3>(target, source, sourceWidth, columnMap, targetWidth);
    case 4:
      return kFioUtil::shrinkRow<4>(target, source, sourceWidth, columnMap, targetWidth);
    default:
      return kFioUtil::shrinkRowOfAnyDepth(target, source, sourceWidth, bytesPerPixel, columnMap,
                                           targetWidth);
  }
}
