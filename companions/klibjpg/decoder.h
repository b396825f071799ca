// Decodes one picture from a source for a receiver.
#pragma once

#include "companions/klibjpg/error_trap.h"
#include "companions/klibjpg/receiver.h"
#include "companions/klibjpg/source_manager.h"

namespace klibjpg {

// Used once. Order: every application segment in front of the first scan, the header (a second time
// with the delivered size when the answer changed it), then every row from the top. A picture of
// several scans is delivered in one pass, from all its scans: showing each would cost a decoding of
// the whole picture apiece.
//
// What is damaged is delivered as far as it can be decoded; samples that the stream does not hold
// are 128 in every channel before ink is turned. A stream that cannot be read on, or a lack of
// memory, is no damage: the call fails. Results: codecGoOn, the answer that stopped, or
// codecFailed.
class Decoder {
 public:
  Decoder(InputSource& source, Receiver& receiver) noexcept;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder();

  [[nodiscard]] int run();

 private:
  // libjpeg reports its progress here, before each of its steps through a picture of several scans.
  struct ScanWatch : jpeg_progress_mgr {
    Decoder* decoder = nullptr;
    host::u64 budget = 0;  // scans that are read
    int seen = 0;          // number of the last scan that was looked at
  };

  [[nodiscard]] int decode();

  // Scans that add nothing to a small preview: none may be stepped over, they may, some were.
  enum class StepsOver { none, allowed, some };

  // Steps of the trap.
  void readHeader();
  void announce();
  void startPicture();
  void startAnew();
  void deliverRows();

  // Abandons the step when the picture is far larger than its data.
  void refuseBeyondData();
  [[nodiscard]] host::u64 blocksSoFar() const;
  [[nodiscard]] bool isCopiedAtTheEnd() const;
  [[nodiscard]] bool rowsRepeat();
  [[nodiscard]] host::u8* allocateRow(host::u32 byteCount);
  void decodeRow(const host::RowBlock& block);
  void giveRow(host::RowBlock block);
  void repeatRow(host::RowBlock block, host::u8* ownRow);
  bool prepareRows();
  void setOutputColours();
  void watchScans();
  void watchScan();
  [[nodiscard]] bool isScanNeeded() const;
  [[nodiscard]] bool knowsAllCoefficients() const;
  void chooseScale(host::u32 wantedWidth, host::u32 wantedHeight);
  [[nodiscard]] host::i32 announceSize(host::ImageHeaderWithExtra& header);
  boolean onSegment();
  host::u8* segmentBuffer();
  void noteColours(const host::u8* payload, std::size_t length);

  InputSource& source_;
  Receiver& receiver_;
  ErrorTrap trap_;
  ScanWatch watch_ = {};
  jpeg_decompress_struct info_ = {};
  host::u8* segmentBuffer_ = nullptr;  // of libjpeg's pool
  static constexpr host::u32 none = ~host::u32{0};
  host::u32 endRow_ = none;  // where the data ended
  bool beyondData_ = false;
  bool inHeader_ = true;
  bool announced_ = false;  // the header is known; no segment is raised any more
  StepsOver stepsOver_;
  host::i32 answer_ = host::codecGoOn;
};

}  // namespace klibjpg
