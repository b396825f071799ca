// Files saved with a segment of the plug-in's own, as this and other programs read them.
#include <gmock/gmock.h>

#include "host/kexiflib.h"
#include "tests/companions/loaded_plugin.h"
#include "tests/exif/real_picture.h"
#include "tests/support/scratch_file.h"
#include "tests/support/tiff_builder.h"
#ifdef KF_EXIFTOOL
#include "tests/exif/other_programs.h"
#endif

namespace {

using namespace test;
using host::u16;
using support::JpegBuilder;
using support::TiffBuilder;

constexpr u16 makerField = 4006, dateField = 5210, latitudeRefField = 5301, titleField = 5601;

// The thumbnail that the project's own reader finds.
Bytes ownThumbnail(const std::string& path) {
  const auto& library = plugin().exif;
  void* reader = library.function<void*(const char*)>("kRExifBeginRead")(path.c_str());
  host::u64 words[2] = {};
  Bytes found;
  if (library.function<host::i64(void*, host::u64*)>("kRExifGetThumbnailData")(reader, words) >=
      0) {
    const auto* first = reinterpret_cast<const host::u8*>(words[0]);
    found.assign(first, first + words[1]);
  }
  library.function<void(void*)>("kRExifEndRead")(reader);
  return found;
}

std::string textOf(const RealPicture& picture, u16 id) {
  for (const FieldValue& field : picture.fields()) {
    if (field.id == id) return {field.block.begin(), field.block.end()};
  }
  return "(no field)";
}

class SavedPicture : public testing::Test {
 protected:
  void SetUp() override { SetEnvironmentVariableA("KFIO_INI", settings_.path().c_str()); }

#ifdef KF_EXIFTOOL
  // What exiftool prints for one tag of the saved file.
  std::string printed(const std::string& tag) const {
    const Bytes output =
        outputOf(std::string(KF_EXIFTOOL) + " -s3 -b -" + tag + " '" + saved_.path() + "'");
    return {output.begin(), output.end()};
  }
  Bytes thumbnailOfExif() const {
    const ScratchFile extracted;
    static_cast<void>(outputOf(std::string(KF_EXIF) + " -e -o '" + extracted.path() + "' '" +
                               saved_.path() + "'"));
    return extracted.read();
  }
#endif
  ScratchFile settings_;
  ScratchFile saved_;
};

TEST_F(SavedPicture, APictureWithoutExifGetsItsPreviewAsThumbnail) {
  for (const auto layout : {support::Layout::colour, support::Layout::grey}) {
    const ScratchFile source(JpegBuilder().size(200, 150).layout(layout).build());
    RealPicture picture(source.path());
    ASSERT_TRUE(picture.wasRead());
    picture.setText(makerField, std::string("Maker", 6));
    ASSERT_EQ(picture.save(saved_.path(), true), 1);
    const Bytes thumbnail = picture.thumbnail();
    ASSERT_GT(thumbnail.size(), 100u);
    EXPECT_EQ(ownThumbnail(saved_.path()), thumbnail);
#ifdef KF_EXIFTOOL
    EXPECT_EQ(outputOf(std::string(KF_EXIFTOOL) + " -b -ThumbnailImage '" + saved_.path() + "'"),
              thumbnail);
    EXPECT_EQ(thumbnailOfExif(), thumbnail);
    EXPECT_EQ(printed("Make"), "Maker");
#endif
  }
}

TEST_F(SavedPicture, WithoutAPreviewThereIsNoThumbnail) {
  const ScratchFile source(JpegBuilder().build());
  RealPicture picture(source.path());
  picture.setText(makerField, std::string("Maker", 6));
  ASSERT_EQ(picture.save(saved_.path(), false), 1);
  EXPECT_TRUE(ownThumbnail(saved_.path()).empty());
  EXPECT_EQ(textOf(RealPicture(saved_.path()), makerField), std::string("Maker", 6));
}

TEST_F(SavedPicture, EditedFieldsAreKeptWithAllTheOthers) {
  TiffBuilder tiff(support::ByteOrder::big);
  tiff.ifd0().text(0x010F, "Maker").text(0x0110, "Model");
  tiff.exif().text(0x9003, "2010:12:02 13:18:23").rationals(0x829A, {{1, 250}});
  tiff.gps().text(0x0001, "N").rationals(0x0002, {{48, 1}, {8, 1}, {0, 1}});
  const Bytes dataset = {0x1C, 2, 5, 0, 5, 'T', 'i', 't', 'l', 'e'};
  Bytes resource = support::bytesOf(std::string_view("8BIM\4\4\0\0\0\0\0\12", 12));
  resource = support::joined(resource, dataset);
  const std::string packet = "<x:xmpmeta xmlns:x='adobe:ns:meta/'/>";
  const ScratchFile source(
      JpegBuilder().exif(tiff.build()).xmp(support::bytesOf(packet)).photoshop(resource).build());
  RealPicture picture(source.path());
  ASSERT_TRUE(picture.wasRead());
  ASSERT_EQ(textOf(picture, titleField), "Title");
  for (const u16 raw : {host::fieldExifSegment, host::fieldPhotoshop, host::fieldRawSegment}) {
    picture.drop(raw);  // a host that edits leaves the fields to speak
  }
  picture.setText(makerField, std::string("Edited", 7));
  picture.setText(dateField, std::string("2024:01:02 03:04:05", 20));
  picture.setText(latitudeRefField, std::string("S", 2));
  picture.setText(titleField, "Another title");
  ASSERT_EQ(picture.save(saved_.path(), true), 1);

  const RealPicture again(saved_.path());
  EXPECT_EQ(textOf(again, makerField), std::string("Edited", 7));
  EXPECT_EQ(textOf(again, 4007), std::string("Model", 6));
  EXPECT_EQ(textOf(again, dateField), std::string("2024:01:02 03:04:05", 20));
  EXPECT_EQ(textOf(again, latitudeRefField), std::string("S", 2));
  EXPECT_EQ(textOf(again, titleField), "Another title");
  EXPECT_EQ(textOf(again, host::fieldXmp).substr(4), packet);
#ifdef KF_EXIFTOOL
  EXPECT_EQ(printed("IFD0:Make"), "Edited");
  EXPECT_EQ(printed("IFD0:Model"), "Model");
  EXPECT_EQ(printed("ExifIFD:DateTimeOriginal"), "2024:01:02 03:04:05");
  EXPECT_EQ(printed("GPS:GPSLatitudeRef"), "S");
  EXPECT_EQ(printed("GPS:GPSLatitude"), "48.1333333333333");
  EXPECT_EQ(printed("IPTC:ObjectName"), "Another title");
  EXPECT_EQ(printed("XMP"), packet);
  EXPECT_EQ(printed("Error"), "");
#endif
}

}  // namespace
