#include "companions/klibjpg/error_trap.h"

namespace klibjpg {

bool isDataEnded(const jpeg_decompress_struct& info) noexcept {
  constexpr int firstFrameHeader = 0xC0;  // T.81, table B.1; those below are reserved
  constexpr int lastRestart = JPEG_RST0 + 7;
  const int marker = info.unread_marker;
  if (info.restart_interval == 0) return marker != 0;
  return marker >= firstFrameHeader && (marker < JPEG_RST0 || marker > lastRestart);
}

ErrorTrap::ErrorTrap() noexcept : jpeg_error_mgr{} {
  jpeg_std_error(this);
  error_exit = [](j_common_ptr info) { raise(info); };
  emit_message = [](j_common_ptr info, int) {
    auto* const trap = static_cast<ErrorTrap*>(info->err);
    if (trap->msg_code != JWRN_HIT_MARKER || info->is_decompressor == FALSE) return;
    trap->hitEnd_ = trap->hitEnd_ || isDataEnded(*reinterpret_cast<j_decompress_ptr>(info));
  };
  output_message = [](j_common_ptr) {};
}

void ErrorTrap::raise(j_common_ptr info) {
  std::longjmp(static_cast<ErrorTrap*>(info->err)->abandoned_, 1);
}

bool ErrorTrap::run(Step* step, void* state) {
  if (setjmp(abandoned_) != 0) return false;
  step(state);
  return true;
}

}  // namespace klibjpg
