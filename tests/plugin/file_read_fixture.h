// A JPEG file read through the module, with a codec that plays events.
#pragma once

#include "tests/plugin/plugin.h"

namespace test {

// One call of the host's row callback.
struct Delivery {
  host::u32 first, width, count;
  host::u16 flags;
  host::i32 colour;
  host::u32 mask;
  std::vector<host::u8> firstByteOfRows;
  bool operator==(const Delivery&) const = default;
};
inline std::vector<Delivery> delivered;
inline int hostAnswer = 1;
inline host::ReadRequest* requestSeen = nullptr;

inline int takeRows(host::ReadRequest* request, host::u64 zero, host::u32 first, host::u32 width,
                    host::u32 count, host::u8** rows, host::u16 flags, host::i32 colour,
                    host::u32 mask) {
  EXPECT_EQ(zero, 0u);
  requestSeen = request;
  Delivery delivery{first, width, count, flags, colour, mask, {}};
  for (host::u32 row = 0; row < count; ++row) delivery.firstByteOfRows.push_back(rows[row][0]);
  delivered.push_back(delivery);
  return hostAnswer;
}

class FileRead : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    delivered.clear();
    hostAnswer = 1;
    data_.with([](auto& data) {
      std::strcpy(data.record.ansiPath, "picture.jpg");
      data.record.previewMarker = -2;
      data.tail.tag = host::jpegTailTag;
    });
  }

  int read(const char* path = nullptr) {
    return entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(5, path, data_.handle(),
                                                                   &request_, takeRows);
  }
  static host::u32 header(const host::CodecCallback& callback, host::ImageHeaderWithExtra& block) {
    return callback.callback(callback.context, host::eventHeader, 0, &block);
  }
  static host::ImageHeaderWithExtra headerOf(host::u32 width, host::u32 height) {
    return {{56, width, height, 3, 1, 72, 72, 3}, {24, {}, 0, 1, 1, 0}};
  }
  static host::u32 row(const host::CodecCallback& callback, host::u32 index, host::u32 width,
                       host::u32 height, host::u32 bytesPerPixel = 3) {
    std::vector<host::u8> pixels(std::size_t{width} * bytesPerPixel, static_cast<host::u8>(index));
    host::RowBlock block = {
        40, index, width, height, bytesPerPixel, {}, width * bytesPerPixel, {}, pixels.data()};
    return callback.callback(callback.context, host::eventRow, 0, &block);
  }
  // The codec double plays these events.
  template <typename Play>
  void play(Play events, int result = 1) {
    the().fileRead = [=](const char*, const host::CodecCallback& callback) {
      events(callback);
      return result;
    };
  }

  FileData data_;
  host::ReadRequest request_ = {1, {}, 0, {}, 0, 0};
};

}  // namespace test
