#include <filesystem>
#include <fstream>
#include <string>

#include "host/kexiflib.h"
#include "tests/companions/loaded_module.h"
#include "tests/support/tiff_builder.h"

namespace {

using support::ByteOrder;
using support::Bytes;
using support::bytesOf;
using support::joined;
using support::TiffBuilder;

constexpr std::uint8_t app1 = 0xE1;

Bytes segment(std::uint8_t marker, const Bytes& payload) {
  const std::size_t length = payload.size() + 2;
  return joined(
      {0xFF, marker, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)},
      payload);
}

Bytes exifSegment(const Bytes& tiff) {
  return segment(app1, joined({'E', 'x', 'i', 'f', 0, 0}, tiff));
}

// The beginning of a JPEG file: SOI, the segments, SOS.
Bytes fileOf(const Bytes& segments) {
  return joined(joined({0xFF, 0xD8}, segments), {0xFF, 0xDA, 0, 2});
}

const Bytes picture = {0xFF, 0xD8, 1, 2, 3, 4, 5, 0xFF, 0xD9};

TiffBuilder ordinaryTiff(ByteOrder order) {
  TiffBuilder tiff(order);
  tiff.ifd0().text(support::tag::make, "A maker").shorts(support::tag::orientation, {1});
  tiff.exif().rationals(support::tag::exposureTime, {{1, 250}});
  tiff.thumbnail(picture);
  return tiff;
}

// The path as the wide functions take it, whatever the locale.
std::wstring wideText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  wchar_t wide[1024] = {};
  MultiByteToWideChar(CP_UTF8, 0, reinterpret_cast<const char*>(text.c_str()), -1, wide, 1024);
  return wide;
}

class Thumbnail : public testing::Test {
 protected:
  ~Thumbnail() override {
    end_(reader_);
    std::filesystem::remove(file_);
  }

