// The file-data record: how one image file is described to the host. It travels with the image
// through every entry point. Movable global memory; whoever receives it owns it.
#pragma once

#include "host/types.h"

namespace host {

#pragma pack(push, 1)

// The part that JPEG and MPO records share, up to the format's tail at offset 746.
struct FileDataRecord {
  u8 gap0[4];
  char ansiPath[260];  // source path, NUL-terminated; empty = none
  u8 gap264[296];
  u32 version;
  u8 gap564[8];
  u32 count572;
  u32 count576;
  u32 kind;
  u32 reserved584;
  u32 bitsPerPixel;
  u32 width;   // pixels
  u32 height;  // pixels
  u32 horizontalResolution;
  u32 verticalResolution;
  u32 colourType;  // see ColourType
  u32 reserved612;
  u32 reserved616;
  i32 previewMarker;  // previewIsImage: the image is its own preview
  u32 previewBitsPerPixel;
  i32 previewWidth;   // pixels, -1 = unknown
  i32 previewHeight;  // pixels, -1 = unknown
  u32 previewHorizontalResolution;
  u32 previewVerticalResolution;
  u32 previewColourType;
  u8 gap648[8];
  u64 reserved656;
  u64 reserved664;
  u8 gap672[18];
  u16 reserved690;
  u32 tailKind;
  u8 gap696[4];
  i32 componentCode;  // -2 for four components, else -1
  u32 reserved704;
  u8 gap708[4];
  u16 pathFlags;  // bit 0: widePath is set
  u8 gap714[2];
  u64 widePath;  // address of a NUL-terminated wide path that the host owns
  u8 gap724[10];
  u16 imageCount;  // MPO only
  u8 gap736;
  u8 isMultiPicture;   // MPO only
  u64 propertyRecord;  // global memory handle, or 0
};

// The options and places that a JPEG record carries behind the common part (record offset 746).
struct JpegTail {
  u32 tag;
  u16 size;
  u32 quality;
  u32 colourSpace;
  u16 markerFlags;  // see MarkerFlag
  u32 mode;
  u32 sample;
  u32 jfif;
  u32 heapPresent;
  u32 heapOffset;  // of the segment's payload, from the start of the image
  u32 heapLength;  // bytes of payload
  u32 exifPresent;
  u32 exifOffset;
  u32 exifLength;
  u32 iptcPresent;
  u32 iptcOffset;
  u32 iptcLength;
  u32 scanned;
};

struct JpegFileData {
  FileDataRecord record;
  JpegTail tail;
};

#pragma pack(pop)

inline constexpr u32 jpegTailTag = 0x4750454A;  // "JEPG" in memory: the host's own transposition
inline constexpr u32 mpoTailTag = 0x4D504600;
inline constexpr u16 tailSizeWord = 400;
inline constexpr u32 fileDataVersion = 0x10001;
inline constexpr i32 previewIsImage = -2;
inline constexpr u16 pathFlagWide = 1;

enum ColourType : u32 {
  colourUnserved = 0,
  colourFourComponents = 1,
  colourTrue = 2,
  colourGrey = 32
};

enum MarkerFlag : u16 { markerAdobe = 1, markerJfif = 2, markerProgressive = 0x1000 };

HOST_FIELD_AT(FileDataRecord, ansiPath, 4);
HOST_FIELD_AT(FileDataRecord, version, 560);
HOST_FIELD_AT(FileDataRecord, count572, 572);
HOST_FIELD_AT(FileDataRecord, count576, 576);
HOST_FIELD_AT(FileDataRecord, kind, 580);
HOST_FIELD_AT(FileDataRecord, reserved584, 584);
HOST_FIELD_AT(FileDataRecord, bitsPerPixel, 588);
HOST_FIELD_AT(FileDataRecord, width, 592);
HOST_FIELD_AT(FileDataRecord, height, 596);
HOST_FIELD_AT(FileDataRecord, horizontalResolution, 600);
HOST_FIELD_AT(FileDataRecord, verticalResolution, 604);
HOST_FIELD_AT(FileDataRecord, colourType, 608);
HOST_FIELD_AT(FileDataRecord, reserved612, 612);
HOST_FIELD_AT(FileDataRecord, reserved616, 616);
HOST_FIELD_AT(FileDataRecord, previewMarker, 620);
HOST_FIELD_AT(FileDataRecord, previewBitsPerPixel, 624);
HOST_FIELD_AT(FileDataRecord, previewWidth, 628);
HOST_FIELD_AT(FileDataRecord, previewHeight, 632);
HOST_FIELD_AT(FileDataRecord, previewHorizontalResolution, 636);
HOST_FIELD_AT(FileDataRecord, previewVerticalResolution, 640);
HOST_FIELD_AT(FileDataRecord, previewColourType, 644);
HOST_FIELD_AT(FileDataRecord, reserved656, 656);
HOST_FIELD_AT(FileDataRecord, reserved664, 664);
HOST_FIELD_AT(FileDataRecord, reserved690, 690);
HOST_FIELD_AT(FileDataRecord, tailKind, 692);
HOST_FIELD_AT(FileDataRecord, componentCode, 700);
HOST_FIELD_AT(FileDataRecord, reserved704, 704);
HOST_FIELD_AT(FileDataRecord, pathFlags, 712);
HOST_FIELD_AT(FileDataRecord, widePath, 716);
HOST_FIELD_AT(FileDataRecord, imageCount, 734);
HOST_FIELD_AT(FileDataRecord, isMultiPicture, 737);
HOST_FIELD_AT(FileDataRecord, propertyRecord, 738);
HOST_RECORD_SIZE(FileDataRecord, 746);

HOST_FIELD_AT(JpegFileData, tail.tag, 746);
HOST_FIELD_AT(JpegFileData, tail.size, 750);
HOST_FIELD_AT(JpegFileData, tail.quality, 752);
HOST_FIELD_AT(JpegFileData, tail.colourSpace, 756);
HOST_FIELD_AT(JpegFileData, tail.markerFlags, 760);
HOST_FIELD_AT(JpegFileData, tail.mode, 762);
HOST_FIELD_AT(JpegFileData, tail.sample, 766);
HOST_FIELD_AT(JpegFileData, tail.jfif, 770);
HOST_FIELD_AT(JpegFileData, tail.heapPresent, 774);
HOST_FIELD_AT(JpegFileData, tail.heapOffset, 778);
HOST_FIELD_AT(JpegFileData, tail.heapLength, 782);
HOST_FIELD_AT(JpegFileData, tail.exifPresent, 786);
HOST_FIELD_AT(JpegFileData, tail.exifOffset, 790);
HOST_FIELD_AT(JpegFileData, tail.exifLength, 794);
HOST_FIELD_AT(JpegFileData, tail.iptcPresent, 798);
HOST_FIELD_AT(JpegFileData, tail.iptcOffset, 802);
HOST_FIELD_AT(JpegFileData, tail.iptcLength, 806);
HOST_FIELD_AT(JpegFileData, tail.scanned, 810);
HOST_RECORD_SIZE(JpegFileData, 814);

}  // namespace host
