#include "fiohost/codec_scan.h"

#include <cstring>
#include <string_view>

namespace fiohost {
namespace {

struct Scan {
  HeaderFacts facts;
  bool headerSeen;
};

bool isAdobe(const host::SegmentRecord& segment) {
  constexpr std::string_view signature = "Adobe";
  return segment.appNumber == 14 && segment.payload != nullptr &&
         segment.payloadLength >= static_cast<host::i32>(signature.size()) &&
         std::memcmp(segment.payload, signature.data(), signature.size()) == 0;
}

void takeHeader(Scan& scan, const host::ImageHeader& header) {
  scan.headerSeen = true;
  scan.facts.header = header;
  if (header.size >= sizeof(host::ImageHeaderWithExtra)) {
    scan.facts.extra = reinterpret_cast<const host::ImageHeaderWithExtra&>(header).extra;
  }
}

host::u32 onEvent(void* context, host::u32 event, host::u64, void* block) noexcept {
  Scan& scan = *static_cast<Scan*>(context);
  if (event == host::eventSegment) {
    scan.facts.adobe = scan.facts.adobe || isAdobe(*static_cast<host::SegmentRecord*>(block));
  }
  if (event != host::eventHeader) return host::codecGoOn;
  takeHeader(scan, *static_cast<host::ImageHeader*>(block));
  return host::codecHeaderOnly;
}

}  // namespace

std::optional<HeaderFacts> scanHeader(const Codec& codec, const SourceFile& file) {
  Scan scan = {};
  const host::CodecCallback callback = {&scan, &onEvent};
  const int result = codec.readFile(file.wide().c_str(), &callback, nullptr);
  if (result != host::codecGoOn || !scan.headerSeen) return std::nullopt;
  return scan.facts;
}

}  // namespace fiohost
