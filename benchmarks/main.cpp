// The benchmark program: Google Benchmark with a QApplication made first,
// because every case shows windows or runs Qt timers. Extra option:
//   --quick   two repetitions of one iteration each (the smoke test)
#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include "fixtures.h"
#include "suite.h"

namespace {

// The first line of /proc/<file> that starts with `key`, after its colon.
std::string procField(const char* file, const std::string& key) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(key, 0) == 0) {
      const std::size_t colon = line.find(':');
      const std::size_t start = line.find_first_not_of(" \t", colon + 1);
      return start == std::string::npos ? std::string() : line.substr(start);
    }
  }
  return "unknown";
}

// Google Benchmark writes NaN (the cv of a counter that is always 0, such as
// the triangles of a miss) and Infinity, which JSON has no words for: they
// become null.
void makeStrictJson(const std::string& path) {
  std::ifstream in(path);
  if (!in) return;
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  in.close();
  std::ofstream(path) << std::regex_replace(text, std::regex(R"(:\s*-?(NaN|Infinity)\b)"), ": null");
}

}  // namespace

namespace bench {

benchmark::internal::Benchmark* withSpread(benchmark::internal::Benchmark* b) {
  auto least = [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); };
  auto most = [](const std::vector<double>& v) { return *std::max_element(v.begin(), v.end()); };
  return b->ComputeStatistics("min", least)->ComputeStatistics("max", most)->ReportAggregatesOnly(true);
}

benchmark::internal::Benchmark* repeated(benchmark::internal::Benchmark* b, const Settings& settings, int repetitions,
                                         double minTime) {
  withSpread(b)->UseRealTime();
  if (settings.quick) return b->Repetitions(2)->Iterations(1);
  return b->Repetitions(repetitions)->MinTime(minTime);
}

}  // namespace bench

int main(int argc, char** argv) {
  bench::Settings settings;
  std::string outputFile;
  std::vector<char*> arguments;
  for (int i = 0; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.rfind("--benchmark_out=", 0) == 0) outputFile = argument.substr(std::string("--benchmark_out=").size());
    if (argument == "--quick") settings.quick = true;
    else arguments.push_back(argv[i]);
  }
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);

  // OGRE's log and the settings go to a scratch home, never the user's.
  QTemporaryDir scratch;
  qputenv("XDG_CONFIG_HOME", (scratch.path() + "/config").toUtf8());
  qputenv("XDG_DATA_HOME", (scratch.path() + "/data").toUtf8());

  QApplication application(count, arguments.data());
  QApplication::setOrganizationName("RenderWidgetBenchmarks");
  QApplication::setApplicationName("render_widget_benchmarks");

  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  // Where the figures came from, kept in the JSON output.
  benchmark::AddCustomContext("cpu_model", procField("/proc/cpuinfo", "model name"));
  benchmark::AddCustomContext("memory_total", procField("/proc/meminfo", "MemTotal"));
  benchmark::AddCustomContext("gl_device", bench::glDeviceName());
  benchmark::AddCustomContext("display", qgetenv("DISPLAY").toStdString());
  benchmark::AddCustomContext("quick", settings.quick ? "yes" : "no");

  // Memory first: later cases leave a large free heap (the 1 M-triangle picks
  // copy 30 MB each) that would absorb any growth before it showed as RSS.
  bench::registerMemoryBenchmarks(settings);
  bench::registerFrameBenchmarks(settings);
  bench::registerPacedBenchmarks(settings);
  bench::registerPickBenchmarks(settings);
  bench::registerDragBenchmarks(settings);
  bench::registerStartupBenchmarks(settings);
  benchmark::RunSpecifiedBenchmarks();

  bench::releaseFixture();  // OGRE and the widgets go before the QApplication
  benchmark::Shutdown();
  if (!outputFile.empty()) makeStrictJson(outputFile);
  return 0;
}
