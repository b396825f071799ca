#include <algorithm>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "host/property_record.h"
#include "host/tag_definition.h"
#include "tests/companions/loaded_module.h"

namespace {

using host::u16;
using host::u32;

// The named columns of a row, at the alignment of their types.
struct Row {
  u16 tag;
  u16 type;
  u16 count;
  u16 kind;
  u16 fieldId;
  u32 labelId;
};
using Rows = std::span<const Row>;

// A tag as EXIF 2.32 lists it. Type 0: SHORT or LONG. Count 0: any.
struct StandardTag {
  const char* name;
  u16 tag;
  u16 type;
  u16 count;
};

// Tables 4, 7, 8 and 22 to 26: the tags whose values belong to the picture. Left out are the
// pointers to directories and the two tags of the thumbnail, which lie in the 1st IFD.
constexpr StandardTag standardTags[] = {
    {"ImageWidth", 0x100, 0, 1},
    {"ImageLength", 0x101, 0, 1},
    {"BitsPerSample", 0x102, 3, 3},
    {"Compression", 0x103, 3, 1},
    {"PhotometricInterpretation", 0x106, 3, 1},
    {"ImageDescription", 0x10E, 2, 0},
    {"Make", 0x10F, 2, 0},
    {"Model", 0x110, 2, 0},
    {"StripOffsets", 0x111, 0, 0},
    {"Orientation", 0x112, 3, 1},
    {"SamplesPerPixel", 0x115, 3, 1},
    {"RowsPerStrip", 0x116, 0, 1},
    {"StripByteCounts", 0x117, 0, 0},
    {"XResolution", 0x11A, 5, 1},
    {"YResolution", 0x11B, 5, 1},
    {"PlanarConfiguration", 0x11C, 3, 1},
    {"ResolutionUnit", 0x128, 3, 1},
    {"TransferFunction", 0x12D, 3, 768},
    {"Software", 0x131, 2, 0},
    {"DateTime", 0x132, 2, 20},
    {"Artist", 0x13B, 2, 0},
    {"WhitePoint", 0x13E, 5, 2},
    {"PrimaryChromaticities", 0x13F, 5, 6},
    {"YCbCrCoefficients", 0x211, 5, 3},
    {"YCbCrSubSampling", 0x212, 3, 2},
    {"YCbCrPositioning", 0x213, 3, 1},
    {"ReferenceBlackWhite", 0x214, 5, 6},
    {"Copyright", 0x8298, 2, 0},
    {"ExposureTime", 0x829A, 5, 1},
    {"FNumber", 0x829D, 5, 1},
    {"ExposureProgram", 0x8822, 3, 1},
    {"SpectralSensitivity", 0x8824, 2, 0},
    {"PhotographicSensitivity", 0x8827, 3, 0},
    {"OECF", 0x8828, 7, 0},
    {"SensitivityType", 0x8830, 3, 1},
    {"StandardOutputSensitivity", 0x8831, 4, 1},
    {"RecommendedExposureIndex", 0x8832, 4, 1},
    {"ISOSpeed", 0x8833, 4, 1},
    {"ISOSpeedLatitudeyyy", 0x8834, 4, 1},
    {"ISOSpeedLatitudezzz", 0x8835, 4, 1},
    {"ExifVersion", 0x9000, 7, 4},
    {"DateTimeOriginal", 0x9003, 2, 20},
    {"DateTimeDigitized", 0x9004, 2, 20},
    {"OffsetTime", 0x9010, 2, 7},
    {"OffsetTimeOriginal", 0x9011, 2, 7},
    {"OffsetTimeDigitized", 0x9012, 2, 7},
    {"ComponentsConfiguration", 0x9101, 7, 4},
    {"CompressedBitsPerPixel", 0x9102, 5, 1},
    {"ShutterSpeedValue", 0x9201, 10, 1},
    {"ApertureValue", 0x9202, 5, 1},
    {"BrightnessValue", 0x9203, 10, 1},
    {"ExposureBiasValue", 0x9204, 10, 1},
    {"MaxApertureValue", 0x9205, 5, 1},
    {"SubjectDistance", 0x9206, 5, 1},
    {"MeteringMode", 0x9207, 3, 1},
    {"LightSource", 0x9208, 3, 1},
    {"Flash", 0x9209, 3, 1},
    {"FocalLength", 0x920A, 5, 1},
    {"SubjectArea", 0x9214, 3, 0},
    {"MakerNote", 0x927C, 7, 0},
    {"UserComment", 0x9286, 7, 0},
    {"SubSecTime", 0x9290, 2, 0},
    {"SubSecTimeOriginal", 0x9291, 2, 0},
    {"SubSecTimeDigitized", 0x9292, 2, 0},
    {"Temperature", 0x9400, 10, 1},
    {"Humidity", 0x9401, 5, 1},
    {"Pressure", 0x9402, 5, 1},
    {"WaterDepth", 0x9403, 10, 1},
    {"Acceleration", 0x9404, 5, 1},
    {"CameraElevationAngle", 0x9405, 10, 1},
    {"FlashpixVersion", 0xA000, 7, 4},
    {"ColorSpace", 0xA001, 3, 1},
    {"PixelXDimension", 0xA002, 0, 1},
    {"PixelYDimension", 0xA003, 0, 1},
    {"RelatedSoundFile", 0xA004, 2, 13},
    {"FlashEnergy", 0xA20B, 5, 1},
    {"SpatialFrequencyResponse", 0xA20C, 7, 0},
    {"FocalPlaneXResolution", 0xA20E, 5, 1},
    {"FocalPlaneYResolution", 0xA20F, 5, 1},
    {"FocalPlaneResolutionUnit", 0xA210, 3, 1},
    {"SubjectLocation", 0xA214, 3, 2},
    {"ExposureIndex", 0xA215, 5, 1},
    {"SensingMethod", 0xA217, 3, 1},
    {"FileSource", 0xA300, 7, 1},
    {"SceneType", 0xA301, 7, 1},
    {"CFAPattern", 0xA302, 7, 0},
    {"CustomRendered", 0xA401, 3, 1},
    {"ExposureMode", 0xA402, 3, 1},
    {"WhiteBalance", 0xA403, 3, 1},
    {"DigitalZoomRatio", 0xA404, 5, 1},
    {"FocalLengthIn35mmFilm", 0xA405, 3, 1},
    {"SceneCaptureType", 0xA406, 3, 1},
    {"GainControl", 0xA407, 3, 1},
    {"Contrast", 0xA408, 3, 1},
    {"Saturation", 0xA409, 3, 1},
    {"Sharpness", 0xA40A, 3, 1},
    {"DeviceSettingDescription", 0xA40B, 7, 0},
    {"SubjectDistanceRange", 0xA40C, 3, 1},
    {"ImageUniqueID", 0xA420, 2, 33},
    {"CameraOwnerName", 0xA430, 2, 0},
    {"BodySerialNumber", 0xA431, 2, 0},
    {"LensSpecification", 0xA432, 5, 4},
    {"LensMake", 0xA433, 2, 0},
    {"LensModel", 0xA434, 2, 0},
    {"LensSerialNumber", 0xA435, 2, 0},
    {"CompositeImage", 0xA460, 3, 1},
    {"SourceImageNumberOfCompositeImage", 0xA461, 3, 2},
    {"SourceExposureTimesOfCompositeImage", 0xA462, 7, 0},
    {"Gamma", 0xA500, 5, 1},
    {"InteroperabilityIndex", 0x0001, 2, 0},
    {"InteroperabilityVersion", 0x0002, 7, 4},
};

// Table 15.
constexpr StandardTag standardGpsTags[] = {
    {"GPSVersionID", 0x00, 1, 4},       {"GPSLatitudeRef", 0x01, 2, 2},
    {"GPSLatitude", 0x02, 5, 3},        {"GPSLongitudeRef", 0x03, 2, 2},
    {"GPSLongitude", 0x04, 5, 3},       {"GPSAltitudeRef", 0x05, 1, 1},
    {"GPSAltitude", 0x06, 5, 1},        {"GPSTimeStamp", 0x07, 5, 3},
    {"GPSSatellites", 0x08, 2, 0},      {"GPSStatus", 0x09, 2, 2},
    {"GPSMeasureMode", 0x0A, 2, 2},     {"GPSDOP", 0x0B, 5, 1},
    {"GPSSpeedRef", 0x0C, 2, 2},        {"GPSSpeed", 0x0D, 5, 1},
    {"GPSTrackRef", 0x0E, 2, 2},        {"GPSTrack", 0x0F, 5, 1},
    {"GPSImgDirectionRef", 0x10, 2, 2}, {"GPSImgDirection", 0x11, 5, 1},
    {"GPSMapDatum", 0x12, 2, 0},        {"GPSDestLatitudeRef", 0x13, 2, 2},
    {"GPSDestLatitude", 0x14, 5, 3},    {"GPSDestLongitudeRef", 0x15, 2, 2},
    {"GPSDestLongitude", 0x16, 5, 3},   {"GPSDestBearingRef", 0x17, 2, 2},
    {"GPSDestBearing", 0x18, 5, 1},     {"GPSDestDistanceRef", 0x19, 2, 2},
    {"GPSDestDistance", 0x1A, 5, 1},    {"GPSProcessingMethod", 0x1B, 7, 0},
    {"GPSAreaInformation", 0x1C, 7, 0}, {"GPSDateStamp", 0x1D, 2, 11},
    {"GPSDifferential", 0x1E, 3, 1},    {"GPSHPositioningError", 0x1F, 5, 1},
};

// What the viewer's rules take a field for.
struct RuledTag {
  const char* name;
  u16 tag;
  u16 fieldId;
};

constexpr RuledTag ruledTags[] = {
    {"ExifVersion", 0x9000, 5200},
    {"FlashpixVersion", 0xA000, 5201},
    {"ColorSpace", 0xA001, 5202},
    {"ComponentsConfiguration", 0x9101, 5203},
    {"CompressedBitsPerPixel", 0x9102, 5204},
    {"MakerNote", 0x927C, 5207},
    {"UserComment", 0x9286, 5208},
    {"DateTimeOriginal", 0x9003, 5210},
    {"DateTimeDigitized", 0x9004, 5211},
    {"ExposureTime", 0x829A, 5215},
    {"FNumber", 0x829D, 5216},
    {"ExposureProgram", 0x8822, 5217},
    {"ShutterSpeedValue", 0x9201, 5221},
    {"ApertureValue", 0x9202, 5222},
    {"BrightnessValue", 0x9203, 5223},
    {"ExposureBiasValue", 0x9204, 5224},
    {"MaxApertureValue", 0x9205, 5225},
    {"SubjectDistance", 0x9206, 5226},
    {"MeteringMode", 0x9207, 5227},
    {"LightSource", 0x9208, 5228},
    {"Flash", 0x9209, 5229},
    {"FocalLength", 0x920A, 5230},
    {"FocalPlaneXResolution", 0xA20E, 5234},
    {"FocalPlaneYResolution", 0xA20F, 5235},
    {"FocalPlaneResolutionUnit", 0xA210, 5236},
    {"SubjectLocation", 0xA214, 5237},
    {"SensingMethod", 0xA217, 5239},
    {"FileSource", 0xA300, 5240},
    {"SceneType", 0xA301, 5241},
    {"InteroperabilityVersion", 0x0002, 5245},
    {"DigitalZoomRatio", 0xA404, 5249},
};

class TagTables : public testing::Test {
 protected:
  [[nodiscard]] std::vector<Row> load(const char* name, std::size_t count) const {
    const auto* first = module_.data<host::TagDefinition>(name);
    EXPECT_NE(first, nullptr) << name;
    std::vector<Row> rows;
    for (const auto* row = first; first != nullptr && row != first + count; ++row) {
      rows.push_back({row->tag, row->type, row->count, row->kind, row->fieldId, row->labelId});
    }
    return rows;
  }
  [[nodiscard]] Rows exif() const { return exif_; }
  [[nodiscard]] Rows gps() const { return gps_; }
  [[nodiscard]] Rows iptc() const { return iptc_; }

