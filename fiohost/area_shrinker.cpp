#include "fiohost/area_shrinker.h"

#include <algorithm>

namespace fiohost {
namespace {

// value * numerator / denominator, rounded, at least 1.
host::u32 scaled(host::u32 value, host::u32 numerator, host::u32 denominator) {
  const host::u64 product = host::u64{value} * numerator;
  return static_cast<host::u32>(std::max<host::u64>(1, (product + denominator / 2) / denominator));
}

}  // namespace

Size fitInside(const Size& picture, const Size& box) {
  if (picture.width <= box.width && picture.height <= box.height) return picture;
  const bool widthBinds =
      host::u64{picture.width} * box.height >= host::u64{picture.height} * box.width;
  if (widthBinds) return {box.width, scaled(picture.height, box.width, picture.width)};
  return {scaled(picture.width, box.height, picture.height), box.height};
}

AreaShrinker::AreaShrinker(const Size& source, const Size& target, host::u32 channels)
    : source_(source),
      target_(target),
      channels_(channels),
      columnSums_(std::size_t{target.width} * channels),
      areaSums_(columnSums_.size()),
      result_(columnSums_.size()) {}

// A source column is target_.width units wide, a target column source_.width.
void AreaShrinker::sumColumns(const host::u8* row) {
  std::fill(columnSums_.begin(), columnSums_.end(), 0);
  host::u64* sums = columnSums_.data();
  host::u32 filled = 0;
  for (host::u32 x = 0; x < source_.width; ++x, row += channels_) {
    const host::u32 here = std::min(target_.width, source_.width - filled);
    for (host::u32 c = 0; c < channels_; ++c) sums[c] += host::u64{row[c]} * here;
    filled += here;
    if (filled < source_.width) continue;
    sums += channels_;
    filled = target_.width - here;
    for (host::u32 c = 0; c < channels_ && filled > 0; ++c) sums[c] += host::u64{row[c]} * filled;
  }
}

void AreaShrinker::accumulate(host::u32 weight) {
  for (std::size_t i = 0; i < areaSums_.size(); ++i) areaSums_[i] += columnSums_[i] * weight;
}

const host::u8* AreaShrinker::finishRow() {
  const host::u64 area = host::u64{source_.width} * source_.height;
  for (std::size_t i = 0; i < areaSums_.size(); ++i) {
    result_[i] = static_cast<host::u8>((areaSums_[i] + area / 2) / area);
    areaSums_[i] = 0;
  }
  return result_.data();
}

}  // namespace fiohost
