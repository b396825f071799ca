// Where libjpeg's way of failing, an error routine that must not return, meets C++.
#pragma once

#include <csetjmp>

#include "companions/klibjpg/jpeg_library.h"

namespace klibjpg {

// Whether no more data of the scan can follow. A marker ends the data, behind which libjpeg makes
// up the rest. Where restarts are defined it looks for them behind the codes that T.81 reserves,
// and goes on behind a restart marker.
[[nodiscard]] bool isDataEnded(const jpeg_decompress_struct& info) noexcept;

// Silent: warnings are passed over and nothing is ever printed. An error, or raise(), abandons the
// step that is running. Because that jumps over frames without unwinding them, no frame between
// run() and the error may own anything: the steps are functions without locals that have
// destructors, and what they use belongs to the object that runs them.
class ErrorTrap : private jpeg_error_mgr {
 public:
  ErrorTrap() noexcept;

  [[nodiscard]] jpeg_error_mgr* manager() noexcept { return this; }

  // Runs one member function of object as a step; false when it was abandoned.
  template <auto step, typename Object>
  [[nodiscard]] bool run(Object& object) {
    return run([](void* state) { (static_cast<Object*>(state)->*step)(); }, &object);
  }

  // Of a step that was abandoned: whether there was no memory. The stream is none the worse for it.
  [[nodiscard]] bool outOfMemory() const noexcept { return msg_code == JERR_OUT_OF_MEMORY; }

  // Whether entropy-coded data ended early and for good: all blocks of the scan since then are made
  // up.
  [[nodiscard]] bool hitEnd() const noexcept { return hitEnd_; }

  // Abandons the step that is running on info. Only from inside a step.
  [[noreturn]] static void raise(j_common_ptr info);

 private:
  using Step = void(void* state);
  [[nodiscard]] bool run(Step* step, void* state);

  std::jmp_buf abandoned_;
  bool hitEnd_ = false;
};

}  // namespace klibjpg
