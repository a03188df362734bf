#pragma once
// How every benchmark of the suite is registered and repeated.

#include <string>

#include <benchmark/benchmark.h>

namespace bench {

// A render area, labelled as the cases name it ("800x600").
struct Size {
  int width;
  int height;
  std::string label() const { return std::to_string(width) + "x" + std::to_string(height); }
};

struct Settings {
  bool quick = false;  // --quick: two repetitions of one iteration, for the smoke test
};

// Adds min and max to the aggregates and reports the aggregates only.
benchmark::internal::Benchmark* withSpread(benchmark::internal::Benchmark* b);

// Median, min and max over `repetitions` runs of at least `minTime` seconds
// each (wall-clock time), reported as aggregates only.
benchmark::internal::Benchmark* repeated(benchmark::internal::Benchmark* b, const Settings& settings, int repetitions,
                                         double minTime);

void registerFrameBenchmarks(const Settings& settings);
void registerPickBenchmarks(const Settings& settings);
void registerDragBenchmarks(const Settings& settings);
void registerStartupBenchmarks(const Settings& settings);
void registerMemoryBenchmarks(const Settings& settings);
void registerPacedBenchmarks(const Settings& settings);

}  // namespace bench
