// The texts of the general page.
#include "viewer/general_texts.h"

#include "frame/module.h"
#include "tests/plugin/plugin.h"

namespace {

using namespace test;
using viewer::GeneralControl;

std::wstring textOf(const FileData& data, GeneralControl control) {
  for (const auto& text : viewer::generalTexts(frame::resourceLibrary(), data.handle())) {
    if (text.control == control) return text.text;
  }
  return L"no such text";
}

class GeneralTexts : public testing::Test {
 protected:
  void SetUp() override {
    the().reset();
    jpeg_.with([](auto& data) {
      data.tail.tag = host::jpegTailTag;
      data.record.width = 4608;
      data.record.height = 3072;
      data.record.bitsPerPixel = 24;
      data.record.colourType = host::colourTrue;
      data.record.horizontalResolution = 72;
      data.record.verticalResolution = 96;
      data.tail.quality = 85;
      data.tail.sample = 1;
    });
    mpo_.with<host::MpoFileData>([](auto& data) {
      data.tag = host::mpoTailTag;
      data.list.kind = host::mpoDisparity;
      data.list.imageCount = 2;
      data.list.firstImage.densityUnit = 2;
      data.list.firstImage.markerFlags = host::markerProgressive | host::markerJfif;
    });
  }
  FileData jpeg_;
  FileData mpo_{sizeof(host::MpoFileData)};
};

TEST_F(GeneralTexts, TellAJpegFile) {
  EXPECT_EQ(textOf(jpeg_, viewer::controlFormat), L"JPEG");
  EXPECT_EQ(textOf(jpeg_, viewer::controlSize), L"4608 x 3072 pixels");
  EXPECT_EQ(textOf(jpeg_, viewer::controlBits), L"24 per pixel");
  EXPECT_EQ(textOf(jpeg_, viewer::controlColour), L"Colour, three components");
  EXPECT_EQ(textOf(jpeg_, viewer::controlResolution), L"72 x 96");
  EXPECT_EQ(textOf(jpeg_, viewer::controlMode), L"Baseline");
  EXPECT_EQ(textOf(jpeg_, viewer::controlSampling), L"4:2:2 (half width)");
  EXPECT_EQ(textOf(jpeg_, viewer::controlQuality), L"85");
  EXPECT_EQ(textOf(jpeg_, viewer::controlJfif), L"No");
  EXPECT_EQ(textOf(jpeg_, viewer::controlImageCount), L"");
  EXPECT_EQ(textOf(jpeg_, viewer::controlMpoKind), L"");
  EXPECT_TRUE(jpeg_.unlocked());
}

TEST_F(GeneralTexts, TellTheOtherValues) {
  jpeg_.with([](auto& data) {
    data.tail.mode = 1;
    data.tail.jfif = 1;
    data.tail.sample = 3;
    data.record.colourType = host::colourFourComponents;
  });
  EXPECT_EQ(textOf(jpeg_, viewer::controlMode), L"Progressive");
  EXPECT_EQ(textOf(jpeg_, viewer::controlJfif), L"Yes");
  EXPECT_EQ(textOf(jpeg_, viewer::controlSampling), L"4:1:1 (quarter width)");
  EXPECT_EQ(textOf(jpeg_, viewer::controlColour), L"Four components (CMYK)");
  jpeg_.with([](auto& data) {
    data.tail.mode = 2;
    data.tail.sample = 4;
    data.record.colourType = host::colourUnserved;
  });
  EXPECT_EQ(textOf(jpeg_, viewer::controlMode), L"Baseline");
  EXPECT_EQ(textOf(jpeg_, viewer::controlSampling), L"");
  EXPECT_EQ(textOf(jpeg_, viewer::controlColour), L"");
  jpeg_.with([](auto& data) { data.record.colourType = host::colourGrey; });
  EXPECT_EQ(textOf(jpeg_, viewer::controlColour), L"Grey");
  EXPECT_EQ(textOf(jpeg_, viewer::controlSampling), L"None");
}

TEST_F(GeneralTexts, TellAMultiPictureFile) {
  EXPECT_EQ(textOf(mpo_, viewer::controlFormat), L"Multi-Picture Format");
  EXPECT_EQ(textOf(mpo_, viewer::controlResolution), L"0 x 0 pixels per centimetre");
  EXPECT_EQ(textOf(mpo_, viewer::controlMode), L"Progressive");
  EXPECT_EQ(textOf(mpo_, viewer::controlJfif), L"Yes");
  EXPECT_EQ(textOf(mpo_, viewer::controlQuality), L"");
  EXPECT_EQ(textOf(mpo_, viewer::controlImageCount), L"2");
  EXPECT_EQ(textOf(mpo_, viewer::controlMpoKind), L"Disparity (stereo)");
  mpo_.with<host::MpoFileData>([](auto& data) {
    data.list.kind = 99;
    data.list.firstImage.densityUnit = 1;
    data.list.firstImage.markerFlags = 0;
  });
  EXPECT_EQ(textOf(mpo_, viewer::controlMpoKind), L"Other");
  EXPECT_EQ(textOf(mpo_, viewer::controlResolution), L"0 x 0 pixels per inch");
  EXPECT_EQ(textOf(mpo_, viewer::controlMode), L"Baseline");
}

TEST_F(GeneralTexts, TakeTheNameFromTheWidePathFirst) {
  jpeg_.with([](auto& data) { std::strcpy(data.record.ansiPath, "C:\\folder/plain.jpg"); });
  EXPECT_EQ(textOf(jpeg_, viewer::controlFileName), L"plain.jpg");
  wchar_t wide[] = L"D:\\b\x00FCro\\\x5199\x771F.jpg";
  jpeg_.with([&](auto& data) {
    data.record.pathFlags = host::pathFlagWide;
    data.record.widePath = reinterpret_cast<host::u64>(wide);
  });
  EXPECT_EQ(textOf(jpeg_, viewer::controlFileName), L"\x5199\x771F.jpg");
}

TEST_F(GeneralTexts, OfNoRecordAreNone) {
  EXPECT_TRUE(viewer::generalTexts(frame::resourceLibrary(), nullptr).empty());
  const FileData small(745);
  EXPECT_TRUE(viewer::generalTexts(frame::resourceLibrary(), small.handle()).empty());
}

TEST_F(GeneralTexts, ARecordOfAnotherFormatTellsItsPicture) {
  jpeg_.with([](auto& data) { data.tail.tag = 0; });
  EXPECT_EQ(textOf(jpeg_, viewer::controlSize), L"4608 x 3072 pixels");
  EXPECT_EQ(textOf(jpeg_, viewer::controlFormat), L"");
  EXPECT_EQ(textOf(jpeg_, viewer::controlMode), L"");
  EXPECT_EQ(textOf(jpeg_, viewer::controlJfif), L"");
}

}  // namespace
