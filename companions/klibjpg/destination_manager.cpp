#include "companions/klibjpg/destination_manager.h"

#include "companions/klibjpg/error_trap.h"

namespace klibjpg {

OutputTarget::OutputTarget() noexcept : jpeg_destination_mgr{} {
  init_destination = [](j_compress_ptr) {};
  empty_output_buffer = [](j_compress_ptr info) -> boolean {
    static_cast<OutputTarget*>(info->dest)->take(info, false);
    return TRUE;
  };
  term_destination = [](j_compress_ptr info) {
    static_cast<OutputTarget*>(info->dest)->take(info, true);
  };
}

void OutputTarget::offer(host::u8* buffer, std::size_t size) noexcept {
  next_output_byte = buffer;
  free_in_buffer = size;
  size_ = size;
}

void OutputTarget::take(j_compress_ptr info, bool last) {
  // A full buffer may be reported before its fill level has been brought up to date.
  result_ = take(last ? size_ - free_in_buffer : size_, last);
  if (result_ != host::codecGoOn) ErrorTrap::raise(reinterpret_cast<j_common_ptr>(info));
}

DescriptorTarget::DescriptorTarget(const host::OutputDescriptor& output) : output_(output) {
  offer(buffer_.get(), chunk);
}

int DescriptorTarget::take(std::size_t used, bool last) {
  if (used != 0 && output_.write(output_.file, static_cast<host::u32>(used), buffer_.get()) != 1) {
    return host::codecStopped;
  }
  if (!last) offer(buffer_.get(), chunk);
  return host::codecGoOn;
}

MemoryTarget::MemoryTarget(host::u8* memory, std::size_t capacity) noexcept {
  offer(memory, capacity);
}

int MemoryTarget::take(std::size_t used, bool last) {
  if (!full_) length_ = used;
  if (full_ && used != 0) return host::codecOutputFailed;
  full_ = true;
  if (!last) offer(beyond_, sizeof(beyond_));
  return host::codecGoOn;
}

}  // namespace klibjpg
