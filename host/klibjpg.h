// klibjpg.dll: the JPEG codec.
#pragma once

#include "host/types.h"
#include "platform/companion_call.h"

namespace host {

#pragma pack(push, 1)

// Image information on describing, image header on reading and writing. For a JPEG that is being
// written the two middle words are 0 and the last word holds the bytes per pixel.
struct ImageHeader {
  u32 size;  // 32, or 56 when ExtraInformation follows
  u32 width;
  u32 height;
  u32 colourSpace;  // see CodecColourSpace
  u32 densityUnit;  // 0 none, 1 per inch, 2 per centimetre
  u32 horizontalResolution;
  u32 verticalResolution;
  u32 components;
};

struct ExtraInformation {
  u32 size;  // 24, set by the caller
  u8 gap4[4];
  u32 mode;    // 0 baseline or extended sequential, 1 progressive
  u32 sample;  // see ChromaSampling
  u32 jfif;    // a JFIF segment was seen
  u32 progressive;
};

struct ImageHeaderWithExtra {
  ImageHeader header;
  ExtraInformation extra;
};

// One row travelling through event 3.
struct RowBlock {
  u32 size;  // 40
  u32 row;
  u32 width;        // pixels
  u32 imageHeight;  // rows
  u32 bytesPerPixel;
  u8 gap20[4];
  u32 byteCount;
  u8 gap28[4];
  u8* pixels;
};

// One application segment found while reading (event 5).
struct SegmentRecord {
  u16 kind;  // 1
  u16 appNumber;
  u32 payloadOffset;  // from the start of the stream
  i32 payloadLength;  // without the two length bytes
  u8 gap12[4];
  const u8* payload;
};

// The answer to "how many segments" while writing (event 4).
struct SegmentCountBlock {
  u32 count;
  u8 gap4[20];
};

// The answer to "segment n" while writing (event 5).
struct SegmentBlock {
  u8 gap0[4];
  u16 kind;  // 1
  u16 appNumber;
  u32 index;  // n, counted from 1; set by the codec
  u32 payloadLength;
  const u8* payload;
};

// Both halves of the codec's conversation: what it is given to call back.
using CodecEventCallback = u32(void* context, u32 event, u64 unused, void* block);
struct CodecCallback {
  void* context;
  CodecEventCallback* callback;
};

// JPEG data in memory; on writing, length is the capacity going in and the size coming out.
struct StreamDescriptor {
  u32 length;
  u8 gap4[4];
  u8* data;
};

// A whole picture in memory.
struct StreamImage {
  u32 size;  // 48
  u32 width;
  u32 height;
  u32 colourSpace;  // 0 on reading, 3 on writing
  u32 densityUnit;  // 3 on reading, 0 on writing
  u32 horizontalResolution;
  u32 verticalResolution;
  u32 bytesPerPixel;
  u32 stride;      // bytes
  u32 bufferSize;  // bytes
  u8* pixels;
};

// Returns inputMore after a full buffer and inputLast after the last (short or failed) read.
using CodecInputFunction = int(void* context, u32* count, u8** buffer);
struct InputDescriptor {
  u32 size;  // 24
  u8 gap4[4];
  void* context;
  CodecInputFunction* read;
};

// Returns 1 when the bytes are written, another value when not.
using CodecOutputFunction = int(HANDLE file, u32 byteCount, const void* bytes);
struct OutputDescriptor {
  u32 size;  // 24
  u8 gap4[4];
  HANDLE file;
  CodecOutputFunction* write;
};

struct WriteOptions {
  u32 size;  // 24; the thumbnail encoder leaves it 0
  u32 quality;
  u32 mode;
  u32 sample;
  u32 jfif;
  u32 reserved20;
};

#pragma pack(pop)

enum CodecColourSpace : u32 {
  codecOther = 0,
  codecGrey = 1,
  codecColour = 3,
  codecFourComponents = 5
};
enum ChromaSampling : u32 { sample444 = 0, sample422 = 1, sample420 = 2, sample411 = 3 };
enum EncodingMode : u32 { modeBaseline = 0, modeProgressive = 1 };

// Event numbers of the codec's callbacks.
enum CodecEvent : u32 {
  eventHeader = 2,
  eventRow = 3,
  eventMarker = 4,         // reading: a marker
  eventCountSegments = 4,  // writing: how many segments
  eventSegment = 5,
};

// Answers to events and results of codec calls.
enum CodecAnswer : i32 {
  codecGoOn = 1,
  codecHeaderOnly = 2,  // to event 2 on reading: leave out the pixels
  codecStopped = -1,
  codecNoRowBuffer = -102,
  codecBadMpfSegment = -104,
  codecOutputFailed = -106,
  codecNoRows = -109,
};

inline constexpr int inputMore = 1;
inline constexpr int inputLast = 8;

HOST_FIELD_AT(ImageHeader, width, 4);
HOST_FIELD_AT(ImageHeader, height, 8);
HOST_FIELD_AT(ImageHeader, colourSpace, 12);
HOST_FIELD_AT(ImageHeader, densityUnit, 16);
HOST_FIELD_AT(ImageHeader, horizontalResolution, 20);
HOST_FIELD_AT(ImageHeader, verticalResolution, 24);
HOST_FIELD_AT(ImageHeader, components, 28);
HOST_RECORD_SIZE(ImageHeader, 32);
HOST_FIELD_AT(ExtraInformation, mode, 8);
HOST_FIELD_AT(ExtraInformation, sample, 12);
HOST_FIELD_AT(ExtraInformation, jfif, 16);
HOST_FIELD_AT(ExtraInformation, progressive, 20);
HOST_RECORD_SIZE(ExtraInformation, 24);
HOST_FIELD_AT(ImageHeaderWithExtra, extra, 32);
HOST_RECORD_SIZE(ImageHeaderWithExtra, 56);
HOST_FIELD_AT(RowBlock, row, 4);
HOST_FIELD_AT(RowBlock, width, 8);
HOST_FIELD_AT(RowBlock, imageHeight, 12);
HOST_FIELD_AT(RowBlock, bytesPerPixel, 16);
HOST_FIELD_AT(RowBlock, byteCount, 24);
HOST_FIELD_AT(RowBlock, pixels, 32);
HOST_RECORD_SIZE(RowBlock, 40);
HOST_FIELD_AT(SegmentRecord, kind, 0);
HOST_FIELD_AT(SegmentRecord, appNumber, 2);
HOST_FIELD_AT(SegmentRecord, payloadOffset, 4);
HOST_FIELD_AT(SegmentRecord, payloadLength, 8);
HOST_FIELD_AT(SegmentRecord, payload, 16);
HOST_RECORD_SIZE(SegmentRecord, 24);
HOST_FIELD_AT(SegmentCountBlock, count, 0);
HOST_RECORD_SIZE(SegmentCountBlock, 24);
HOST_FIELD_AT(SegmentBlock, kind, 4);
HOST_FIELD_AT(SegmentBlock, appNumber, 6);
HOST_FIELD_AT(SegmentBlock, index, 8);
HOST_FIELD_AT(SegmentBlock, payloadLength, 12);
HOST_FIELD_AT(SegmentBlock, payload, 16);
HOST_RECORD_SIZE(SegmentBlock, 24);
HOST_FIELD_AT(CodecCallback, context, 0);
HOST_FIELD_AT(CodecCallback, callback, 8);
HOST_RECORD_SIZE(CodecCallback, 16);
HOST_FIELD_AT(StreamDescriptor, length, 0);
HOST_FIELD_AT(StreamDescriptor, data, 8);
HOST_RECORD_SIZE(StreamDescriptor, 16);
HOST_FIELD_AT(StreamImage, width, 4);
HOST_FIELD_AT(StreamImage, height, 8);
HOST_FIELD_AT(StreamImage, colourSpace, 12);
HOST_FIELD_AT(StreamImage, densityUnit, 16);
HOST_FIELD_AT(StreamImage, horizontalResolution, 20);
HOST_FIELD_AT(StreamImage, verticalResolution, 24);
HOST_FIELD_AT(StreamImage, bytesPerPixel, 28);
HOST_FIELD_AT(StreamImage, stride, 32);
HOST_FIELD_AT(StreamImage, bufferSize, 36);
HOST_FIELD_AT(StreamImage, pixels, 40);
HOST_RECORD_SIZE(StreamImage, 48);
HOST_FIELD_AT(InputDescriptor, context, 8);
HOST_FIELD_AT(InputDescriptor, read, 16);
HOST_RECORD_SIZE(InputDescriptor, 24);
HOST_FIELD_AT(OutputDescriptor, file, 8);
HOST_FIELD_AT(OutputDescriptor, write, 16);
HOST_RECORD_SIZE(OutputDescriptor, 24);
HOST_FIELD_AT(WriteOptions, quality, 4);
HOST_FIELD_AT(WriteOptions, mode, 8);
HOST_FIELD_AT(WriteOptions, sample, 12);
HOST_FIELD_AT(WriteOptions, jfif, 16);
HOST_RECORD_SIZE(WriteOptions, 24);

}  // namespace host

