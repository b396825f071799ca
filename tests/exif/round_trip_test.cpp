// Fields written into a segment of the plug-in's own and read again: every field keeps its value.
#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <map>

#include "tests/exif/real_picture.h"
#include "tests/support/scratch_file.h"
#include "tests/support/tiff_builder.h"

namespace {

using namespace test;
using host::u16;
using support::JpegBuilder;
using support::TiffBuilder;

constexpr host::u32 largestSegment = 65537;

// The fields that the tables hold.
bool isFromTables(const FieldValue& field) {
  const auto between = [&](u16 first, u16 last) { return field.id >= first && field.id <= last; };
  return between(host::fieldHostFirst, host::fieldHostLast) ||
         between(host::fieldExifFirst, host::fieldExifLast) ||
         between(host::fieldGpsFirst, host::fieldGpsLast) ||
         between(host::fieldIptcFirst, host::fieldIptcLast);
}

// What the way of writing does to a value.
struct Exception {
  const char* rule;
  bool (*applies)(const FieldValue& before, const FieldValue* after, host::u32 builtSize);
};
constexpr Exception exceptions[] = {
    {"a segment over 65,537 bytes is built and not written",
     [](const FieldValue& before, const FieldValue* after, host::u32 builtSize) {
       return after == nullptr && builtSize > largestSegment && before.id < host::fieldIptcFirst;
     }},
    {"an empty text is written as one NUL",
     [](const FieldValue& before, const FieldValue* after, host::u32) {
       return after != nullptr && before.size == 0 && before.kind == host::kindText &&
              after->size == 1 && after->block[0] == 0;
     }},
};

struct Figures {
  unsigned files = 0, big = 0, little = 0, compared = 0, equal = 0;
  std::map<std::string, unsigned> excepted;
};

host::u32 exifSegmentSize(const RealPicture& picture) {
  for (const FieldValue& field : picture.fields()) {
    if (field.id == host::fieldExifSegment) return field.size;
  }
  return 0;
}

void countByteOrder(const RealPicture& picture, Figures& figures) {
  for (const FieldValue& field : picture.fields()) {
    if (field.id != host::fieldExifSegment || field.block.size() < 11) continue;
    ++(field.block[10] == 'M' ? figures.big : figures.little);
    return;
  }
}

// The n-th field of an id is compared with the n-th of the other side: IPTC and XMP, which lie in
// segments of their own too, come again behind what the new segment holds.
void compare(const std::vector<FieldValue>& before, const std::vector<FieldValue>& after,
             host::u32 builtSize, Figures& figures) {
  std::map<u16, std::vector<const FieldValue*>> found;
  for (const FieldValue& field : after) found[field.id].push_back(&field);
  std::map<u16, std::size_t> met;
  for (const FieldValue& field : before) {
    if (!isFromTables(field)) continue;
    const std::size_t place = met[field.id]++;
    const auto& same = found[field.id];
    const FieldValue* other = place < same.size() ? same[place] : nullptr;
    ++figures.compared;
    if (other != nullptr && field.hasSameValue(*other)) {
      ++figures.equal;
      continue;
    }
    const auto* known =
        std::find_if(std::begin(exceptions), std::end(exceptions),
                     [&](const Exception& row) { return row.applies(field, other, builtSize); });
    if (known == std::end(exceptions)) {
      ADD_FAILURE() << "field " << field.id << " number " << place << " of " << field.size
                    << " bytes " << (other == nullptr ? "is gone" : "has changed");
    } else {
      ++figures.excepted[known->rule];
    }
  }
}

void roundTrip(const std::string& path, Figures& figures) {
  SCOPED_TRACE(path);
  RealPicture picture(path);
  if (!picture.wasRead()) return;
  ++figures.files;
  countByteOrder(picture, figures);
  const std::vector<FieldValue> before = picture.fields();
  picture.drop(host::fieldExifSegment);
  const ScratchFile saved;
  ASSERT_EQ(picture.save(saved.path(), true), 1);
  const RealPicture again(saved.path());
  ASSERT_TRUE(again.wasRead());
  compare(before, again.fields(), exifSegmentSize(picture), figures);
}

void print(const char* what, const Figures& figures) {
  std::printf("%s: %u files (%u big-endian, %u little-endian EXIF), %u fields compared, %u equal",
              what, figures.files, figures.big, figures.little, figures.compared, figures.equal);
  for (const auto& [rule, count] : figures.excepted) {
    std::printf(", %u excepted (%s)", count, rule.c_str());
  }
  std::printf("\n");
}

class RoundTrip : public testing::Test {
 protected:
  void SetUp() override {
    // Settings of the test's own, so that the user's play no part.
    SetEnvironmentVariableA("KFIO_INI", settings_.path().c_str());
  }
  static std::vector<std::string> samples(const char* folder) {
    std::vector<std::string> paths;
    std::error_code missing;
    for (const auto& file :
         std::filesystem::directory_iterator(std::filesystem::path(KF_SAMPLES) / folder, missing)) {
      paths.push_back(file.path().string());
    }
    return paths;
  }
  ScratchFile settings_;
};

Bytes pictureOf(support::ByteOrder order) {
  TiffBuilder tiff(order);
  tiff.ifd0()
      .text(0x010F, "Maker")
      .text(0x0110, "abc")
      .shorts(0x0112, {6})
      .rationals(0x011A, {{300, 1}})
      .rationals(0x013E, {{3127, 10000}, {329, 1000}})
      .longs(0x0100, {4000})
      .shorts(0x0101, {3000})
      .shorts(0x0102, {8, 8, 8})
      .shorts(0x0212, {2, 1});
  tiff.exif()
      .undefined(0x9000, support::bytesOf("0232"))
      .text(0x9003, "2010:12:02 13:18:23")
      .rationals(0x829A, {{1, 250}})
      .signedRationals(0x9204, {{0xFFFFFFFF, 3}})
      .shorts(0x8827, {400})
      .undefined(0x9101, {1, 2, 3, 0})
      .undefined(0x9286, support::bytesOf("ASCII\0\0\0a comment"))
      .longs(0xA002, {4000})
      .shorts(0x9214, {10, 20, 30});
  tiff.gps()
      .bytes(0x0000, {2, 3, 0, 0})
      .text(0x0001, "N")
      .rationals(0x0002, {{48, 1}, {8, 1}, {1234, 100}})
      .bytes(0x0005, {1})
      .text(0x001D, "2010:12:02");
  return JpegBuilder().size(40, 30).exif(tiff.build()).build();
}

TEST_F(RoundTrip, EveryKindOfFieldKeepsItsValueFromEitherByteOrder) {
  Figures figures;
  for (const auto order : {support::ByteOrder::little, support::ByteOrder::big}) {
    const ScratchFile source(pictureOf(order));
    roundTrip(source.path(), figures);
  }
  print("built", figures);
  EXPECT_EQ(figures.big, 1u);
  EXPECT_EQ(figures.little, 1u);
  EXPECT_EQ(figures.compared, 2 * 23u);
  EXPECT_EQ(figures.equal, figures.compared);
}

TEST_F(RoundTrip, AnEmptyTextComesBackAsOneNul) {
  TiffBuilder tiff;
  tiff.ifd0().add(0x013B, 2, 0, {}).text(0x010F, "Maker");
  const ScratchFile source(JpegBuilder().exif(tiff.build()).build());
  Figures figures;
  roundTrip(source.path(), figures);
  EXPECT_EQ(figures.equal, 1u);
  EXPECT_EQ(figures.excepted.size(), 1u);
}

TEST_F(RoundTrip, TheFieldsOfCameraFilesKeepTheirValues) {
  Figures figures;
  for (const char* folder : {"jpeg", "ciff"}) {
    for (const std::string& path : samples(folder)) roundTrip(path, figures);
  }
  if (figures.files == 0) GTEST_SKIP() << "no real files in " << KF_SAMPLES;
  print("samples", figures);
  EXPECT_GT(figures.big, 0u);
  EXPECT_GT(figures.little, 0u);
  EXPECT_GT(figures.equal, 1000u);
}

TEST_F(RoundTrip, TheFieldsOfDamagedFilesKeepTheirValues) {
  Figures figures;
  for (const std::string& path : samples("broken")) roundTrip(path, figures);
  if (figures.files == 0) GTEST_SKIP() << "no damaged files in " << KF_SAMPLES;
  print("damaged samples", figures);
}

}  // namespace
