// What happens when the library is loaded.
#include <array>

#include "host/klibjpg.h"

namespace {

// libjpeg-turbo finds out which vector instructions there are when they are first asked for, and
// keeps the answer in variables that this project's Windows build of it does not make thread-local.
// Encoding one pixel asks for it, here, where no second thread can be inside the library yet.
void detectVectorInstructions() {
  std::array<host::u8, 1> pixel = {};
  std::array<host::u8, 1024> encoded;
  host::StreamDescriptor stream = {};
  stream.length = encoded.size();
  stream.data = encoded.data();
  host::StreamImage picture = {};
  picture.size = sizeof(picture);
  picture.width = picture.height = 1;
  picture.bytesPerPixel = picture.stride = picture.bufferSize = 1;
  picture.pixels = pixel.data();
  const host::WriteOptions options = {};
  kJpgStreamWrite(&stream, &picture, &options);
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) detectVectorInstructions();
  return TRUE;
}
