// 4. Start-up: from constructing the container with the 3D view to
// renderWindowReady and to the first rendered frame. Every iteration builds
// and destroys a container, and with it an OGRE root.
#include <QElapsedTimer>

#include <world_view_container.h>

#include "fixtures.h"
#include "measures.h"
#include "render_widget_interface.h"
#include "suite.h"

namespace bench {
namespace {

void startup(benchmark::State& state) {
  releaseFixture();  // one OGRE root at a time
  for (auto _ : state) {
    auto world = worldWithBundledRobot();  // loading the robot is not counted
    double constructed = 0, exposed = 0, ready = -1;
    QElapsedTimer clock;
    clock.start();
    auto container = makeContainer(world, 800, 600, false);
    constructed = clock.nsecsElapsed() * 1e-9;
    if (!container->view()) return state.SkipWithError("the 3D view could not be built");
    QObject::connect(container->view(), &VX::NextGenView::RenderWidgetInterface::renderWindowReady,
                     [&] { ready = clock.nsecsElapsed() * 1e-9; });
    container->show();
    if (!waitExposed(*container)) return state.SkipWithError("the container's window was never exposed");
    exposed = clock.nsecsElapsed() * 1e-9;
    container->onVisibilityChanged(true);
    container->update();  // the first frame, rendered synchronously
    const double firstFrame = clock.nsecsElapsed() * 1e-9;
    if (ready < 0) return state.SkipWithError("renderWindowReady never came");
    state.SetIterationTime(firstFrame);
    state.counters["constructed_ms"] = constructed * 1e3;
    state.counters["exposed_ms"] = exposed * 1e3;
    state.counters["ready_ms"] = ready * 1e3;
    state.counters["first_frame_ms"] = firstFrame * 1e3;
    container.reset();
    processEventsFor(20);
  }
}

}  // namespace

void registerStartupBenchmarks(const Settings& settings) {
  withSpread(benchmark::RegisterBenchmark("Startup/container_800x600", startup))
      ->UseManualTime()
      ->Iterations(1)
      ->Repetitions(settings.quick ? 2 : 8)
      ->Unit(benchmark::kMillisecond);
}

}  // namespace bench
