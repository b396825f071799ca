#include "tests/exif/real_picture.h"

#include <algorithm>
#include <cstring>

#include "tests/companions/loaded_plugin.h"

namespace test {
namespace {

using host::PropertyField;
using host::PropertyHeader;
using host::u32;
using host::u64;
using host::u8;

constexpr u32 longestPreviewSide = 160;

bool ownsBlock(const PropertyField& field) {
  return (field.valueKind == host::kindBlock || field.valueKind == host::kindText) &&
         field.data != 0;
}

HGLOBAL textBlock(std::string_view text) {
  HGLOBAL block = GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, text.size() + 2);
  std::memcpy(block, text.data(), text.size());
  return block;
}

// The picture that is being read; the row callback gets no context of its own.
std::vector<Bytes>* receiving = nullptr;
u32 receivedPixelSize = 0;

}  // namespace

RealPicture::RealPicture(const std::string& path)
    : fileData_(entry<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData)(0, path.c_str())) {
  if (reinterpret_cast<std::uintptr_t>(fileData_) == ~std::uintptr_t{0}) fileData_ = nullptr;
  if (fileData_ == nullptr) return;
  setPath(path);
  with([&](auto& record) {
    bytesPerPixel_ = record.bitsPerPixel / 8;
    rows_.resize(record.height);
  });
  receiving = &rows_;
  receivedPixelSize = bytesPerPixel_;
  host::ReadRequest request = {};
  request.fullImage = 1;
  read_ = entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(0, path.c_str(), fileData_,
                                                                  &request, &onRows) == 1;
}

RealPicture::~RealPicture() {
  if (fileData_ == nullptr) return;
  with([](auto& record) {
    plugin().util.function<void(HGLOBAL)>("kfioFreeProperty")(
        reinterpret_cast<HGLOBAL>(record.propertyRecord));
  });
  GlobalFree(fileData_);
}

void RealPicture::setPath(const std::string& path) const {
  with([&](auto& record) {
    ASSERT_LT(path.size(), sizeof record.ansiPath);
    std::strcpy(record.ansiPath, path.c_str());
  });
}

int RealPicture::onRows(host::ReadRequest*, u64, u32 first, u32 width, u32 count, u8** rows,
                        host::u16, host::i32, u32) {
  for (u32 row = 0; row < count && first + row < receiving->size(); ++row) {
    (*receiving)[first + row].assign(rows[row], rows[row] + u64{width} * receivedPixelSize);
  }
  return 1;
}

void* RealPicture::giveRows(void* context, u64, u32 first, u32, u32, u32 second, host::i32,
                            host::i32) {
  auto& picture = *static_cast<RealPicture*>(context);
  std::vector<Bytes>& rows = second == 0 ? picture.preview_ : picture.rows_;
  picture.pointers_.clear();
  for (std::size_t row = first; row < rows.size(); ++row) {
    picture.pointers_.push_back(rows[row].data());
    if (second != 0) break;
  }
  return picture.pointers_.empty() ? nullptr : picture.pointers_.data();
}

std::vector<FieldValue> RealPicture::fields() const {
  std::vector<FieldValue> found;
  const auto handle =
      with([](auto& record) { return reinterpret_cast<HGLOBAL>(record.propertyRecord); });
  const platform::LockedGlobal lock(handle);
  const auto* header = lock.as<PropertyHeader>();
  if (header == nullptr) return found;
  const auto* first = reinterpret_cast<const PropertyField*>(header + 1);
  for (int index = 0; index < header->fieldCount; ++index) {
    const PropertyField& field = first[index];
    FieldValue value = {field.fieldId, field.valueKind, field.sourceGroup, field.dataSize, 0, {}};
    if (ownsBlock(field)) {
      const auto* block = reinterpret_cast<const u8*>(field.data);
      value.block.assign(block, block + field.dataSize);
    } else {
      value.number = field.data;
    }
    found.push_back(value);
  }
  return found;
}

void RealPicture::drop(host::u16 fieldId) {
  const auto handle =
      with([](auto& record) { return reinterpret_cast<HGLOBAL>(record.propertyRecord); });
  const platform::LockedGlobal lock(handle);
  auto* header = lock.as<PropertyHeader>();
  if (header == nullptr) return;
  auto* first = reinterpret_cast<PropertyField*>(header + 1);
  auto* end = std::remove_if(first, first + header->fieldCount, [=](const PropertyField& field) {
    if (field.fieldId != fieldId) return false;
    if (ownsBlock(field)) GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
    return true;
  });
  header->fieldCount = static_cast<host::i32>(end - first);
  header->recordSize =
      static_cast<u32>(sizeof *header + static_cast<std::size_t>(end - first) * sizeof *first);
}

void RealPicture::setText(host::u16 fieldId, std::string_view text) {
  drop(fieldId);
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = host::kindText;
  field.fieldId = fieldId;
  field.dataSize = static_cast<u32>(text.size());
  field.data = reinterpret_cast<u64>(textBlock(text));
  with([&](auto& record) {
    auto handle = reinterpret_cast<HGLOBAL>(record.propertyRecord);
    const auto& util = plugin().util;
    ASSERT_EQ(util.function<int(HGLOBAL*, int)>("Prop_ReAllocFieldSpace")(&handle, 1), 1);
    ASSERT_EQ(util.function<int(HGLOBAL, const void*)>("Prop_AppendFieldData")(handle, &field), 1);
    record.propertyRecord = reinterpret_cast<u64>(handle);
  });
}

// Every so-manieth pixel; a picture of four components gets none.
void RealPicture::makePreview() {
  preview_.clear();
  if (bytesPerPixel_ != 1 && bytesPerPixel_ != 3) return;
  const auto width = static_cast<u32>(rows_.at(0).size() / bytesPerPixel_);
  const auto height = static_cast<u32>(rows_.size());
  const u32 step =
      std::max(1u, (std::max(width, height) + longestPreviewSide - 1) / longestPreviewSide);
  for (u32 y = 0; y < height; y += step) {
    Bytes row;
    for (u32 x = 0; x < width; x += step) {
      const auto pixel = rows_[y].begin() + static_cast<std::ptrdiff_t>(x * bytesPerPixel_);
      row.insert(row.end(), pixel, pixel + static_cast<std::ptrdiff_t>(bytesPerPixel_));
    }
    preview_.push_back(row);
  }
}

int RealPicture::save(const std::string& path, bool withPreview) {
  setPath(path);
  preview_.clear();
  if (withPreview) makePreview();
  with([&](auto& record) {
    record.previewBitsPerPixel = bytesPerPixel_ * 8;
    record.previewHeight = static_cast<host::i32>(preview_.size());
    record.previewWidth =
        preview_.empty() ? 0 : static_cast<host::i32>(preview_[0].size() / bytesPerPixel_);
  });
  return entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(nullptr, fileData_, this,
                                                                   &giveRows);
}

Bytes RealPicture::thumbnail() const {
  const std::vector<FieldValue> all = fields();
  const auto segment = std::find_if(all.begin(), all.end(), [](const FieldValue& field) {
    return field.id == host::fieldExifSegment;
  });
  if (segment == all.end() || preview_.empty()) return {};
  // It is the last thing in the segment and begins with the last start of a stream.
  const Bytes start = {0xFF, 0xD8, 0xFF};
  const Bytes& block = segment->block;
  const auto begin = std::find_end(block.begin(), block.end(), start.begin(), start.end());
  return {begin, block.end()};
}

}  // namespace test
