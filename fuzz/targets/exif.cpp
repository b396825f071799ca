// An EXIF segment, walked within a view that ends where the input does.
#include "exif/walker.h"
#include "fuzz/attach.h"
#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::attachOnce();
  static_cast<void>(fuzz::session());
  const fuzz::NothingLeft check;
  fuzz::PropertySlot slot;
  // The segment's own length may be shorter than what can be read behind it.
  const auto length = static_cast<host::u32>(size % 3 == 0 ? size / 2 : size);
  static_cast<void>(exif::walkExif({data, size}, length, slot.address()));
  return 0;
}
