// Calls of the codec's entry points with callbacks that write down what happens.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/klibjpg.h"
#include "tests/support/jpeg_builder.h"

namespace klibjpg_test {

using support::Bytes;

struct SeenSegment {
  unsigned appNumber;
  std::size_t payloadOffset;
  Bytes payload;

  bool operator==(const SeenSegment&) const = default;
};

// Everything that one reading call raised.
struct Reading {
  int result = -1000;
  std::string events;  // one digit an event, rows as a single 3
  std::vector<host::ImageHeaderWithExtra> headers;
  std::vector<SeenSegment> segments;
  std::vector<host::RowBlock> rows;  // their pixel pointers are dead
  Bytes pixels;                      // the rows one after another
};

// Called for each event after it was written down; what it returns is the answer. It may change a
// header.
using Answer = std::function<host::u32(host::u32 event, void* block)>;
host::u32 goOn(host::u32 event, void* block);

// kJpgRead over an input function that delivers chunk bytes at a time.
Reading readInput(const Bytes& jpeg, const Answer& answer = goOn, std::size_t chunk = 65536);
// kJpgFileReadEx and kJpgFileReadExW.
Reading readFile(const std::string& path, const Answer& answer = goOn);
Reading readFileW(const std::wstring& path, const Answer& answer = goOn);

// Asks for another size in the first header.
Answer askForSize(host::u32 width, host::u32 height);

struct WrittenSegment {
  unsigned appNumber;
  Bytes payload;
};

// A picture for kJpgWrite, and what happened to it.
struct Writing {
  host::u32 width = 24;
  host::u32 height = 16;
  host::u32 bytesPerPixel = 3;
  host::u32 densityUnit = 1;
  host::u32 horizontalResolution = 72;
  host::u32 verticalResolution = 72;
  host::WriteOptions options = {24, 90, host::modeBaseline, host::sample420, 1, 0};
  std::vector<WrittenSegment> segments;
  std::function<host::u8(host::u32 x, host::u32 y, unsigned channel)> sample =
      support::pictureSample;
  bool fillsRows = true;
  Answer answer = goOn;         // asked after the block was filled
  std::size_t failingCall = 0;  // of the output function, counted from 1; 0 = none

  std::string events;  // one digit an event, rows as a single 3
  std::size_t outputCalls = 0;
  std::size_t rowCalls = 0;
  Bytes file;

  int run();

 private:
  static host::u32 onEvent(void* context, host::u32 event, host::u64 unused, void* block);
  static int onOutput(HANDLE file, host::u32 count, const void* bytes);
  void fill(host::u32 event, void* block);
};

// A file that lives as long as this.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Bytes& content);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::wstring widePath() const { return {path_.begin(), path_.end()}; }

 private:
  std::string path_;
};

}  // namespace klibjpg_test