// Results: 1 = success, -1 = stopped by an answer of -1, anything else = failed.
COMPANION_CALL("klibjpg.dll", int, kJpgFileGetInfo,
               (const char* path, void* imageInfo32, void* extraInfo24))
COMPANION_CALL("klibjpg.dll", int, kJpgFileGetInfoW,
               (const wchar_t* path, void* imageInfo32, void* extraInfo24))
COMPANION_CALL("klibjpg.dll", int, kJpgStreamGetInfo,
               (const void* stream16, void* imageInfo32, void* extraInfo24))
COMPANION_CALL("klibjpg.dll", int, kJpgFileReadEx,
               (const char* path, const void* callback16, void* zero))
COMPANION_CALL("klibjpg.dll", int, kJpgFileReadExW,
               (const wchar_t* path, const void* callback16, void* zero))
COMPANION_CALL("klibjpg.dll", int, kJpgStreamRead,
               (const void* stream16, void* streamImage48, void* zero))
COMPANION_CALL("klibjpg.dll", int, kJpgRead,
               (const void* input24, const void* callback16, void* zero))
COMPANION_CALL("klibjpg.dll", int, kJpgWrite,
               (const void* output24, const void* callback16, const void* options24))
COMPANION_CALL("klibjpg.dll", int, kJpgStreamWrite,
               (void* stream16, const void* streamImage48, const void* options24))
