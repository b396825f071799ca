// Private data taken out of a file: what is left has none, by the same rules.
#include <cstdio>
#include <cstdlib>

#include "fiohost/failure.h"
#include "fiohost/strip/private_data.h"
#include "fuzz/input.h"

namespace {

using Strip = fiohost::StrippedFile(fiohost::ByteView);

void strip(Strip* without, fiohost::ByteView file) {
  try {
    const fiohost::StrippedFile first = without(file);
    if (!without(first.bytes).removed.empty()) {
      std::fputs("what was stripped has something to strip\n", stderr);
      std::abort();
    }
  } catch (const fiohost::Failure&) {
    return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::InTime inTime;
  strip(&fiohost::withoutPlaces, {data, size});
  strip(&fiohost::withoutPrivateData, {data, size});
  return 0;
}
