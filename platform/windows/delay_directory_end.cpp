// The delay-import directory is an array of descriptors that the import libraries contribute to
// section .text$2; an all-zero descriptor ends it. The linker sorts .text$3 right behind them.
extern "C" {
extern const unsigned char delayImportDirectoryEnd[32];
// Aligned like the descriptors: nothing may come between them and their end.
[[gnu::used, gnu::section(".text$3"),
  gnu::aligned(16)]] const unsigned char delayImportDirectoryEnd[32] = {};
}
