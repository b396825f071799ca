#include "bench/inputs/grown_files.h"

#include <fstream>

#include "tests/support/jpeg_builder.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/tiff_builder.h"

namespace bench {
namespace {

using host::u32;
using support::ByteOrder;
using support::Bytes;
using support::JpegBuilder;
using support::OrderedBytes;

constexpr u32 tiffStart = 12;  // SOI, marker, length word, "Exif" with two NULs

void writeFile(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

// A TIFF header (TIFF 6.0, section 2) with a directory of one entry, which names the place of the
// EXIF directory.
Bytes tiffHead(u32 exifDirectory) {
  OrderedBytes out(ByteOrder::little);
  out.append(support::bytesOf("II"));
  out.u16(42);
  out.u32(8);
  out.u16(1);
  out.u16(support::tag::exifPointer);
  out.u16(4);  // LONG
  out.u32(1);
  out.u32(exifDirectory);
  out.u32(0);
  return out.bytes();
}

// Every entry has its value behind the directory.
Bytes directoryOf(u32 place, u32 count) {
  OrderedBytes out(ByteOrder::little);
  const u32 values = place + 2 + 12 * count + 4;
  out.u16(count);
  for (u32 i = 0; i < count; ++i) {
    out.u16(support::tag::exposureTime);
    out.u16(5);  // RATIONAL
    out.u32(1);
    out.u32(values + 8 * i);
  }
  out.u32(0);
  for (u32 i = 0; i < count; ++i) {
    out.u32(1);
    out.u32(i + 1);
  }
  return out.bytes();
}

Bytes pictureWith(u32 exifDirectory) {
  JpegBuilder builder;
  return builder.withoutJfif().exif(tiffHead(exifDirectory)).build();
}

}  // namespace

void writeEntries(const std::filesystem::path& path, u32 count) {
  const u32 place = static_cast<u32>(pictureWith(0).size()) - tiffStart;
  writeFile(path, support::joined(pictureWith(place), directoryOf(place, count)));
}

void writeSegments(const std::filesystem::path& path, u32 count) {
  constexpr std::size_t payload = 1000;
  JpegBuilder builder;
  for (u32 i = 0; i < count; ++i) {
    Bytes content = support::bytesOf("unknown");
    content.resize(payload, static_cast<std::uint8_t>(i));
    builder.app(3 + i % 8, content);
  }
  writeFile(path, builder.build());
}

void writeImages(const std::filesystem::path& path, u32 count) {
  support::MpoFileBuilder builder(count);
  for (u32 i = 0; i < count; ++i) builder.stream(i).size(320, 240);
  writeFile(path, builder.build());
}

}  // namespace bench
