// The MPO family with the real companions: files of cameras and files that the plug-in makes itself
// are described, read, and compared with what their bytes and other programs say.
#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <map>

#include "host/mpo.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_plugin.h"
#include "tests/support/file_bytes.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/scratch_file.h"

namespace {

using host::MpoFileData;
using host::u32;
using host::u64;
using support::Bytes;
using test::entry;
using test::plugin;
using test::ScratchFile;

int action(HGLOBAL fileData, int code, host::MPORequestCallback* callback, void* context,
           int index) {
  return entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      fileData, code, reinterpret_cast<void*>(callback), context, index);
}

class Described {
 public:
  HGLOBAL handle() const { return handle_; }
  template <typename Use>
  auto with(Use use) const {
    const platform::LockedGlobal lock(handle_);
    return use(*static_cast<MpoFileData*>(lock.address()));
  }

  explicit Described(const std::string& path)
      : handle_(entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData)(nullptr, path.c_str(),
                                                                              0)) {
    if (handle_ == nullptr) return;
    with([&](MpoFileData& data) { std::strcpy(data.record.ansiPath, path.c_str()); });
  }
  Described(const Described&) = delete;
  Described& operator=(const Described&) = delete;
  ~Described() {
    if (handle_ == nullptr) return;
    with([](MpoFileData& data) {
      plugin().util.function<void(HGLOBAL)>("kfioFreeProperty")(
          reinterpret_cast<HGLOBAL>(data.record.propertyRecord));
    });
    GlobalFree(handle_);
  }

 private:
  HGLOBAL handle_;
};

// Every image as it arrives: its size and its pixels.
struct Picture {
  u32 width = 0, height = 0;
  std::map<u32, Bytes> rows;
};
struct Received {
  std::vector<Picture> pictures;
};

int receive(int request, void* record, void* context, HGLOBAL) {
  auto& received = *static_cast<Received*>(context);
  if (request == host::requestHeader) {
    const auto& header = *static_cast<const host::ImageRequest*>(record);
    received.pictures.push_back({header.width, header.height, {}});
  } else {
    const auto& row = *static_cast<const host::RowRequest*>(record);
    const auto* first = reinterpret_cast<const host::u8*>(row.rows);
    received.pictures.back().rows[row.firstRow] = Bytes(first, first + row.rowDistance);
  }
  return 1;
}

void expectWhole(const Picture& picture) {
  EXPECT_EQ(picture.rows.size(), picture.height);
  for (const auto& [row, pixels] : picture.rows) EXPECT_EQ(pixels.size(), picture.width * 3u);
}

// A host that writes a file of equal pictures, each filled with its own shade.
struct Writer {
  u32 count, position;
  host::u8 typeClass, subCode;
  Bytes row;
};

int answer(int request, void* record, void* context, HGLOBAL) {
  auto& writer = *static_cast<Writer*>(context);
  if (request == host::requestRowSource) {
    auto& rows = *static_cast<host::RowRequest*>(record);
    writer.row.assign(rows.rowDistance, static_cast<host::u8>(10 + writer.position));
    rows.rows = reinterpret_cast<u64>(writer.row.data());
    return 1;
  }
  const auto& question = *static_cast<const host::ImageRequest*>(record);
  if (question.question == host::questionCount) {
    *reinterpret_cast<host::MpoCountAnswer*>(question.answer) = {writer.count, writer.position};
    return 1;
  }
  auto& image = *reinterpret_cast<host::MpoImageDesc*>(question.answer);
  image.typeClass = writer.typeClass;
  image.typeSubCode = writer.subCode;
  image.representative = question.imageNumber == 1 ? 1 : 0;
  image.flags = 0x10000000;
  image.attributes.baseViewpoint = 1;
  return 1;
}

