// The owner of one file-data record, with the property record and the paths that hang on it.
#pragma once

#include <memory>
#include <string>

#include "fiohost/companions.h"
#include "host/file_data.h"
#include "host/mpo.h"
#include "host/property_record.h"
#include "platform/global_memory.h"

namespace fiohost {

class FileData {
 public:
  // Takes a record over. Throws Failure when the block is no file-data record. utilities must
  // outlive this object.
  FileData(platform::OwnedGlobal record, const FileUtilities& utilities);
  FileData(FileData&&) = default;
  FileData(const FileData&) = delete;
  FileData& operator=(FileData&&) = delete;
  FileData& operator=(const FileData&) = delete;
  ~FileData();

  [[nodiscard]] HGLOBAL handle() const noexcept { return record_.get(); }
  // A copy of the common part as it stands now.
  [[nodiscard]] host::FileDataRecord common() const;
  // A copy of a JPEG record's tail; a record of another format gives an empty tail (tag 0).
  [[nodiscard]] host::JpegTail jpegTail() const;

  // A copy of the image list of an MPO record, or null when the record has none.
  [[nodiscard]] std::unique_ptr<const host::MpoFileData> mpo() const;

  // Names the file in the record: the wide path, and the ANSI path where it has one that fits.
  void setSourcePath(const std::filesystem::path& path);

  // The options that a write of a JPEG record takes.
  struct SaveOptions {
    host::u32 quality;
    host::u32 mode;
    host::u32 sample;
    host::u32 jfif;
  };
  void setSaveOptions(const SaveOptions& options);

  // The picture that a read without full image delivers.
  struct Preview {
    host::u32 bitsPerPixel;
    host::u32 width;   // pixels
    host::u32 height;  // pixels
    host::u32 horizontalResolution;
    host::u32 verticalResolution;
  };
  void setPreview(const Preview& preview);

  // Adds a field to the property record, which is made when there is none; the record takes the
  // field's block over. False without memory.
  [[nodiscard]] bool addField(const host::PropertyField& field);

 private:
  platform::OwnedGlobal record_;
  const FileUtilities* utilities_;
  std::unique_ptr<const std::wstring> widePath_;  // the record points to its characters
};

}  // namespace fiohost
