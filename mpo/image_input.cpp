#include "mpo/image_input.h"

#include "frame/source_path.h"
#include "mpo/mpo_errors.h"

namespace mpo {
namespace {

platform::OpenFile openSource(const char* path, HGLOBAL fileData) noexcept {
  const frame::SourcePath source = frame::sourcePathOf(fileData);
  if (source.wide != nullptr) return platform::openForReading(source.wide);
  if (source.ansi != nullptr) return platform::openForReading(source.ansi);
  return path != nullptr ? platform::openForReading(path) : platform::OpenFile();
}

}  // namespace

ImageInput::ImageInput(HANDLE given, const char* path, HGLOBAL fileData) noexcept
    : opened_(given == nullptr ? openSource(path, fileData) : platform::OpenFile()),
      file_(given != nullptr ? given : opened_.get()),
      codec_(file_),
      ready_((given != nullptr || opened_) && codec_) {
  if (given == nullptr && !opened_) {
    report(readSource);
  } else if (!codec_) {
    report(readMemory);
  }
}

int ImageInput::run(const MpoRecord& record, host::u32 position,
                    const host::CodecCallback& callback) noexcept {
  return codec_.run(record.imageStart(position), callback);
}

}  // namespace mpo
