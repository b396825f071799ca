// The companions' exports in front of the companions: whoever looks one up gets a call that fails
// when told so. A failed call answers what a companion answers that cannot do its work, which is
// also what comes of a call when the companion is missing.
#include <dlfcn.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "host/klibjpg.h"
#include "tests/fault/faults.h"

namespace {

using fault::Resource;
using host::CodecCallback;
using host::i64;
using host::u32;
using host::u64;

bool callFails() noexcept { return fault::strike(Resource::calls); }

template <std::size_t size>
struct Name {
  char text[size];
  consteval Name(const char (&literal)[size]) { std::copy_n(literal, size, text); }
};

// What is called in place of one export.
template <Name name, typename Signature, auto failure = 0>
struct Call;

template <Name name, typename Result, typename... Parameters, auto failure>
struct Call<name, Result(Parameters...), failure> {
  static constexpr const char* exportName = name.text;
  static inline Result (*real)(Parameters...) = nullptr;
  static Result stand(Parameters... parameters) {
    if (callFails()) return static_cast<Result>(failure);
    return real(parameters...);
  }
};

template <Name name, typename... Parameters>
struct Call<name, void*(Parameters...), 0> {
  static constexpr const char* exportName = name.text;
  static inline void* (*real)(Parameters...) = nullptr;
  static void* stand(Parameters... parameters) {
    return callFails() ? nullptr : real(parameters...);
  }
};

// A codec whose work may end in front of any event.
struct WatchedEvents {
  const CodecCallback& inner;
  static u32 onEvent(void* context, u32 event, u64 unused, void* block) {
    if (fault::strike(Resource::events)) return 0;
    const CodecCallback& inner = static_cast<WatchedEvents*>(context)->inner;
    return inner.callback(inner.context, event, unused, block);
  }
};

template <Name name, typename Stream, typename Last>
struct CodecCall {
  static constexpr const char* exportName = name.text;
  static inline int (*real)(Stream, const void*, Last) = nullptr;
  static int stand(Stream stream, const void* callback16, Last last) {
    if (callFails()) return 0;
    WatchedEvents watched = {*static_cast<const CodecCallback*>(callback16)};
    const CodecCallback callback = {&watched, &WatchedEvents::onEvent};
    return real(stream, &callback, last);
  }
};

struct Export {
  std::string_view name;
  FARPROC (*place)(FARPROC real);  // keeps the real one and answers the one in front
};

template <typename Stand>
FARPROC place(FARPROC real) {
  Stand::real = reinterpret_cast<decltype(Stand::real)>(real);
  return reinterpret_cast<FARPROC>(&Stand::stand);
}

template <typename... Stands>
struct Exports {
  static constexpr Export table[] = {{Stands::exportName, &place<Stands>}...};
};

using KnownExports = Exports<
    CodecCall<"kJpgFileReadEx", const char*, void*>,
    CodecCall<"kJpgFileReadExW", const wchar_t*, void*>, CodecCall<"kJpgRead", const void*, void*>,
    CodecCall<"kJpgWrite", const void*, const void*>,
    Call<"kJpgFileGetInfo", int(const char*, void*, void*)>,
    Call<"kJpgFileGetInfoW", int(const wchar_t*, void*, void*)>,
    Call<"kJpgStreamGetInfo", int(const void*, void*, void*)>,
    Call<"kJpgStreamRead", int(const void*, void*, void*)>,
    Call<"kJpgStreamWrite", int(void*, const void*, const void*)>,
    Call<"kRExifBeginRead", void*(const char*)>, Call<"kRExifBeginReadW", void*(const wchar_t*)>,
    Call<"kRExifIsExifExist", int(void*)>, Call<"kRExifIsThumbnailExist", int(void*)>,
    Call<"kRExifGetThumbnailData", i64(void*, u64*), -1>, Call<"CheckFIOVersion", int(HMODULE)>,
    Call<"gfioGetFileSourcePath", int(HGLOBAL, char**, wchar_t**)>,
    Call<"gfioGetFileSourcePath_DS", int(void*, char**, wchar_t**)>,
    Call<"Prop_ReAllocFieldSpace", int(HGLOBAL*, int)>,
    Call<"Prop_AppendFieldData", int(HGLOBAL, const void*)>,
    Call<"k32GetKavroIniFileName", void(char*, int), 0>>;

bool isTable(std::string_view name) { return name.starts_with("_gfn"); }

}  // namespace

extern "C" FARPROC GetProcAddress(HMODULE module, LPCSTR nameOrOrdinal) noexcept {
  static auto* const next =
      reinterpret_cast<FARPROC (*)(HMODULE, LPCSTR)>(dlsym(RTLD_NEXT, "GetProcAddress"));
  FARPROC real = next(module, nameOrOrdinal);
  if (real == nullptr || reinterpret_cast<u64>(nameOrOrdinal) <= 0xFFFF) return real;
  const std::string_view name = nameOrOrdinal;
  if (isTable(name)) return callFails() ? nullptr : real;
  const auto known = std::find_if(std::begin(KnownExports::table), std::end(KnownExports::table),
                                  [&](const Export& each) { return each.name == name; });
  return known != std::end(KnownExports::table) ? known->place(real) : real;
}