  static const Row* find(Rows rows, u16 tag) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [tag](const Row& row) { return row.tag == tag; });
    return found != rows.end() ? &*found : nullptr;
  }
  static void expectAsTheStandardSays(Rows rows, std::span<const StandardTag> tags) {
    for (const StandardTag& tag : tags) {
      const Row* row = find(rows, tag.tag);
      ASSERT_NE(row, nullptr) << tag.name;
      EXPECT_EQ(row->type, tag.type) << tag.name;
      EXPECT_EQ(row->count, tag.count) << tag.name;
    }
  }
  // No value may lose a part: only one number of the right width fits into a descriptor.
  static void expectRoomForTheWholeValue(Rows rows) {
    for (const Row& row : rows) {
      switch (row.kind) {
        case host::kindText:
          EXPECT_TRUE(row.type == 2 || row.type == 7) << std::hex << row.tag;
          break;
        case host::kindNumber32:
          EXPECT_EQ(row.count, 1) << std::hex << row.tag;
          EXPECT_TRUE(row.type == 0 || row.type == 4) << std::hex << row.tag;
          break;
        case host::kindNumber16:
          EXPECT_EQ(row.count, 1) << std::hex << row.tag;
          EXPECT_TRUE(row.type == 1 || row.type == 3) << std::hex << row.tag;
          break;
        default:
          EXPECT_EQ(row.kind, host::kindBlock) << std::hex << row.tag;
          EXPECT_NE(row.type, 2) << std::hex << row.tag << " is a text";
      }
    }
  }
  static void expectUnique(Rows rows) {
    std::set<u16> tags;
    std::set<u16> fields;
    for (const Row& row : rows) {
      EXPECT_TRUE(tags.insert(row.tag).second) << "tag " << std::hex << row.tag;
      EXPECT_TRUE(fields.insert(row.fieldId).second) << "field " << row.fieldId;
    }
  }

  test::LoadedModule module_{"fio/kFioUtil.dll"};
  const std::vector<Row> exif_ = load("_gfnFIOTIFFFORMATDef", 113);
  const std::vector<Row> gps_ = load("_gfnFIOGPSExifDef", 32);
  const std::vector<Row> iptc_ = load("_gfnIPTCRecordEntry", 27);
};

