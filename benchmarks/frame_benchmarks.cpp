// 1. One frame of the 3D view, and the same scene rendered by OGRE alone.
#include <string>

#include "fixtures.h"
#include "process_cpu.h"
#include "render_widget.h"
#include "suite.h"

namespace bench {
namespace {

// RenderWidget::updateView(): follow the torso, fit the sentence, update the
// scene view, repaint (the paint handler renders the OGRE frame).
void widgetFrame(benchmark::State& state, Size size) {
  auto& shown = fixture<ShownContainer>("container/" + size.label() + "/links", size.width, size.height, false);
  if (!shown.error.empty()) return state.SkipWithError(shown.error.c_str());
  const ProcessCpuClock cpu;
  for (auto _ : state) shown.widget()->updateView();
  state.counters["pixels"] = size.width * size.height;
  state.counters["process_cpu_ms"] = benchmark::Counter(1e3 * cpu.processSeconds(), benchmark::Counter::kAvgIterations);
}

// World3DView::update() and renderWindow->update(true), no widget.
void bareFrame(benchmark::State& state, Size size) {
  auto& bare = fixture<BareScene>("bare/" + size.label(), size.width, size.height);
  if (!bare.error.empty()) return state.SkipWithError(bare.error.c_str());
  const ProcessCpuClock cpu;
  for (auto _ : state) bare.frame();
  state.counters["pixels"] = size.width * size.height;
  state.counters["process_cpu_ms"] = benchmark::Counter(1e3 * cpu.processSeconds(), benchmark::Counter::kAvgIterations);
}

}  // namespace

void registerFrameBenchmarks(const Settings& settings) {
  for (const Size size : {Size{800, 600}, Size{1280, 720}, Size{1920, 1080}}) {
    repeated(benchmark::RegisterBenchmark(("Frame/widget/" + size.label()).c_str(), widgetFrame, size), settings, 10,
             0.3)
        ->Unit(benchmark::kMillisecond);
    repeated(benchmark::RegisterBenchmark(("Frame/bare/" + size.label()).c_str(), bareFrame, size), settings, 10, 0.3)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace bench
