// Everything that a file knows beyond its pixels, in both families.
#include "fiohost/properties.h"
#include "fuzz/picture.h"

namespace {

void scan(const char* name, fuzz::Bytes input) {
  const fiohost::SourceFile file(fuzz::writeInput(name, input).string());
  const auto described = fuzz::describeInput(file);
  if (!described) return;
  fuzz::session().plugin.loadProperties(described->fileData.handle());
  static_cast<void>(fiohost::readProperties(fuzz::session(), described->fileData));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(fuzz::session());
  const fuzz::NothingLeft check;
  scan("input.jpg", {data, size});
  scan("input.mpo", {data, size});
  return 0;
}
