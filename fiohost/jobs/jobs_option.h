// How many files a command serves at a time.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace fiohost {

class Jobs {
 public:
  // Adds --jobs to a command's arguments.
  void declare(CLI::App& arguments);

  // What was asked for, else the number of processors.
  [[nodiscard]] unsigned count() const;
  // The same, but 1 when the order of the files matters: when an output is another's output, or
  // another's input. Letter case is no difference, as on some systems.
  using OutputOf = std::function<std::string(const std::string& input)>;
  [[nodiscard]] unsigned countFor(const std::vector<std::string>& inputs,
                                  const OutputOf& outputOf) const;

 private:
  unsigned asked_ = 0;
};

}  // namespace fiohost
