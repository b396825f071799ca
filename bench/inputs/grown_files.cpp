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

constexpr std::uint16_t isoSpeed = 0x8827;
constexpr u32 tiffStart = 12;  // SOI, marker, length word, "Exif" with two NULs

void writeFile(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

// A TIFF header (TIFF 6.0, section 2) that names the place of its directory.
Bytes tiffHeader(u32 directory) {
  OrderedBytes out(ByteOrder::little);
  out.append(support::bytesOf("II"));
  out.u16(42);
  out.u32(directory);
  return out.bytes();
}

Bytes directoryOf(u32 count) {
  OrderedBytes out(ByteOrder::little);
  out.u16(count);
  for (u32 i = 0; i < count; ++i) {
    out.u16(isoSpeed);
    out.u16(3);  // SHORT
    out.u32(1);
    out.u32(i & 0xFFFF);
  }
  out.u32(0);
  return out.bytes();
}

Bytes pictureWith(u32 directory) {
  JpegBuilder builder;
  return builder.withoutJfif().exif(tiffHeader(directory)).build();
}

}  // namespace

void writeEntries(const std::filesystem::path& path, u32 count) {
  const auto size = static_cast<u32>(pictureWith(0).size());
  writeFile(path, support::joined(pictureWith(size - tiffStart), directoryOf(count)));
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
