// Writes the first inputs of every fuzz target, and a dictionary of what the formats' tables know:
//   make_seeds FOLDER    makes FOLDER/TARGET/* and FOLDER/k32jpg.dict
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "companions/kFioUtil/tag_tables.h"
#include "examples/exif_block.h"
#include "mpo/mpf_tags.h"
#include "property/heap_definitions.h"
#include "tests/heap/heap_model.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/tiff_builder.h"

namespace {

using support::ByteOrder;
using support::Bytes;
using support::bytesOf;
using support::joined;
using support::JpegBuilder;

constexpr ByteOrder bothOrders[] = {ByteOrder::little, ByteOrder::big};

class Seeds {
 public:
  explicit Seeds(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void add(const std::string& target, const Bytes& content) {
    const std::filesystem::path folder = folder_ / target;
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / ("seed" + std::to_string(++count_)), std::ios::binary);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
  }
  void addPicture(const Bytes& content) {
    for (const char* target : {"describe", "read", "scan", "round_trip"}) add(target, content);
  }
  void addMpo(const Bytes& content) {
    addPicture(content);
    add("mpo_read", content);
  }

 private:
  std::filesystem::path folder_;
  int count_ = 0;
};

Bytes tiff(ByteOrder order) {
  support::TiffBuilder builder(order);
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

Bytes heap(bool bigEndian) {
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

void addPictures(Seeds& seeds) {
  using support::Layout;
  for (const Layout layout : {Layout::grey, Layout::colour, Layout::cmyk, Layout::ycck}) {
    seeds.addPicture(JpegBuilder().layout(layout).build());
  }
  seeds.addPicture(JpegBuilder().progressive().sampling(1, 1).build());
  seeds.addPicture(JpegBuilder().size(70, 50).restartEvery(2).separateScans().build());
  seeds.addPicture(JpegBuilder().arithmetic().build());
  for (const ByteOrder order : bothOrders) {
    seeds.addPicture(JpegBuilder().withoutJfif().exif(tiff(order)).build());
  }
  const Bytes resources = iptcResource();
  seeds.addPicture(JpegBuilder()
                       .cameraHeap(heap(false))
                       .xmp(bytesOf("<x:xmpmeta/>"))
                       .extendedXmp("0123456789ABCDEF0123456789ABCDEF", 8, 0, bytesOf("<x:more>"))
                       .icc(1, 1, Bytes(200, 3))
                       .fpxr(Bytes(30, 4))
                       .photoshop(resources)
                       .app(7, Bytes(20, 5))
                       .comment(bytesOf("a comment"))
                       .build());
}

void addMpos(Seeds& seeds) {
  for (const ByteOrder order : bothOrders) {
    seeds.addMpo(support::MpoFileBuilder(2, order).build());
    seeds.addMpo(support::MpoFileBuilder(5, order).build());
    support::MpfBuilder index(order);
    index.ifd().number(support::mpf::version, 0x30303130).number(support::mpf::imageCount, 2);
    index.images({{.attribute = 0x20020002}, {.attribute = 0x00020002}}).uids(2);
    index.ifd().number(support::mpf::individualNumber, 1).ratio(support::mpf::baseline, 77, 1000);
    seeds.add("mpf", joined({0, 2}, index.build()));
    seeds.add("mpf", joined({1, 2}, support::laterMpf(order, 2)));
  }
  for (const std::uint8_t count : Bytes{1, 2, 127}) {
    seeds.add("mpo_build", joined({count, 0}, Bytes(std::size_t{count} * 253, 0)));
    seeds.add("mpo_build", joined({count, 0}, Bytes(std::size_t{count} * 253, 0xFF)));
  }
}

void addParts(Seeds& seeds) {
  for (const ByteOrder order : bothOrders) {
    seeds.add("exif", joined({'E', 'x', 'i', 'f', 0, 0}, tiff(order)));
  }
  seeds.add("exif", examples::exifBlock(40, 30, {}));
  seeds.add("iptc", iptcResource());
  seeds.add("iptc", {0x1C, 2, 5, 0, 2, 'h', 'i'});
  for (const bool bigEndian : {false, true}) {
    seeds.add("heap", joined({1, 2, 3, 4}, heap(bigEndian)));
  }
}

class Dictionary {
 public:
  explicit Dictionary(const std::filesystem::path& path) : file_(path) {}

  // Each byte as its code, so that any is allowed.
  void add(const Bytes& token) {
    if (!known_.insert(token).second) return;
    file_ << '"';
    for (const std::uint8_t byte : token) {
      char code[5];
      std::snprintf(code, sizeof code, "\\x%02X", byte);
      file_ << code;
    }
    file_ << "\"\n";
  }
  void addNumber(std::uint16_t number) {
    const auto low = static_cast<std::uint8_t>(number);
    const auto high = static_cast<std::uint8_t>(number >> 8);
    add({low, high});
    add({high, low});
  }

 private:
  std::ofstream file_;
  std::set<Bytes> known_;
};

void makeDictionary(const std::filesystem::path& path) {
  Dictionary dictionary(path);
  for (const char* text :
       {"JFIF", "JFXX", "Exif", "Adobe", "ICC_PROFILE", "FPXR", "8BIM", "II*", "MM", "HEAPJPGM",
        "Photoshop 3.0", "http://ns.adobe.com/xap/1.0/", "http://ns.adobe.com/xmp/extension/"}) {
    dictionary.add(joined(bytesOf(text), {0}));
    dictionary.add(bytesOf(text));
  }
  dictionary.add(joined(bytesOf("MPF"), {0}));
  for (unsigned marker = 0xC0; marker < 0xFF; ++marker) {
    dictionary.add({0xFF, static_cast<std::uint8_t>(marker)});
  }
  for (const host::TagDefinition& row : _gfnFIOTIFFFORMATDef) dictionary.addNumber(row.tag);
  for (const host::TagDefinition& row : _gfnFIOGPSExifDef) dictionary.addNumber(row.tag);
  for (const host::TagDefinition& row : _gfnIPTCRecordEntry) {
    dictionary.add({0x1C, 2, static_cast<std::uint8_t>(row.tag)});
  }
  for (const mpo::MpfTag& row : mpo::mpfTags()) dictionary.addNumber(row.tag);
  for (const property::HeapRow& row : property::heapRows()) dictionary.addNumber(row.tag);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_seeds FOLDER\n", stderr);
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  Seeds seeds(folder);
  addPictures(seeds);
  addMpos(seeds);
  addParts(seeds);
  makeDictionary(folder / "k32jpg.dict");
  return 0;
}
