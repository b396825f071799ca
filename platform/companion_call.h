// How a companion's export is declared once and bound lazily on every system.
//
// On Windows the linker binds the calls through the delay-import libraries made from the
// companions' export lists. Elsewhere each declaration is an object that looks its export up when
// it is first called. On both a call whose library or export is missing answers 0 and nothing is
// thrown; the next call looks again. The companions themselves define KF_COMPANION_SIDE and see
// plain functions.
#pragma once

#include "platform/delay_load.h"

#if defined(_WIN32) || defined(KF_COMPANION_SIDE)

#define COMPANION_CALL(library, result, name, parameters) extern "C" result name parameters;
#define COMPANION_CALL_BY_ORDINAL(library, ordinal, result, name, parameters) \
  extern "C" result name parameters;

#else

#include <atomic>

namespace platform {

template <typename Signature>
class LazyCall;

template <typename Result, typename... Parameters>
class LazyCall<Result(Parameters...)> {
 public:
  constexpr LazyCall(const char* library, const char* name) noexcept
      : library_(library), name_(name) {}
  constexpr LazyCall(const char* library, WORD ordinal) noexcept
      : library_(library), ordinal_(ordinal) {}

  Result operator()(Parameters... parameters) const {
    FARPROC bound = bound_.load(std::memory_order_acquire);
    if (bound == nullptr) {
      bound = name_ != nullptr ? findDelayed(library_, name_) : findDelayed(library_, ordinal_);
      if (bound == nullptr) return Result();
      bound_.store(bound, std::memory_order_release);
    }
    return reinterpret_cast<Result (*)(Parameters...)>(bound)(parameters...);
  }

 private:
  const char* library_;
  const char* name_ = nullptr;
  WORD ordinal_ = 0;
  mutable std::atomic<FARPROC> bound_ = nullptr;
};

}  // namespace platform

// In a namespace of their own, so that no module exports an object under a function's plain name.
#define COMPANION_CALL(library, result, name, parameters)                      \
  namespace companion_calls {                                                  \
  inline constinit platform::LazyCall<result parameters> name{library, #name}; \
  }                                                                            \
  using companion_calls::name;
#define COMPANION_CALL_BY_ORDINAL(library, ordinal, result, name, parameters)              \
  namespace companion_calls {                                                              \
  inline constinit platform::LazyCall<result parameters> name{library,                     \
                                                              static_cast<WORD>(ordinal)}; \
  }                                                                                        \
  using companion_calls::name;

#endif
