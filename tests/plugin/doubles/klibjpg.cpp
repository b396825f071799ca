#include "tests/plugin/doubles/doubles.h"

using doubles::state;

namespace {

void note(const char* call) { state().calls.emplace_back(call); }

}  // namespace

extern "C" {

int kJpgFileGetInfo(const char* path, void* image, void* extra) {
  note("kJpgFileGetInfo");
  return state().fileGetInfo(path, static_cast<host::ImageHeader*>(image),
                             static_cast<host::ExtraInformation*>(extra));
}

int kJpgFileGetInfoW(const wchar_t* path, void* image, void* extra) {
  note("kJpgFileGetInfoW");
  return state().fileGetInfoWide(path, static_cast<host::ImageHeader*>(image),
                                 static_cast<host::ExtraInformation*>(extra));
}

int kJpgStreamGetInfo(const void* stream, void* image, void* extra) {
  note("kJpgStreamGetInfo");
  return state().streamGetInfo(static_cast<const host::StreamDescriptor*>(stream),
                               static_cast<host::ImageHeader*>(image),
                               static_cast<host::ExtraInformation*>(extra));
}

int kJpgFileReadEx(const char* path, const void* callback, void*) {
  note("kJpgFileReadEx");
  return state().fileRead(path, *static_cast<const host::CodecCallback*>(callback));
}

int kJpgFileReadExW(const wchar_t* path, const void* callback, void*) {
  note("kJpgFileReadExW");
  return state().fileReadWide(path, *static_cast<const host::CodecCallback*>(callback));
}

int kJpgStreamRead(const void* stream, void* image, void*) {
  note("kJpgStreamRead");
  auto* target = static_cast<host::StreamImage*>(image);
  return state().streamRead(static_cast<const host::StreamDescriptor*>(stream), target);
}

int kJpgRead(const void* input, const void* callback, void*) {
  note("kJpgRead");
  return state().read(*static_cast<const host::InputDescriptor*>(input),
                      *static_cast<const host::CodecCallback*>(callback));
}

int kJpgWrite(const void* output, const void* callback, const void* options) {
  note("kJpgWrite");
  return state().write(*static_cast<const host::OutputDescriptor*>(output),
                       *static_cast<const host::CodecCallback*>(callback),
                       *static_cast<const host::WriteOptions*>(options));
}

int kJpgStreamWrite(void* stream, const void* image, const void* options) {
  note("kJpgStreamWrite");
  return state().streamWrite(static_cast<host::StreamDescriptor*>(stream),
                             *static_cast<const host::StreamImage*>(image),
                             *static_cast<const host::WriteOptions*>(options));
}
}
