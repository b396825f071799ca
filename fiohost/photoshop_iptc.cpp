#include "fiohost/photoshop_iptc.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/byte_reader.h"

namespace fiohost {
namespace {

using std::uint8_t;
using Bytes = std::span<const uint8_t>;
using platform::ByteReader;

constexpr std::size_t photoshopHead = 14;  // "Photoshop 3.0" with its NUL
constexpr std::uint16_t iptcResource = 1028;
constexpr uint8_t tagMarker = 0x1C;
constexpr uint8_t applicationRecord = 2;
constexpr std::size_t datasetHead = 5;  // marker, record, number, 16-bit length
constexpr std::array<uint8_t, 4> resourceSignature = {'8', 'B', 'I', 'M'};

std::size_t evened(std::size_t size) { return size + size % 2; }

// Where a resource's length word and data lie in the payload.
struct Place {
  std::size_t lengthAt;
  std::size_t dataAt;
  std::size_t size;
};

std::optional<Place> placeOfIptc(Bytes payload) {
  const ByteReader reader(payload, platform::ByteOrder::big);
  std::size_t at = photoshopHead;
  while (const auto head = reader.bytes(at, 7)) {
    if (!std::equal(resourceSignature.begin(), resourceSignature.end(), head->begin())) break;
    const std::size_t lengthAt = at + 6 + evened(std::size_t{1} + (*head)[6]);
    const auto size = reader.u32(lengthAt);
    if (!size || !reader.bytes(lengthAt + 4, *size)) break;
    if (reader.u16(at + 4) == iptcResource) return Place{lengthAt, lengthAt + 4, *size};
    at = lengthAt + 4 + evened(*size);
  }
  return std::nullopt;
}

// The dataset that begins the bytes, or nothing when none does. Extended lengths end the datasets.
std::optional<Bytes> firstDataset(Bytes rest) {
  if (rest.size() < datasetHead || rest[0] != tagMarker) return std::nullopt;
  const std::size_t size = std::size_t{rest[3]} << 8 | rest[4];
  if (size > 32767 || size > rest.size() - datasetHead) return std::nullopt;
  return rest.first(datasetHead + size);
}

// Puts the edited datasets in front of the first that has a higher number, so that the numbers go
// on rising where they do.
class Rewriter {
 public:
  explicit Rewriter(std::vector<DatasetEdit> edits) : left_(std::move(edits)) {
    std::sort(left_.begin(), left_.end(),
              [](const DatasetEdit& a, const DatasetEdit& b) { return a.number < b.number; });
    for (const DatasetEdit& edit : left_) edited_.push_back(edit.number);
  }

  std::vector<uint8_t> rewrite(Bytes stream) {
    while (const auto dataset = firstDataset(stream)) {
      take(*dataset);
      stream = stream.subspan(dataset->size());
    }
    putEditsBefore(256);
    append(stream);
    return std::move(out_);
  }

 private:
  void take(Bytes dataset) {
    const uint8_t record = dataset[1];
    const uint8_t number = dataset[2];
    if (record == applicationRecord) putEditsBefore(unsigned{number} + 1);
    if (record > applicationRecord) putEditsBefore(256);
    const bool replaced = record == applicationRecord &&
                          std::find(edited_.begin(), edited_.end(), number) != edited_.end();
    if (!replaced) append(dataset);
  }
  void putEditsBefore(unsigned number) {
    while (!left_.empty() && left_.front().number < number) {
      for (const Dataset& value : left_.front().values) put(left_.front().number, value);
      left_.erase(left_.begin());
    }
  }
  void put(uint8_t number, const Dataset& value) {
    const std::array<uint8_t, datasetHead> head = {tagMarker, applicationRecord, number,
                                                   static_cast<uint8_t>(value.size() >> 8),
                                                   static_cast<uint8_t>(value.size())};
    append(head);
    append(value);
  }
  void append(Bytes bytes) { out_.insert(out_.end(), bytes.begin(), bytes.end()); }

  std::vector<DatasetEdit> left_;
  std::vector<uint8_t> edited_;
  std::vector<uint8_t> out_;
};

}  // namespace

std::optional<std::size_t> countDatasets(Bytes payload) {
  const auto place = placeOfIptc(payload);
  if (!place) return std::nullopt;
  std::size_t count = 0;
  Bytes stream = payload.subspan(place->dataAt, place->size);
  while (const auto dataset = firstDataset(stream)) {
    if ((*dataset)[1] == applicationRecord) ++count;
    stream = stream.subspan(dataset->size());
  }
  return count;
}

std::vector<uint8_t> withDatasets(Bytes payload, const std::vector<DatasetEdit>& edits) {
  const auto place = placeOfIptc(payload);
  if (!place) return {payload.begin(), payload.end()};
  std::vector<uint8_t> data = Rewriter(edits).rewrite(payload.subspan(place->dataAt, place->size));
  const Bytes front = payload.first(place->lengthAt);
  std::vector<uint8_t> whole(front.begin(), front.end());
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    whole.push_back(static_cast<uint8_t>(data.size() >> shift));
  }
  if (data.size() % 2 != 0) data.push_back(0);
  whole.insert(whole.end(), data.begin(), data.end());
  const Bytes behind =
      payload.subspan(std::min(place->dataAt + evened(place->size), payload.size()));
  whole.insert(whole.end(), behind.begin(), behind.end());
  return whole;
}

}  // namespace fiohost
