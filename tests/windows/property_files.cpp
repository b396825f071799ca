#include "tests/windows/property_files.h"

namespace test {
namespace {

using support::ByteOrder;
using support::Bytes;
using support::TiffBuilder;

Bytes tiff(bool exif, bool gps) {
  TiffBuilder tiff(ByteOrder::little);
  tiff.ifd0().text(support::tag::make, "Maker");
  if (exif) {
    tiff.exif()
        .undefined(support::tag::exifVersion, support::bytesOf("0231"))
        .rationals(support::tag::exposureTime, {{1, 250}})
        .rationals(0x829D, {{28, 10}})
        .shorts(0x8827, {400})
        .text(0x9003, "2008:12:31 23:59:59")
        .undefined(0x9101, {1, 2, 3, 0})
        .shorts(0x9207, {5})
        .rationals(0x920A, {{35, 1}});
  }
  if (gps) {
    tiff.gps()
        .bytes(0, {2, 2, 0, 0})
        .text(1, "N")
        .rationals(2, {{48, 1}, {12, 1}, {30, 1}})
        .text(3, "E")
        .rationals(4, {{16, 1}, {22, 1}, {15, 1}});
  }
  return tiff.build();
}

void addDataset(Bytes& out, std::uint8_t number, std::string_view text) {
  const Bytes head = {0x1C, 2, number, 0, static_cast<std::uint8_t>(text.size())};
  out = support::joined(support::joined(out, head), support::bytesOf(text));
}

Bytes iptcResource() {
  Bytes datasets;
  addDataset(datasets, 0, std::string_view("\0\2", 2));
  addDataset(datasets, 90, "Wien");
  addDataset(datasets, 120, "B\xC3\xBCro im Herbst\nzweite Zeile");
  addDataset(datasets, 25, "Herbst");
  const Bytes head = {'8', 'B', 'I', 'M', 4, 4,
                      0,   0,   0,   0,   0, static_cast<std::uint8_t>(datasets.size())};
  return support::joined(head, datasets);
}

}  // namespace

Bytes cameraHeap() {
  const std::vector<ModelRecord> records = {
      {0x0816, texts({"IMG_0001.JPG"})},
      {0x180E, numbers32({972687386, 0, 0})},
      {0x5803, numbers32({0x00010001, 0x40000000})},
      {0x2807, {}, {{0x0810, texts({"A. Nother"})}, {0x080A, texts({"Maker", "Model"})}}},
      {0x3002, {}, {{0x5010, numbers16({1, 0, 0, 0})}}},
      {0x1099, numbers16({7, 65535})}};
  return ModelHeap{false, padded(records)}.build();
}

Bytes jpegWith(const MetadataKinds& kinds) {
  support::JpegBuilder jpeg;
  if (kinds.cameraData) jpeg.cameraHeap(cameraHeap());
  if (kinds.exif || kinds.gps) jpeg.exif(tiff(kinds.exif, kinds.gps));
  if (kinds.iptc) jpeg.photoshop(iptcResource());
  return jpeg.build();
}

}  // namespace test
