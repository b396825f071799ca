#include "companions/klibjpg/error_trap.h"

namespace klibjpg {

ErrorTrap::ErrorTrap() noexcept : jpeg_error_mgr{} {
  jpeg_std_error(this);
  error_exit = [](j_common_ptr info) { raise(info); };
  emit_message = [](j_common_ptr info, int) {
    auto* const trap = static_cast<ErrorTrap*>(info->err);
    if (trap->msg_code != JWRN_HIT_MARKER || info->is_decompressor == FALSE) return;
    const int marker = reinterpret_cast<j_decompress_ptr>(info)->unread_marker;
    trap->hitEnd_ = trap->hitEnd_ || marker == JPEG_EOI;
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
