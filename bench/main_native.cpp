// Every case through Google Benchmark. An iteration is one step of a case: its time is the
// plug-in's, the other figures are counters, and what it is measured beside is the label.
//
// Usage: bench_native INPUTS OUTPUTS SAMPLES [Google Benchmark's options]
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <exception>
#include <iostream>

#include "bench/cases/cases.h"
#include "bench/inputs/inputs.h"

namespace {

using bench::Case;

void tell(benchmark::State& state, const Case& measured, const bench::Figure& figure) {
  state.SetLabel(measured.beside + "|" + measured.unit);
  state.counters["figure"] = figure.value;
  state.counters["ours"] = figure.ours;
  state.counters["beside"] = figure.beside;
  state.counters["limit"] = measured.limit;
  state.counters["atLeast"] = measured.judged == bench::Judged::atLeast ? 1 : 0;
}

void run(benchmark::State& state, const Case& measured) {
  try {
    const std::unique_ptr<bench::Measurement> measurement = measured.prepare();
    for ([[maybe_unused]] auto _ : state) state.SetIterationTime(measurement->step());
    tell(state, measured, measurement->figure());
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

void declare(const bench::Cases& cases) {
  for (const Case& measured : cases) {
    benchmark::RegisterBenchmark(measured.name.c_str(),
                                 [measured](benchmark::State& state) { run(state, measured); })
        ->UseManualTime()
        ->Iterations(measured.steps)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return EXIT_FAILURE;
  bench::setFolders({argv[1], argv[2], argv[3]});
  for (const auto& cases :
       {bench::readCases(), bench::previewCases(), bench::writeCases(), bench::metadataCases(),
        bench::mpoCases(), bench::processCases(), bench::growthCases()}) {
    declare(cases);
  }
  int count = argc - 3;
  argv[3] = argv[0];
  benchmark::Initialize(&count, argv + 3);
  benchmark::ConsoleReporter console(benchmark::ConsoleReporter::OO_None);
  console.SetOutputStream(&std::cerr);
  console.SetErrorStream(&std::cerr);
  benchmark::RunSpecifiedBenchmarks(&console);
  return EXIT_SUCCESS;
}
