// The tags of the GPS IFD (EXIF 2.32, clause 4.6.6), each in the row of its own number.
#include "companions/kFioUtil/tag_tables.h"

namespace kFioUtil {
namespace {

constexpr host::TagDefinition defineGps(host::u16 tag, ValueForm form) {
  return define(static_cast<host::u16>(host::fieldGpsFirst + tag), tag, form);
}

}  // namespace
}  // namespace kFioUtil

using namespace kFioUtil;

constexpr host::TagDefinition _gfnFIOGPSExifDef[host::gpsRows] = {
    defineGps(0x00, bytes(4)),      // GPSVersionID
    defineGps(0x01, text(2)),       // GPSLatitudeRef
    defineGps(0x02, rationals(3)),  // GPSLatitude
    defineGps(0x03, text(2)),       // GPSLongitudeRef
    defineGps(0x04, rationals(3)),  // GPSLongitude
    defineGps(0x05, oneByte),       // GPSAltitudeRef
    defineGps(0x06, rational),      // GPSAltitude
    defineGps(0x07, rationals(3)),  // GPSTimeStamp
    defineGps(0x08, text()),        // GPSSatellites
    defineGps(0x09, text(2)),       // GPSStatus
    defineGps(0x0A, text(2)),       // GPSMeasureMode
    defineGps(0x0B, rational),      // GPSDOP
    defineGps(0x0C, text(2)),       // GPSSpeedRef
    defineGps(0x0D, rational),      // GPSSpeed
    defineGps(0x0E, text(2)),       // GPSTrackRef
    defineGps(0x0F, rational),      // GPSTrack
    defineGps(0x10, text(2)),       // GPSImgDirectionRef
    defineGps(0x11, rational),      // GPSImgDirection
    defineGps(0x12, text()),        // GPSMapDatum
    defineGps(0x13, text(2)),       // GPSDestLatitudeRef
    defineGps(0x14, rationals(3)),  // GPSDestLatitude
    defineGps(0x15, text(2)),       // GPSDestLongitudeRef
    defineGps(0x16, rationals(3)),  // GPSDestLongitude
    defineGps(0x17, text(2)),       // GPSDestBearingRef
    defineGps(0x18, rational),      // GPSDestBearing
    defineGps(0x19, text(2)),       // GPSDestDistanceRef
    defineGps(0x1A, rational),      // GPSDestDistance
    defineGps(0x1B, undefined()),   // GPSProcessingMethod
    defineGps(0x1C, undefined()),   // GPSAreaInformation
    defineGps(0x1D, text(11)),      // GPSDateStamp
    defineGps(0x1E, oneShort),      // GPSDifferential
    defineGps(0x1F, rational),      // GPSHPositioningError
};

static_assert(_gfnFIOGPSExifDef[host::gpsRows - 1].tag == host::gpsRows - 1);
