// The steps that reading one image of a multi-picture file starts with.
#pragma once

#include "mpo/codec_input.h"
#include "mpo/mpo_record.h"
#include "platform/open_file.h"

namespace mpo {

// The file that an image is read from: the host's handle, or opened by the record's source path, or
// by a path that the host gave.
class ImageInput {
 public:
  // given and path may be null. False, after a report, when there is no file or no memory.
  ImageInput(HANDLE given, const char* path, HGLOBAL fileData) noexcept;

  explicit operator bool() const noexcept { return ready_; }

  // Of the whole file, in bytes; none when it cannot be told.
  [[nodiscard]] std::optional<host::u64> fileSize() const noexcept {
    return platform::fileSizeOf(file_);
  }

  // Runs the codec over the image at that position of the record's list, over the first image when
  // the list has no such entry.
  [[nodiscard]] int run(const MpoRecord& record, host::u32 position,
                        const host::CodecCallback& callback) noexcept;

 private:
  platform::OpenFile opened_;
  HANDLE file_;
  CodecInput codec_;
  bool ready_;
};

}  // namespace mpo
