// A host that answers the writer's questions, a codec that writes what it is given, and the record
// between them.
#pragma once

#include "tests/mpo/stream_codec.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/scratch_file.h"

namespace test {

using host::MpoImageDesc;
using host::u32;
using host::u64;
using support::Bytes;
using support::bytesOf;

inline constexpr int noAnswer = -1000;

// A host that answers from what the tests set.
struct Host {
  u32 count = 1;
  u32 position = 0;
  int countAnswer = 1;
  u32 refusedImage = 0;
  int refusal = 0;
  int rowAnswer = 1;
  bool givesRows = true;
  std::function<void(u32 number, MpoImageDesc&)> describe = [](u32, MpoImageDesc&) {};

  std::vector<std::string> calls;
  std::vector<host::RowRequest> rowRequests;
  std::vector<host::u8> rows = std::vector<host::u8>(4096, 0x21);
  int context = 0;

  int answer(host::ImageRequest& request) {
    EXPECT_EQ(+request.size, 1088u);
    EXPECT_EQ(+request.type, 0u);
    EXPECT_EQ(request.width + request.height, 0u);
    if (request.question == 0x475861) {
      calls.emplace_back("count");
      *reinterpret_cast<host::MpoCountAnswer*>(request.answer) = {count, position};
      return countAnswer;
    }
    EXPECT_EQ(+request.question, 0x475860u);
    calls.push_back("image " + std::to_string(request.imageNumber));
    auto& image = *reinterpret_cast<MpoImageDesc*>(request.answer);
    const MpoImageDesc zero = {};
    EXPECT_EQ(std::memcmp(&image, &zero, sizeof image), 0) << "comes zeroed";
    describe(request.imageNumber, image);
    return request.imageNumber == refusedImage ? refusal : 1;
  }
  int answer(host::RowRequest& request) {
    calls.emplace_back("rows");
    rowRequests.push_back(request);
    request.rows = givesRows ? reinterpret_cast<u64>(rows.data()) : 0;
    return rowAnswer;
  }
};
inline Host* current = nullptr;

inline int onRequest(int action, void* record, void* context, HGLOBAL fileData) {
  EXPECT_EQ(fileData, nullptr);
  EXPECT_EQ(context, &current->context);
  if (action == 4) return current->answer(*static_cast<host::ImageRequest*>(record));
  EXPECT_EQ(action, 5);
  return current->answer(*static_cast<host::RowRequest*>(record));
}

// A codec that writes the segments it is given and one byte a row.
struct WritingCodec {
  host::ImageHeader header = {};
  host::WriteOptions options = {};
  std::vector<std::pair<int, Bytes>> segments;
  int answerToRows = noAnswer;
  int result = 1;
  u32 bytesPerPixel = 3;
  bool writes = true;

  static Bytes marker(int code, const Bytes& payload) {
    const std::size_t length = payload.size() + 2;
    return support::joined({0xFF, static_cast<host::u8>(code), static_cast<host::u8>(length >> 8),
                            static_cast<host::u8>(length)},
                           payload);
  }