void build(const std::string& path, u32 count, host::u8 typeClass, host::u8 subCode) {
  for (u32 position = 0; position < count; ++position) {
    Writer writer{count, position, typeClass, subCode, {}};
    const platform::OwnedGlobal record(platform::movableZeroed, sizeof(host::FileDataRecord));
    {
      const platform::LockedGlobal lock(record.get());
      ASSERT_TRUE(lock);
      auto& data = *static_cast<host::FileDataRecord*>(lock.address());
      std::strcpy(data.ansiPath, path.c_str());
      data.bitsPerPixel = 24;
      data.width = 16 + position;
      data.height = 9;
      data.colourType = 2;
    }
    ASSERT_EQ(action(record.get(), 27, &answer, &writer, 0), 1) << position;
  }
}

std::vector<std::string> samples() {
  std::vector<std::string> paths;
  std::error_code missing;
  const std::filesystem::path folder = std::filesystem::path(KF_SAMPLES) / "mpo";
  for (const auto& file : std::filesystem::directory_iterator(folder, missing)) {
    paths.push_back(file.path().string());
  }
  return paths;
}

TEST(MpoRealCodec, BuiltFilesAreReadBackWhole) {
  const struct {
    u32 count;
    host::u8 typeClass, subCode;
    u32 kind;
  } rows[] = {{2, 2, 2, 4}, {3, 2, 1, 3}, {7, 2, 3, 5}, {127, 1, 1, 1}};
  for (const auto& row : rows) {
    const ScratchFile file;
    build(file.path(), row.count, row.typeClass, row.subCode);
    const Described described(file.path());
    ASSERT_NE(described.handle(), nullptr);
    described.with([&](MpoFileData& data) {
      EXPECT_EQ(+data.list.imageCount, row.count);
      EXPECT_EQ(+data.list.kind, row.kind);
      EXPECT_EQ(+data.record.width, 16u);
      for (u32 image = 1; image < row.count; ++image) {
        EXPECT_EQ(+data.entries[image].image.width, 16 + image);
        EXPECT_EQ(+data.entries[image].imageNumber, static_cast<int>(image));
        EXPECT_EQ(+data.entries[image].fileOffset,
                  data.entries[image - 1].fileOffset + data.entries[image - 1].size);
      }
    });
    Received received;
    EXPECT_EQ(action(described.handle(), 26, &receive, &received, -1), 1);
    ASSERT_EQ(received.pictures.size(), row.count);
    for (u32 image = 0; image < row.count; ++image) {
      const Picture& picture = received.pictures[image];
      EXPECT_EQ(picture.width, 16 + image);
      expectWhole(picture);
      EXPECT_EQ(picture.rows.begin()->second.at(0), 10 + image) << "one shade all over";
    }
  }
}

TEST(MpoRealCodec, FilesMadeByHandAreReadInBothOrders) {
  for (const auto order : {support::ByteOrder::little, support::ByteOrder::big}) {
    support::MpoFileBuilder builder(3, order);
    builder.entry(0).attribute = 0x80010001;
    builder.entry(0).dependent1 = 2;
    builder.entry(1).attribute = 0x40010001;
    const ScratchFile file(builder.build());
    const Described described(file.path());
    ASSERT_NE(described.handle(), nullptr);
    Received received;
    EXPECT_EQ(action(described.handle(), 26, &receive, &received, -1), 1);
    ASSERT_EQ(received.pictures.size(), 3u);
    const u32 widths[] = {8, 24, 16};
    for (std::size_t image = 0; image < 3; ++image) {
      EXPECT_EQ(received.pictures[image].width, widths[image]);
      expectWhole(received.pictures[image]);
    }
  }
}

