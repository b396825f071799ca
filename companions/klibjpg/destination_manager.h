// Where compressed data goes: to the host's output function, or into memory.
#pragma once

#include <memory>

#include "companions/klibjpg/jpeg_library.h"
#include "host/klibjpg.h"

namespace klibjpg {

// libjpeg's destination manager. A target that cannot take more abandons the encoder's step at
// once.
class OutputTarget : public jpeg_destination_mgr {
 public:
  OutputTarget() noexcept;
  OutputTarget(const OutputTarget&) = delete;
  OutputTarget& operator=(const OutputTarget&) = delete;
  virtual ~OutputTarget() = default;

  // codecGoOn as long as everything was taken, else the result of the call.
  [[nodiscard]] int result() const noexcept { return result_; }

 protected:
  // Names the buffer that is filled next.
  void offer(host::u8* buffer, std::size_t size) noexcept;
  // The buffer has been filled up to used, its whole size unless last is set. Takes it, offers a
  // buffer unless last is set, and returns codecGoOn or what the call results in.
  virtual int take(std::size_t used, bool last) = 0;

 private:
  void take(j_compress_ptr info, bool last);

  std::size_t size_ = 0;
  int result_ = host::codecGoOn;
};

// Hands chunks of 64 KiB to the host's output function.
class DescriptorTarget final : public OutputTarget {
 public:
  explicit DescriptorTarget(const host::OutputDescriptor& output);

 private:
  int take(std::size_t used, bool last) override;

  static constexpr std::size_t chunk = std::size_t{64} * 1024;

  const host::OutputDescriptor& output_;
  std::unique_ptr<host::u8[]> buffer_ = std::make_unique_for_overwrite<host::u8[]>(chunk);
};

// Fills a block of memory and stops when the output does not fit.
class MemoryTarget final : public OutputTarget {
 public:
  // capacity is at least 1.
  MemoryTarget(host::u8* memory, std::size_t capacity) noexcept;

  // Bytes that were put into the memory.
  [[nodiscard]] std::size_t length() const noexcept { return length_; }

 private:
  int take(std::size_t used, bool last) override;

  std::size_t length_ = 0;
  bool full_ = false;
  // Shows whether anything follows once the memory is filled to its last byte.
  host::u8 beyond_[16];
};

}  // namespace klibjpg
