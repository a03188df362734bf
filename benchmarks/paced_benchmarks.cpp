// 6. Frames as a host sees them: the container's own 25 ms refresh timer
// drives the view for a window of seconds while the joints move (commands
// every 33 ms, as a host at 30 Hz sends them) or stand still. The figure is
// the process CPU time (all threads, Mesa's rasterizer threads included)
// per rendered frame, and the share of a core it adds up to.
#include <cmath>
#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <OgreRenderTargetListener.h>
#include <OgreRenderWindow.h>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "fixtures.h"
#include "measures.h"
#include "process_cpu.h"
#include "render_widget.h"
#include "suite.h"

using VX::NextGenView::World;

namespace bench {
namespace {

struct Robot {
  std::string label;
  std::string file;
};

// Counts the frames OGRE renders into one window.
class FrameCounter : public Ogre::RenderTargetListener {
 public:
  explicit FrameCounter(Ogre::RenderTarget* target) : m_target(target) { m_target->addListener(this); }
  ~FrameCounter() override { m_target->removeListener(this); }
  void postRenderTargetUpdate(const Ogre::RenderTargetEvent&) override { ++frames; }
  long frames = 0;

 private:
  Ogre::RenderTarget* m_target;
};

// Sends every joint a slow sine command 30 times a second, each joint out of
// phase with the last, well inside its limits and its speed.
class JointAnimator {
 public:
  explicit JointAnimator(boost::shared_ptr<World> world) : m_world(std::move(world)) {
    for (const auto& robot : m_world->robots()) {
      for (const auto& actuator : robot->actuators()) m_actuators.push_back(actuator);
    }
    for (const auto& actuator : m_actuators) m_names.push_back(actuator->name());
    QObject::connect(&m_timer, &QTimer::timeout, [this] { step(); });
    m_clock.start();
    m_timer.start(33);
  }

 private:
  void step() {
    const double t = m_clock.nsecsElapsed() * 1e-9;
    std::vector<float> values;
    for (std::size_t i = 0; i < m_actuators.size(); ++i) {
      const auto& actuator = m_actuators[i];
      const double lower = actuator->isContinuous() ? -1.0 : actuator->lowerLimit();
      const double upper = actuator->isContinuous() ? 1.0 : actuator->upperLimit();
      const double middle = std::clamp(0.0, lower, upper);
      const double amplitude = 0.3 * std::min(upper - middle, middle - lower > 0 ? middle - lower : upper - middle);
      values.push_back(static_cast<float>(middle + amplitude * std::sin(2.0 * M_PI * 0.25 * t + 0.7 * i)));
    }
    m_world->setActuatorCommands(m_names, values);
  }

  boost::shared_ptr<World> m_world;
  std::vector<boost::shared_ptr<VX::NextGenView::Actuator>> m_actuators;
  std::vector<std::string> m_names;
  QElapsedTimer m_clock;
  QTimer m_timer;
};

// The container shown at W × H with its refresh timer running, as in a host.
class RunningContainer : public Fixture {
 public:
  RunningContainer(std::string robotFile, int width, int height) : m_world(worldWithRobot(robotFile)) {
    if (!m_world) {
      error = "cannot load " + robotFile;
      return;
    }
    m_container = makeContainer(m_world, width, height, false);
    m_container->show();
    if (!waitExposed(*m_container)) {
      error = "the container's window was never exposed";
      return;
    }
    m_container->onVisibilityChanged(true);
    if (!widget() || !widget()->m_initialized || !m_container->refreshTimer()) {
      error = "the 3D view did not start";
      return;
    }
    processEventsFor(200);  // textures and shaders are ready, the size settled
    if (widget()->renderWindow()->getWidth() != unsigned(width) ||
        widget()->renderWindow()->getHeight() != unsigned(height)) {
      error = "the 3D view is not " + std::to_string(width) + "x" + std::to_string(height);
    }
  }
  ~RunningContainer() override {
    m_container.reset();
    m_world.reset();
  }
  VX::NextGenView::RenderWidget* widget() const {
    return dynamic_cast<VX::NextGenView::RenderWidget*>(m_container->view());
  }
  boost::shared_ptr<World> world() const { return m_world; }
  VX::WorldViewContainer& container() const { return *m_container; }