TEST(MpoRealCodec, EveryPrefixOfAFileIsDescribedOrRefused) {
  const Bytes whole = support::MpoFileBuilder(2).build();
  for (std::size_t size = 0; size < whole.size(); size += size < 300 ? 1 : 37) {
    const ScratchFile file(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    const Described described(file.path());
    if (described.handle() == nullptr) continue;
    Received received;
    EXPECT_LE(action(described.handle(), 26, &receive, &received, -1), 1);
  }
}

TEST(MpoRealCodec, CameraFilesAreDescribedAndReadWhole) {
  const std::vector<std::string> paths = samples();
  if (paths.empty()) GTEST_SKIP() << "no real files in " << KF_SAMPLES;
  for (const std::string& path : paths) {
    const Described described(path);
    ASSERT_NE(described.handle(), nullptr) << path;
    const Bytes file = support::readFile(path);
    const u32 count = described.with([&](MpoFileData& data) {
      for (u32 image = 0; image < data.list.imageCount; ++image) {
        const host::MpoEntry& listed = data.entries[image];
        EXPECT_LE(u64{listed.fileOffset} + listed.size, file.size());
        EXPECT_EQ(file.at(listed.fileOffset), 0xFF);
        EXPECT_EQ(file.at(listed.fileOffset + 1), 0xD8);
      }
      return data.list.imageCount;
    });
    EXPECT_EQ(count, 2u);
    Received received;
    EXPECT_EQ(action(described.handle(), 26, &receive, &received, -1), 1) << path;
    ASSERT_EQ(received.pictures.size(), 2u);
    for (const Picture& picture : received.pictures) expectWhole(picture);
  }
}

#ifdef KF_EXIFTOOL
// The numbers that another program prints for one tag of every image, in file order.
std::vector<u32> printed(const std::string& tag, const std::string& path) {
  const std::string command = std::string(KF_EXIFTOOL) + " -a -n -s3 -" + tag + " '" + path + "'";
  std::vector<u32> numbers;
  FILE* pipe = popen(command.c_str(), "r");
  char line[64];
  while (std::fgets(line, sizeof line, pipe) != nullptr) {
    numbers.push_back(static_cast<u32>(std::strtoul(line, nullptr, 10)));
  }
  pclose(pipe);
  return numbers;
}

// True when the index ends with its entry table and nothing follows in the segment: readers of this
// family take such a table for one that runs past its segment.
bool tableEndsTheSegment(const std::string& path) {
  for (const support::MarkerSegment& segment : support::segmentsOf(support::readFile(path))) {
    const Bytes& payload = segment.payload;
    if (segment.marker != 0xE2 || payload.size() < 50 || payload[0] != 'M') continue;
    const bool big = payload[4] == 'M';
    const auto word = [&](std::size_t at) {
      u32 value = 0;
      for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | payload.at(big ? at + i : at + 3 - i);
      return value;
    };
    const std::size_t third = 4 + 8 + 2 + 2 * 12;  // version, number of images, entry table
    return word(third + 8) + word(third + 4) == payload.size() - 4;
  }
  return false;
}

void expectAsPrinted(const std::string& path) {
  const Described described(path);
  ASSERT_NE(described.handle(), nullptr) << path;
  if (tableEndsTheSegment(path)) {
    const host::MpoEntry none = {};
    described.with([&](MpoFileData& data) {
      EXPECT_EQ(std::memcmp(&data.entries[0], &none, sizeof none), 0) << path << ": table ignored";
    });
    return;
  }
  std::vector<u32> sizes, offsets, types;
  described.with([&](MpoFileData& data) {
    for (u32 image = 0; image < data.list.imageCount; ++image) {
      const host::MpoEntry& listed = data.entries[image];
      sizes.push_back(+listed.size);
      offsets.push_back(+listed.fileOffset);
      types.push_back(listed.typeClass << 16 | listed.typeSubCode);
    }
  });
  EXPECT_EQ(printed("MPImageLength", path), sizes) << path;
  EXPECT_EQ(printed("MPImageStart", path), offsets) << path;
  EXPECT_EQ(printed("MPImageType", path), types) << path;
}

TEST(MpoRealCodec, SizesOffsetsAndClassesAreThoseOfAnotherProgram) {
  for (const std::string& path : samples()) expectAsPrinted(path);
  const ScratchFile built;
  build(built.path(), 7, 2, 3);
  expectAsPrinted(built.path());
  EXPECT_TRUE(printed("Warning", built.path()).empty());
}
#endif

}  // namespace
