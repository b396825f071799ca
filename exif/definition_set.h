// The tag definition set: the rows of a host table that one directory is read or shown with.
#pragma once

#include <array>
#include <optional>

#include "exif/tag_tables.h"

namespace exif {

// The row groups of the TIFF/EXIF table, as bits of a mode.
enum DefinitionGroup : host::u32 { primaryGroup = 1, secondaryGroup = 2, bothGroups = 3 };

inline constexpr unsigned labelLength = 60;  // bytes, the NUL included

// A label's buffer, zeroed behind its text.
using Label = std::array<char, labelLength>;

// A working copy of a host table, rebuilt for every directory.
class DefinitionSet {
 public:
  static constexpr unsigned exifCapacity = 213;
  static constexpr unsigned gpsCapacity = 32;

  // mode: which groups, primary first. False when the host's table is missing.
  [[nodiscard]] bool buildExif(host::u32 mode) noexcept;
  [[nodiscard]] bool buildGps() noexcept;

  [[nodiscard]] unsigned size() const noexcept { return size_; }
  // index: below size().
  [[nodiscard]] const host::TagDefinition& row(unsigned index) const noexcept {
    return rows_[index];
  }
  // The first row of a tag.
  [[nodiscard]] std::optional<unsigned> find(host::u16 tag) const noexcept;

  // The first row of a field.
  [[nodiscard]] std::optional<unsigned> findField(host::u16 fieldId) const noexcept;

  // The label of a row, cut to its buffer; empty when the row has none. Loaded from the resource
  // library when it is first asked for, since most rows of a table are not met in a directory.
  [[nodiscard]] const Label& label(unsigned index) noexcept;

 private:
  template <typename Matches>
  [[nodiscard]] std::optional<unsigned> firstRow(Matches matches) const noexcept;
  void append(TagTable rows, unsigned capacity) noexcept;

  unsigned size_ = 0;
  std::array<host::TagDefinition, exifCapacity> rows_;
  std::array<Label, exifCapacity> labels_;
  std::array<bool, exifCapacity> loaded_;
};

}  // namespace exif
