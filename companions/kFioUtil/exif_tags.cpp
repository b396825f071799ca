// The tags of the 0th IFD and of the Exif IFD (EXIF 2.32, clauses 4.6.4 and 4.6.5; TIFF 6.0).
//
// Pointers to other directories are no rows: they mean nothing outside the file they lie in.
#include "companions/kFioUtil/tag_tables.h"

namespace kFioUtil {
namespace {

// How the viewer shows fields 5200 to 5249 goes by their numbers, so those stay as they are.
constexpr bool hasEachFieldOnce(const host::TagDefinition* rows) {
  for (unsigned i = 0; i < host::exifPrimaryRows; ++i) {
    if (rows[i].fieldId != host::fieldExifFirst + i) return false;
  }
  return true;
}

}  // namespace
}  // namespace kFioUtil

using namespace kFioUtil;

constexpr host::TagDefinition _gfnFIOTIFFFORMATDef[host::exifRows] = {
    // Primary group: the Exif IFD.
    define(5200, 0x9000, version),         // ExifVersion
    define(5201, 0xA000, version),         // FlashpixVersion
    define(5202, 0xA001, oneShort),        // ColorSpace
    define(5203, 0x9101, undefined(4)),    // ComponentsConfiguration
    define(5204, 0x9102, rational),        // CompressedBitsPerPixel
    define(5205, 0xA002, shortOrLong),     // PixelXDimension
    define(5206, 0xA003, shortOrLong),     // PixelYDimension
    define(5207, 0x927C, undefined()),     // MakerNote
    define(5208, 0x9286, undefined()),     // UserComment
    define(5209, 0xA004, text(13)),        // RelatedSoundFile
    define(5210, 0x9003, text(20)),        // DateTimeOriginal
    define(5211, 0x9004, text(20)),        // DateTimeDigitized
    define(5212, 0x9290, text()),          // SubSecTime
    define(5213, 0x9291, text()),          // SubSecTimeOriginal
    define(5214, 0x9292, text()),          // SubSecTimeDigitized
    define(5215, 0x829A, rational),        // ExposureTime
    define(5216, 0x829D, rational),        // FNumber
    define(5217, 0x8822, oneShort),        // ExposureProgram
    define(5218, 0x8824, text()),          // SpectralSensitivity
    define(5219, 0x8827, shorts()),        // PhotographicSensitivity
    define(5220, 0x8828, undefined()),     // OECF
    define(5221, 0x9201, signedRational),  // ShutterSpeedValue
    define(5222, 0x9202, rational),        // ApertureValue
    define(5223, 0x9203, signedRational),  // BrightnessValue
    define(5224, 0x9204, signedRational),  // ExposureBiasValue
    define(5225, 0x9205, rational),        // MaxApertureValue
    define(5226, 0x9206, rational),        // SubjectDistance
    define(5227, 0x9207, oneShort),        // MeteringMode
    define(5228, 0x9208, oneShort),        // LightSource
    define(5229, 0x9209, oneShort),        // Flash
    define(5230, 0x920A, rational),        // FocalLength
    define(5231, 0x9214, shorts()),        // SubjectArea
    define(5232, 0xA20B, rational),        // FlashEnergy
    define(5233, 0xA20C, undefined()),     // SpatialFrequencyResponse
    define(5234, 0xA20E, rational),        // FocalPlaneXResolution
    define(5235, 0xA20F, rational),        // FocalPlaneYResolution
    define(5236, 0xA210, oneShort),        // FocalPlaneResolutionUnit
    define(5237, 0xA214, shorts(2)),       // SubjectLocation
    define(5238, 0xA215, rational),        // ExposureIndex
    define(5239, 0xA217, oneShort),        // SensingMethod
    define(5240, 0xA300, undefined(1)),    // FileSource
    define(5241, 0xA301, undefined(1)),    // SceneType
    define(5242, 0xA302, undefined()),     // CFAPattern
    define(5243, 0x8830, oneShort),        // SensitivityType
    define(5244, 0x0001, text()),          // InteroperabilityIndex
    define(5245, 0x0002, version),         // InteroperabilityVersion
    define(5246, 0xA401, oneShort),        // CustomRendered
    define(5247, 0xA402, oneShort),        // ExposureMode
    define(5248, 0xA403, oneShort),        // WhiteBalance
    define(5249, 0xA404, rational),        // DigitalZoomRatio
    define(5250, 0xA405, oneShort),        // FocalLengthIn35mmFilm
    define(5251, 0xA406, oneShort),        // SceneCaptureType
    define(5252, 0xA407, oneShort),        // GainControl
    define(5253, 0xA408, oneShort),        // Contrast
    define(5254, 0xA409, oneShort),        // Saturation
    define(5255, 0xA40A, oneShort),        // Sharpness
    define(5256, 0xA40B, undefined()),     // DeviceSettingDescription
    define(5257, 0xA40C, oneShort),        // SubjectDistanceRange
    define(5258, 0xA420, text(33)),        // ImageUniqueID
    define(5259, 0x8831, oneLong),         // StandardOutputSensitivity
    define(5260, 0x8832, oneLong),         // RecommendedExposureIndex
    define(5261, 0x9010, text(7)),         // OffsetTime
    define(5262, 0x9011, text(7)),         // OffsetTimeOriginal
    define(5263, 0x9012, text(7)),         // OffsetTimeDigitized
    define(5264, 0xA430, text()),          // CameraOwnerName
    define(5265, 0xA431, text()),          // BodySerialNumber
    define(5266, 0xA432, rationals(4)),    // LensSpecification
    define(5267, 0xA433, text()),          // LensMake
    define(5268, 0xA434, text()),          // LensModel
    define(5269, 0xA435, text()),          // LensSerialNumber
    define(5270, 0xA500, rational),        // Gamma
    // Secondary group: the 0th IFD. 4014 stays free, it is the ICC profile's.
    define(4000, 0x0100, shortOrLong),        // ImageWidth
    define(4001, 0x0101, shortOrLong),        // ImageLength
    define(4002, 0x0102, shorts(3)),          // BitsPerSample
    define(4003, 0x0103, oneShort),           // Compression
    define(4004, 0x0106, oneShort),           // PhotometricInterpretation
    define(4005, 0x010E, text()),             // ImageDescription
    define(4006, 0x010F, text()),             // Make
    define(4007, 0x0110, text()),             // Model
    define(4008, 0x0111, shortsOrLongs),      // StripOffsets
    define(4009, 0x0112, oneShort),           // Orientation
    define(4010, 0x0115, oneShort),           // SamplesPerPixel
    define(4011, 0x0116, shortOrLong),        // RowsPerStrip
    define(4012, 0x0117, shortsOrLongs),      // StripByteCounts
    define(4013, 0x011A, rational),           // XResolution
    define(4015, 0x011B, rational),           // YResolution
    define(4016, 0x011C, oneShort),           // PlanarConfiguration
    define(4017, 0x0128, oneShort),           // ResolutionUnit
    define(4018, 0x012D, shorts(3 * 256)),    // TransferFunction
    define(4019, 0x0131, text()),             // Software
    define(4020, 0x0132, text(20)),           // DateTime
    define(4021, 0x013B, text()),             // Artist
    define(4022, 0x013C, text()),             // HostComputer
    define(4023, 0x013E, rationals(2)),       // WhitePoint
    define(4024, 0x013F, rationals(6)),       // PrimaryChromaticities
    define(4025, 0x0211, rationals(3)),       // YCbCrCoefficients
    define(4026, 0x0212, shorts(2)),          // YCbCrSubSampling
    define(4027, 0x0213, oneShort),           // YCbCrPositioning
    define(4028, 0x0214, rationals(6)),       // ReferenceBlackWhite
    define(host::fieldXmp, 0x02BC, bytes()),  // XMP packet (ISO 16684-1)
    define(4038, 0x8298, text()),             // Copyright
    // The Exif IFD's tags for which the primary group has no row left.
    define(4039, 0x8833, oneLong),         // ISOSpeed
    define(4040, 0x8834, oneLong),         // ISOSpeedLatitudeyyy
    define(4041, 0x8835, oneLong),         // ISOSpeedLatitudezzz
    define(4042, 0x9400, signedRational),  // Temperature
    define(4043, 0x9401, rational),        // Humidity
    define(4044, 0x9402, rational),        // Pressure
    define(4045, 0x9403, signedRational),  // WaterDepth
    define(4046, 0x9404, rational),        // Acceleration
    define(4047, 0x9405, signedRational),  // CameraElevationAngle
    define(4048, 0xA460, oneShort),        // CompositeImage
    define(4049, 0xA461, shorts(2)),       // SourceImageNumberOfCompositeImage
    define(4050, 0xA462, undefined()),     // SourceExposureTimesOfCompositeImage
};

static_assert(hasEachFieldOnce(_gfnFIOTIFFFORMATDef));
static_assert(_gfnFIOTIFFFORMATDef[host::exifRows - 1].tag != 0, "every row is filled");
