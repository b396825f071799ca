// What tells which file was served when the process ends before its time.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace mutations {

// While it lives the file is watched: one that is not served within a minute ends the process, and
// whenever the process ends, by whatever signal or sanitizer, its name is told and its bytes lie in
// "mutation-PROCESS" of the working folder that the program began with.
class Watch {
 public:
  Watch(const std::string& name, std::span<const unsigned char> file);
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  // Seconds of the processor's time, of all threads, since it began.
  [[nodiscard]] double seconds() const;

 private:
  double begun_;
};

}  // namespace mutations
