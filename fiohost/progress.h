// A percentage on the terminal for work that takes over a second; silent everywhere else.
#pragma once

#include <chrono>
#include <string>

#include "host/types.h"

namespace fiohost {

class Progress {
 public:
  explicit Progress(std::string what);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();  // clears its line

  void update(host::u32 done, host::u32 total);

  // As long as one lives nothing is shown: several percentages at a time would overwrite each
  // other.
  class Silence {
   public:
    Silence() noexcept;
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence();
  };

 private:
  using Clock = std::chrono::steady_clock;

  std::string what_;
  bool terminal_;
  bool shown_ = false;
  Clock::time_point next_;
};

}  // namespace fiohost
