// Describing and metadata beside what programs use instead.
#include "bench/beside/metadata_libraries.h"
#include "bench/beside/segment_walk.h"
#include "bench/cases/cases.h"
#include "bench/inputs/inputs.h"
#include "bench/measure/pairs.h"
#include "bench/plugin_host.h"
#include "fiohost/properties.h"

namespace bench {
namespace {

constexpr unsigned steps = 41;

// Keeps a result that nobody reads from being left out.
volatile host::u64 kept = 0;

template <typename Reader>
Work overAll(const Paths& files, Reader reader) {
  return [=] {
    for (const Path& file : files) kept = kept + reader(file);
  };
}

std::unique_ptr<Measurement> prepare(const Work& ours, const Work& beside) {
  return std::make_unique<Pairs>(ours, beside);
}

host::u64 widthOf(const Path& file) { return describe(file).common().width; }

host::u64 fieldsOf(const Path& file) { return readFields(open(file)); }

// The formatted texts of records that are loaded already.
Work printAll(const Paths& files) {
  auto loaded = std::make_shared<std::vector<fiohost::FileData>>();
  for (const Path& file : files) {
    loaded->push_back(open(file));
    readFields(loaded->back());
  }
  return [loaded] {
    for (const fiohost::FileData& fileData : *loaded) {
      for (const auto& property : fiohost::readProperties(session(), fileData)) {
        kept = kept + property.formatted.size();
      }
    }
  };
}

Work printAllByExiv2(const Paths& files) {
  auto loaded = std::make_shared<std::vector<Exiv2Metadata>>();
  for (const Path& file : files) loaded->emplace_back(file);
  return [loaded] {
    for (const Exiv2Metadata& metadata : *loaded) kept = kept + metadata.print();
  };
}

}  // namespace

Cases metadataCases() {
  return {{"describe", "mapping the file, walking its segments to the scan", "ratio", 3.0,
           Judged::atMost, steps,
           [] {
             return prepare(overAll(describedFiles(), &widthOf),
                            overAll(describedFiles(), &walkSegments));
           }},
          {"properties exiv2", "libexiv2: open, readMetadata, every key and value", "ratio", 0.25,
           Judged::atMost, steps,
           [] {
             return prepare(overAll(describedFiles(), &fieldsOf),
                            overAll(describedFiles(), &readByExiv2));
           }},
          {"properties libexif", "libexif: from the file, every value", "ratio", 1.5,
           Judged::atMost, steps,
           [] {
             return prepare(overAll(describedFiles(), &fieldsOf),
                            overAll(describedFiles(), &readByLibexif));
           }},
          {"formatted text", "libexiv2's interpreted print", "ratio", 0.25, Judged::atMost, steps,
           [] { return prepare(printAll(describedFiles()), printAllByExiv2(describedFiles())); }}};
}

}  // namespace bench
