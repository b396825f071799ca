// Heaps of real cameras: the values that other readers print for the same records.
#include <bit>
#include <cmath>
#include <filesystem>

#include "tests/heap/heap_fields.h"
#include "tests/support/file_bytes.h"

namespace {

using namespace test;

const std::filesystem::path folder = std::filesystem::path(KF_SAMPLES) / "ciff";

class CameraFiles : public HeapTest {
 protected:
  void SetUp() override {
    HeapTest::SetUp();
    if (!std::filesystem::is_directory(folder)) {
      GTEST_SKIP() << "the real files are not here: " << folder;
    }
  }
  static Bytes heapOf(const char* name) {
    const Bytes jpeg = support::readFile(folder / name);
    for (const auto& segment : support::segmentsOf(jpeg)) {
      const Bytes& payload = segment.payload;
      if (segment.marker == 0xE0 && payload.size() > 10 &&
          std::equal(payload.begin() + 6, payload.begin() + 10, bytesOf("HEAP").begin())) {
        return payload;
      }
    }
    ADD_FAILURE() << "no heap in " << name;
    return {};
  }
};

// As "exiftool -n" prints them. It shows the shutter speed and the aperture as 2^-Tv seconds and
// 2^(Av/2), and the measured exposure value with 5 added.
struct Picture {
  const char* name;
  host::u32 width, height, fileNumber;
  int year, month, day, hour, minute, second;
  const char *fileName, *thumbnailName, *owner;
  float flashGuide, exposureCompensation, targetDistance;
  double shutterSpeed, aperture, measuredEv;
};
constexpr Picture pictures[] = {
    {"every_segment.jpg", 512, 384, 45, 1998, 5, 1, 21, 33, 18, "C:\\DC97\\CTG_0000\\AUT_0045.JPG",
     "C:\\DC97\\CTG_0000\\THM_0045.JPG", "", 0, 1, 476, 0.0120485220734995, 6.16884330163176,
     16.25},
    {"powershot_a5.jpg", 1024, 768, 7808, 2000, 10, 27, 22, 56, 26,
     "C:\\DC97\\CTG_0156\\AUT_7808.JPG", "C:\\DC97\\CTG_0156\\THM_7808.JPG", "Chris Smith", 2.25, 0,
     361, 0.0340783666457893, 4.75682846001088, 14.375},
};

TEST_F(CameraFiles, GiveTheValuesThatOtherReadersGive) {
  for (const Picture& picture : pictures) {
    SCOPED_TRACE(picture.name);
    PropertyHolder property;
    ASSERT_EQ(property.expand(heapOf(picture.name)), 1);
    const auto number = [&](host::u16 id) {
      const auto field = property.field(id);
      EXPECT_TRUE(field.has_value()) << id;
      return field ? static_cast<host::u32>(field->number) : 0;
    };
    const auto real = [&](host::u16 id) { return std::bit_cast<float>(number(id)); };
    const auto text = [&](host::u16 id) { return property.field(id)->text; };
    EXPECT_EQ(number(5009), 65536U);
    EXPECT_EQ(real(5010), 2.0F);
    EXPECT_EQ(number(5012), picture.width);
    EXPECT_EQ(number(5013), picture.height);
    EXPECT_EQ(real(5014), 1.0F);
    EXPECT_EQ(number(5015), 0U);
    EXPECT_EQ(number(5016), 8U);
    EXPECT_EQ(number(5017), 24U);
    EXPECT_EQ(number(5018), 1U);
    EXPECT_EQ(number(5020), 0U);
    EXPECT_EQ(number(5025), 0U);
    EXPECT_EQ(number(5028), picture.fileNumber);
    EXPECT_EQ(number(5031) & 0xFFFF, static_cast<host::u32>((picture.year - 1980) << 9 |
                                                            picture.month << 5 | picture.day));
    EXPECT_EQ(number(5031) >> 16, static_cast<host::u32>(picture.hour << 11 | picture.minute << 5 |
                                                         picture.second / 2));
    EXPECT_EQ(number(5032), 0U);
    EXPECT_EQ(number(5033), 0U);
    EXPECT_EQ(text(5035), picture.fileName);
    EXPECT_EQ(text(5037), picture.thumbnailName);
    EXPECT_EQ(text(5039), "");
    EXPECT_EQ(number(5042), 0U);
    EXPECT_EQ(number(5047), 1U);
    EXPECT_EQ(real(5055), picture.flashGuide);
    EXPECT_EQ(real(5056), 0.0F);
    EXPECT_EQ(real(5058), picture.exposureCompensation);
    EXPECT_NEAR(std::exp2(-real(5059)), picture.shutterSpeed, 1e-8);
    EXPECT_NEAR(std::exp2(real(5060) / 2), picture.aperture, 1e-6);
    EXPECT_EQ(real(5062), picture.targetDistance);
    EXPECT_EQ(real(5066) + 5, picture.measuredEv);
    EXPECT_EQ(text(5070), picture.owner);
    EXPECT_EQ(text(5072), "Canon");
    EXPECT_EQ(text(5073), "Canon PowerShot A5");
    EXPECT_EQ(number(5079), 100U);
    EXPECT_EQ(text(5084), "Firmware Version 01.00");
  }
}

TEST_F(CameraFiles, MeanTheSameWhenTheyAreWrittenAgain) {
  for (const Picture& picture : pictures) {
    const Bytes heap = heapOf(picture.name);
    const auto model = parsed(heap);
    ASSERT_TRUE(model.has_value());
    EXPECT_EQ(rewritten(heap), model->build());
    EXPECT_EQ(parsed(rewritten(heap))->records, padded(model->records));
  }
}

TEST_F(CameraFiles, TakeAnEditAndKeepEverythingElse) {
  for (const Picture& picture : pictures) {
    PropertyHolder property;
    const Bytes heap = heapOf(picture.name);
    property.addSegment(heap);
    property.addText(5070, "Somebody with quite a long name");
    ASSERT_TRUE(writeBack(property));
    PropertyHolder before;
    PropertyHolder after;
    ASSERT_EQ(before.expand(heap), 1);
    ASSERT_EQ(after.expand(property.heap()), 1);
    const auto old = before.fields();
    const auto now = after.fields();
    ASSERT_EQ(old.size(), now.size());
    for (std::size_t i = 2; i < old.size(); ++i) {
      EXPECT_EQ(now[i].id, old[i].id);
      const bool edited = old[i].id == 5070;
      EXPECT_EQ(now[i].text, edited ? "Somebody with quite a long name" : old[i].text);
      if (old[i].kind != host::kindText) {
        EXPECT_EQ(now[i].number, old[i].number);
      }
    }
  }
}

}  // namespace
