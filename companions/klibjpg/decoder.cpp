#include "companions/klibjpg/decoder.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "companions/klibjpg/description.h"
#include "companions/klibjpg/row_conversion.h"

namespace klibjpg {
namespace {

using host::i32;
using host::u32;
using host::u64;
using host::u8;

constexpr int segmentKinds = 16;
constexpr std::size_t longestPayload = 65533;  // the length word counts itself
constexpr u32 scaleDenominator = 8;

// Coefficients of a picture of several scans are all kept; what would not fit is refused instead of
// taking the machine's memory. libjpeg holds the limit in a long, which has 32 bits on Windows.
constexpr long coefficientMemory = 0x7FFFFFFF;

// A few bytes can ask for a further scan over every block of a large picture. This many scans are
// always decoded (encoders make about ten), so that a hostile picture costs little more than an
// honest one of its size ...
constexpr u64 freeScans = 16;
// ... and further ones as long as they visit no more blocks than this, about a second of work.
constexpr u64 extraBlocks = u64{1} << 25;

// A header can ask for a picture that its stream holds nothing of. Blocks that are missing are made
// up, but not more of a scan than these: rows of a picture in one scan whose data has ended are
// copies, others are decoded or their coefficients kept ...
constexpr u64 freeBlocksToCopy = u64{1} << 22;
constexpr u64 freeBlocksToMake = u64{1} << 19;
// ... and more than the stream has bits for: every block takes one at least (T.81, F.1.2; in a
// progressive picture in its first scan, G.1.2), and a picture that was cut off has many times as
// much for those that are left.
constexpr u64 bitsPerByte = 8;

constexpr char jfifSignature[] = "JFIF";  // with its NUL
constexpr std::size_t jfifLength = 14;    // up to the thumbnail, T.871 clause 10.1
constexpr int adobeAppNumber = 14;
constexpr std::size_t adobeNameLength = 5;  // without a NUL
constexpr std::size_t adobeLength = 12;     // T.872 clause 6.5.3

// What the frame header says (T.81 B.2.2). libjpeg takes the values of a second one before it
// refuses it, when the picture has been laid out by the first.
class FrameHeader {
 public:
  explicit FrameHeader(const jpeg_decompress_struct& info)
      : width_(info.image_width),
        height_(info.image_height),
        components_(info.num_components),
        precision_(info.data_precision),
        progressive_(info.progressive_mode),
        arithmetic_(info.arith_code) {}

  void putBack(jpeg_decompress_struct& info) const {
    info.image_width = width_;
    info.image_height = height_;
    info.num_components = components_;
    info.data_precision = precision_;
    info.progressive_mode = progressive_;
    info.arith_code = arithmetic_;
  }

