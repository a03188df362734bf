// 3. One mouse move while a joint ring is grabbed.
// 6. How many motor-command batches a real-time drag sends.
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMouseEvent>
#include <QTimer>

#include <OgreCamera.h>
#include <OgreEntity.h>

#include <scene_view/joint_controller_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_view_container.h>

#include "camera.h"
#include "fixtures.h"
#include "measures.h"
#include "render_widget.h"
#include "selection.h"
#include "suite.h"
#include "widget_access.h"

using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace bench {
namespace {

void sendMouse(QWidget& widget, QEvent::Type type, const QPoint& pixel) {
  const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, pixel, widget.mapToGlobal(pixel), button, held, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

// A small circle around the grab point, 32 moves a turn: the cursor always
// sweeps some angle, never along the ring's radius only.
QPoint dragPixel(const QPoint& grab, int step) {
  const double angle = step * (2.0 * M_PI / 32.0);
  return grab + QPoint(int(std::lround(6.0 * std::cos(angle))), int(std::lround(6.0 * std::sin(angle))));
}

// Finds a pixel on a joint ring by asking the picker around each ring's centre.
bool findRing(ShownContainer& shown) {
  if (shown.ringPixel) return true;
  RenderWidget& widget = *shown.widget();
  const Ogre::Camera& camera = *widget.camera()->ogreCamera();
  VX::NextGenView::Selection& selection = *RenderWidgetTestAccess::selection(widget);
  for (const auto& view : widget.worldView()->jointControllerViews()) {
    if (!view->entity()) continue;
    const QPoint centre = pixelOf(camera, widget, view->entity()->getWorldBoundingBox(true).getCenter());
    for (int dy = -30; dy <= 30; dy += 2) {
      for (int dx = -30; dx <= 30; dx += 2) {
        std::string name;
        const QPoint pixel = centre + QPoint(dx, dy);
        if (selection.pick(pixel.x(), pixel.y(), &widget, name) && name == view->entity()->getName()) {
          shown.ringPixel = pixel;
          return true;
        }
      }
    }
  }
  return false;
}

bool grabRing(ShownContainer& shown) {
  if (!findRing(shown)) return false;
  sendMouse(*shown.widget(), QEvent::MouseButtonPress, *shown.ringPixel);
  return RenderWidgetTestAccess::state(*shown.widget()) == RenderWidget::ControllerGrabbed;
}

ShownContainer& ringView() { return fixture<ShownContainer>("container/800x600/rings", 800, 600, true); }

void dragStep(benchmark::State& state) {
  ShownContainer& shown = ringView();
  if (!shown.error.empty()) return state.SkipWithError(shown.error.c_str());
  if (!grabRing(shown)) return state.SkipWithError("no joint ring could be grabbed");
  RenderWidget& widget = *shown.widget();
  int step = 0;
  // The 100 ms batch timer is restarted by every move but never fires here:
  // no event loop runs inside the timed loop.
  for (auto _ : state) sendMouse(widget, QEvent::MouseMove, dragPixel(*shown.ringPixel, ++step));
  const bool held = RenderWidgetTestAccess::state(widget) == RenderWidget::ControllerGrabbed;
  const bool commanded = RenderWidgetTestAccess::pendingCommands(widget) > 0;
  sendMouse(widget, QEvent::MouseButtonRelease, dragPixel(*shown.ringPixel, step));
  if (!held || !commanded) state.SkipWithError("the drag let go of the ring or commanded nothing");
}

// Mouse moves at 100 per second for 2 s in total, in `segments` equal
// stretches separated by `pauseMs`; the button is released 10 ms after the
// last move. The host's 25 ms refresh timer runs meanwhile.
void batching(benchmark::State& state, int segments, int pauseMs) {
  ShownContainer& shown = ringView();
  if (!shown.error.empty()) return state.SkipWithError(shown.error.c_str());
  RenderWidget& widget = *shown.widget();
  std::vector<int> moveTimes;
  const int movesPerSegment = 200 / segments;
  for (int s = 0; s < segments; ++s)
    for (int m = 0; m < movesPerSegment; ++m) moveTimes.push_back(s * (movesPerSegment * 10 + pauseMs) + m * 10);
  const int releaseTime = moveTimes.back() + 10;

  for (auto _ : state) {
    if (!grabRing(shown)) return state.SkipWithError("no joint ring could be grabbed");
    int emitted = 0, duringDrag = 0, step = 0;
    std::size_t next = 0;
    qint64 lastMove = 0, longestGap = 0;
    QObject receiver;
    QObject::connect(&widget, &RenderWidget::controllerMoved, &receiver, [&emitted] { ++emitted; });
    shown.container().refreshTimer()->start(25);
    QEventLoop loop;
    QElapsedTimer clock;
    std::function<void()> drive = [&] {
      const qint64 now = clock.elapsed();
      // Moves that came due while the loop was busy are sent together, as
      // queued input would be.
      for (; next < moveTimes.size() && moveTimes[next] <= now; ++next) {
        if (next > 0 && moveTimes[next] - moveTimes[next - 1] == 10) longestGap = std::max(longestGap, now - lastMove);
        lastMove = now;
        sendMouse(widget, QEvent::MouseMove, dragPixel(*shown.ringPixel, ++step));
      }
      if (next < moveTimes.size() || now < releaseTime) {
        const int due = next < moveTimes.size() ? moveTimes[next] : releaseTime;
        QTimer::singleShot(std::max<qint64>(0, due - now), Qt::PreciseTimer, &receiver, drive);
        return;
      }
      duringDrag = emitted;
      sendMouse(widget, QEvent::MouseButtonRelease, dragPixel(*shown.ringPixel, step));
      state.SetIterationTime(clock.elapsed() / 1000.0);
      // Anything still pending would leave within 100 ms.
      QTimer::singleShot(200, &loop, &QEventLoop::quit);
    };
    clock.start();
    QTimer::singleShot(0, Qt::PreciseTimer, &receiver, drive);
    loop.exec();
    shown.container().refreshTimer()->stop();

    state.counters["batches"] = emitted;
    state.counters["during_drag"] = duringDrag;
    state.counters["at_release"] = emitted - duringDrag;
    state.counters["moves"] = double(moveTimes.size());
    state.counters["longest_move_gap_ms"] = double(longestGap);
  }
}

}  // namespace

void registerDragBenchmarks(const Settings& settings) {
  repeated(benchmark::RegisterBenchmark("DragStep/ring_move", dragStep), settings, 10, 0.2)
      ->Unit(benchmark::kMicrosecond);
  for (const auto& [name, segments, pause] : {std::tuple{"Batching/continuous_2s", 1, 0},
                                              std::tuple{"Batching/paused_2s", 4, 150}}) {
    withSpread(benchmark::RegisterBenchmark(name, batching, segments, pause))
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(settings.quick ? 2 : 3)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace bench
