// A picture saved anew and described again. What was saved must be readable.
#include <cstdio>
#include <cstdlib>

#include "fiohost/convert_picture.h"
#include "fuzz/picture.h"

namespace {

void readAgain(const std::string& name) {
  const fiohost::SourceFile saved(name);
  const auto described = fuzz::describeInput(saved);
  if (!described) {
    std::fputs("what was saved cannot be described\n", stderr);
    std::abort();
  }
  fuzz::session().plugin.loadProperties(described->fileData.handle());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(fuzz::session());
  const fuzz::NothingLeft check;
  const fiohost::SourceFile file(fuzz::writeInput("input.jpg", {data, size}).string());
  const std::string output = (fuzz::scratchFolder() / "output.jpg").string();
  fiohost::ConvertOptions options;
  options.replace = true;
  options.keepSourceSettings = size % 2 == 0;
  try {
    static_cast<void>(fiohost::convertPicture(fuzz::session(), file, output, options));
  } catch (const fiohost::Failure&) {
    return 0;
  }
  readAgain(output);
  return 0;
}
