// Other programs, run to their end or asked again and again.
#pragma once

#include <string>
#include <vector>

#include "host/types.h"

namespace bench {

// Runs a program, found in PATH, with its output thrown away. Throws std::runtime_error when it
// cannot be started or does not end by itself; its exit code is its own affair.
void runProgram(const std::vector<std::string>& arguments, const std::string& folder = ".");

// A program that does its work once for every line that it gets, and answers with a line that holds
// the seconds.
class Worker {
 public:
  // Throws std::runtime_error when it cannot be started.
  explicit Worker(const std::vector<std::string>& arguments);
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker();

  // Throws std::runtime_error when there is no answer.
  double work();

 private:
  int process_ = 0;
  int input_ = -1;
  int output_ = -1;
};

}  // namespace bench
