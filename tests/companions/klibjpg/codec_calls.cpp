#include "tests/companions/klibjpg/codec_calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

namespace klibjpg_test {
namespace {

using host::u32;
using host::u64;
using host::u8;

void note(std::string& events, u32 event) {
  const char digit = static_cast<char>('0' + event);
  if (event != host::eventRow || events.empty() || events.back() != digit) events += digit;
}

struct Reader {
  Reading reading;
  const Answer& answer;

  static u32 onEvent(void* context, u32 event, u64, void* block) {
    auto& reader = *static_cast<Reader*>(context);
    note(reader.reading.events, event);
    reader.record(event, block);
    return reader.answer(event, block);
  }

  void record(u32 event, void* block) {
    if (event == host::eventHeader) {
      reading.headers.push_back(*static_cast<host::ImageHeaderWithExtra*>(block));
    } else if (event == host::eventSegment) {
      const auto& segment = *static_cast<host::SegmentRecord*>(block);
      if (segment.kind != 1) ADD_FAILURE() << "a segment of an unknown kind";
      reading.segments.push_back({segment.appNumber, segment.payloadOffset,
                                  Bytes(segment.payload, segment.payload + segment.payloadLength)});
    } else if (event == host::eventRow) {
      const auto& row = *static_cast<host::RowBlock*>(block);
      reading.rows.push_back(row);
      reading.pixels.insert(reading.pixels.end(), row.pixels, row.pixels + row.byteCount);
    }
  }
};

struct ChunkedInput {
  const Bytes& bytes;
  std::size_t chunk;
  std::size_t at = 0;
  Bytes buffer;
  bool last = false;

  static int read(void* context, u32* count, u8** buffer) {
    auto& input = *static_cast<ChunkedInput*>(context);
    if (input.last) ADD_FAILURE() << "read again after the last buffer";
    const std::size_t length = std::min(input.chunk, input.bytes.size() - input.at);
    const auto begin = input.bytes.begin() + static_cast<std::ptrdiff_t>(input.at);
    // A buffer of its own each time: what is behind the count is not the stream's.
    input.buffer.assign(begin, begin + static_cast<std::ptrdiff_t>(length));
    input.at += length;
    *count = static_cast<u32>(length);
    *buffer = input.buffer.data();
    input.last = length < input.chunk;
    return input.last ? host::inputLast : host::inputMore;
  }
};

template <typename Call>
Reading recorded(const Answer& answer, const Call& call) {
  Reader reader = {{}, answer};
  const host::CodecCallback callback = {&reader, Reader::onEvent};
  const int result = call(&callback);
  reader.reading.result = result;
  return reader.reading;
}

}  // namespace

u32 goOn(u32, void*) { return host::codecGoOn; }

Reading readInput(const Bytes& jpeg, const Answer& answer, std::size_t chunk) {
  ChunkedInput input = {jpeg, chunk, 0, {}, false};
  host::InputDescriptor descriptor = {};
  descriptor.size = sizeof(descriptor);
  descriptor.context = &input;
  descriptor.read = ChunkedInput::read;
  return recorded(answer,
                  [&](const void* callback) { return kJpgRead(&descriptor, callback, nullptr); });
}

Reading readFile(const std::string& path, const Answer& answer) {
  return recorded(answer, [&](const void* callback) {
    return kJpgFileReadEx(path.c_str(), callback, nullptr);
  });
}

Reading readFileW(const std::wstring& path, const Answer& answer) {
  return recorded(answer, [&](const void* callback) {
    return kJpgFileReadExW(path.c_str(), callback, nullptr);
  });
}

Answer askForSize(u32 width, u32 height) {
  return [=, asked = false](u32 event, void* block) mutable -> u32 {
    if (event == host::eventHeader && !asked) {
      asked = true;
      static_cast<host::ImageHeader*>(block)->width = width;
      static_cast<host::ImageHeader*>(block)->height = height;
    }
    return host::codecGoOn;
  };
}

u32 Writing::onEvent(void* context, u32 event, u64, void* block) {
  auto& writing = *static_cast<Writing*>(context);
  note(writing.events, event);
  writing.fill(event, block);
  return writing.answer(event, block);
}

void Writing::fill(u32 event, void* block) {
  if (event == host::eventHeader) {
    auto& header = *static_cast<host::ImageHeader*>(block);
    header = {32,           width, height, 0, densityUnit, horizontalResolution, verticalResolution,
              bytesPerPixel};
  } else if (event == host::eventCountSegments) {
    static_cast<host::SegmentCountBlock*>(block)->count = static_cast<u32>(segments.size());
  } else if (event == host::eventSegment) {
    auto& out = *static_cast<host::SegmentBlock*>(block);
    const WrittenSegment& segment = segments.at(out.index - 1);
    out.kind = 1;
    out.appNumber = static_cast<host::u16>(segment.appNumber);
    out.payloadLength = static_cast<u32>(segment.payload.size());
    out.payload = segment.payload.data();
  } else if (event == host::eventRow) {
    const auto& row = *static_cast<host::RowBlock*>(block);
    ++rowCalls;
    for (u32 i = 0; fillsRows && i < row.byteCount; ++i) {
      row.pixels[i] = sample(i / bytesPerPixel, row.row, i % bytesPerPixel);
    }
  }
}

int Writing::onOutput(HANDLE file, u32 count, const void* bytes) {
  auto& writing = *static_cast<Writing*>(file);
  if (++writing.outputCalls == writing.failingCall) return host::codecOutputFailed;
  const auto* begin = static_cast<const u8*>(bytes);
  writing.file.insert(writing.file.end(), begin, begin + count);
  return 1;
}

int Writing::run() {
  host::OutputDescriptor output = {};
  output.size = sizeof(output);
  output.file = this;
  output.write = onOutput;
  const host::CodecCallback callback = {this, onEvent};
  return kJpgWrite(&output, &callback, &options);
}

TemporaryFile::TemporaryFile(const Bytes& content) {
  static int number = 0;
  // The tests of one program may run as several processes at once.
  static const std::string program = std::to_string(std::random_device()());
  const std::string name = "klibjpg_" + program + "_" + std::to_string(++number) + ".jpg";
  path_ = (std::filesystem::temp_directory_path() / name).string();
  std::ofstream(path_, std::ios::binary)
      .write(reinterpret_cast<const char*>(content.data()),
             static_cast<std::streamsize>(content.size()));
}

TemporaryFile::~TemporaryFile() { std::filesystem::remove(path_); }

}  // namespace klibjpg_test
