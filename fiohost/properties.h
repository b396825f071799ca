// What the plug-in knows about a file beyond its pixels: the fields of its property record.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fiohost/file_data.h"
#include "fiohost/session.h"
#include "host/property_record.h"

namespace fiohost {

enum class PropertyGroup { image, exif, gps, iptc, camera, xmp, icc, segment };

[[nodiscard]] const char* groupName(PropertyGroup group);

struct Property {
  PropertyGroup group;
  host::u16 id;
  host::u16 valueKind;          // see host::ValueKind
  host::u16 tiffType;           // of an EXIF or GPS field, else 0
  std::optional<unsigned> tag;  // TIFF tag or IPTC dataset, where a table knows it
  std::string name;
  std::vector<std::uint8_t> value;  // behind the prefix of a block; of a number its own bytes
  // The four bytes in front of a block: of a raw segment its marker and length.
  std::vector<std::uint8_t> prefix;
  // As the rules for well-known tags format the value; empty where they leave it as it is.
  std::string formatted;
};

// The fields of a record of file data, locked and open to change; none when it has no record.
class LockedFields {
 public:
  explicit LockedFields(const FileData& fileData);

  [[nodiscard]] HGLOBAL record() const noexcept { return record_; }
  [[nodiscard]] std::span<host::PropertyField> fields() const noexcept { return fields_; }
  // Makes the record end behind so many fields; it must have them.
  void setCount(std::size_t count) const noexcept;

 private:
  HGLOBAL record_;
  platform::LockedGlobal lock_;
  std::span<host::PropertyField> fields_;
};

// All fields in record order, the header field left out. fileData's metadata must have been loaded.
[[nodiscard]] std::vector<Property> readProperties(const Session& session,
                                                   const FileData& fileData);

}  // namespace fiohost
