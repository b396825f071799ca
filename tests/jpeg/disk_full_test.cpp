// Writing through the real codec onto a file that takes only so many bytes, as a full disk does.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstring>
#include <random>

#include "host/file_data.h"
#include "host/k32comm.h"
#include "host/klibjpg.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"
#include "platform/open_file.h"
#include "tests/companions/loaded_module.h"
#include "tests/support/scratch_file.h"

namespace {

using host::u32;
using host::u8;
using test::LoadedModule;

constexpr u32 side = 512;

// Loaded first, so that the plug-in finds them by name.
struct Plugin {
  LoadedModule resources{"KFRES.DLL"};
  LoadedModule common{"fio/k32Comm.dll"};
  LoadedModule util{"fio/kFioUtil.dll"};
  LoadedModule codec{"fio/klibjpg.dll"};
  LoadedModule module{"fio/K32JPG.FIO"};
};

// A picture of noise, which does not compress: rows are given and counted.
struct Noise {
  Noise() : pixels(std::size_t{side} * side * 3) {
    std::mt19937 random(1);
    for (u8& pixel : pixels) pixel = static_cast<u8>(random());
  }
  static void* give(void* context, host::u64, u32 first, u32, u32, u32 second, host::i32,
                    host::i32) {
    if (second == 0) return nullptr;  // no preview
    auto& noise = *static_cast<Noise*>(context);
    ++noise.rowsGiven;
    noise.row = noise.pixels.data() + std::size_t{first} * side * 3;
    return &noise.row;
  }
  std::vector<u8> pixels;
  u8* row = nullptr;
  u32 rowsGiven = 0;
};

// The process may make no file larger than this, for as long as the object lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_ = {};
};

class DiskFull : public testing::Test {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", "/no such folder/kfio.ini");
    std::signal(SIGXFSZ, SIG_IGN);  // the write fails instead of ending the program
    platform::LockedGlobal lock(data_.get());
    auto& record = static_cast<host::JpegFileData*>(lock.address())->record;
    record.bitsPerPixel = 24;
    record.width = record.height = side;
    record.colourType = host::colourTrue;
    auto& tail = static_cast<host::JpegFileData*>(lock.address())->tail;
    tail.tag = host::jpegTailTag;
    tail.quality = 85;
    tail.sample = host::sample422;
  }

  // Writes into a fresh file of at most limit bytes.
  int write(rlim_t limit) {
    noise_.rowsGiven = 0;
    const platform::OpenFile file(CreateFileA(scratch_.path().c_str(), GENERIC_WRITE,
                                              FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
    plugin_.common.function<void()>("kfioClearError")();
    const FileSizeLimit limited(limit);
    const int result = plugin_.module.function<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(
        file.get(), data_.get(), &noise_, &Noise::give);
    size_ = platform::fileSizeOf(file.get()).value_or(0);
    return result;
  }
  int reports() {
    host::ErrorReport last = {};
    plugin_.common.function<void(host::ErrorReport*)>("kfioLastError")(&last);
    return last.count;
  }

  Plugin plugin_;
  platform::OwnedGlobal data_{platform::movableZeroed, sizeof(host::JpegFileData)};
  test::ScratchFile scratch_;
  Noise noise_;
  std::uint64_t size_ = 0;
};

TEST_F(DiskFull, AtAnyByteTheWriteStopsWithoutAReport) {
  ASSERT_EQ(write(RLIM_INFINITY), 1);
  const std::uint64_t whole = size_;
  ASSERT_GT(whole, 200000u);
  EXPECT_EQ(noise_.rowsGiven, side);
  for (std::uint64_t limit = 0; limit < whole; limit += whole / 61) {
    EXPECT_EQ(write(limit), -1) << limit;
    EXPECT_EQ(reports(), 0) << limit;
    EXPECT_LE(size_, limit);
    // Rows are not asked for once a full buffer could not be written.
    if (limit + 2 * 65536 < whole) {
      EXPECT_LT(noise_.rowsGiven, side) << limit;
    }
  }
  EXPECT_EQ(write(whole - 1), -1);
  EXPECT_EQ(write(whole), 1);
}

}  // namespace