 private:
  JDIMENSION width_;
  JDIMENSION height_;
  int components_;
  int precision_;
  boolean progressive_;
  boolean arithmetic_;
};

UINT16 bigEndian16(const u8* bytes) { return static_cast<UINT16>((bytes[0] << 8) | bytes[1]); }

void noteJfif(jpeg_decompress_struct& info, const u8* payload, std::size_t length) {
  if (length < jfifLength || std::memcmp(payload, jfifSignature, sizeof(jfifSignature)) != 0) {
    return;
  }
  info.saw_JFIF_marker = TRUE;
  info.JFIF_major_version = payload[5];
  info.JFIF_minor_version = payload[6];
  info.density_unit = payload[7];
  info.X_density = bigEndian16(payload + 8);
  info.Y_density = bigEndian16(payload + 10);
}

void noteAdobe(jpeg_decompress_struct& info, const u8* payload, std::size_t length) {
  if (length < adobeLength || std::memcmp(payload, "Adobe", adobeNameLength) != 0) return;
  info.saw_Adobe_marker = TRUE;
  info.Adobe_transform = payload[11];
}

u64 blocksOf(const jpeg_component_info& component) {
  return u64{component.width_in_blocks} * component.height_in_blocks;
}

u64 blocksOfPicture(const jpeg_decompress_struct& info) {
  return std::accumulate(
      info.comp_info, info.comp_info + info.num_components, u64{0},
      [](u64 sum, const jpeg_component_info& component) { return sum + blocksOf(component); });
}

u64 blocksOfScan(const jpeg_decompress_struct& info) {
  return std::accumulate(
      info.cur_comp_info, info.cur_comp_info + info.comps_in_scan, u64{0},
      [](u64 sum, const jpeg_component_info* component) { return sum + blocksOf(*component); });
}

}  // namespace

Decoder::Decoder(InputSource& source, Receiver& receiver) noexcept
    : source_(source),
      receiver_(receiver),
      stepsOver_(source.canRestart() ? StepsOver::allowed : StepsOver::none) {
  info_.err = trap_.manager();
}

Decoder::~Decoder() { jpeg_destroy_decompress(&info_); }

int Decoder::run() {
  const int result = decode();
  return result == host::codecGoOn && source_.failed() ? codecFailed : result;
}

int Decoder::decode() {
  if (!trap_.run<&Decoder::readHeader>(*this)) return codecFailed;
  if (answer_ != host::codecGoOn) return answer_;
  if (!trap_.run<&Decoder::announce>(*this)) return codecFailed;
  if (answer_ == host::codecHeaderOnly) return host::codecGoOn;
  if (answer_ != host::codecGoOn) return answer_;
  if (!prepareRows() || !trap_.run<&Decoder::deliverRows>(*this)) return codecFailed;
  return answer_;
}

void Decoder::readHeader() {
  jpeg_create_decompress(&info_);
  info_.client_data = this;
  info_.src = &source_;
  info_.mem->max_memory_to_use = coefficientMemory;
  for (int i = 0; i < segmentKinds; ++i) {
    jpeg_set_marker_processor(&info_, JPEG_APP0 + i, [](j_decompress_ptr info) -> boolean {
      return static_cast<Decoder*>(info->client_data)->onSegment();
    });
  }
  jpeg_read_header(&info_, TRUE);
  inHeader_ = false;
}

// FALSE, "come again with more data", is how a stop of the host leaves the header. A segment that
// the stream does not hold wholly, or whose place the record cannot name, is not raised.
boolean Decoder::onSegment() {
  u8 spare[2];
  const u8* const lengthWord = source_.take(sizeof(spare), spare);
  const std::size_t length = lengthWord != nullptr ? bigEndian16(lengthWord) : 0;
  if (length < sizeof(spare)) return TRUE;
  const std::size_t payloadLength = length - sizeof(spare);
  if (!inHeader_) {
    source_.skip(payloadLength);
    return TRUE;
  }
  const u64 offset = source_.position();
  u8* const room = source_.holds(payloadLength) ? nullptr : segmentBuffer();
  const u8* const payload = source_.take(payloadLength, room);
  if (payload == nullptr) return TRUE;
  noteColours(payload, payloadLength);
  if (announced_ || offset > UINT32_MAX) return TRUE;

  host::SegmentRecord segment = {};
  segment.kind = 1;
  segment.appNumber = static_cast<host::u16>(info_.unread_marker - JPEG_APP0);
  segment.payloadOffset = static_cast<u32>(offset);
  segment.payloadLength = static_cast<i32>(payloadLength);
  segment.payload = payload;
  answer_ = receiver_.onSegment(segment);
  return answer_ == host::codecGoOn ? TRUE : FALSE;
}

u8* Decoder::segmentBuffer() {
  if (segmentBuffer_ == nullptr) {
    segmentBuffer_ = static_cast<u8*>(info_.mem->alloc_large(reinterpret_cast<j_common_ptr>(&info_),
                                                             JPOOL_PERMANENT, longestPayload));
  }
  return segmentBuffer_;
}

// libjpeg's own readers of these two segments are replaced with the segment processor; its colour
// decisions rest on what they would have noted.
void Decoder::noteColours(const u8* payload, std::size_t length) {
  if (info_.unread_marker == JPEG_APP0) noteJfif(info_, payload, length);
  if (info_.unread_marker == JPEG_APP0 + adobeAppNumber) noteAdobe(info_, payload, length);
}

void Decoder::announce() {
  setOutputColours();
  announced_ = true;
  jpeg_calc_output_dimensions(&info_);
  host::ImageHeaderWithExtra header = {};
  answer_ = announceSize(header);
  const bool scaled =
      header.header.width != info_.output_width || header.header.height != info_.output_height;
  if (answer_ != host::codecGoOn || !scaled) return;
  chooseScale(header.header.width, header.header.height);
  answer_ = announceSize(header);
}

i32 Decoder::announceSize(host::ImageHeaderWithExtra& header) {
  header = describe(info_, info_.output_width, info_.output_height);
  return receiver_.onHeader(header);
}

void Decoder::setOutputColours() {
  const u32 wanted = receiver_.wantedBytesPerPixel();
  switch (info_.num_components) {
    case 1:
      info_.out_color_space = wanted == 3 ? JCS_EXT_BGR : JCS_GRAYSCALE;
      break;
    case 3:
      info_.out_color_space = wanted == 1 ? JCS_GRAYSCALE : JCS_EXT_BGR;
      break;
    default:  // CMYK for four components, else the samples as they are
      break;
  }
}

// The smallest of n/8 that is not smaller than what is wanted on either side. A side of 0 wants
// nothing in particular and gets the full size.
void Decoder::chooseScale(u32 wantedWidth, u32 wantedHeight) {
  info_.scale_denom = scaleDenominator;
  const bool sized = wantedWidth != 0 && wantedHeight != 0;
  for (info_.scale_num = sized ? 1 : scaleDenominator; info_.scale_num < scaleDenominator;
       ++info_.scale_num) {
    jpeg_calc_output_dimensions(&info_);
    if (info_.output_width >= wantedWidth && info_.output_height >= wantedHeight) return;
  }
  jpeg_calc_output_dimensions(&info_);
}

void Decoder::watchScans() {
  watch_.decoder = this;
  watch_.seen = 0;
  watch_.budget = freeScans + extraBlocks / std::max<u64>(blocksOfPicture(info_), 1);
  watch_.progress_monitor = [](j_common_ptr info) {
    Decoder& decoder = *static_cast<ScanWatch*>(info->progress)->decoder;
    decoder.watchScan();
    decoder.refuseBeyondData();
  };
  info_.progress = &watch_;
}

// Holds the number of scans against the budget, and steps over the data of a scan that adds
// nothing: without data libjpeg leaves the coefficients as they are.
void Decoder::watchScan() {
  if (info_.input_scan_number == watch_.seen) return;
  watch_.seen = info_.input_scan_number;
  if (static_cast<u64>(watch_.seen) > watch_.budget) {
    ErrorTrap::raise(reinterpret_cast<j_common_ptr>(&info_));
  }
  if (isScanNeeded()) return;
  source_.skipScan();
  stepsOver_ = StepsOver::some;
}

bool Decoder::knowsAllCoefficients() const {
  for (int component = 0; component < info_.num_components; ++component) {
    const int* const bits = info_.coef_bits[component];
    if (std::any_of(bits, bits + DCTSIZE2, [](int unknown) { return unknown != 0; })) return false;
  }
  return true;
}

// A block that comes down to one sample is its first coefficient alone. In a progressive picture
// the others have scans of their own, each of one component (T.81 G.1.1.1.1).
bool Decoder::isScanNeeded() const {
  return stepsOver_ == StepsOver::none || info_.progressive_mode == FALSE || info_.Ss == 0 ||
         info_.cur_comp_info[0]->DCT_scaled_size > 1;
}

// A picture of several scans is read to its end here. When one of them is broken, or one too many,
// the stream ends in front of it and the picture is made from the scans so far.
bool Decoder::prepareRows() {
  const FrameHeader frame(info_);
  watchScans();
  const bool started = trap_.run<&Decoder::startPicture>(*this);
  // libjpeg smooths a picture whose last scans are missing, and how depends on all that are there.
  if (started && (stepsOver_ != StepsOver::some || knowsAllCoefficients())) return true;
  if (!started && (trap_.outOfMemory() || beyondData_)) return false;
  if (stepsOver_ == StepsOver::some) return trap_.run<&Decoder::startAnew>(*this) && prepareRows();
  frame.putBack(info_);
  info_.progress = nullptr;
  info_.unread_marker = 0;
  source_.end();
  return trap_.run<&Decoder::startPicture>(*this);
}

// Reads the header once more, for nobody but libjpeg, to take every scan then.
void Decoder::startAnew() {
  stepsOver_ = StepsOver::none;
  const unsigned scale = info_.scale_num;
  const unsigned denominator = info_.scale_denom;
  jpeg_abort_decompress(&info_);
  info_.progress = nullptr;
  source_.restart();
  inHeader_ = true;
  jpeg_read_header(&info_, TRUE);
  inHeader_ = false;
  setOutputColours();
  info_.scale_num = scale;
  info_.scale_denom = denominator;
}

void Decoder::startPicture() { jpeg_start_decompress(&info_); }

// Blocks of the scan that were decoded. Arithmetic coding spends no whole bits on them.
u64 Decoder::blocksSoFar() const {
  if (info_.arith_code != FALSE) return 0;
  return blocksOfScan(info_) * info_.input_iMCU_row / info_.total_iMCU_rows;
}

void Decoder::refuseBeyondData() {
  const bool ended = source_.ended() || isDataEnded(info_);
  const u64 blocks = ended ? blocksOfScan(info_) : blocksSoFar();
  const u64 freeBlocks = ended && isCopiedAtTheEnd() ? freeBlocksToCopy : freeBlocksToMake;
  beyondData_ = blocks > freeBlocks && blocks / bitsPerByte > source_.bytes();
  if (beyondData_) ErrorTrap::raise(reinterpret_cast<j_common_ptr>(&info_));
}

bool Decoder::isCopiedAtTheEnd() const {
  return !jpeg_has_multiple_scans(const_cast<j_decompress_ptr>(&info_)) &&
         info_.arith_code == FALSE;
}

// Whether rows from here on are the same grey as the last one: a sequential picture whose data
// ended in front of the block rows that the last ones were made from.
bool Decoder::rowsRepeat() {
  if (!isCopiedAtTheEnd() || !trap_.hitEnd()) return false;
  if (endRow_ == none) endRow_ = info_.output_scanline;
  // The end was met while a later block row was read, and upsampling reaches into the next one.
  constexpr u32 blockRowsBetween = 3;
  const auto blockRow = static_cast<u32>(info_.max_v_samp_factor * info_.min_DCT_scaled_size);
  return info_.output_scanline >= endRow_ + blockRowsBetween * blockRow;
}

void Decoder::deliverRows() {
  info_.progress = nullptr;
  host::RowBlock block = {};
  block.size = sizeof(block);
  block.width = info_.output_width;
  block.imageHeight = info_.output_height;
  block.bytesPerPixel = static_cast<u32>(info_.output_components);
  block.byteCount = block.width * block.bytesPerPixel;
  u8* const ownRow = allocateRow(block.byteCount);
  while (answer_ == host::codecGoOn && info_.output_scanline < info_.output_height) {
    block.row = info_.output_scanline;
    if (rowsRepeat()) return repeatRow(block, ownRow);
    u8* const place = receiver_.placeFor(block.row, block.byteCount);
    block.pixels = place != nullptr ? place : ownRow;
    decodeRow(block);
    if (!jpeg_has_multiple_scans(&info_)) refuseBeyondData();  // those of others are all read
    giveRow(block);
  }
}

u8* Decoder::allocateRow(u32 byteCount) {
  return info_.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info_), JPOOL_IMAGE, byteCount,
                                 1)[0];
}

void Decoder::decodeRow(const host::RowBlock& block) {
  JSAMPROW row = block.pixels;
  jpeg_read_scanlines(&info_, &row, 1);
  const bool turned = info_.out_color_space == JCS_CMYK && info_.saw_Adobe_marker != FALSE;
  if (turned) invertInk(row, row, block.byteCount);
}

// The block is the host's to change.
void Decoder::giveRow(host::RowBlock block) { answer_ = receiver_.onRow(block); }

// The rest of the picture: one row is decoded, and all are copies of it.
void Decoder::repeatRow(host::RowBlock block, u8* ownRow) {
  block.pixels = allocateRow(block.byteCount);
  const u8* const repeated = block.pixels;
  decodeRow(block);
  for (; answer_ == host::codecGoOn && block.row < block.imageHeight; ++block.row) {
    u8* const place = receiver_.placeFor(block.row, block.byteCount);
    block.pixels = place != nullptr ? place : ownRow;
    std::memcpy(block.pixels, repeated, block.byteCount);
    giveRow(block);
  }
}

}  // namespace klibjpg
