// The reading and writing cases as a program for Windows, where there is no Google Benchmark. The
// answer has the form that Google Benchmark's has.
//
// Usage: bench_windows.exe INPUTS OUTPUTS RESULT.json REGULAR-EXPRESSION
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <regex>

#include "bench/cases/cases.h"
#include "bench/inputs/inputs.h"

namespace {

using bench::Case;
using nlohmann::json;

json run(const Case& measured) {
  json row = {{"name", measured.name}, {"label", measured.beside + "|" + measured.unit}};
  try {
    const std::unique_ptr<bench::Measurement> measurement = measured.prepare();
    for (unsigned i = 0; i < measured.steps; ++i) measurement->step();
    const bench::Figure figure = measurement->figure();
    row.update({{"figure", figure.value},
                {"ours", figure.ours},
                {"beside", figure.beside},
                {"limit", measured.limit},
                {"atLeast", 0}});
  } catch (const std::exception& error) {
    row.update({{"error_occurred", true}, {"error_message", error.what()}});
  }
  return row;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return EXIT_FAILURE;
  bench::setFolders({argv[1], argv[2], ""});
  const std::regex chosen(argv[4]);
  json rows = json::array();
  for (const auto& cases : {bench::readCases(), bench::writeCases()}) {
    for (Case measured : cases) {
      measured.name.insert(0, "windows ");
      if (!std::regex_search(measured.name, chosen)) continue;
      rows.push_back(run(measured));
      std::cerr << measured.name << std::endl;
    }
  }
  std::ofstream(argv[3]) << json{{"benchmarks", rows}};
  return EXIT_SUCCESS;
}
