// What went wrong and what the user can do, as one exception type for the whole program.
#pragma once

#include <stdexcept>
#include <string>

namespace fiohost {

class Failure : public std::runtime_error {
 public:
  // problem and advice are whole clauses without a final stop; code is the plug-in's, 0 = none.
  Failure(const std::string& problem, std::string advice, int code = 0)
      : std::runtime_error(problem), advice_(std::move(advice)), code_(code) {}

  [[nodiscard]] const std::string& advice() const noexcept { return advice_; }
  [[nodiscard]] int code() const noexcept { return code_; }
  // Problem, code and advice in one line.
  [[nodiscard]] std::string line() const {
    std::string text = what();
    if (code_ != 0) text += " (error " + std::to_string(code_) + ")";
    if (!advice_.empty()) text += "; " + advice_;
    return text;
  }

 private:
  std::string advice_;
  int code_;
};

}  // namespace fiohost
