// Where compressed data comes from: a file, memory, or the host's read function. No source holds
// more of its stream than one buffer.
#pragma once

#include <memory>
#include <span>

#include "companions/klibjpg/jpeg_library.h"
#include "host/klibjpg.h"

namespace klibjpg {

// libjpeg's source manager over a stream of buffers. It counts what it hands out, so that a place
// in the stream has a number, and it never suspends: behind its last byte a stream goes on with
// end-of-image markers for ever, which is how libjpeg completes a picture that was cut off.
class InputSource : public jpeg_source_mgr {
 public:
  InputSource() noexcept;
  InputSource(const InputSource&) = delete;
  InputSource& operator=(const InputSource&) = delete;
  virtual ~InputSource() = default;

  // Bytes of the stream in front of the next one. Meaningless once the stream has ended.
  [[nodiscard]] host::u64 position() const noexcept { return delivered_ - bytes_in_buffer; }

  // The next count bytes: in the stream's own buffer when they all lie there, else copied to spare,
  // which has room for them. Null when the stream ends first.
  [[nodiscard]] const host::u8* take(std::size_t count, host::u8* spare);
  void skip(std::size_t count);
  // Whether the next count bytes lie in the stream's own buffer.
  [[nodiscard]] bool holds(std::size_t count) const noexcept {
    return !ended_ && bytes_in_buffer >= count;
  }
  // Steps over entropy-coded data up to the marker that ends the scan.
  void skipScan();
  // Whether restart() can be called.
  [[nodiscard]] virtual bool canRestart() const noexcept { return false; }
  // Goes on from the stream's first byte.
  void restart();

  // Cuts the stream off here.
  void end() noexcept;

  // Whether the stream ended because it could not be read on.
  [[nodiscard]] bool failed() const noexcept { return failed_; }

 protected:
  // The next buffer of the stream, valid until the next call; empty at its end.
  virtual std::span<const host::u8> nextBuffer() = 0;
  void noteFailure() noexcept { failed_ = true; }
  // Makes the next buffer the first again; only of a stream that can restart.
  virtual void moveToStart() {}

 private:
  bool refill();
  void use(std::span<const host::u8> bytes) noexcept;
  bool isAtMarker();

  host::u64 delivered_ = 0;
  std::span<const host::u8> behind_;  // the buffer that comes next, when it is known already
  bool ended_ = false;
  bool failed_ = false;
};

class MemorySource final : public InputSource {
 public:
  explicit MemorySource(std::span<const host::u8> bytes) noexcept : bytes_(bytes), rest_(bytes) {}
  [[nodiscard]] bool canRestart() const noexcept override { return true; }

 private:
  std::span<const host::u8> nextBuffer() override;
  void moveToStart() override;

  std::span<const host::u8> bytes_;
  std::span<const host::u8> rest_;
};

class FileSource final : public InputSource {
 public:
  // A path that cannot be opened for reading makes an empty stream.
  explicit FileSource(const char* path);
  explicit FileSource(const wchar_t* path);
  ~FileSource() override;
  [[nodiscard]] bool canRestart() const noexcept override { return true; }

 private:
  std::span<const host::u8> nextBuffer() override;
  void moveToStart() override;

  // What describes a picture mostly lies in its first bytes: the pieces begin small and grow.
  static constexpr DWORD firstPiece = 8 * 1024;
  static constexpr DWORD bufferSize = 64 * 1024;

  std::unique_ptr<host::u8[]> buffer_ = std::make_unique_for_overwrite<host::u8[]>(bufferSize);
  DWORD piece_ = firstPiece;
  HANDLE file_;
};

// Pulls from the host's read function, from wherever that begins.
class DescriptorSource final : public InputSource {
 public:
  explicit DescriptorSource(const host::InputDescriptor& input) noexcept : input_(input) {}

 private:
  std::span<const host::u8> nextBuffer() override;

  const host::InputDescriptor& input_;
  bool last_ = false;
};

}  // namespace klibjpg