TEST_F(TagTables, HoldEachTagAndEachFieldOnce) {
  expectUnique(exif());
  expectUnique(gps());
  expectUnique(iptc());
}

TEST_F(TagTables, NumberThePrimaryGroupInOrder) {
  const Rows primary = exif().first(71);
  for (std::size_t i = 0; i < primary.size(); ++i) EXPECT_EQ(primary[i].fieldId, 5200 + i);
}

TEST_F(TagTables, NumberTheSecondaryGroupAsHostFields) {
  for (const Row& row : exif().subspan(71)) {
    EXPECT_GE(row.fieldId, 4000);
    EXPECT_LE(row.fieldId, 4099);
    EXPECT_NE(row.fieldId, host::fieldIcc) << "an ICC profile lies in APP2, not in a directory";
    EXPECT_EQ(row.fieldId == host::fieldXmp, row.tag == 0x02BC);
  }
}

TEST_F(TagTables, HoldEveryTagOfTheExifStandard) {
  expectAsTheStandardSays(exif(), standardTags);
  EXPECT_NE(find(exif(), 0x02BC), nullptr) << "XMP";
}

TEST_F(TagTables, HoldThe0thIfdInTheSecondaryGroupOnly) {
  for (const StandardTag& tag : standardTags) {
    if (tag.tag < 0x100 || tag.tag > 0x8298) continue;
    EXPECT_NE(find(exif().subspan(71), tag.tag), nullptr) << tag.name;
  }
}

