// Describing a file, by both families.
#include "fiohost/file_data.h"
#include "fuzz/input.h"

namespace {

void describe(fiohost::Family family, const char* name, fuzz::Bytes input) {
  const fiohost::Session& session = fuzz::session();
  fiohost::DescribeResult result =
      session.plugin.describe(family, fuzz::writeInput(name, input).wstring());
  if (result.fileData.get() != nullptr) {
    const fiohost::FileData owner(std::move(result.fileData), session.utilities);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(fuzz::session());
  const fuzz::NothingLeft check;
  describe(fiohost::Family::jpeg, "input.jpg", {data, size});
  describe(fiohost::Family::mpo, "input.mpo", {data, size});
  return 0;
}
