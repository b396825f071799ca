// The library's nine entry points: checks of what is handed in, and nothing thrown out.
#include "companions/klibjpg/decoder.h"
#include "companions/klibjpg/encoder.h"
#include "host/klibjpg.h"

namespace klibjpg {
namespace {

template <typename Call>
int guarded(const Call& call) noexcept {
  try {
    return call();
  } catch (...) {  // out of memory
    return codecFailed;
  }
}

int decode(InputSource& source, const void* callback16) {
  const auto* callback = static_cast<const host::CodecCallback*>(callback16);
  if (callback == nullptr || callback->callback == nullptr) return codecFailed;
  EventReceiver receiver(*callback);
  return Decoder(source, receiver).run();
}

// Either block may be null; the extra information is filled when its size word allows it.
int getInfo(InputSource& source, void* imageInfo32, void* extraInfo24) {
  HeaderReceiver receiver;
  const int result = Decoder(source, receiver).run();
  if (result != host::codecGoOn) return result;
  if (auto* const info = static_cast<host::ImageHeader*>(imageInfo32); info != nullptr) {
    *info = receiver.header().header;
    info->size = sizeof(*info);
  }
  auto* const extra = static_cast<host::ExtraInformation*>(extraInfo24);
  if (extra != nullptr && extra->size >= sizeof(*extra)) {
    const host::u32 size = extra->size;
    *extra = receiver.header().extra;
    extra->size = size;
  }
  return host::codecGoOn;
}

MemorySource sourceOf(const void* stream16) {
  const auto* stream = static_cast<const host::StreamDescriptor*>(stream16);
  if (stream == nullptr || stream->data == nullptr) return MemorySource({});
  return MemorySource({stream->data, stream->length});
}

}  // namespace
}  // namespace klibjpg

using namespace klibjpg;

extern "C" int kJpgFileGetInfo(const char* path, void* imageInfo32, void* extraInfo24) {
  return guarded([=] {
    FileSource source(path);
    return getInfo(source, imageInfo32, extraInfo24);
  });
}

extern "C" int kJpgFileGetInfoW(const wchar_t* path, void* imageInfo32, void* extraInfo24) {
  return guarded([=] {
    FileSource source(path);
    return getInfo(source, imageInfo32, extraInfo24);
  });
}

extern "C" int kJpgStreamGetInfo(const void* stream16, void* imageInfo32, void* extraInfo24) {
  return guarded([=] {
    MemorySource source = sourceOf(stream16);
    return getInfo(source, imageInfo32, extraInfo24);
  });
}

extern "C" int kJpgFileReadEx(const char* path, const void* callback16, void*) {
  return guarded([=] {
    FileSource source(path);
    return decode(source, callback16);
  });
}

extern "C" int kJpgFileReadExW(const wchar_t* path, const void* callback16, void*) {
  return guarded([=] {
    FileSource source(path);
    return decode(source, callback16);
  });
}

extern "C" int kJpgStreamRead(const void* stream16, void* streamImage48, void*) {
  return guarded([=] {
    const auto* picture = static_cast<const host::StreamImage*>(streamImage48);
    if (picture == nullptr || picture->pixels == nullptr) return codecFailed;
    MemorySource source = sourceOf(stream16);
    PictureReceiver receiver(*picture);
    return Decoder(source, receiver).run();
  });
}

extern "C" int kJpgRead(const void* input24, const void* callback16, void*) {
  return guarded([=] {
    const auto* input = static_cast<const host::InputDescriptor*>(input24);
    if (input == nullptr || input->read == nullptr) return codecFailed;
    DescriptorSource source(*input);
    return decode(source, callback16);
  });
}

extern "C" int kJpgWrite(const void* output24, const void* callback16, const void* options24) {
  return guarded([=] {
    const auto* output = static_cast<const host::OutputDescriptor*>(output24);
    const auto* callback = static_cast<const host::CodecCallback*>(callback16);
    const auto* options = static_cast<const host::WriteOptions*>(options24);
    if (output == nullptr || output->write == nullptr || callback == nullptr ||
        callback->callback == nullptr || options == nullptr) {
      return codecFailed;
    }
    DescriptorTarget target(*output);
    EventSupplier supplier(*callback);
    return Encoder(target, supplier, *options).run();
  });
}

// The length never comes out larger than it went in: a caller that retries with a lower quality
// offers it as the capacity of the same buffer.
extern "C" int kJpgStreamWrite(void* stream16, const void* streamImage48, const void* options24) {
  return guarded([=] {
    auto* const stream = static_cast<host::StreamDescriptor*>(stream16);
    const auto* picture = static_cast<const host::StreamImage*>(streamImage48);
    const auto* options = static_cast<const host::WriteOptions*>(options24);
    if (stream == nullptr || picture == nullptr || options == nullptr) return codecFailed;
    if (stream->data == nullptr || stream->length == 0) {
      stream->length = 0;
      return static_cast<int>(host::codecOutputFailed);
    }
    MemoryTarget target(stream->data, stream->length);
    PictureSupplier supplier(*picture);
    const int result = Encoder(target, supplier, *options).run();
    stream->length = static_cast<host::u32>(target.length());
    return result;
  });
}