 private:
  boost::shared_ptr<World> m_world;
  std::unique_ptr<VX::WorldViewContainer> m_container;
};

// Runs the application's event loop for `ms`, as a host's main loop would.
void runEventLoopFor(int ms) {
  QEventLoop loop;
  QTimer::singleShot(ms, &loop, &QEventLoop::quit);
  loop.exec();
}

struct Window {
  double wallSeconds = 0, processSeconds = 0, threadSeconds = 0;
  long frames = 0;
};

Window measure(RunningContainer& running, int windowMs) {
  FrameCounter counter(running.widget()->renderWindow());
  QElapsedTimer wall;
  wall.start();
  const ProcessCpuClock cpu;
  runEventLoopFor(windowMs);
  return Window{wall.nsecsElapsed() * 1e-9, cpu.processSeconds(), cpu.threadSeconds(), counter.frames};
}

void report(benchmark::State& state, const Window& window) {
  const double frames = std::max(1L, window.frames);
  state.counters["frames_per_s"] = window.frames / window.wallSeconds;
  state.counters["core_percent"] = 100.0 * window.processSeconds / window.wallSeconds;
  state.counters["process_cpu_ms"] = 1e3 * window.processSeconds / frames;
  state.counters["gui_thread_cpu_ms"] = 1e3 * window.threadSeconds / frames;
}

// RENDERWIDGET_BENCH_WINDOW_MS shortens or lengthens the windows, for profiling.
int windowMs(const Settings& settings, int seconds) {
  bool chosen = false;
  const int ms = qEnvironmentVariableIntValue("RENDERWIDGET_BENCH_WINDOW_MS", &chosen);
  if (chosen && ms > 0) return ms;
  return settings.quick ? 400 : seconds * 1000;
}

// The robot moving: every refresh tick draws. The time is the process CPU per frame.
void movingFrames(benchmark::State& state, Robot robot, Size size, int window) {
  auto& running = fixture<RunningContainer>("running/" + robot.label + "/" + size.label(), robot.file, size.width,
                                            size.height);
  if (!running.error.empty()) return state.SkipWithError(running.error.c_str());
  running.container().setRenderOnDemand(false);  // the container's default: every tick draws
  const JointAnimator animator(running.world());
  runEventLoopFor(200);  // the joints are under way
  for (auto _ : state) {
    const Window measured = measure(running, window);
    state.SetIterationTime(measured.processSeconds / std::max(1L, measured.frames));
    report(state, measured);
  }
}

// The robot standing still, render on change on or off: the time is the
// process CPU per second of the window (ms per s: a thousandth of a core).
void idleView(benchmark::State& state, Robot robot, bool renderOnChange, int window) {
  auto& running = fixture<RunningContainer>("running/" + robot.label + "/800x600", robot.file, 800, 600);
  if (!running.error.empty()) return state.SkipWithError(running.error.c_str());
  running.container().setRenderOnDemand(renderOnChange);
  runEventLoopFor(1500);  // joints that were moving come to rest
  for (auto _ : state) {
    const Window measured = measure(running, window);
    state.SetIterationTime(measured.processSeconds / measured.wallSeconds);
    report(state, measured);
  }
}

}  // namespace

void registerPacedBenchmarks(const Settings& settings) {
  const Robot humanoid{"humanoid", humanoidFile()};
  const Robot bundled{"bundled", bundledRobotFile()};
  const std::vector<std::pair<Robot, Size>> cases = {
      {humanoid, {800, 600}}, {humanoid, {1920, 1080}}, {bundled, {800, 600}}, {bundled, {1920, 1080}}};
  for (const auto& [robot, size] : cases) {
    withSpread(benchmark::RegisterBenchmark(("Moving/" + robot.label + "/" + size.label()).c_str(), movingFrames,
                                            robot, size, windowMs(settings, 10)))
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(settings.quick ? 2 : 3)
        ->Unit(benchmark::kMillisecond);
  }
  for (const bool renderOnChange : {false, true}) {
    const std::string name = std::string("Idle/humanoid/800x600/render_on_change_") + (renderOnChange ? "on" : "off");
    withSpread(benchmark::RegisterBenchmark(name.c_str(), idleView, humanoid, renderOnChange, windowMs(settings, 20)))
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(settings.quick ? 2 : 1)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace bench
