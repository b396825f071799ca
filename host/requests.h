// What the host hands to a read or write: request records, row callbacks, action parameters.
#pragma once

#include "host/types.h"

namespace host {

#pragma pack(push, 1)

// Read request. The host defines the rest of the record; only these fields are ours to touch.
struct ReadRequest {
  u32 fullImage;  // nonzero: decode the full image
  u8 gap4[20];
  i32 preview;  // 0 = the file's size, nonzero = the target size, previewByCodec = see below
  u8 gap28[8];
  u32 targetWidth;   // pixels; written back with what the codec delivers
  u32 targetHeight;  // pixels; likewise
};

// Parameters of action 28 of both families: describe the file behind a wide path. The first slot is
// ignored by the JPEG family and is an open file handle, or 0, for the MPO family.
struct DescribeParameters {
  u64 handle;
  const wchar_t* path;
  u64 result;  // file-data handle, 0, or all ones
};

// The host's answer-and-request record of MPO actions 26 and 27.
struct ImageRequest {
  u32 size;         // 1088
  u32 imageNumber;  // 1-based
  u32 type;         // 2 when an image's header is announced
  u64 cleared12;
  u32 width;
  u32 height;
  u8 gap28[1028];
  u64 cleared1056;
  u32 cleared1064;
  u32 question;  // see the question constants in host/mpo.h
  u64 answer;    // address of the answer buffer
  u64 cleared1080;
};

// Rows travelling between the MPO family and the host's request callback.
struct RowRequest {
  u32 size;  // 48
  u32 width;
  u32 height;
  u32 firstRow;
  u32 rowCount;
  u32 samples;      // bits per sample when reading, samples per pixel when writing
  u32 rowDistance;  // bytes from one row to the next
  u32 gap28;
  u64 rows;  // address of the first row's bytes
  u32 mode;  // 15 for four samples per pixel, else 7
  u32 gap44;
};

#pragma pack(pop)

inline constexpr i32 previewByCodec = -2;

// Returns 1 to go on; any other value stops the codec with that value.
using RowCallback = int(ReadRequest* request, u64 zero, u32 firstRow, u32 width, u32 rowCount,
                        u8** rows, u16 flags, i32 colour, u32 mask);

// Returns an array of row pointers, or null or all ones for "none".
using RowSource = void*(void* context, u64 zero, u32 firstRow, u32 width, u32 rowCount, u32 second,
                        i32 code, i32 request);

HOST_FIELD_AT(ReadRequest, fullImage, 0);
HOST_FIELD_AT(ReadRequest, preview, 24);
HOST_FIELD_AT(ReadRequest, targetWidth, 36);
HOST_FIELD_AT(ReadRequest, targetHeight, 40);
HOST_RECORD_SIZE(ReadRequest, 44);

HOST_FIELD_AT(DescribeParameters, handle, 0);
HOST_FIELD_AT(DescribeParameters, path, 8);
HOST_FIELD_AT(DescribeParameters, result, 16);
HOST_RECORD_SIZE(DescribeParameters, 24);

HOST_FIELD_AT(ImageRequest, size, 0);
HOST_FIELD_AT(ImageRequest, imageNumber, 4);
HOST_FIELD_AT(ImageRequest, type, 8);
HOST_FIELD_AT(ImageRequest, cleared12, 12);
HOST_FIELD_AT(ImageRequest, width, 20);
HOST_FIELD_AT(ImageRequest, height, 24);
HOST_FIELD_AT(ImageRequest, cleared1056, 1056);
HOST_FIELD_AT(ImageRequest, cleared1064, 1064);
HOST_FIELD_AT(ImageRequest, question, 1068);
HOST_FIELD_AT(ImageRequest, answer, 1072);
HOST_FIELD_AT(ImageRequest, cleared1080, 1080);
HOST_RECORD_SIZE(ImageRequest, 1088);

HOST_FIELD_AT(RowRequest, width, 4);
HOST_FIELD_AT(RowRequest, height, 8);
HOST_FIELD_AT(RowRequest, firstRow, 12);
HOST_FIELD_AT(RowRequest, rowCount, 16);
HOST_FIELD_AT(RowRequest, samples, 20);
HOST_FIELD_AT(RowRequest, rowDistance, 24);
HOST_FIELD_AT(RowRequest, rows, 32);
HOST_FIELD_AT(RowRequest, mode, 40);
HOST_RECORD_SIZE(RowRequest, 48);

}  // namespace host