TEST_F(TagTables, HoldEveryGpsTagInTheRowOfItsNumber) {
  expectAsTheStandardSays(gps(), standardGpsTags);
  for (std::size_t i = 0; i < gps().size(); ++i) {
    EXPECT_EQ(gps()[i].tag, i);
    EXPECT_EQ(gps()[i].fieldId, 5300 + i);
  }
}

TEST_F(TagTables, HoldNoPointerToADirectory) {
  constexpr u16 pointers[] = {0x8769, 0x8825, 0xA005, 0x014A, 0x0201, 0x0202, 0x8649, 0x83BB};
  for (const u16 pointer : pointers) {
    EXPECT_EQ(find(exif(), pointer), nullptr) << std::hex << pointer;
  }
}

TEST_F(TagTables, GiveTheViewersRulesTheirTags) {
  for (const RuledTag& rule : ruledTags) {
    const Row* row = find(exif(), rule.tag);
    ASSERT_NE(row, nullptr) << rule.name;
    EXPECT_EQ(row->fieldId, rule.fieldId) << rule.name;
  }
}

TEST_F(TagTables, KeepVersionsAsText) {
  for (const std::size_t row : {0U, 1U, 45U}) {
    EXPECT_EQ(exif()[row].kind, host::kindText);
    EXPECT_EQ(exif()[row].type, 7);
    EXPECT_EQ(exif()[row].count, 4);
  }
}

