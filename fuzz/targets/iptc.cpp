// Photoshop resources with IPTC datasets, and the datasets that come back out of the fields.
#include <vector>

#include "exif/iptc_datasets.h"
#include "exif/iptc_resources.h"
#include "fuzz/attach.h"
#include "fuzz/input.h"
#include "property/memory_stream.h"
#include "property/property_record.h"

namespace {

void serialise(HGLOBAL record) {
  const platform::LockedGlobal lock(record);
  const auto* header = lock.as<host::PropertyHeader>();
  if (header == nullptr) return;
  const std::span<const host::PropertyField> fields(
      reinterpret_cast<const host::PropertyField*>(header + 1),
      static_cast<std::size_t>(header->fieldCount));
  const host::u64 size = exif::serialisedDatasetsSize(fields);
  std::vector<host::u8> buffer(size);
  const host::u64 counted = exif::serialiseDatasets(fields, buffer);
  if (counted > size) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::attachOnce();
  static_cast<void>(fuzz::session());
  const fuzz::NothingLeft check;
  std::vector<host::u8> bytes(data, data + size);
  fuzz::PropertySlot slot;
  property::MemoryStream stream = {size, bytes.data(), 0};
  static_cast<void>(exif::walkResources({&stream, &property::memoryStreamCallback},
                                        static_cast<host::i64>(size), slot.address()));
  exif::ValueBudget budget;
  exif::decodeDatasets(bytes, slot.address(), budget);
  serialise(slot.handle());
  return 0;
}
