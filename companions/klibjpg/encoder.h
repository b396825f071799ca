// Encodes one picture from a supplier into a target.
#pragma once

#include "companions/klibjpg/destination_manager.h"
#include "companions/klibjpg/error_trap.h"
#include "companions/klibjpg/supplier.h"

namespace klibjpg {

// Used once. Order: the header, the number of segments, each segment, each row from the top. The
// bytes per pixel decide the colours: 1 grey, 3 blue-green-red, 4 ink amounts, which are written
// inverted and with an Adobe segment instead of JFIF. Segments follow SOI and JFIF or Adobe; one
// that no marker can hold is left out. Results: codecGoOn, the answer that stopped, the target's
// result, or codecFailed.
class Encoder {
 public:
  Encoder(OutputTarget& target, Supplier& supplier, const host::WriteOptions& options) noexcept;
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  ~Encoder();

  [[nodiscard]] int run();

 private:
  void encode();  // the step of the trap

  bool answeredOn(host::i32 answer);
  bool setSize();
  bool setColours();
  void setCompression();
  void setSampling();
  void setDensity();
  bool writeSegments();
  bool writeRows();
  bool writeRow(const host::RowBlock& block, host::u8* own);

  OutputTarget& target_;
  Supplier& supplier_;
  const host::WriteOptions& options_;
  ErrorTrap trap_;
  jpeg_compress_struct info_ = {};
  host::ImageHeader header_ = {};
  host::i32 answer_ = host::codecGoOn;
};

}  // namespace klibjpg
