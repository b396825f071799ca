#include "bench/plugin_host.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "fiohost/properties.h"
#include "platform/console/console.h"
#include "property/field_block.h"

namespace bench {
namespace {

using host::u32;
using host::u64;
using host::u8;

// The entries that a host looks up once.
struct Entries {
  Entries()
      : module(fiohost::pluginFolder() / "K32JPG.FIO"),
        describe(module.entry<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData)),
        read(module.entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)),
        write(module.entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)),
        getProperty(module.entry<host::GetPropertyEntry>(host::ordinalGetProperty)) {}

  fiohost::Module module;
  host::JpgGetFileDataEntry* describe;
  host::JpgFileReadEntry* read;
  host::JpgFileWriteEntry* write;
  host::GetPropertyEntry* getProperty;
};

const Entries& entries() {
  static const Entries found;
  return found;
}

// The callback gets the request; the sink is found behind it.
struct Read {
  host::ReadRequest request;
  RowSink* sink;
  u32 bytesPerPixel;
};

int takeRows(host::ReadRequest* request, u64, u32, u32 width, u32 count, u8** rows, host::u16,
             host::i32, u32) noexcept {
  const Read& read = *reinterpret_cast<Read*>(request);
  for (u32 i = 0; i < count; ++i) {
    read.sink->take(rows[i], std::size_t{width} * read.bytesPerPixel);
  }
  return 1;
}

struct Write {
  const HostPicture* picture;
  u8* row;
};

// The picture has no preview: the one request for it is answered with none.
void* giveRow(void* context, u64, u32 firstRow, u32, u32, u32 second, host::i32,
              host::i32) noexcept {
  if (second == 0) return nullptr;
  Write& write = *static_cast<Write*>(context);
  write.row = write.picture->row(firstRow);
  return &write.row;
}

HGLOBAL newRecord(const HostPicture& picture) {
  platform::OwnedGlobal block(platform::movableZeroed, sizeof(host::JpegFileData));
  const platform::LockedGlobal lock(block.get());
  auto* data = lock.as<host::JpegFileData>();
  if (data == nullptr) throw std::bad_alloc();
  data->record.version = host::fileDataVersion;
  data->record.bitsPerPixel = 24;
  data->record.width = picture.width;
  data->record.height = picture.height;
  data->record.horizontalResolution = data->record.verticalResolution = 72;
  data->record.colourType = host::colourTrue;
  data->tail.tag = host::jpegTailTag;
  return block.release();
}

void require(bool done, const std::string& what) {
  if (!done) throw std::runtime_error(what);
}

void writeRecord(const std::filesystem::path& path, fiohost::FileData& fileData,
                 const HostPicture& picture) {
  fileData.setSourcePath(path);
  Write write = {&picture, nullptr};
  require(entries().write(nullptr, fileData.handle(), &write, &giveRow) == 1,
          path.string() + " cannot be written");
}

}  // namespace

const fiohost::Session& session() {
  static const fiohost::Session loaded;
  return loaded;
}

void RowSink::take(const u8* row, std::size_t size) noexcept {
  bytes += size;
  sum += row[0] + row[size - 1];
  if (!whole) return;
  for (std::size_t i = 0; i < size; ++i) sum = sum * 31 + row[i];
}

fiohost::FileData describe(const std::filesystem::path& path) {
  const HGLOBAL record = entries().describe(0, path.string().c_str());
  const bool described = record != nullptr && reinterpret_cast<u64>(record) != host::fileNotServed;
  require(described, path.string() + " cannot be described");
  return {platform::OwnedGlobal(record), session().utilities};
}

fiohost::FileData open(const std::filesystem::path& path) {
  fiohost::FileData fileData = describe(path);
  fileData.setSourcePath(path);
  return fileData;
}

void read(const fiohost::FileData& fileData, const Target& target, RowSink& sink) {
  Read read = {{}, &sink, fileData.common().bitsPerPixel / 8};
  read.request.fullImage = 1;
  read.request.preview = target.width != 0 ? 1 : 0;
  read.request.targetWidth = target.width;
  read.request.targetHeight = target.height;
  require(entries().read(0, nullptr, fileData.handle(), &read.request, &takeRows) == 1,
          "a read failed");
}

u64 readFields(const fiohost::FileData& fileData) {
  HGLOBAL ignored = nullptr;
  entries().getProperty(fileData.handle(), &ignored);
  return sumOfFields(fileData);
}

u64 sumOfFields(const fiohost::FileData& fileData) {
  u64 sum = 0;
  for (const host::PropertyField& field : fiohost::LockedFields(fileData).fields()) {
    sum += field.fieldId + field.data;
    for (const u8 byte : property::blockOf(field)) sum += byte;
  }
  return sum;
}

u8* HostPicture::row(u32 index) const noexcept {
  const std::size_t stride = std::size_t{width} * 3;
  return const_cast<u8*>(pixels.data()) + index % (pixels.size() / stride) * stride;
}

void write(const std::filesystem::path& path, const HostPicture& picture,
           const fiohost::FileData::SaveOptions& options) {
  fiohost::FileData fileData(platform::OwnedGlobal(newRecord(picture)), session().utilities);
  fileData.setSaveOptions(options);
  writeRecord(path, fileData, picture);
}

void rewrite(const std::filesystem::path& path, fiohost::FileData& fileData) {
  const host::FileDataRecord record = fileData.common();
  HostPicture picture = {record.width, record.height, {}};
  picture.pixels.resize(std::size_t{record.width} * 3);
  writeRecord(path, fileData, picture);
}

}  // namespace bench
