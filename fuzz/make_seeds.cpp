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
#include "tests/support/mpf_builder.h"
#include "tests/support/rich_parts.h"

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
    for (const char* target : {"describe", "read", "scan", "round_trip", "strip"})
      add(target, content);
  }
  void addMpo(const Bytes& content) {
    addPicture(content);
    for (const char* target : {"mpo_read", "mpo_edit"}) add(target, content);
  }

 private:
  std::filesystem::path folder_;
  int count_ = 0;
};

void addPictures(Seeds& seeds) {
  using support::Layout;
  for (const Layout layout : {Layout::grey, Layout::colour, Layout::cmyk, Layout::ycck}) {
    seeds.addPicture(JpegBuilder().layout(layout).build());
  }
  seeds.addPicture(JpegBuilder().progressive().sampling(1, 1).build());
  seeds.addPicture(JpegBuilder().size(70, 50).restartEvery(2).separateScans().build());
  seeds.addPicture(JpegBuilder().arithmetic().build());
  for (const ByteOrder order : bothOrders) {
    seeds.addPicture(JpegBuilder().withoutJfif().exif(support::richTiff(order)).build());
  }
  seeds.addPicture(support::withEverySegment({}).build());
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
    seeds.add("exif", joined({'E', 'x', 'i', 'f', 0, 0}, support::richTiff(order)));
  }
  seeds.add("exif", examples::exifBlock(40, 30, {}));
  seeds.add("iptc", support::iptcResource());
  seeds.add("iptc", {0x1C, 2, 5, 0, 2, 'h', 'i'});
  for (const bool bigEndian : {false, true}) {
    seeds.add("heap", joined({1, 2, 3, 4}, support::richHeap(bigEndian)));
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
