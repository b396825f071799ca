// Tag names of EXIF 2.32 (tables 4, 7, 8, 15) and TIFF 6.0, dataset names of IIM 4.2 (chapter 6)
// without their blanks.
#include "fiohost/tag_names.h"

#include <algorithm>
#include <array>

namespace fiohost {
namespace {

struct NamedTag {
  const char* name;
  unsigned tag;
};

constexpr std::array exifNames = {
    NamedTag{"InteroperabilityIndex", 0x0001},
    NamedTag{"InteroperabilityVersion", 0x0002},
    NamedTag{"ImageWidth", 0x0100},
    NamedTag{"ImageLength", 0x0101},
    NamedTag{"BitsPerSample", 0x0102},
    NamedTag{"Compression", 0x0103},
    NamedTag{"PhotometricInterpretation", 0x0106},
    NamedTag{"ImageDescription", 0x010E},
    NamedTag{"Make", 0x010F},
    NamedTag{"Model", 0x0110},
    NamedTag{"StripOffsets", 0x0111},
    NamedTag{"Orientation", 0x0112},
    NamedTag{"SamplesPerPixel", 0x0115},
    NamedTag{"RowsPerStrip", 0x0116},
    NamedTag{"StripByteCounts", 0x0117},
    NamedTag{"XResolution", 0x011A},
    NamedTag{"YResolution", 0x011B},
    NamedTag{"PlanarConfiguration", 0x011C},
    NamedTag{"ResolutionUnit", 0x0128},
    NamedTag{"TransferFunction", 0x012D},
    NamedTag{"Software", 0x0131},
    NamedTag{"DateTime", 0x0132},
    NamedTag{"Artist", 0x013B},
    NamedTag{"HostComputer", 0x013C},
    NamedTag{"WhitePoint", 0x013E},
    NamedTag{"PrimaryChromaticities", 0x013F},
    NamedTag{"YCbCrCoefficients", 0x0211},
    NamedTag{"YCbCrSubSampling", 0x0212},
    NamedTag{"YCbCrPositioning", 0x0213},
    NamedTag{"ReferenceBlackWhite", 0x0214},
    NamedTag{"Copyright", 0x8298},
    NamedTag{"ExposureTime", 0x829A},
    NamedTag{"FNumber", 0x829D},
    NamedTag{"ExposureProgram", 0x8822},
    NamedTag{"SpectralSensitivity", 0x8824},
    NamedTag{"PhotographicSensitivity", 0x8827},
    NamedTag{"OECF", 0x8828},
    NamedTag{"SensitivityType", 0x8830},
    NamedTag{"StandardOutputSensitivity", 0x8831},
    NamedTag{"RecommendedExposureIndex", 0x8832},
    NamedTag{"ISOSpeed", 0x8833},
    NamedTag{"ISOSpeedLatitudeyyy", 0x8834},
    NamedTag{"ISOSpeedLatitudezzz", 0x8835},
    NamedTag{"ExifVersion", 0x9000},
    NamedTag{"DateTimeOriginal", 0x9003},
    NamedTag{"DateTimeDigitized", 0x9004},
    NamedTag{"OffsetTime", 0x9010},
    NamedTag{"OffsetTimeOriginal", 0x9011},
    NamedTag{"OffsetTimeDigitized", 0x9012},
    NamedTag{"ComponentsConfiguration", 0x9101},
    NamedTag{"CompressedBitsPerPixel", 0x9102},
    NamedTag{"ShutterSpeedValue", 0x9201},
    NamedTag{"ApertureValue", 0x9202},
    NamedTag{"BrightnessValue", 0x9203},
    NamedTag{"ExposureBiasValue", 0x9204},
    NamedTag{"MaxApertureValue", 0x9205},
    NamedTag{"SubjectDistance", 0x9206},
    NamedTag{"MeteringMode", 0x9207},
    NamedTag{"LightSource", 0x9208},
    NamedTag{"Flash", 0x9209},
    NamedTag{"FocalLength", 0x920A},
    NamedTag{"SubjectArea", 0x9214},
    NamedTag{"MakerNote", 0x927C},
    NamedTag{"UserComment", 0x9286},
    NamedTag{"SubSecTime", 0x9290},
    NamedTag{"SubSecTimeOriginal", 0x9291},
    NamedTag{"SubSecTimeDigitized", 0x9292},
    NamedTag{"Temperature", 0x9400},
    NamedTag{"Humidity", 0x9401},
    NamedTag{"Pressure", 0x9402},
    NamedTag{"WaterDepth", 0x9403},
    NamedTag{"Acceleration", 0x9404},
    NamedTag{"CameraElevationAngle", 0x9405},
    NamedTag{"FlashpixVersion", 0xA000},
    NamedTag{"ColorSpace", 0xA001},
    NamedTag{"PixelXDimension", 0xA002},
    NamedTag{"PixelYDimension", 0xA003},
    NamedTag{"RelatedSoundFile", 0xA004},
    NamedTag{"FlashEnergy", 0xA20B},
    NamedTag{"SpatialFrequencyResponse", 0xA20C},
    NamedTag{"FocalPlaneXResolution", 0xA20E},
    NamedTag{"FocalPlaneYResolution", 0xA20F},
    NamedTag{"FocalPlaneResolutionUnit", 0xA210},
    NamedTag{"SubjectLocation", 0xA214},
    NamedTag{"ExposureIndex", 0xA215},
    NamedTag{"SensingMethod", 0xA217},
    NamedTag{"FileSource", 0xA300},
    NamedTag{"SceneType", 0xA301},
    NamedTag{"CFAPattern", 0xA302},
    NamedTag{"CustomRendered", 0xA401},
    NamedTag{"ExposureMode", 0xA402},
    NamedTag{"WhiteBalance", 0xA403},
    NamedTag{"DigitalZoomRatio", 0xA404},
    NamedTag{"FocalLengthIn35mmFilm", 0xA405},
    NamedTag{"SceneCaptureType", 0xA406},
    NamedTag{"GainControl", 0xA407},
    NamedTag{"Contrast", 0xA408},
    NamedTag{"Saturation", 0xA409},
    NamedTag{"Sharpness", 0xA40A},
    NamedTag{"DeviceSettingDescription", 0xA40B},
    NamedTag{"SubjectDistanceRange", 0xA40C},
    NamedTag{"ImageUniqueID", 0xA420},
    NamedTag{"CameraOwnerName", 0xA430},
    NamedTag{"BodySerialNumber", 0xA431},
    NamedTag{"LensSpecification", 0xA432},
    NamedTag{"LensMake", 0xA433},
    NamedTag{"LensModel", 0xA434},
    NamedTag{"LensSerialNumber", 0xA435},
    NamedTag{"CompositeImage", 0xA460},
    NamedTag{"SourceImageNumberOfCompositeImage", 0xA461},
    NamedTag{"SourceExposureTimesOfCompositeImage", 0xA462},
    NamedTag{"Gamma", 0xA500},
};

constexpr std::array gpsNames = {
    NamedTag{"GPSVersionID", 0x00},       NamedTag{"GPSLatitudeRef", 0x01},
    NamedTag{"GPSLatitude", 0x02},        NamedTag{"GPSLongitudeRef", 0x03},
    NamedTag{"GPSLongitude", 0x04},       NamedTag{"GPSAltitudeRef", 0x05},
    NamedTag{"GPSAltitude", 0x06},        NamedTag{"GPSTimeStamp", 0x07},
    NamedTag{"GPSSatellites", 0x08},      NamedTag{"GPSStatus", 0x09},
    NamedTag{"GPSMeasureMode", 0x0A},     NamedTag{"GPSDOP", 0x0B},
    NamedTag{"GPSSpeedRef", 0x0C},        NamedTag{"GPSSpeed", 0x0D},
    NamedTag{"GPSTrackRef", 0x0E},        NamedTag{"GPSTrack", 0x0F},
    NamedTag{"GPSImgDirectionRef", 0x10}, NamedTag{"GPSImgDirection", 0x11},
    NamedTag{"GPSMapDatum", 0x12},        NamedTag{"GPSDestLatitudeRef", 0x13},
    NamedTag{"GPSDestLatitude", 0x14},    NamedTag{"GPSDestLongitudeRef", 0x15},
    NamedTag{"GPSDestLongitude", 0x16},   NamedTag{"GPSDestBearingRef", 0x17},
    NamedTag{"GPSDestBearing", 0x18},     NamedTag{"GPSDestDistanceRef", 0x19},
    NamedTag{"GPSDestDistance", 0x1A},    NamedTag{"GPSProcessingMethod", 0x1B},
    NamedTag{"GPSAreaInformation", 0x1C}, NamedTag{"GPSDateStamp", 0x1D},
    NamedTag{"GPSDifferential", 0x1E},    NamedTag{"GPSHPositioningError", 0x1F},
};

constexpr std::array iptcNames = {
    NamedTag{"RecordVersion", 0},
    NamedTag{"ObjectName", 5},
    NamedTag{"EditStatus", 7},
    NamedTag{"Urgency", 10},
    NamedTag{"SubjectReference", 12},
    NamedTag{"Category", 15},
    NamedTag{"SupplementalCategory", 20},
    NamedTag{"FixtureIdentifier", 22},
    NamedTag{"Keywords", 25},
    NamedTag{"SpecialInstructions", 40},
    NamedTag{"DateCreated", 55},
    NamedTag{"TimeCreated", 60},
    NamedTag{"By-line", 80},
    NamedTag{"By-lineTitle", 85},
    NamedTag{"City", 90},
    NamedTag{"Sub-location", 92},
    NamedTag{"Province-State", 95},
    NamedTag{"CountryCode", 100},
    NamedTag{"CountryName", 101},
    NamedTag{"OriginalTransmissionReference", 103},
    NamedTag{"Headline", 105},
    NamedTag{"Credit", 110},
    NamedTag{"Source", 115},
    NamedTag{"CopyrightNotice", 116},
    NamedTag{"Contact", 118},
    NamedTag{"Caption-Abstract", 120},
    NamedTag{"Writer-Editor", 122},
};

template <typename Names>
const char* nameIn(const Names& names, unsigned tag) {
  const auto row = std::find_if(names.begin(), names.end(),
                                [tag](const NamedTag& named) { return named.tag == tag; });
  return row != names.end() ? row->name : "";
}

}  // namespace

const char* standardName(PropertyGroup group, unsigned tag) {
  switch (group) {
    case PropertyGroup::image:
    case PropertyGroup::exif:
      return nameIn(exifNames, tag);
    case PropertyGroup::gps:
      return nameIn(gpsNames, tag);
    case PropertyGroup::iptc:
      return nameIn(iptcNames, tag);
    default:
      return "";
  }
}

}  // namespace fiohost
