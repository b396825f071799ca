#include "tests/plugin/doubles/doubles.h"

using doubles::state;

extern "C" {

void* kRExifBeginRead(const char* path) {
  state().calls.emplace_back("kRExifBeginRead");
  return state().exifBegin(path);
}

void* kRExifBeginReadW(const wchar_t* path) {
  state().calls.emplace_back("kRExifBeginReadW");
  return state().exifBeginWide(path);
}

int kRExifIsExifExist(void*) { return state().exifExists; }

int kRExifIsThumbnailExist(void*) { return state().thumbnailExists; }

host::i64 kRExifGetThumbnailData(void*, host::u64* words) {
  state().calls.emplace_back("kRExifGetThumbnailData");
  return state().thumbnailData(words);
}

void kRExifEndRead(void*) { state().calls.emplace_back("kRExifEndRead"); }
}
