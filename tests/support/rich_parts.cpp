#include "tests/support/rich_parts.h"

#include "tests/heap/heap_model.h"

namespace support {

Bytes richTiff(ByteOrder order) {
  TiffBuilder builder(order);
  builder.ifd0().text(0x010F, "Maker").text(0x0110, "Model").shorts(0x0112, {6});
  builder.ifd0().rationals(0x011A, {{72, 1}});
  builder.exif().rationals(0x829A, {{1, 250}}).undefined(0x9000, bytesOf("0232"));
  builder.exif().text(0x9003, "2026:01:02 03:04:05").shorts(0x8827, {100});
  builder.exif().undefined(0x927C, Bytes(40, 7)).undefined(0x9286, bytesOf("ASCII\0\0\0hello"));
  builder.gps().bytes(0, {2, 3, 0, 0}).text(1, "N").rationals(2, {{48, 1}, {8, 1}, {0, 1}});
  builder.ifd1().shorts(0x0103, {6});
  return builder.thumbnail(JpegBuilder().size(16, 8).build()).build();
}

Bytes iptcResource() {
  const Bytes datasets = {0x1C, 2,    0,   0,   2,    0,    4, 0x1C, 2, 5, 0,   5,
                          't',  'i',  't', 'l', 'e',  0x1C, 2, 25,   0, 3, 'k', 'e',
                          'y',  0x1C, 2,   120, 0x80, 4,    0, 0,    0, 1};
  const Bytes head = {'8', 'B', 'I', 'M', 4, 4,
                      0,   0,   0,   0,   0, static_cast<unsigned char>(datasets.size())};
  return joined(head, datasets);
}

Bytes richHeap(bool bigEndian) {
  return test::ModelHeap{bigEndian,
                         {{0x0816, test::texts({"IMG_001.JPG"})},
                          {0x180E, test::numbers32({0x3A000000, 0, 0})},
                          {0x1810, test::numbers32({1024, 768, 0x3F800000, 0, 8, 24, 257})},
                          {0x102A, test::numbers16({1, 0x0203, 0x0405, 6})},
                          {0x5803, test::numbers32({0x00010000, 0x40000000})},
                          {0x2807,
                           {},
                           {{0x080A, test::texts({"Maker", "Model 5"})},
                            {0x0810, test::texts({"Owner"})},
                            {0x3004, {}, {{0x5011, test::numbers16({1, 2, 3, 4})}}}}}}}
      .build();
}

JpegBuilder withEverySegment(JpegBuilder picture) {
  constexpr const char* guid = "0123456789ABCDEF0123456789ABCDEF";
  return picture.cameraHeap(richHeap(false))
      .exif(richTiff(ByteOrder::little))
      .xmp(bytesOf("<x:xmpmeta/>"))
      .extendedXmp(guid, 16, 0, bytesOf("<x:more>"))
      .extendedXmp(guid, 16, 8, bytesOf("</x:more"))
      .icc(1, 1, Bytes(200, 3))
      .fpxr(Bytes(30, 4))
      .photoshop(iptcResource())
      .app(7, Bytes(20, 5))
      .comment(bytesOf("a comment"));
}

}  // namespace support
