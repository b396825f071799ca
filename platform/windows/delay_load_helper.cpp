// The run-time half of the delay imports (PE format, "Delay-Load Import Tables"): the import
// library's thunk of an unbound call ends here, and jumps to whatever is returned.
//
// The compiler's own helper raises a structured exception when a library or an export is missing.
// This one answers with a function that returns 0 instead, because nothing may be thrown through
// the plug-in, and leaves the slot unbound so that the next call looks again.
#include <cstdint>

#include "platform/delay_load.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace platform {
namespace {

struct DelayImportDescriptor {
  std::uint32_t attributes;
  std::uint32_t libraryName;  // offsets from the image base, here and below
  std::uint32_t moduleHandle;
  std::uint32_t addressTable;
  std::uint32_t nameTable;
  std::uint32_t boundTable;
  std::uint32_t unloadTable;
  std::uint32_t timeStamp;
};
static_assert(sizeof(DelayImportDescriptor) == 32);

template <typename T>
T* atImageOffset(std::uint32_t offset) {
  return reinterpret_cast<T*>(reinterpret_cast<std::uint8_t*>(&__ImageBase) + offset);
}

// Every companion call returns an integer, a pointer or nothing, so one function stands in for all.
extern "C" std::uintptr_t missingCompanionCall() noexcept { return 0; }

FARPROC findSlotTarget(const char* library, const IMAGE_THUNK_DATA& name) noexcept {
  if (IMAGE_SNAP_BY_ORDINAL(name.u1.Ordinal)) {
    return findDelayed(library, static_cast<WORD>(IMAGE_ORDINAL(name.u1.Ordinal)));
  }
  const auto* byName =
      atImageOffset<IMAGE_IMPORT_BY_NAME>(static_cast<std::uint32_t>(name.u1.AddressOfData));
  return findDelayed(library, reinterpret_cast<const char*>(byName->Name));
}

}  // namespace
}  // namespace platform

extern "C" FARPROC __delayLoadHelper2(const platform::DelayImportDescriptor* descriptor,
                                      FARPROC* slot) noexcept {
  using namespace platform;
  auto* addresses = atImageOffset<FARPROC>(descriptor->addressTable);
  auto* names = atImageOffset<const IMAGE_THUNK_DATA>(descriptor->nameTable);
  FARPROC target =
      findSlotTarget(atImageOffset<const char>(descriptor->libraryName), names[slot - addresses]);
  if (target == nullptr) return reinterpret_cast<FARPROC>(&missingCompanionCall);
  InterlockedExchangePointer(reinterpret_cast<void**>(slot), reinterpret_cast<void*>(target));
  return target;
}
