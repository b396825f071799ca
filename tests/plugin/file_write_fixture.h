// A host that gives rows, a record for a 5 by 4 picture, and a codec double that plays events.
#pragma once

#include <cstdio>

#include "tests/plugin/plugin.h"
#include "tests/support/scratch_file.h"

namespace test {

// One call of the host's row source.
struct Request {
  host::u32 first, width, count, second;
  host::i32 code, request;
  bool operator==(const Request&) const = default;
};
inline std::vector<Request> requests;
inline std::vector<std::vector<host::u8>> rows;  // what the row source gives, from the first asked
inline void* answerInstead = nullptr;
inline void* contextSeen = nullptr;

inline void* giveRows(void* context, host::u64 zero, host::u32 first, host::u32 width,
                      host::u32 count, host::u32 second, host::i32 code, host::i32 request) {
  static std::vector<host::u8*> pointers;
  EXPECT_EQ(zero, 0u);
  contextSeen = context;
  requests.push_back({first, width, count, second, code, request});
  if (answerInstead != nullptr) return answerInstead;
  pointers.clear();
  for (auto& row : rows) pointers.push_back(row.data());
  return rows.empty() ? nullptr : pointers.data();
}

class FileWrite : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    requests.clear();
    rows.clear();
    answerInstead = nullptr;
    make(sizeof(host::JpegFileData));
    data().with([](auto& data) {
      data.tail = {};
      data.tail.tag = host::jpegTailTag;
      data.tail.quality = 70;
      data.tail.mode = 1;
      data.tail.sample = 2;
      data.tail.jfif = 0;
    });
  }
  void TearDown() override { data_.reset(); }

  // A record of so many bytes for a 5 by 4 colour picture without a preview.
  void make(std::size_t size) {
    data_ = std::make_unique<FileData>(size);
    data().with<host::FileDataRecord>([&](auto& record) {
      std::strcpy(record.ansiPath, path_.c_str());
      record.bitsPerPixel = 24;
      record.width = 5;
      record.height = 4;
      record.horizontalResolution = 300;
      record.verticalResolution = 200;
      record.colourType = 2;
    });
  }
  FileData& data() { return *data_; }

  int write(HANDLE file = nullptr) {
    return entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(file, data().handle(), &host_,
                                                                     giveRows);
  }
  // The codec double plays these events on the callback it is given.
  template <typename Play>
  void play(Play events, int result = 1) {
    the().write = [=, this](const host::OutputDescriptor& output,
                            const host::CodecCallback& callback,
                            const host::WriteOptions& options) {
      output_ = output;
      options_ = options;
      events(callback);
      return result;
    };
  }
  static bool canReplace(const std::string& path) {
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    CloseHandle(file);
    return true;
  }
  void addRaw(host::u16 app, const std::string& payload, std::size_t padTo = 0,
              host::u16 group = host::groupRawSegment, host::u16 id = host::fieldRawSegment) {
    std::string block = {static_cast<char>(0xFF), static_cast<char>(0xE0 + app), 0, 0};
    block += payload;
    if (block.size() < padTo) block.resize(padTo, 'p');
    HGLOBAL memory = GlobalAlloc(GMEM_FIXED, block.size());
    std::memcpy(memory, block.data(), block.size());
    host::PropertyField field = {};
    field.descriptorSize = 88;
    field.valueKind = host::kindBlock;
    field.fieldId = id;
    field.sourceGroup = group;
    field.dataSize = static_cast<host::u32>(block.size());
    field.data = reinterpret_cast<host::u64>(memory);
    append(field);
  }
  void append(const host::PropertyField& field) {
    HGLOBAL record = data().properties();
    ASSERT_EQ(doubles::reserveFields(&record, 1), 1);
    ASSERT_EQ(doubles::appendField(record, &field), 1);
    data().with<host::FileDataRecord>(
        [&](auto& data) { data.propertyRecord = reinterpret_cast<host::u64>(record); });
  }
  static host::u32 countSegments(const host::CodecCallback& callback) {
    host::SegmentCountBlock block = {};
    block.count = 99;
    EXPECT_EQ(callback.callback(callback.context, 4, 0, &block), 1u);
    return block.count;
  }

  std::unique_ptr<FileData> data_;
  ScratchFile scratch_;
  const std::string& path_ = scratch_.path();
  int host_ = 0;
  host::OutputDescriptor output_ = {};
  host::WriteOptions options_ = {};
};

// The same with a preview of 2 by 3, whose thumbnail has 10 bytes.
class ThumbnailWrite : public FileWrite {
 protected:
  void SetUp() override {
    FileWrite::SetUp();
    preview(24, 2, 3);
    rows = {{1, 2, 3, 4, 5, 6, 99}, {7, 8, 9, 10, 11, 12, 99}, {13, 14, 15, 16, 17, 18, 99}};
    the().streamWrite = [this](host::StreamDescriptor* output, const host::StreamImage& image,
                               const host::WriteOptions& options) {
      capacities_.push_back(output->length);
      qualities_.push_back(options.quality);
      image_ = image;
      thumbnailOptions_ = options;
      pixels_.assign(image.pixels, image.pixels + image.bufferSize);
      output->length = lengths_.empty() ? 10 : lengths_.front();
      if (lengths_.size() > 1) lengths_.erase(lengths_.begin());
      return result_;
    };
    play([](auto&) {});
  }
  void preview(host::u32 bits, host::i32 width, host::i32 height) {
    data().with([=](auto& data) {
      data.record.previewBitsPerPixel = bits;
      data.record.previewWidth = width;
      data.record.previewHeight = height;
      data.record.previewHorizontalResolution = 71;
      data.record.previewVerticalResolution = 73;
    });
  }
  std::vector<host::u32> lengths_, capacities_, qualities_;
  std::vector<host::u8> pixels_;
  host::StreamImage image_ = {};
  host::WriteOptions thumbnailOptions_ = {};
  int result_ = 1;
};

}  // namespace test
