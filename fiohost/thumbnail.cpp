#include "fiohost/thumbnail.h"

#include <array>
#include <memory>

namespace fiohost {
namespace {

struct EndRead {
  const ExifLibrary* library;
  void operator()(void* reader) const noexcept { library->endRead(reader); }
};
using Reader = std::unique_ptr<void, EndRead>;

std::optional<host::StreamDescriptor> thumbnailStream(const ExifLibrary& exif, void* reader) {
  if (exif.isExifExist(reader) == 0 || exif.isThumbnailExist(reader) == 0) return std::nullopt;
  std::array<host::u64, 2> words = {};
  if (exif.getThumbnailData(reader, words.data()) == -1) return std::nullopt;
  host::StreamDescriptor stream = {};
  stream.length = static_cast<host::u32>(words[1]);
  stream.data = reinterpret_cast<host::u8*>(words[0]);
  return stream;
}

}  // namespace

std::optional<ThumbnailFacts> findThumbnail(const Session& session, const SourceFile& file) {
  const Reader reader(session.exif.beginRead(file.wide().c_str()), EndRead{&session.exif});
  if (reader == nullptr) return std::nullopt;
  const std::optional<host::StreamDescriptor> stream = thumbnailStream(session.exif, reader.get());
  if (!stream) return std::nullopt;
  host::ImageHeader header = {};
  header.size = sizeof header;
  host::ExtraInformation extra = {};
  extra.size = sizeof extra;
  if (session.codec.describeStream(&*stream, &header, &extra) != 1) return std::nullopt;
  return ThumbnailFacts{header.width,
                        header.height,
                        header.components,
                        header.horizontalResolution,
                        header.verticalResolution,
                        stream->length};
}

std::vector<std::uint8_t> readThumbnailBytes(const Session& session, const SourceFile& file) {
  const Reader reader(session.exif.beginRead(file.wide().c_str()), EndRead{&session.exif});
  if (reader == nullptr) return {};
  const std::optional<host::StreamDescriptor> stream = thumbnailStream(session.exif, reader.get());
  if (!stream) return {};
  return {stream->data, stream->data + stream->length};
}

}  // namespace fiohost
