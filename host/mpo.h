// The MPO part of a file-data record and the records of the MPO write (CIPA DC-007 contents in the
// host's layout).
#pragma once

#include "host/file_data.h"

namespace host {

#pragma pack(push, 1)

// What the codec reported of one image.
struct MpoImageInfo {
  u32 decoded;      // 1 once the image's header has been read
  u32 colourSpace;  // codec colour-space code
  u16 markerFlags;  // see MarkerFlag
  u32 resolution;   // default resolution
  u32 densityUnit;
  u32 width;   // pixels
  u32 height;  // pixels
};

// A rational of a signed or unsigned tag, as its two words stand in the file.
struct MpoRational {
  u32 numerator;
  u32 denominator;
};

// The values of the MP attribute tags, in the order that every record holds them.
struct MpoAttributes {
  u32 panOrientation;
  MpoRational panOverlapHorizontal;
  MpoRational panOverlapVertical;
  u32 baseViewpoint;
  MpoRational convergenceAngle;
  MpoRational baselineLength;
  MpoRational verticalDivergence;
  MpoRational axisDistanceX;
  MpoRational axisDistanceY;
  MpoRational axisDistanceZ;
  MpoRational yawAngle;
  MpoRational pitchAngle;
  MpoRational rollAngle;
};

inline constexpr u32 mpoUidLength = 33;

// The parsed MP index.
struct MpoList {
  u32 kind;     // see MpoKind
  u32 version;  // the four value bytes as a number in the segment's byte order
  u32 totalFrames;
  u32 imageCount;
  u64 entries;  // nonzero: the entry array behind this header is filled
  MpoImageInfo firstImage;
  u32 heapPresent;
  u8 gap54[12];
  u32 heapOffset;
  u32 heapLength;
  u32 exifPresent;
  u8 gap78[12];
  u32 exifOffset;
  u32 exifLength;
  u32 iptcPresent;
  u8 gap102[12];
  u32 iptcOffset;
  u32 iptcLength;
  u32 scanned;
  u8 gap126[177];
};

struct MpoEntry {
  u32 dependentParent;
  u32 dependentChild;
  u32 representative;
  u8 dataFormat;   // 0 = JPEG
  i32 dependent1;  // index in the entry array, or -1
  i32 dependent2;
  u32 typeClass;
  u32 typeSubCode;
  MpoImageInfo image;
  u32 fileOffset;  // of the image's SOI, from the start of the file
  u32 size;        // bytes
  u32 flags;       // see MpoPresence
  MpoAttributes attributes;
  u8 uid[mpoUidLength];
  u8 gap196[3];
  i32 imageNumber;  // MP Individual Image Number - 1, or -1
  u32 version;
  u8 gap207[96];
};

inline constexpr u32 mpoMostImages = 127;

struct MpoFileData {
  FileDataRecord record;
  u32 tag;
  u16 tailSize;
  MpoList list;
  MpoEntry entries[mpoMostImages];
  u8 gap39536[257];
};

// The description of one image that the writer asks the host for.
struct MpoImageDesc {
  u32 dependentParent;
  u32 dependentChild;
  u32 representative;
  u8 dataFormat;
  u16 dependent1;  // entry number, 1-based
  u16 dependent2;
  u8 typeClass;
  u8 typeSubCode;
  u8 gap19[2];
  u32 flags;
  MpoAttributes attributes;
  u8 uid[mpoUidLength];
  u8 gap154[99];
};

// Answer to the count question.
struct MpoCountAnswer {
  u32 imageCount;
  u32 position;
};

#pragma pack(pop)

enum MpoKind : u32 {
  mpoOther = 0,
  mpoLargeThumbnailVga = 1,
  mpoLargeThumbnailFullHd = 2,
  mpoPanorama = 3,
  mpoDisparity = 4,
  mpoMultiAngle = 5,
  mpoBaselinePrimary = 6,
};

// Which values of an entry or a description are there.
enum MpoPresence : u32 {
  presencePanOrientation = 0x80000000,
  presencePanOverlapHorizontal = 0x40000000,  // asked for when writing, never set when reading
  presencePanOverlapVertical = 0x20000000,
  presenceBaseViewpoint = 0x10000000,
  presenceConvergenceAngle = 0x08000000,
  presenceBaselineLength = 0x04000000,
  presenceVerticalDivergence = 0x02000000,
  presenceAxisDistanceX = 0x01000000,
  presenceAxisDistanceY = 0x00800000,
  presenceAxisDistanceZ = 0x00400000,
  presenceYawAngle = 0x00200000,
  presencePitchAngle = 0x00100000,
  presenceRollAngle = 0x00080000,
  presenceUniqueId = 0x00040000,  // when writing: on the first image, for all of them
};

// What the host's request callback is called for.
enum MpoRequest : i32 {
  requestHeader = 1,     // reading: an ImageRequest announces an image
  requestRows = 2,       // reading: a RowRequest brings rows
  requestQuestion = 4,   // writing: an ImageRequest asks a question
  requestRowSource = 5,  // writing: a RowRequest asks for rows
};

// Questions of the MPO write (ImageRequest::question).
inline constexpr u32 questionImageDesc = 0x475860;
inline constexpr u32 questionCount = 0x475861;

HOST_RECORD_SIZE(MpoImageInfo, 26);
HOST_FIELD_AT(MpoImageInfo, markerFlags, 8);
HOST_FIELD_AT(MpoImageInfo, resolution, 10);
HOST_FIELD_AT(MpoImageInfo, densityUnit, 14);
HOST_FIELD_AT(MpoImageInfo, width, 18);
HOST_FIELD_AT(MpoImageInfo, height, 22);
HOST_FIELD_AT(MpoList, kind, 0);
HOST_FIELD_AT(MpoList, version, 4);
HOST_FIELD_AT(MpoList, totalFrames, 8);
HOST_FIELD_AT(MpoList, imageCount, 12);
HOST_FIELD_AT(MpoList, entries, 16);
HOST_FIELD_AT(MpoList, firstImage, 24);
HOST_RECORD_SIZE(MpoList, 303);
HOST_FIELD_AT(MpoEntry, dependentParent, 0);
HOST_FIELD_AT(MpoEntry, dependentChild, 4);
HOST_FIELD_AT(MpoEntry, representative, 8);
HOST_FIELD_AT(MpoEntry, dataFormat, 12);
HOST_FIELD_AT(MpoEntry, dependent1, 13);
HOST_FIELD_AT(MpoEntry, dependent2, 17);
HOST_FIELD_AT(MpoEntry, typeClass, 21);
HOST_FIELD_AT(MpoEntry, typeSubCode, 25);
HOST_FIELD_AT(MpoEntry, image, 29);
HOST_FIELD_AT(MpoEntry, fileOffset, 55);
HOST_FIELD_AT(MpoEntry, size, 59);
HOST_FIELD_AT(MpoEntry, flags, 63);
HOST_FIELD_AT(MpoEntry, attributes.panOrientation, 67);
HOST_FIELD_AT(MpoEntry, attributes.panOverlapHorizontal, 71);
HOST_FIELD_AT(MpoEntry, attributes.panOverlapVertical, 79);
HOST_FIELD_AT(MpoEntry, attributes.baseViewpoint, 87);
HOST_FIELD_AT(MpoEntry, attributes.convergenceAngle, 91);
HOST_FIELD_AT(MpoEntry, attributes.baselineLength, 99);
HOST_FIELD_AT(MpoEntry, attributes.verticalDivergence, 107);
HOST_FIELD_AT(MpoEntry, attributes.axisDistanceX, 115);
HOST_FIELD_AT(MpoEntry, attributes.axisDistanceY, 123);
HOST_FIELD_AT(MpoEntry, attributes.axisDistanceZ, 131);
HOST_FIELD_AT(MpoEntry, attributes.yawAngle, 139);
HOST_FIELD_AT(MpoEntry, attributes.pitchAngle, 147);
HOST_FIELD_AT(MpoEntry, attributes.rollAngle, 155);
HOST_FIELD_AT(MpoEntry, uid, 163);
HOST_FIELD_AT(MpoEntry, imageNumber, 199);
HOST_FIELD_AT(MpoEntry, version, 203);
HOST_RECORD_SIZE(MpoEntry, 303);
HOST_FIELD_AT(MpoFileData, tag, 746);
HOST_FIELD_AT(MpoFileData, tailSize, 750);
HOST_FIELD_AT(MpoFileData, list, 752);
HOST_FIELD_AT(MpoFileData, list.imageCount, 764);
HOST_FIELD_AT(MpoFileData, list.entries, 768);
HOST_FIELD_AT(MpoFileData, list.firstImage.markerFlags, 784);
HOST_FIELD_AT(MpoFileData, list.heapPresent, 802);
HOST_FIELD_AT(MpoFileData, list.heapOffset, 818);
HOST_FIELD_AT(MpoFileData, list.heapLength, 822);
HOST_FIELD_AT(MpoFileData, list.exifPresent, 826);
HOST_FIELD_AT(MpoFileData, list.exifOffset, 842);
HOST_FIELD_AT(MpoFileData, list.exifLength, 846);
HOST_FIELD_AT(MpoFileData, list.iptcPresent, 850);
HOST_FIELD_AT(MpoFileData, list.iptcOffset, 866);
HOST_FIELD_AT(MpoFileData, list.iptcLength, 870);
HOST_FIELD_AT(MpoFileData, list.scanned, 874);
HOST_FIELD_AT(MpoFileData, entries, 1055);
HOST_RECORD_SIZE(MpoFileData, 39793);
HOST_FIELD_AT(MpoImageDesc, dependentParent, 0);
HOST_FIELD_AT(MpoImageDesc, dependentChild, 4);
HOST_FIELD_AT(MpoImageDesc, representative, 8);
HOST_FIELD_AT(MpoImageDesc, dataFormat, 12);
HOST_FIELD_AT(MpoImageDesc, dependent1, 13);
HOST_FIELD_AT(MpoImageDesc, dependent2, 15);
HOST_FIELD_AT(MpoImageDesc, typeClass, 17);
HOST_FIELD_AT(MpoImageDesc, typeSubCode, 18);
HOST_FIELD_AT(MpoImageDesc, flags, 21);
HOST_FIELD_AT(MpoImageDesc, attributes.panOrientation, 25);
HOST_FIELD_AT(MpoImageDesc, attributes.panOverlapHorizontal, 29);
HOST_FIELD_AT(MpoImageDesc, attributes.baseViewpoint, 45);
HOST_FIELD_AT(MpoImageDesc, attributes.convergenceAngle, 49);
HOST_FIELD_AT(MpoImageDesc, attributes.baselineLength, 57);
HOST_FIELD_AT(MpoImageDesc, attributes.rollAngle, 113);
HOST_FIELD_AT(MpoImageDesc, uid, 121);
HOST_RECORD_SIZE(MpoImageDesc, 253);

}  // namespace host
