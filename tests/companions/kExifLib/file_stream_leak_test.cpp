#include <filesystem>
#include <fstream>

#include "host/kexiflib.h"
#include "platform/posix/diagnostics.h"
#include "tests/companions/loaded_module.h"

namespace {

TEST(FileStream, IsClosedBeforeTheReaderIsHandedOut) {
  const test::LoadedModule module("fio/kExifLib.dll");
  const auto begin = module.function<decltype(kRExifBeginRead)>("kRExifBeginRead");
  const auto end = module.function<decltype(kRExifEndRead)>("kRExifEndRead");
  const std::filesystem::path file = test::programFolder() / "closed.jpg";
  std::ofstream(file, std::ios::binary) << "\xFF\xD8\xFF";
  const auto before = platform::posix::liveCounts();
  void* reader = begin(file.string().c_str());
  EXPECT_NE(reader, nullptr);
  EXPECT_EQ(platform::posix::liveCounts(), before);
  end(reader);
  std::filesystem::remove(file);
}

}  // namespace
