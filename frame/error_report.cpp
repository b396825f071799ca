#include "frame/error_report.h"

namespace frame {

void reportError(host::ErrorCode code, const ErrorSource& source, host::i32 position) noexcept {
  c32SetDLLErrInfo(nullptr, code, source.site, source.unit, source.source, position);
}

}  // namespace frame