  void open(const Bytes& bytes) {
    end_(reader_);
    std::ofstream(file_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    reader_ = begin_(file_.string().c_str());
    ASSERT_NE(reader_, nullptr);
  }
  void openTiff(const Bytes& tiff) { open(fileOf(exifSegment(tiff))); }

  [[nodiscard]] bool hasExif() const { return hasExif_(reader_) != 0; }
  // What the reader hands out; empty when it says that there is none.
  [[nodiscard]] Bytes thumbnail() const {
    host::u64 words[2] = {};
    const host::i64 result = get_(reader_, words);
    EXPECT_EQ(result != -1, hasThumbnail_(reader_) != 0);
    if (result == -1) return {};
    const auto* first = reinterpret_cast<const std::uint8_t*>(words[0]);
    return Bytes(first, first + words[1]);
  }

  test::LoadedModule module_{"fio/kExifLib.dll"};
  decltype(kRExifBeginRead)* begin_ =
      module_.function<decltype(kRExifBeginRead)>("kRExifBeginRead");
  decltype(kRExifBeginReadW)* beginWide_ =
      module_.function<decltype(kRExifBeginReadW)>("kRExifBeginReadW");
  decltype(kRExifIsExifExist)* hasExif_ =
      module_.function<decltype(kRExifIsExifExist)>("kRExifIsExifExist");
  decltype(kRExifIsThumbnailExist)* hasThumbnail_ =
      module_.function<decltype(kRExifIsThumbnailExist)>("kRExifIsThumbnailExist");
  decltype(kRExifGetThumbnailData)* get_ =
      module_.function<decltype(kRExifGetThumbnailData)>("kRExifGetThumbnailData");
  decltype(kRExifEndRead)* end_ = module_.function<decltype(kRExifEndRead)>("kRExifEndRead");
  std::filesystem::path file_ = test::programFolder() / uniqueName();
  void* reader_ = nullptr;

 private:
  static std::string uniqueName() {
    return std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".jpg";
  }
};

TEST_F(Thumbnail, IsFoundInBothByteOrders) {
  for (const ByteOrder order : {ByteOrder::little, ByteOrder::big}) {
    openTiff(ordinaryTiff(order).build());
    EXPECT_TRUE(hasExif());
    EXPECT_EQ(thumbnail(), picture);
  }
}

TEST_F(Thumbnail, IsFoundThroughAWidePath) {
  open(fileOf(exifSegment(ordinaryTiff(ByteOrder::big).build())));
  const std::filesystem::path name = test::programFolder() / u8"\u00E4\u4E00 wide.jpg";
  std::filesystem::copy_file(file_, name, std::filesystem::copy_options::overwrite_existing);
  end_(reader_);
  reader_ = beginWide_(wideText(name).c_str());
  ASSERT_NE(reader_, nullptr);
  EXPECT_EQ(thumbnail(), picture);
  end_(std::exchange(reader_, nullptr));
  std::filesystem::remove(name);
}

TEST_F(Thumbnail, HasItsPlaceInShortNumbersToo) {
  TiffBuilder tiff;
  tiff.ifd0().text(support::tag::make, "M");
  tiff.ifd1().shorts(support::tag::jpegOffset, {8}).shorts(support::tag::jpegLength, {2});
  openTiff(tiff.build());
  EXPECT_EQ(thumbnail(), (Bytes{1, 0})) << "the entry count of the 0th IFD, at offset 8";
}

TEST_F(Thumbnail, ComesFromTheFirstExifSegment) {
  const Bytes first = exifSegment(ordinaryTiff(ByteOrder::little).build());
  TiffBuilder other = ordinaryTiff(ByteOrder::little);
  other.thumbnail({9, 9});
  const Bytes second = exifSegment(other.build());
  const Bytes xmp = segment(app1, bytesOf("http://ns.adobe.com/xap/1.0/"));
  const Bytes jfif = segment(0xE0, joined(bytesOf("JFIF"), Bytes(10)));
  open(fileOf(joined(joined(jfif, xmp), joined(first, second))));
  EXPECT_EQ(thumbnail(), picture);
}

TEST_F(Thumbnail, IsFoundBehindFillBytesAndBareMarkers) {
  const Bytes exif = exifSegment(ordinaryTiff(ByteOrder::little).build());
  open(fileOf(joined({0xFF, 0x01, 0xFF, 0xD3, 0xFF, 0xFF, 0xFF}, exif)));
  EXPECT_EQ(thumbnail(), picture);
}

TEST_F(Thumbnail, IsFoundBehindSegmentsLargerThanAnyBuffer) {
  Bytes large;
  for (int i = 0; i < 3; ++i) large = joined(large, segment(0xE2, Bytes(65533, 0xFF)));
  open(fileOf(joined(large, exifSegment(ordinaryTiff(ByteOrder::little).build()))));
  EXPECT_EQ(thumbnail(), picture);
}

TEST_F(Thumbnail, MayFillASegmentOfTheLargestSize) {
  TiffBuilder tiff = ordinaryTiff(ByteOrder::big);
  const std::size_t rest = 65533 - 6 - (tiff.build().size() - picture.size());
  const Bytes large(rest, 0x5A);
  tiff.thumbnail(large);
  openTiff(tiff.build());
  EXPECT_EQ(thumbnail(), large);
}

TEST_F(Thumbnail, IsNotLookedForBehindTheImageData) {
  open(joined(fileOf({}), exifSegment(ordinaryTiff(ByteOrder::little).build())));
  EXPECT_FALSE(hasExif());
  EXPECT_EQ(thumbnail(), Bytes());
}

TEST_F(Thumbnail, IsAbsentFromAnExifBlockWithoutAFirstIfd) {
  TiffBuilder tiff;
  tiff.ifd0().text(support::tag::make, "A maker");
  openTiff(tiff.build());
  EXPECT_TRUE(hasExif());
  EXPECT_EQ(thumbnail(), Bytes());
}

TEST_F(Thumbnail, NeedsBothItsEntries) {
  for (const std::uint16_t only : {support::tag::jpegOffset, support::tag::jpegLength}) {
    TiffBuilder tiff;
    tiff.ifd0().text(support::tag::make, "A maker");
    tiff.ifd1().longs(only, {10});
    openTiff(tiff.build());
    EXPECT_EQ(thumbnail(), Bytes());
  }
}

TEST_F(Thumbnail, MayReachTheEndOfTheSegmentAndNoFurther) {
  TiffBuilder tiff;
  tiff.ifd0().text(support::tag::make, "A maker");
  tiff.ifd1().longs(support::tag::jpegOffset, {8}).longs(support::tag::jpegLength, {0});
  const auto size = static_cast<std::uint32_t>(tiff.build().size());
  const std::pair<std::uint32_t, std::uint32_t> inside[] = {{8, size - 8}, {size - 1, 1}};
  const std::pair<std::uint32_t, std::uint32_t> outside[] = {{8, size - 7},
                                                             {size, 1},
                                                             {size, 0},
                                                             {8, 0},
                                                             {7, 1},
                                                             {0, 4},
                                                             {0xFFFFFFFF, 1},
                                                             {8, 0xFFFFFFFF},
                                                             {0xFFFFFFFF, 0xFFFFFFFF},
                                                             {8, 0xFFFFFFF8},
                                                             {0x80000000, 0x80000000}};
  const auto open = [&](const auto& place) {
    TiffBuilder changed;
    changed.ifd0().text(support::tag::make, "A maker");
    changed.ifd1().longs(support::tag::jpegOffset, {place.first});
    changed.ifd1().longs(support::tag::jpegLength, {place.second});
    openTiff(changed.build());
  };
  for (const auto& place : inside) {
    open(place);
    EXPECT_EQ(thumbnail().size(), place.second);
  }
  for (const auto& place : outside) {
    open(place);
    EXPECT_EQ(thumbnail(), Bytes()) << place.first << ", " << place.second;
  }
}

TEST_F(Thumbnail, SurvivesDirectoriesThatLieAboutTheirPlace) {
  for (const std::uint32_t offset : {0U, 1U, 7U, 0x7FFFFFFFU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
    TiffBuilder tiff = ordinaryTiff(ByteOrder::little);
    tiff.ifd0().claimNext(offset);
    openTiff(tiff.build());
    EXPECT_TRUE(hasExif());
    EXPECT_EQ(thumbnail(), Bytes()) << offset;
  }
}

TEST_F(Thumbnail, SurvivesAFirstIfdThatIsThe0th) {
  TiffBuilder tiff = ordinaryTiff(ByteOrder::little);
  tiff.ifd0().claimNext(8);
  openTiff(tiff.build());
  EXPECT_EQ(thumbnail(), Bytes());
}

TEST_F(Thumbnail, SurvivesEntryCountsThatLie) {
  constexpr std::uint16_t counts[] = {0, 1, 100, 0xFFFF};
  for (const std::uint16_t count : counts) {
    TiffBuilder tiff = ordinaryTiff(ByteOrder::big);
    tiff.ifd0().claimCount(count);
    openTiff(tiff.build());
    EXPECT_EQ(thumbnail(), Bytes()) << count;
  }
}

TEST_F(Thumbnail, TakesTheEntriesBeforeTheEndOfADirectoryThatRunsOver) {
  TiffBuilder tiff = ordinaryTiff(ByteOrder::big);
  tiff.ifd1().claimCount(0xFFFF);
  openTiff(tiff.build());
  EXPECT_EQ(thumbnail(), picture);
}

// Whatever is cut off: nothing outside is read, and a thumbnail is whole or absent.
TEST_F(Thumbnail, IsWholeOrAbsentInEveryTruncatedFile) {
  for (const ByteOrder order : {ByteOrder::little, ByteOrder::big}) {
    const Bytes whole = fileOf(exifSegment(ordinaryTiff(order).build()));
    for (std::size_t length = 0; length < whole.size(); ++length) {
      open(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
      const Bytes expected = length >= whole.size() - 4 ? picture : Bytes();
      ASSERT_EQ(thumbnail(), expected) << length << " of " << whole.size();
    }
  }
}

TEST_F(Thumbnail, IsWholeOrAbsentInEveryTruncatedSegment) {
  const Bytes tiff = ordinaryTiff(ByteOrder::big).build();
  for (std::size_t length = 0; length < tiff.size(); ++length) {
    openTiff(Bytes(tiff.begin(), tiff.begin() + static_cast<std::ptrdiff_t>(length)));
    ASSERT_EQ(thumbnail(), Bytes()) << length;
  }
}

// Any single byte may be wrong; the sanitizers watch the reads.
TEST_F(Thumbnail, SurvivesEverySingleWrongByte) {
  constexpr std::uint8_t wrongValues[] = {0x00, 0x7F, 0xFF};
  const Bytes whole = fileOf(exifSegment(ordinaryTiff(ByteOrder::little).build()));
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const std::uint8_t value : wrongValues) {
      Bytes changed = whole;
      changed[i] = value;
      open(changed);
      EXPECT_LE(thumbnail().size(), whole.size());
    }
  }
}

TEST_F(Thumbnail, NeedsATiffHeader) {
  const Bytes right = ordinaryTiff(ByteOrder::little).build();
  for (const std::size_t wrong : {0U, 1U, 2U, 3U}) {
    Bytes tiff = right;
    tiff[wrong] = 'X';
    openTiff(tiff);
    EXPECT_FALSE(hasExif()) << wrong;
    EXPECT_EQ(thumbnail(), Bytes());
  }
}

TEST_F(Thumbnail, IsAbsentFromFilesThatAreNoJpeg) {
  const Bytes exif = exifSegment(ordinaryTiff(ByteOrder::little).build());
  for (const Bytes& start : {Bytes{}, Bytes{0xFF}, Bytes{0xFF, 0xD9}, Bytes{'B', 'M'}}) {
    open(joined(start, exif));
    EXPECT_FALSE(hasExif());
  }
}

TEST_F(Thumbnail, IsAbsentBehindASegmentWithoutALength) {
  const Bytes exif = exifSegment(ordinaryTiff(ByteOrder::little).build());
  for (const Bytes& head : {Bytes{0xFF, 0xE0, 0, 0}, Bytes{0xFF, 0xE0, 0, 1}}) {
    open(fileOf(joined(head, exif)));
    EXPECT_FALSE(hasExif());
  }
}

TEST_F(Thumbnail, HasNoReaderWithoutAFile) {
  EXPECT_EQ(begin_(nullptr), nullptr);
  EXPECT_EQ(beginWide_(nullptr), nullptr);
  EXPECT_EQ(begin_((test::programFolder() / "absent.jpg").string().c_str()), nullptr);
  EXPECT_EQ(beginWide_(wideText(test::programFolder() / "absent.jpg").c_str()), nullptr);
}

TEST_F(Thumbnail, IsAbsentFromNoReader) {
  host::u64 words[2] = {};
  EXPECT_EQ(hasExif_(nullptr), 0);
  EXPECT_EQ(hasThumbnail_(nullptr), 0);
  EXPECT_EQ(get_(nullptr, words), -1);
  end_(nullptr);
  openTiff(ordinaryTiff(ByteOrder::little).build());
  EXPECT_EQ(get_(reader_, nullptr), -1);
}

TEST_F(Thumbnail, LivesWithoutTheFile) {
  openTiff(ordinaryTiff(ByteOrder::little).build());
  EXPECT_TRUE(std::filesystem::remove(file_));
  EXPECT_EQ(thumbnail(), picture);
}

}  // namespace