  int write(const host::OutputDescriptor& output, const host::CodecCallback& callback,
            const host::WriteOptions& given) {
    EXPECT_EQ(+output.size, 24u);
    options = given;
    segments.clear();
    StreamCodec::raise(callback, 2, &header);
    host::SegmentCountBlock count = {99, {}};
    EXPECT_EQ(StreamCodec::raise(callback, 4, &count), 1u);
    Bytes stream = {0xFF, 0xD8};
    for (u32 number = 1; number <= count.count; ++number) {
      host::SegmentBlock block = {};
      block.index = number;
      EXPECT_EQ(StreamCodec::raise(callback, 5, &block), 1u);
      EXPECT_EQ(+block.kind, 1);
      const Bytes payload(block.payload, block.payload + block.payloadLength);
      segments.emplace_back(block.appNumber, payload);
      stream = support::joined(stream, marker(0xE0 + block.appNumber, payload));
    }
    host::SegmentBlock beyond = {};
    beyond.index = count.count + 1;
    StreamCodec::raise(callback, 5, &beyond);
    EXPECT_EQ(+beyond.payload, nullptr);
    EXPECT_EQ(StreamCodec::raise(callback, 9, &beyond), 1u);
    for (u32 row = 0; row < header.height; ++row) {
      Bytes pixels(header.width * bytesPerPixel + 4, 0xEE);
      host::RowBlock block = {40,
                              row,
                              header.width,
                              header.height,
                              bytesPerPixel,
                              {},
                              header.width * bytesPerPixel,
                              {},
                              pixels.data()};
      const u32 answer = StreamCodec::raise(callback, 3, &block);
      if (answer != 1) return answerToRows = static_cast<int>(answer);
      EXPECT_EQ(pixels[header.width * bytesPerPixel], 0xEE) << "only the codec's byte count";
      stream.push_back(pixels[0]);
    }
    stream.insert(stream.end(), {0xFF, 0xD9});
    if (!writes) return result;
    const int written = output.write(output.file, static_cast<u32>(stream.size()), stream.data());
    return written == 1 ? result : -1;
  }
};

class MpoImageWrite : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    current = &host_;
    the().write = [this](const host::OutputDescriptor& output, const host::CodecCallback& callback,
                         const host::WriteOptions& options) {
      return codec_.write(output, callback, options);
    };
    make(sizeof(host::FileDataRecord));
  }

  void make(std::size_t size) {
    data_ = std::make_unique<FileData>(size);
    common([&](auto& record) {
      std::strcpy(record.ansiPath, scratch_.path().c_str());
      record.bitsPerPixel = 24;
      record.width = 5;
      record.height = 2;
      record.colourType = 2;
    });
  }
  template <typename Use>
  void common(Use use) {
    data_->with<host::FileDataRecord>(use);
  }
  int write() {
    return entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
        data_->handle(), 27, reinterpret_cast<void*>(&onRequest), &host_.context, 0);
  }
  int writeAt(u32 position, u32 count) {
    host_.count = count;
    host_.position = position;
    return write();
  }
  void addRaw(int app, const Bytes& payload, u32 size = 0) {
    Bytes block = support::joined({0xFF, static_cast<host::u8>(0xE0 + app), 0, 0}, payload);
    if (size != 0) block.resize(size);
    HGLOBAL memory = GlobalAlloc(GMEM_FIXED, block.size());
    std::memcpy(memory, block.data(), block.size());
    host::PropertyField field = {};
    field.descriptorSize = 88;
    field.valueKind = host::kindBlock;
    field.fieldId = app == 1 ? host::fieldExifSegment : host::fieldRawSegment;
    field.sourceGroup = 4701;
    field.dataSize = static_cast<u32>(block.size());
    field.data = reinterpret_cast<u64>(memory);
    append(field);
  }
  void append(const host::PropertyField& field) {
    HGLOBAL record = data_->properties();
    ASSERT_EQ(doubles::reserveFields(&record, 1), 1);
    ASSERT_EQ(doubles::appendField(record, &field), 1);
    common([&](auto& data) { data.propertyRecord = reinterpret_cast<u64>(record); });
  }
  // What the module reads in the file that it wrote.
  struct ReadBack {
    host::MpoList list = {};
    std::vector<host::MpoEntry> entries;
  };
  ReadBack readBack() {
    the().read = [](const host::InputDescriptor& input, const host::CodecCallback& callback) {
      const Bytes stream = StreamCodec::drain(input);
      for (const support::MarkerSegment& segment : support::segmentsOf(stream)) {
        host::SegmentRecord record = {1,
                                      static_cast<host::u16>(segment.marker - 0xE0),
                                      static_cast<u32>(segment.payloadOffset),
                                      static_cast<host::i32>(segment.payload.size()),
                                      {},
                                      segment.payload.data()};
        if (StreamCodec::raise(callback, 5, &record) != 1) return 0;
      }
      return 1;
    };
    const FileData described(describeMpo(scratch_.path()));
    ReadBack back;
    if (described.handle() == nullptr) return back;
    described.with<host::MpoFileData>([&](auto& data) {
      back.list = data.list;
      back.entries.assign(data.entries, data.entries + data.list.imageCount);
    });
    return back;
  }

  Host host_;
  WritingCodec codec_;
  ScratchFile scratch_;
  std::unique_ptr<FileData> data_;
};

}  // namespace test
