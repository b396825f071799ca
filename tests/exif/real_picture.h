// A picture in the hands of a host: read with its fields, edited, and saved with a preview.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/file_data.h"
#include "host/plugin_entries.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "tests/support/jpeg_builder.h"

namespace test {

using support::Bytes;

// A field as it stands in the record.
struct FieldValue {
  host::u16 id, kind, type;
  host::u32 size;
  host::u64 number;  // of a kind that has no block
  Bytes block;

  [[nodiscard]] bool hasSameValue(const FieldValue& other) const {
    return kind == other.kind && size == other.size && number == other.number &&
           block == other.block;
  }
};

class RealPicture {
 public:
  // Describes the file and reads its pixels and its fields.
  explicit RealPicture(const std::string& path);
  RealPicture(const RealPicture&) = delete;
  RealPicture& operator=(const RealPicture&) = delete;
  ~RealPicture();

  [[nodiscard]] bool wasRead() const { return read_; }
  [[nodiscard]] std::vector<FieldValue> fields() const;

  // Takes every field with that id out of the record, raw segments too.
  void drop(host::u16 fieldId);
  // Sets the first field with that id, or adds one; makes a record for a picture without any.
  void setText(host::u16 fieldId, std::string_view text);

  // Saves the picture, with a preview of up to 160 pixels when asked. The plug-in's result.
  int save(const std::string& path, bool withPreview);
  // The thumbnail that the last save put into the file; empty when it made none.
  [[nodiscard]] Bytes thumbnail() const;

 private:
  static int onRows(host::ReadRequest*, host::u64, host::u32 first, host::u32 width,
                    host::u32 count, host::u8** rows, host::u16, host::i32, host::u32);
  static void* giveRows(void* context, host::u64, host::u32 first, host::u32 width, host::u32 count,
                        host::u32 second, host::i32, host::i32);
  template <typename Use>
  auto with(Use use) const {
    const platform::LockedGlobal lock(fileData_);
    return use(*static_cast<host::FileDataRecord*>(lock.address()));
  }
  void setPath(const std::string& path) const;
  void makePreview();

  HGLOBAL fileData_ = nullptr;
  bool read_ = false;
  host::u32 bytesPerPixel_ = 0;
  std::vector<Bytes> rows_, preview_;
  std::vector<host::u8*> pointers_;
};

}  // namespace test
