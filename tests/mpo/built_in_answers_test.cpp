// The built-in answers of the simple writer, the known hosts, and the preview mark.
#include <gmock/gmock.h>

#include <cstring>

#include "mpo/describe_image.h"
#include "mpo/file_information.h"
#include "mpo/known_host.h"

namespace {

using host::ImageRequest;
using host::MpoCountAnswer;
using host::MpoImageDesc;
using host::u32;
using host::u64;

struct RowCall {
  void* user;
  std::vector<u32> numbers;
};
RowCall lastCall;
int rowsGiven = 0;

void* giveRows(void* user, u32 width, u32 height, u32 firstRow, u32 rowCount, int one, int seven,
               u32 mode) {
  lastCall = {
      user,
      {width, height, firstRow, rowCount, static_cast<u32>(one), static_cast<u32>(seven), mode}};
  return &rowsGiven;
}

mpo::MpoWriteContext contextOf(u32 count = 1) {
  mpo::MpoWriteContext context = {};
  context.width = 640;
  context.height = 480;
  context.imageCount = count;
  context.rowCallback = giveRows;
  context.user = &rowsGiven;
  return context;
}

ImageRequest requestOf(u32 question, u32 number, void* answer) {
  ImageRequest request = {};
  std::memset(&request, 0x77, sizeof request);
  request.imageNumber = number;
  request.question = question;
  request.answer = reinterpret_cast<u64>(answer);
  return request;
}

TEST(MpoDescribeImage, TheCountIsOneAndThePositionZero) {
  mpo::MpoWriteContext context = contextOf();
  MpoCountAnswer counts = {9, 9};
  ImageRequest request = requestOf(0x475861, 0, &counts);
  EXPECT_EQ(mpo::MpoDescribeImage(4, &request, &context, nullptr), 1);
  EXPECT_EQ(+counts.imageCount, 1u);
  EXPECT_EQ(+counts.position, 0u);
}

TEST(MpoDescribeImage, TheRequestIsClearedAndGetsTheSize) {
  mpo::MpoWriteContext context = contextOf();
  MpoCountAnswer counts = {};
  ImageRequest request = requestOf(0x475861, 0, &counts);
  mpo::MpoDescribeImage(4, &request, &context, nullptr);
  EXPECT_EQ(+request.cleared12, 0u);
  EXPECT_EQ(+request.width, 640u);
  EXPECT_EQ(+request.height, 480u);
  EXPECT_EQ(+request.cleared1056, 0u);
  EXPECT_EQ(+request.cleared1064, 0u);
  EXPECT_EQ(+request.cleared1080, 0u);
  EXPECT_EQ(+request.gap28[0], 0x77) << "the rest is the asker's";
}

TEST(MpoDescribeImage, AnImageIsADisparityFrame) {
  mpo::MpoWriteContext context = contextOf(2);
  for (const u32 number : {1u, 2u}) {
    MpoImageDesc image = {};
    ImageRequest request = requestOf(0x475860, number, &image);
    EXPECT_EQ(mpo::MpoDescribeImage(4, &request, &context, nullptr), 1);
    EXPECT_EQ(+image.dependentParent, 0u);
    EXPECT_EQ(+image.dependentChild, 0u);
    EXPECT_EQ(+image.representative, number == 1 ? 1u : 0u);
    EXPECT_EQ(+image.typeClass, 2);
    EXPECT_EQ(+image.typeSubCode, 2);
    EXPECT_EQ(+image.flags, 0x1C000000u);
    EXPECT_EQ(+image.attributes.baseViewpoint, 1u);
    EXPECT_EQ(+image.attributes.baselineLength.numerator, 0xFFFFFFFFu);
    EXPECT_EQ(+image.attributes.baselineLength.denominator, 0u);
    EXPECT_EQ(+image.attributes.convergenceAngle.numerator, 0u);
    EXPECT_EQ(+image.attributes.convergenceAngle.denominator, 0u);
  }
}

TEST(MpoDescribeImage, ASetStepMakesTheConvergenceAngle) {
  mpo::MpoWriteContext context = contextOf(3);
  context.convergenceStep = 15;
  context.convergenceDenominator = 10;
  for (const u32 number : {1u, 3u}) {
    MpoImageDesc image = {};
    ImageRequest request = requestOf(0x475860, number, &image);
    mpo::MpoDescribeImage(4, &request, &context, nullptr);
    EXPECT_EQ(+image.attributes.convergenceAngle.numerator, (number - 1) * 15);
    EXPECT_EQ(+image.attributes.convergenceAngle.denominator, 10u);
  }
}

TEST(MpoDescribeImage, ImagesBesideTheCountAndOtherQuestionsAreNotAnswered) {
  mpo::MpoWriteContext context = contextOf(2);
  MpoImageDesc image = {};
  const MpoImageDesc untouched = {};
  for (const auto& [question, number] :
       {std::pair{0x475860u, 0u}, std::pair{0x475860u, 3u}, std::pair{0x475862u, 1u}}) {
    ImageRequest request = requestOf(question, number, &image);
    EXPECT_EQ(mpo::MpoDescribeImage(4, &request, &context, nullptr), 0);
  }
  EXPECT_EQ(std::memcmp(&image, &untouched, sizeof image), 0);
  ImageRequest request = requestOf(0x475860, 1, nullptr);
  EXPECT_EQ(mpo::MpoDescribeImage(4, &request, &context, nullptr), 0);
  for (const int action : {0, 1, 2, 3, 6}) {
    EXPECT_EQ(mpo::MpoDescribeImage(action, &request, &context, nullptr), 0);
  }
}

TEST(MpoDescribeImage, RowsComeFromTheHostsCallback) {
  mpo::MpoWriteContext context = contextOf();
  host::RowRequest request = {48, 640, 480, 12, 3, 3, 1920, 0, 0, 15, 0};
  EXPECT_EQ(mpo::MpoDescribeImage(5, &request, &context, nullptr), 1);
  EXPECT_EQ(+lastCall.user, &rowsGiven);
  EXPECT_THAT(lastCall.numbers, testing::ElementsAre(640, 480, 12, 3, 1, 7, 15));
  EXPECT_EQ(+request.rows, reinterpret_cast<u64>(&rowsGiven));
}

TEST(KnownHost, NamesBehindTheLastBackslashDecide) {
  const struct {
    const char* path;
    bool known;
  } rows[] = {
      {"C:\\Programs\\Kavro Pixel Studio Pro One.exe", true},
      {"C:\\kavro pixel studio pro one 64.exe", true},
      {"C:\\Kavro Pixel Studio Pro On.exe", false},
      {"C:\\Kavro Pixel Studio Pro One\\host.exe", false},
      {"C:\\GALLOpad.exe", true},
      {"C:\\Gall.exe", false},
      {"C:\\qx.exe", true},
      {"C:\\QXedit.exe", true},
      {"\\QX", true},
      {"C:\\aQX.exe", false},
      {"QX.exe", false},
      {"Gallo", false},
      {"C:/Gallo.exe", false},
      {"C:\\", false},
      {"", false},
  };
  for (const auto& row : rows) EXPECT_EQ(mpo::isKnownHost(row.path), row.known) << row.path;
}

host::FileDataRecord recordOf(u32 width, u32 height) {
  host::FileDataRecord record = {};
  record.width = width;
  record.height = height;
  record.bitsPerPixel = 24;
  record.horizontalResolution = 300;
  record.verticalResolution = 301;
  record.colourType = 2;
  return record;
}

TEST(PreviewMark, SmallImagesAndKnownHostsHaveIt) {
  const struct {
    u32 width, height;
    bool known, marked;
  } rows[] = {{2100, 1999, false, true},
              {2100, 2000, false, false},
              {2100, 2000, true, true},
              {4199999, 1, false, true},
              {4200000, 1, false, false},
              {0x10000, 0x10000, false, false},
              {0xFFFFFFFF, 0xFFFFFFFF, false, false},
              {0, 0, false, true}};
  for (const auto& row : rows) {
    host::FileDataRecord record = recordOf(row.width, row.height);
    const host::FileDataRecord before = record;
    mpo::markOwnPreview(record, row.known);
    EXPECT_EQ(record.previewMarker == -2, row.marked) << row.width << " x " << row.height;
    if (!row.marked) {
      EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
    }
  }
}

TEST(PreviewMark, TheFieldsAreTheImages) {
  host::FileDataRecord record = recordOf(10, 10);
  mpo::markOwnPreview(record, false);
  EXPECT_EQ(+record.previewBitsPerPixel, 24u);
  EXPECT_EQ(+record.previewWidth, -1);
  EXPECT_EQ(+record.previewHeight, -1);
  EXPECT_EQ(+record.previewHorizontalResolution, 300u);
  EXPECT_EQ(+record.previewVerticalResolution, 301u);
  EXPECT_EQ(+record.previewColourType, 2u);
}

}  // namespace