TEST_F(TagTables, KeepWholeValues) {
  expectRoomForTheWholeValue(exif());
  expectRoomForTheWholeValue(gps());
}

TEST_F(TagTables, HoldTheDatasetsOfTheApplicationRecord) {
  const Rows rows = iptc();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].fieldId, 5600 + i);
    EXPECT_EQ(rows[i].kind, host::kindText);
    EXPECT_LE(rows[i].tag, 255);
  }
  EXPECT_EQ(rows[0].tag, 0) << "the record version is the first row";
}

TEST_F(TagTables, GiveLabelledDatasetsTheirLabels) {
  constexpr u16 labelled[][2] = {
      {0, 2400},   {5, 2401},   {10, 2402},  {15, 2403},  {20, 2404},  {25, 2405},  {40, 2406},
      {55, 2407},  {80, 2408},  {85, 2409},  {90, 2410},  {95, 2411},  {100, 2412}, {101, 2412},
      {103, 2413}, {105, 2414}, {110, 2415}, {115, 2416}, {116, 2417}, {120, 2418}, {122, 2419}};
  for (const auto& [dataset, label] : labelled) {
    const Row* row = find(iptc(), dataset);
    ASSERT_NE(row, nullptr) << dataset;
    EXPECT_EQ(row->labelId, label) << dataset;
  }
}

// A label is loaded into 60 bytes.
TEST_F(TagTables, HaveALabelForEveryRow) {
  const test::LoadedModule resources("KFRES.DLL");
  for (const Rows rows : {exif(), gps(), iptc()}) {
    for (const Row& row : rows) {
      char label[260] = {};
      EXPECT_GT(LoadStringA(resources.handle(), row.labelId, label, sizeof(label)), 0)
          << "string " << row.labelId;
      EXPECT_LT(std::string(label).size(), 60U) << label;
    }
  }
}

TEST_F(TagTables, LabelTheRowsOfATableDifferently) {
  const test::LoadedModule resources("KFRES.DLL");
  for (const Rows rows : {exif(), gps()}) {
    std::set<std::string> labels;
    for (const Row& row : rows) {
      char label[260] = {};
      LoadStringA(resources.handle(), row.labelId, label, sizeof(label));
      EXPECT_TRUE(labels.insert(label).second) << label;
    }
  }
}

}  // namespace
