// The MPO family's error reports.
#pragma once

#include "frame/error_report.h"

namespace mpo {

// One reporting place: its site is its number within the operation, its position its own.
struct Failure {
  host::ErrorCode code;
  frame::ErrorSource source;
  host::i32 position;
};

[[nodiscard]] constexpr frame::ErrorSource mpoSite(host::i32 site) noexcept {
  return {frame::mpoErrors.unit, frame::mpoErrors.source, site};
}

inline constexpr Failure describeMemory{host::errorMemoryOrOutput, mpoSite(1), 305};
inline constexpr Failure describeFirstImage{host::errorDescribe, mpoSite(2), 317};
inline constexpr Failure describeLaterImage{host::errorDescribe, mpoSite(3), 349};
inline constexpr Failure readSource{host::errorMemoryOrOutput, mpoSite(1), 512};
inline constexpr Failure readMemory{host::errorMemoryOrOutput, mpoSite(2), 524};
inline constexpr Failure readCodec{host::errorRead, mpoSite(3), 548};
inline constexpr Failure writeCodec{host::errorWrite, mpoSite(1), 871};
inline constexpr Failure writeIndex{host::errorWrite, mpoSite(2), 886};

inline void report(const Failure& failure) noexcept {
  frame::reportError(failure.code, failure.source, failure.position);
}

}  // namespace mpo
