// The library as the system loads it.
#include <gtest/gtest.h>

#include <thread>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;

class LoadedModule {
 public:
  LoadedModule() : module_(LoadLibraryA(KF_MODULE)) {}
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule() {
    if (module_ != nullptr) FreeLibrary(module_);
  }
  [[nodiscard]] HMODULE get() const { return module_; }

 private:
  HMODULE module_;
};

TEST(Module, ExportsTheCodecsCalls) {
  const LoadedModule module;
  ASSERT_NE(module.get(), nullptr);
  for (const char* name :
       {"kJpgFileGetInfo", "kJpgFileGetInfoW", "kJpgStreamGetInfo", "kJpgFileReadEx",
        "kJpgFileReadExW", "kJpgStreamRead", "kJpgRead", "kJpgWrite", "kJpgStreamWrite"}) {
    EXPECT_NE(GetProcAddress(module.get(), name), nullptr) << name;
  }
  EXPECT_EQ(GetProcAddress(module.get(), "jpeg_std_error"), nullptr);
}

TEST(Module, DescribesAStream) {
  const LoadedModule module;
  ASSERT_NE(module.get(), nullptr);
  const auto getInfo = reinterpret_cast<decltype(&kJpgStreamGetInfo)>(
      reinterpret_cast<void*>(GetProcAddress(module.get(), "kJpgStreamGetInfo")));
  ASSERT_NE(getInfo, nullptr);
  Bytes jpeg = JpegBuilder().size(30, 20).build();
  const host::StreamDescriptor stream = {static_cast<host::u32>(jpeg.size()), {}, jpeg.data()};
  host::ImageHeader header = {};
  EXPECT_EQ(getInfo(&stream, &header, nullptr), 1);
  EXPECT_EQ(header.width, 30U);
  EXPECT_EQ(header.height, 20U);
}

TEST(Module, SeveralThreadsDecodeAtOnce) {
  const Bytes jpeg = JpegBuilder().size(300, 200).build();
  const Bytes expected = referenceDecode(jpeg).pixels;
  std::vector<Reading> readings(4);
  std::vector<std::thread> threads;
  for (Reading& reading : readings) {
    threads.emplace_back([&] { reading = readInput(jpeg); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Reading& reading : readings) {
    EXPECT_EQ(reading.result, 1);
    EXPECT_EQ(reading.pixels, expected);
  }
}

}  // namespace
}  // namespace klibjpg_test
